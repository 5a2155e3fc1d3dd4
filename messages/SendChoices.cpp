#include "messages/SendChoices.h"

namespace zul {

using namespace Qt::StringLiterals;

namespace {

SendFailure failure(const QString& message)
{
    return {.message = message};
}

} // namespace

std::optional<SendFailure> checkRecipients(bool somebodyIsMarked)
{
    if (somebodyIsMarked) {
        return std::nullopt;
    }
    return SendFailure{
        .message = u"Attenzione: non è stato selezionato nessun profilo."_s, .ownTitle = false, .page = 0};
}

std::optional<SendFailure> checkChoices(const SendChoices& choices)
{
    if (choices.pageSmsMailVisible) {
        const bool both = choices.RBM_Precedenza_EMAIL || choices.RBM_Precedenza_SMS;
        if (!choices.RBN_SoloEMAIL && !choices.RBN_SoloSMS && !both && !choices.anyPush()) {
            return failure(u"Attenzione: non è stato selezionato nessun tipo di invio."_s);
        }
        if (choices.RBN_SoloSMS && choices.idSms < 1) {
            return failure(u"Attenzione: non è stato selezionato nessun tipo di SMS."_s);
        }
        if (choices.RBN_SoloEMAIL && choices.idMail < 1) {
            return failure(u"Attenzione: non è stato selezionato nessun tipo di EMAL."_s);
        }
        if (both && (choices.idMail < 1 || choices.idSms < 1)) {
            return failure(u"Attenzione: non sono stati specificati i tipi di messaggio da utilizzare."_s);
        }
    }
    if (choices.pagePushVisible && choices.anyPush() && choices.pushText.isEmpty() &&
        choices.pushTemplateText.isEmpty()) {
        return failure(u"Attenzione: non è stata selezionata nessuna notifica push per l'invio."_s);
    }
    return std::nullopt;
}

Preparation choosePreparation(const SendChoices& choices)
{
    if (choices.RBN_SoloEMAIL) {
        return Preparation::Mail;
    }
    if (choices.RBM_Precedenza_EMAIL) {
        return Preparation::MailThenSms;
    }
    if (choices.RBN_SoloSMS) {
        return Preparation::Sms;
    }
    if (choices.RBM_Precedenza_SMS) {
        return Preparation::SmsThenMail;
    }
    if (choices.anyPush()) {
        return Preparation::Push;
    }
    return Preparation::Nothing;
}

QString closingMessage(const SendChoices& choices)
{
    if (choices.anyPush()) {
        return u"Creazione delle notifiche push ultimata. Verificare eventuali errori di "
               "creazione/spedizione nella lista."_s;
    }
    return u"Creazione dei messaggi ultimata. Verificare eventuali errori di creazione nella lista.\r\n"
           "I messaggi verranno elaborati in base alla schedulazione del tool di spedizione."_s;
}

} // namespace zul
