#include "messages/CreateSMS.h"

#include "hostlib/Ado.h"
#include "hostlib/Host.h"
#include "hostlib/LocalClock.h"
#include "messages/SendChoices.h"
#include "selection/ResultGridQuery.h"

#include <QDateTime>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 KindSms = 6;

/// The description of a classification; empty for one that has no row.
QString classificationText(const hostlib::SqlConnection& connection, qint32 idClassificazione)
{
    return connection.lookupText(u"descrizione"_s, u"tabRIC_Classificazioni"_s,
                                 u"id = "_s + QString::number(idClassificazione));
}

} // namespace

MessageTemplate readTemplate(const hostlib::SqlConnection& connection, qint32 idMessaggio)
{
    ado::Recordset rows = connection.connection().open(
        u"Select TestoSMS, OGGETTO from TMK_Messaggi where idMessaggio="_s + QString::number(idMessaggio),
        ado::Cursor::Static, ado::Lock::ReadOnly);
    MessageTemplate found;
    if (!rows.eof()) {
        found.testoSMS = rows.text(u"testoSMS"_s);
        found.Oggetto = rows.text(u"Oggetto"_s);
    }
    rows.close();
    return found;
}

bool createSms(const hostlib::SqlConnection& connection, Recipients& recipients, Outcomes& outcomes,
               qint32 idMessaggio, bool clearMarks)
{
    const MessageTemplate message = readTemplate(connection, idMessaggio);
    outcomes.append(separatorLine());

    hostlib::Customer customer(connection);
    hostlib::TextParser parser(connection);
    hostlib::MessageRecord record(connection);
    LocalClock clock;

    for (int row = 0; row < recipients.count(); ++row) {
        if (recipients.isMarked(row)) {
            const QString name = recipients.text(row, ColumnCliente);
            const QString number = recipients.text(row, ColumnTelefono2);
            const auto skip = [&](const QString& why) {
                outcomes.append(u"ERRORE - Saltata richiesta invio SMS per "_s + name + why);
            };
            if (!recipients.isNumeric(row, ColumnIdCliente) || number.isEmpty()) {
                skip(u": numero cellulare non valido."_s);
            } else {
                const qint32 idCliente = recipients.idCliente(row);
                customer.init(idCliente);
                if (!customer.consensoSms()) {
                    skip(u": consenso SMS non presente."_s);
                } else {
                    const QString classification =
                        classificationText(connection, customer.idClassificazione());
                    const QDateTime now = clock.now();
                    const bool stored =
                        record.save({.idTipoMessaggio = KindSms,
                                     .descrizione = u"SMS"_s,
                                     .testo = parser.parse(message.testoSMS, customer, classification),
                                     .contatto = number,
                                     .idCliente = idCliente,
                                     .creazione = now});
                    if (!stored)
                        return false;
                    outcomes.append(u"OK     - Preparato SMS per "_s + name);
                }
            }
        }
        if (clearMarks)
            recipients.clearMark(row);
    }
    return true;
}

} // namespace zul
