#include "messages/MessagePreview.h"

#include "base/OperatorText.h"
#include "hostlib/Host.h"
#include "messages/CreateSMS.h"
#include "messages/PushNotifications.h"
#include "selection/ResultGridQuery.h"

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// The checks of the run, in its order.
QString smsHindrance(const MessagePreview& preview, const hostlib::Customer& customer)
{
    if (preview.recipient.isEmpty()) {
        return u"Numero cellulare non valido: l'SMS non verrà preparato."_s;
    }
    return customer.consensoSms() ? QString() : u"Consenso SMS non presente: l'SMS non verrà preparato."_s;
}

QString pushHindrance(const MessagePreview& preview, const hostlib::SqlConnection& connection,
                      const hostlib::Customer& customer)
{
    if (preview.recipient.isEmpty()) {
        return u"Email mancante: il profilo verrà scartato."_s;
    }
    if (!connection.isValidEmail(preview.recipient)) {
        return u"Email non valida: il profilo verrà scartato."_s;
    }
    return customer.id() < 1 ? u"Cliente non trovato: la notifica non verrà creata."_s : QString();
}

} // namespace

MessagePreview previewMessage(const hostlib::SqlConnection& connection, PreviewKind kind,
                              const Recipients& rows, int row, const QString& text)
{
    const bool sms = kind == PreviewKind::Sms;
    MessagePreview preview;
    preview.customer = rows.text(row, ColumnCliente);
    preview.recipient = sms ? rows.text(row, ColumnTelefono2) : trimBlanks(rows.text(row, ColumnEmail));
    preview.text = text;
    if (!rows.isNumeric(row, ColumnIdCliente)) {
        preview.hindrance = u"Codice cliente non valido: il messaggio non verrà preparato."_s;
        return preview;
    }
    hostlib::Customer customer(connection);
    customer.init(rows.idCliente(row));
    const hostlib::TextParser parser(connection);
    preview.text = sms ? smsFor(connection, parser, customer, text)
                       : PushNotify_TextMessage_Parser(parser, text, customer);
    preview.hindrance = sms ? smsHindrance(preview, customer) : pushHindrance(preview, connection, customer);
    return preview;
}

} // namespace zul
