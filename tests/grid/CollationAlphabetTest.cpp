#include "tests/grid/Alphabets.h"

#include <gtest/gtest.h>

using namespace zul;
using namespace zul::test;

TEST(CollationAlphabet, NumbersLettersInTheOrderOfTheLanguage)
{
    const CollationAlphabet italian = alphabetOf("it_IT");
    EXPECT_GT(italian.letter(u'a'), 0);
    EXPECT_LT(italian.letter(u'9'), italian.letter(u'a'));
    EXPECT_LT(italian.letter(u'a'), italian.letter(u'b'));
    EXPECT_LT(italian.letter(u'z'), italian.letter(u'α'));
    EXPECT_LT(italian.letter(u'ω'), italian.letter(u'а'));
    EXPECT_EQ(italian.letter(u'a'), italian.letter(u'å'));
    const CollationAlphabet swedish = alphabetOf("sv_SE");
    EXPECT_GT(swedish.letter(u'å'), swedish.letter(u'z')) << "a letter of its own there";
}

TEST(CollationAlphabet, TellsFormsOfALetterApartButNotCase)
{
    const CollationAlphabet italian = alphabetOf("it_IT");
    EXPECT_EQ(italian.form(u'a'), italian.form(u'A'));
    EXPECT_NE(italian.form(u'a'), italian.form(u'à'));
    EXPECT_EQ(italian.form(u'à'), italian.form(u'À'));
    EXPECT_NE(italian.form(u'á'), italian.form(u'à'));
}
