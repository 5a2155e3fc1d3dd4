// Turns every marked customer into one queued SMS.
#pragma once

#include "messages/Recipients.h"

namespace zul {

namespace hostlib {
class SqlConnection;
}

/// A template as the creators read it.
struct MessageTemplate
{
    QString testoSMS;
    QString Oggetto;
};

/// Reads a template. An id without a row gives empty texts, and so does a NULL.
MessageTemplate readTemplate(const hostlib::SqlConnection& connection, qint32 idMessaggio);

/// Queues one SMS per marked row and writes one line per outcome. Customers without a mobile number or
/// without consent are skipped and do not stop the run. No country prefix is added here: the sender does it.
///
/// @param clearMarks clears the mark of every row after it was handled, skipped and unmarked ones included;
///        false for the first of two creators, so that the second sees the same rows
/// @return false when a message could not be stored: the run stops at that row, which keeps its mark
/// @throws Error of the database or of a host object; what was stored until then stays
bool createSms(const hostlib::SqlConnection& connection, Recipients& recipients, Outcomes& outcomes,
               qint32 idMessaggio, bool clearMarks);

} // namespace zul
