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

QString recipientsLine(qint64 ticked, const QLocale& locale)
{
    return ticked == 1 ? u"Destinatari: 1 cliente selezionato"_s
                       : u"Destinatari: %1 clienti selezionati"_s.arg(locale.toString(ticked));
}

QString smsLine(const QString& text, const QLocale& locale)
{
    return u"Testo SMS: «%1» (%2)"_s.arg(shortened(text), smsCountLine(countSms(text), locale));
}

QString mailLine(const QString& title)
{
    return u"Messaggio EMAIL: «%1»"_s.arg(shortened(title));
}

} // namespace

QStringList sendSummary(const SendChoices& choices, const SendTexts& texts, qint64 ticked,
                        const QLocale& locale)
{
    QStringList lines{recipientsLine(ticked, locale)};
    switch (choosePreparation(choices)) {
    case Preparation::Sms:
        lines += {u"Tipo: solo SMS"_s, smsLine(texts.sms, locale)};
        break;
    case Preparation::Mail:
        lines += {u"Tipo: solo EMAIL"_s, mailLine(texts.mail)};
        break;
    case Preparation::SmsThenMail:
        lines += {u"Tipo: SMS e EMAIL, prima gli SMS"_s, smsLine(texts.sms, locale), mailLine(texts.mail)};
        break;
    case Preparation::MailThenSms:
        lines += {u"Tipo: EMAIL e SMS, prima le EMAIL"_s, mailLine(texts.mail), smsLine(texts.sms, locale)};
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
