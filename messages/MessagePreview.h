// A message as one customer would get it.
#pragma once

#include "messages/Recipients.h"

#include <QString>

namespace zul {

namespace hostlib {
class SqlConnection;
}

enum class PreviewKind
{
    Sms,
    Push,
};

struct MessagePreview
{
    QString customer;  ///< the name as the grid shows it
    QString recipient; ///< the number, or the e-mail address of the app's profile, as the run takes it
    QString text;      ///< placeholders filled by the host
    QString hindrance; ///< why the run would skip the customer; empty when it would not
};

/// Asks the host for the customer of a row and fills a text for it, as the run does. Nothing is written.
/// @param row one whose column 0 need not be an id: then the text stays as it is and the hindrance says so
/// @throws Error of the database or of a host object
MessagePreview previewMessage(const hostlib::SqlConnection& connection, PreviewKind kind,
                              const Recipients& rows, int row, const QString& text);

} // namespace zul
