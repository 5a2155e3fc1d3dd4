#include "messages/SendChoices.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

const QString noKind = u"Attenzione: non è stato selezionato nessun tipo di invio."_s;
const QString noSms = u"Attenzione: non è stato selezionato nessun tipo di SMS."_s;
const QString noMail = u"Attenzione: non è stato selezionato nessun tipo di EMAL."_s;
const QString notBoth = u"Attenzione: non sono stati specificati i tipi di messaggio da utilizzare."_s;
const QString noPush = u"Attenzione: non è stata selezionata nessuna notifica push per l'invio."_s;

QString failure(const SendChoices& choices)
{
    const auto found = checkChoices(choices);
    if (!found) {
        return {};
    }
    EXPECT_TRUE(found->ownTitle);
    EXPECT_FALSE(found->page.has_value());
    return found->message;
}

TEST(SendChoicesTest, NobodyMarkedIsToldWithTheDefaultTitleAndBringsTheFirstPageBack)
{
    EXPECT_FALSE(checkRecipients(true).has_value());
    const auto found = checkRecipients(false);
    ASSERT_TRUE(found.has_value());
    EXPECT_EQ(found->message, u"Attenzione: non è stato selezionato nessun profilo."_s);
    EXPECT_FALSE(found->ownTitle);
    EXPECT_EQ(found->page, 0);
}

TEST(SendChoicesTest, AKindMustBeChosenWhereSmsAndMailAreOffered)
{
    SendChoices c;
    EXPECT_EQ(failure(c), noKind);
    c.pagePushVisible = false;
    EXPECT_EQ(failure(c), noKind);
    c.pageSmsMailVisible = false;
    EXPECT_EQ(failure(c), QString()) << "a hidden page is skipped";
}

TEST(SendChoicesTest, ThePushButtonsCountForSmsAndMailToo)
{
    SendChoices c;
    c.RBN_Push = true;
    EXPECT_EQ(failure(c), noPush);
    c.pushText = u"ciao"_s;
    EXPECT_EQ(failure(c), QString());
    c = {};
    c.RBN_PushModel = true;
    c.pagePushVisible = false;
    EXPECT_EQ(failure(c), QString()) << "the page that would judge it is hidden";
}

TEST(SendChoicesTest, SmsNeedsItsTemplate)
{
    SendChoices c;
    c.RBN_SoloSMS = true;
    c.idMail = 5;
    for (const int id : {-1, 0}) {
        c.idSms = id;
        EXPECT_EQ(failure(c), noSms);
    }
    c.idSms = 1;
    EXPECT_EQ(failure(c), QString());
}

TEST(SendChoicesTest, MailNeedsItsTemplateAndTheMessageSaysEmal)
{
    SendChoices c;
    c.RBN_SoloEMAIL = true;
    c.idSms = 5;
    c.idMail = 0;
    EXPECT_EQ(failure(c), noMail);
    c.idMail = 1;
    EXPECT_EQ(failure(c), QString());
}

TEST(SendChoicesTest, BothKindsNeedBothTemplates)
{
    for (const bool smsFirst : {true, false}) {
        SendChoices c;
        (smsFirst ? c.RBM_Precedenza_SMS : c.RBM_Precedenza_EMAIL) = true;
        EXPECT_EQ(failure(c), notBoth);
        c.idSms = 1;
        EXPECT_EQ(failure(c), notBoth);
        c.idSms = 0;
        c.idMail = 1;
        EXPECT_EQ(failure(c), notBoth);
        c.idSms = 1;
        EXPECT_EQ(failure(c), QString());
    }
}

TEST(SendChoicesTest, APushChoiceNeedsEitherOfItsTexts)
{
    SendChoices c;
    c.pageSmsMailVisible = false;
    for (const bool model : {true, false}) {
        c.RBN_PushModel = model;
        c.RBN_Push = !model;
        c.pushText = c.pushTemplateText = QString();
        EXPECT_EQ(failure(c), noPush);
        c.pushText = u" "_s;
        EXPECT_EQ(failure(c), QString());
        c.pushText.clear();
        c.pushTemplateText = u"x"_s; // also where the free text was chosen
        EXPECT_EQ(failure(c), QString());
    }
    c.RBN_Push = c.RBN_PushModel = false;
    c.pushTemplateText.clear();
    EXPECT_EQ(failure(c), QString()) << "without a push choice nothing is judged";
}

TEST(SendChoicesTest, ChecksStopAtTheFirstThatFails)
{
    SendChoices c;
    c.RBN_SoloSMS = true;
    c.RBN_Push = true; // the two groups are independent of each other
    EXPECT_EQ(failure(c), noSms);
    c.idSms = 1;
    EXPECT_EQ(failure(c), noPush);
}

TEST(SendChoicesTest, TheFirstMatchingChoiceWins)
{
    SendChoices c;
    EXPECT_EQ(choosePreparation(c), Preparation::Nothing);
    c.RBN_Push = true;
    EXPECT_EQ(choosePreparation(c), Preparation::Push);
    c.RBN_Push = false;
    c.RBN_PushModel = true;
    EXPECT_EQ(choosePreparation(c), Preparation::Push);
    c.RBM_Precedenza_SMS = true;
    EXPECT_EQ(choosePreparation(c), Preparation::SmsThenMail);
    c.RBN_SoloSMS = true;
    EXPECT_EQ(choosePreparation(c), Preparation::Sms);
    c.RBM_Precedenza_EMAIL = true;
    EXPECT_EQ(choosePreparation(c), Preparation::MailThenSms);
    c.RBN_SoloEMAIL = true;
    EXPECT_EQ(choosePreparation(c), Preparation::Mail);
}

TEST(SendChoicesTest, TheClosingMessageGoesByThePushButtonsAndNotByTheRun)
{
    SendChoices c;
    c.RBN_SoloSMS = true;
    EXPECT_EQ(closingMessage(c),
              u"Creazione dei messaggi ultimata. Verificare eventuali errori di creazione nella lista.\r\n"
              "I messaggi verranno elaborati in base alla schedulazione del tool di spedizione."_s);
    const QString push = u"Creazione delle notifiche push ultimata. Verificare eventuali errori di "
                         "creazione/spedizione nella lista."_s;
    c.RBN_PushModel = true; // set by choosing an SMS template
    EXPECT_EQ(closingMessage(c), push);
    c.RBN_PushModel = false;
    c.RBN_Push = true;
    EXPECT_EQ(closingMessage(c), push);
}

} // namespace
} // namespace zul
