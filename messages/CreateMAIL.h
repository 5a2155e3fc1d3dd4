// Queues one e-mail per marked customer under a new campaign.
#pragma once

#include "messages/Recipients.h"

#include <QDateTime>

namespace zul {

namespace hostlib {
class SqlConnection;
}

/// Queues one row of TMK_MailingList per marked row with an e-mail address and consent, and writes one line
/// per outcome. Every run makes a new campaign, also when nobody qualifies.
///
/// @param idMessaggio the e-mail template
/// @param idUtente the operator
/// @param clearMarks as with walkMarkedRows
/// @throws Error of the database or of a host object; rows already written stay in the queue
void createMail(const hostlib::SqlConnection& connection, Recipients& recipients, Outcomes& outcomes,
                qint32 idMessaggio, qint32 idUtente, bool clearMarks);

/// The description of a mail campaign: no blank after the colon, date and time in the user's short formats.
QString campaignDescription(const QDateTime& now);

} // namespace zul
