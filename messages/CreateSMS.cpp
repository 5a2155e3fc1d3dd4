#include "messages/CreateSMS.h"

#include "hostlib/Ado.h"
#include "hostlib/Host.h"
#include "hostlib/LocalClock.h"
#include "messages/OutcomeLines.h"
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

QString readTemplateText(const hostlib::SqlConnection& connection, qint32 idMessaggio)
{
    ado::Recordset rows = connection.connection().open(
        u"Select TestoSMS, OGGETTO from TMK_Messaggi where idMessaggio="_s + QString::number(idMessaggio),
        ado::Cursor::Static, ado::Lock::ReadOnly);
    QString found = rows.eof() ? u""_s : rows.text(u"testoSMS"_s);
    rows.close();
    return found;
}

QString smsFor(const hostlib::SqlConnection& connection, const hostlib::TextParser& parser,
               const hostlib::Customer& customer, const QString& message)
{
    return parser.parse(message, customer, classificationText(connection, customer.idClassificazione()));
}

bool createSms(const hostlib::SqlConnection& connection, Recipients& recipients, Outcomes& outcomes,
               qint32 idMessaggio, bool clearMarks)
{
    const QString message = readTemplateText(connection, idMessaggio);
    outcomes.append(separatorLine());

    hostlib::Customer customer(connection);
    hostlib::TextParser parser(connection);
    hostlib::MessageRecord record(connection);
    LocalClock clock;

    return walkMarkedRows(recipients, clearMarks, [&](int row) {
        const QString name = recipients.text(row, ColumnCliente);
        const QString number = recipients.text(row, ColumnTelefono2);
        const auto skip = [&](const QString& why) {
            outcomes.append(
                outcomeLine(OutcomeTag::Skipped, u"Saltata richiesta invio SMS per "_s + name + why));
            return true;
        };
        if (!recipients.isNumeric(row, ColumnIdCliente) || number.isEmpty()) {
            return skip(u": numero cellulare non valido."_s);
        }
        const qint32 idCliente = recipients.idCliente(row);
        customer.init(idCliente);
        if (!customer.consensoSms()) {
            return skip(u": consenso SMS non presente."_s);
        }

        const QString text = smsFor(connection, parser, customer, message);
        const QDateTime now = clock.now();
        if (!record.save({.idTipoMessaggio = KindSms,
                          .descrizione = u"SMS"_s,
                          .testo = text,
                          .contatto = number,
                          .idCliente = idCliente,
                          .creazione = now})) {
            return false;
        }
        outcomes.append(outcomeLine(OutcomeTag::Prepared, u"Preparato SMS per "_s + name));
        return true;
    });
}

} // namespace zul
