// Appends a message template that the operator typed.
#pragma once

#include <QString>

namespace zul {

namespace hostlib {
class SqlConnection;
}

/// A typed text as it is kept: without blanks around it, its line breaks CR LF.
QString templateText(const QString& typed);

/// Appends one template of kind 6 (SMS and push templates are one and the same list) and tells the host's
/// change tracker of it. There is no duplicate check: two saves of one text make two rows.
/// @param connection may hold nothing, which is a failure like any other
/// @param text as templateText gives it
/// @return the new idMessaggio; -1 when anything failed, which is then in the log
qint32 salvaMessaggio(const hostlib::SqlConnection& connection, const QString& text) noexcept;

} // namespace zul
