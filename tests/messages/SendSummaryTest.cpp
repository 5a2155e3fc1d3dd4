#include "messages/SendSummary.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

const QLocale italian(QLocale::Italian, QLocale::Italy);
const SendTexts bothTexts{u"Gentile\r\ncliente {Nome} 😀"_s, u"Auguri di \"Natale\" 100%"_s};
const QString smsText =
    u"Testo SMS: «Gentile cliente {Nome} 😀» (25 caratteri (contano 26) · UCS-2 per “😀” · 1 SMS, ne "
    "restano 44 · stima: dipende dai dati del cliente)"_s;
const QString mailText = u"Messaggio EMAIL: «Auguri di \"Natale\" 100%»"_s;

SendChoices chosen(bool SendChoices::*radio)
{
    SendChoices choices;
    choices.*radio = true;
    return choices;
}

TEST(SendSummary, TellsHowManyWhatAndWithWhichTextsInTheirOrder)
{
    EXPECT_EQ(sendSummary(chosen(&SendChoices::RBN_SoloSMS), bothTexts, {1204, {}}, italian),
              (QStringList{u"Destinatari: 1.204 clienti selezionati"_s, u"Tipo: solo SMS"_s, smsText}));
    EXPECT_EQ(sendSummary(chosen(&SendChoices::RBN_SoloEMAIL), bothTexts, {1, {}}, italian),
              (QStringList{u"Destinatari: 1 cliente selezionato"_s, u"Tipo: solo EMAIL"_s, mailText}));
    EXPECT_EQ(sendSummary(chosen(&SendChoices::RBM_Precedenza_SMS), bothTexts, {0, {}}, italian),
              (QStringList{u"Destinatari: 0 clienti selezionati"_s, u"Tipo: SMS e EMAIL, prima gli SMS"_s,
                           smsText, mailText}));
    EXPECT_EQ(sendSummary(chosen(&SendChoices::RBM_Precedenza_EMAIL), bothTexts, {1'000'000, {}}, italian),
              (QStringList{u"Destinatari: 1.000.000 clienti selezionati"_s,
                           u"Tipo: EMAIL e SMS, prima le EMAIL"_s, mailText, smsText}));
    EXPECT_EQ(sendSummary({}, bothTexts, {2, {}}, italian),
              (QStringList{u"Destinatari: 2 clienti selezionati"_s, u"Tipo: nessuno"_s}));
}

TEST(SendSummary, ANotificationTellsItsOwnTextAndWhoGetsIt)
{
    SendChoices choices = chosen(&SendChoices::RBN_Push);
    choices.pushText = u"libero"_s;
    choices.pushTemplateText = u"modello"_s;
    EXPECT_EQ(sendSummary(choices, bothTexts, {3, {}}, italian),
              (QStringList{u"Destinatari: 3 clienti selezionati"_s, u"Tipo: notifica push"_s,
                           u"Testo: «libero»"_s}));
    choices = chosen(&SendChoices::RBN_PushModel);
    choices.pushText = u"libero"_s;
    choices.pushTemplateText = u"modello"_s;
    choices.criterion = PushCriterion::Everybody;
    EXPECT_EQ(sendSummary(choices, bothTexts, {3, {}}, italian),
              (QStringList{u"Destinatari: tutti gli utenti registrati"_s, u"Tipo: notifica push"_s,
                           u"Testo: «modello»"_s}));
}

TEST(SendSummary, APushTextBesideAnSmsRunIsNotTold)
{
    SendChoices choices = chosen(&SendChoices::RBN_SoloSMS);
    choices.RBN_PushModel = true;
    choices.pushTemplateText = u"modello"_s;
    choices.criterion = PushCriterion::Everybody;
    EXPECT_EQ(sendSummary(choices, bothTexts, {3, {}}, italian),
              (QStringList{u"Destinatari: 3 clienti selezionati"_s, u"Tipo: solo SMS"_s, smsText}));
}

TEST(SendSummary, AfterARunItTellsWhomItTookAndWhoIsLeft)
{
    EXPECT_EQ(sendSummary(chosen(&SendChoices::RBN_SoloSMS), bothTexts, {1204, 0}, italian).first(),
              u"Destinatari dell'ultima preparazione: 1.204 clienti · ancora selezionati: 0"_s);
    EXPECT_EQ(sendSummary(chosen(&SendChoices::RBN_SoloEMAIL), bothTexts, {1, 0}, italian).first(),
              u"Destinatari dell'ultima preparazione: 1 cliente · ancora selezionati: 0"_s);
    EXPECT_EQ(sendSummary(chosen(&SendChoices::RBN_Push), bothTexts, {2000, 1500}, italian).first(),
              u"Destinatari dell'ultima preparazione: 2.000 clienti · ancora selezionati: 1.500"_s);
}

TEST(SendSummary, ATextThatWasNotSavedIsNoTextOfARun)
{
    SendTexts texts = bothTexts;
    texts.smsUnsaved = true;
    const QString warning = u"Attenzione: il nuovo testo non è stato salvato e non sarà inviato."_s;
    EXPECT_EQ(sendSummary(chosen(&SendChoices::RBN_SoloSMS), texts, {2, {}}, italian),
              (QStringList{u"Destinatari: 2 clienti selezionati"_s, u"Tipo: solo SMS"_s, smsText, warning}));
    EXPECT_FALSE(sendSummary(chosen(&SendChoices::RBN_SoloEMAIL), texts, {2, {}}, italian).contains(warning));
}

TEST(SendSummary, ALongTextIsCutOnTheScreenAndCountedWhole)
{
    const QStringList lines =
        sendSummary(chosen(&SendChoices::RBN_SoloSMS), {u"a"_s.repeated(10000), {}}, {3, {}}, italian);
    EXPECT_EQ(lines.at(2), u"Testo SMS: «%1…» (10.000 caratteri · GSM 03.38 · 66 SMS, ne restano 98)"_s.arg(
                               u"a"_s.repeated(99)));
}

} // namespace
} // namespace zul
