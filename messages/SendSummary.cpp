#include "messages/SendSummary.h"

#include "messages/PushNotifications.h"
#include "messages/SmsCount.h"

namespace zul {

using namespace Qt::StringLiterals;

namespace {

QString shortened(const QString& text)
{
    constexpr qsizetype Longest = 100;
    const QString line = text.simplified();
    return line.size() <= Longest ? line : line.left(Longest - 1) + u'…';
}

QString recipientsLine(const SendCount& count, const QLocale& locale)
{
    const QString ticked = locale.toString(count.ticked);
    if (count.left) {
        const QString customers = count.ticked == 1 ? u"1 cliente"_s : u"%1 clienti"_s.arg(ticked);
        return u"Destinatari dell'ultima preparazione: %1 · ancora selezionati: %2"_s.arg(
            customers, locale.toString(*count.left));
    }
    return count.ticked == 1 ? u"Destinatari: 1 cliente selezionato"_s
                             : u"Destinatari: %1 clienti selezionati"_s.arg(ticked);
}

QStringList smsLines(const SendTexts& texts, const QLocale& locale)
{
    QStringList lines{
        u"Testo SMS: «%1» (%2)"_s.arg(shortened(texts.sms), smsCountLine(countSms(texts.sms), locale))};
    if (texts.smsUnsaved) {
        lines += u"Attenzione: il nuovo testo non è stato salvato e non sarà inviato."_s;
    }
    return lines;
}

QString mailLine(const QString& title)
{
    return u"Messaggio EMAIL: «%1»"_s.arg(shortened(title));
}

} // namespace

QStringList sendSummary(const SendChoices& choices, const SendTexts& texts, const SendCount& count,
                        const QLocale& locale)
{
    QStringList lines{recipientsLine(count, locale)};
    switch (choosePreparation(choices)) {
    case Preparation::Sms:
        lines += u"Tipo: solo SMS"_s;
        lines += smsLines(texts, locale);
        break;
    case Preparation::Mail:
        lines += {u"Tipo: solo EMAIL"_s, mailLine(texts.mail)};
        break;
    case Preparation::SmsThenMail:
        lines += u"Tipo: SMS e EMAIL, prima gli SMS"_s;
        lines += smsLines(texts, locale);
        lines += mailLine(texts.mail);
        break;
    case Preparation::MailThenSms:
        lines += {u"Tipo: EMAIL e SMS, prima le EMAIL"_s, mailLine(texts.mail)};
        lines += smsLines(texts, locale);
        break;
    case Preparation::Push:
        if (choices.criterion == PushCriterion::Everybody) {
            lines = {u"Destinatari: tutti gli utenti registrati"_s};
        }
        lines += {u"Tipo: notifica push"_s, u"Testo: «%1»"_s.arg(shortened(pushText(choices)))};
        break;
    case Preparation::Nothing:
        lines += u"Tipo: nessuno"_s;
        break;
    }
    return lines;
}

} // namespace zul
