// Turns every marked customer into one queued SMS.
#pragma once

#include "messages/Recipients.h"

namespace zul {

namespace hostlib {
class Customer;
class SqlConnection;
class TextParser;
} // namespace hostlib

/// The text of an SMS template. An id without a row gives an empty text, and so does a NULL.
QString readTemplateText(const hostlib::SqlConnection& connection, qint32 idMessaggio);

/// The text that a customer gets: that of the template, its placeholders filled by the host.
/// @param customer one that was read
QString smsFor(const hostlib::SqlConnection& connection, const hostlib::TextParser& parser,
               const hostlib::Customer& customer, const QString& message);

/// Queues one SMS per marked row and writes one line per outcome. Customers without a mobile number or
/// without consent are skipped and do not stop the run. No country prefix is added here: the sender does it.
///
/// @param clearMarks as with walkMarkedRows
/// @return false when a message could not be stored: the run stops at that row, which keeps its mark
/// @throws Error of the database or of a host object; what was stored until then stays
bool createSms(const hostlib::SqlConnection& connection, Recipients& recipients, Outcomes& outcomes,
               qint32 idMessaggio, bool clearMarks);

} // namespace zul
