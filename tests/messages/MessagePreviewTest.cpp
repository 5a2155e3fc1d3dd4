#include "messages/MessagePreview.h"

#include "tests/messages/FakeRecipients.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

class MessagePreviewTest : public ComponentTest
{
protected:
    MessagePreviewTest()
    {
        host.offerAll();
        host.customers()[1] = {"Rossi", "r@x.it", true, true, 3};
        host.customers()[2] = {"D'Amico 100% \"à\" 😀", "d@x.it", false, true, 0};
        host.answerLookup("id = 3", text("Buono"));
        rows.rows = {{u"1"_s, u"Rossi Mario"_s, u"+39 333 12"_s, u" r@x.it "_s},
                     {u"2"_s, u"D'Amico 100% \"à\" 😀"_s, u"333"_s, u"non una e-mail"_s},
                     {u"1"_s, u"Rossi"_s, QString(), QString()},
                     {u"abc"_s, u"Senza id"_s, u"333"_s, u"a@b.it"_s},
                     {u"99"_s, u"Nessuno"_s, u"333"_s, u"a@b.it"_s}};
    }

    MessagePreview preview(int row, PreviewKind kind = PreviewKind::Sms)
    {
        return previewMessage(connection(), kind, rows, row, u"Ciao [NOME]"_s);
    }

    FakeRecipients rows;
};

TEST_F(MessagePreviewTest, AnSmsIsFilledAsTheRunFillsIt)
{
    const MessagePreview shown = preview(0);
    EXPECT_EQ(shown.customer, u"Rossi Mario"_s);
    EXPECT_EQ(shown.recipient, u"+39 333 12"_s);
    EXPECT_EQ(shown.text, u"Ciao [NOME]<Rossi,Buono>"_s);
    EXPECT_EQ(shown.hindrance, QString());
    EXPECT_EQ(host.operations(), (Lines{"customer 1", "lookup descrizione|tabRIC_Classificazioni|id = 3",
                                        "parse Ciao [NOME]|Rossi|Buono"}))
        << "nothing is written";
}

TEST_F(MessagePreviewTest, SaysWhyTheRunWouldSkipTheCustomer)
{
    EXPECT_EQ(preview(1).hindrance, u"Consenso SMS non presente: l'SMS non verrà preparato."_s);
    EXPECT_EQ(preview(1).text, u"Ciao [NOME]<D'Amico 100% \"à\" 😀,>"_s)
        << "and how it would look all the same";
    EXPECT_EQ(preview(2).hindrance, u"Numero cellulare non valido: l'SMS non verrà preparato."_s);
    host.forgetOperations();
    EXPECT_EQ(preview(3).hindrance, u"Codice cliente non valido: il messaggio non verrà preparato."_s);
    EXPECT_EQ(preview(3).text, u"Ciao [NOME]"_s);
    EXPECT_TRUE(host.operations().empty()) << "there is nobody to ask for";
    EXPECT_EQ(preview(4).hindrance, u"Consenso SMS non presente: l'SMS non verrà preparato."_s);
}

TEST_F(MessagePreviewTest, ANotificationGoesToTheAddressOfTheGridWithoutAClassification)
{
    host.isValidEmail() = [](const std::string& email) { return email.find('@') != std::string::npos; };
    const MessagePreview shown = preview(0, PreviewKind::Push);
    EXPECT_EQ(shown.recipient, u"r@x.it"_s);
    EXPECT_EQ(shown.text, u"Ciao [NOME]<Rossi,>"_s);
    EXPECT_EQ(shown.hindrance, QString());
    EXPECT_TRUE(host.operations("lookup").empty());
    EXPECT_EQ(preview(1, PreviewKind::Push).hindrance, u"Email non valida: il profilo verrà scartato."_s);
    EXPECT_EQ(preview(2, PreviewKind::Push).hindrance, u"Email mancante: il profilo verrà scartato."_s);
    EXPECT_EQ(preview(4, PreviewKind::Push).hindrance,
              u"Cliente non trovato: la notifica non verrà creata."_s);
}

TEST_F(MessagePreviewTest, AFailureOfTheHostIsTheCallersAffair)
{
    host.failNth("parse", 1, E_FAIL, u"parser");
    EXPECT_THROW(preview(0), Error);
}

} // namespace
} // namespace zul
