#include "base/CaseFold.h"

#include <gtest/gtest.h>

namespace zul {

TEST(CaseFoldTest, FoldsLettersOfManyAlphabets)
{
    EXPECT_EQ(foldCase("ABC xyz 123"), "abc xyz 123");
    EXPECT_EQ(foldCase("ÀÉÎÕÜÞ×ß÷ÿŸ"), "àéîõüþ×ß÷ÿÿ");
    EXPECT_EQ(foldCase("ĄĆŁŃŻ Ő Ž Ș Ț"), "ąćłńż ő ž ș ț");
    EXPECT_EQ(foldCase("ΑΒΓΩ ΆΈΌΎΏ"), "αβγω άέόύώ");
    EXPECT_EQ(foldCase("ЖЯЁ Ґ Ӏ"), "жяё ґ ӏ");
    EXPECT_EQ(foldCase("NGUYỄN"), "nguyễn");
    EXPECT_EQ(foldCase(""), "");
}

TEST(CaseFoldTest, LeavesBytesThatAreNoText)
{
    EXPECT_EQ(foldCase("😀 \xff\xc3"), "😀 \xff\xc3");
    EXPECT_EQ(foldCase("A\xE2\x82Z\xED\xA0\x80"), "a\xE2\x82z\xED\xA0\x80");
}

TEST(CaseFoldTest, NamesAreEqualInAnyCase)
{
    EXPECT_TRUE(equalNames(u"ShowForm", u"SHOWFORM"));
    EXPECT_TRUE(equalNames(u"Città", u"CITTÀ"));
    EXPECT_TRUE(equalNames(u"😀", u"😀"));
    EXPECT_TRUE(equalNames(u"", u""));
    EXPECT_FALSE(equalNames(u"ShowForm", u"ShowForms"));
    EXPECT_FALSE(equalNames(u"[", u"{"));
    EXPECT_FALSE(equalNames(u"×", u"÷")) << "signs, not letters";
}

TEST(CaseFoldTest, DatabasesFoldAsciiOnly)
{
    EXPECT_EQ(foldAscii("TabClienti_À[Z]"), "tabclienti_À[z]");
    EXPECT_TRUE(equalAscii("IdCliente", "IDCLIENTE"));
    EXPECT_FALSE(equalAscii("Città", "CITTÀ"));
    EXPECT_FALSE(equalAscii("Id", "IdCliente"));
    EXPECT_FALSE(equalAscii("[", "{"));
}

} // namespace zul
