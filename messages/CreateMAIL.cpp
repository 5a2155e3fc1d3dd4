#include "messages/CreateMAIL.h"

#include "hostlib/Ado.h"
#include "hostlib/Host.h"
#include "hostlib/LocalClock.h"
#include "hostlib/NewRowId.h"
#include "messages/Campaign.h"
#include "messages/OutcomeLines.h"
#include "selection/ResultGridQuery.h"

#include <QLocale>

namespace zul {

using namespace Qt::StringLiterals;

QString campaignDescription(const QDateTime& now)
{
    const QLocale locale;
    return u"CAMPAGNA MAIL DEL:"_s + locale.toString(now.date(), QLocale::ShortFormat) + u' ' +
           locale.toString(now.time(), QLocale::ShortFormat);
}

void createMail(const hostlib::SqlConnection& connection, Recipients& recipients, Outcomes& outcomes,
                qint32 idMessaggio, qint32 idUtente, bool clearMarks)
{
    outcomes.append(separatorLine());

    const QDateTime start = QDateTime::currentDateTime();
    Campaign campaign;
    campaign.Descrizione = campaignDescription(start);
    campaign.DataLancio = start.date();
    campaign.datatermine = start.date().addDays(1);
    campaign.idMessaggio = idMessaggio;
    campaign.idOperatore = idUtente;
    const qint32 idCampagna = saveCampaign(connection, campaign, std::nullopt);

    ado::Recordset queue = connection.connection().open(u"SELECT * FROM TMK_MailingList WHERE 1=2"_s,
                                                        ado::Cursor::Static, ado::Lock::Pessimistic);
    hostlib::Customer customer(connection);
    LocalClock clock;
    walkMarkedRows(recipients, clearMarks, [&](int row) {
        const QString name = recipients.text(row, ColumnCliente);
        const auto skip = [&](const QString& why) {
            outcomes.append(
                outcomeLine(OutcomeTag::Skipped, u"Saltata richiesta invio EMAIL per "_s + name + why));
            return true;
        };
        if (recipients.text(row, ColumnEmail).isEmpty()) {
            return skip(u": email non presente."_s);
        }
        if (!recipients.isNumeric(row, ColumnIdCliente)) {
            return true;
        }
        const qint32 idCliente = recipients.idCliente(row);
        customer.init(idCliente);
        if (!customer.consensoEmail()) {
            return skip(u": consenso EMAIL non presente."_s);
        }

        queue.addNew();
        hostlib::NewRowId idMailing(connection, u"TMK_MailingList"_s, u"idMailing"_s);
        queue.set(u"idMailing"_s, idMailing.value());
        queue.set(u"idCampagna"_s, idCampagna);
        queue.set(u"idMessaggio"_s, idMessaggio);
        queue.set(u"IDCliente"_s, idCliente);
        queue.set(u"Contatto"_s, customer.email());
        queue.set(u"DataCreaz"_s, clock.now());
        queue.set(u"DataAgg"_s, clock.now());
        queue.set(u"Locked"_s, false);
        queue.set(u"idReferente"_s, qint16{-1});
        queue.update();
        idMailing.written();
        outcomes.append(outcomeLine(OutcomeTag::Prepared, u"Preparata EMAIL per "_s + name));
        return true;
    });
    queue.close();
}

} // namespace zul
