// What ICU takes for one letter, language by language; the collation of Windows has rules of its own.
#include "tests/grid/Alphabets.h"

#include <gtest/gtest.h>

using namespace zul;
using namespace zul::test;

TEST(CollationAlphabetIcu, HasNoPlaceForWhatIsNotOneLetter)
{
    const CollationAlphabet italian = alphabetOf("it_IT");
    for (const char16_t c : {u'ß', u'æ', u'œ', u'½', u'\u0301', u'\u00AD', u'\n', u'\0'}) {
        EXPECT_EQ(italian.letter(c), 0) << static_cast<unsigned>(c);
    }
    EXPECT_EQ(italian.letter(CollationAlphabet::end), 0);
    EXPECT_TRUE(italian.printableAsciiIsSimple());
    ASSERT_TRUE(italian.notSimpleLetters());
    EXPECT_GT(alphabetOf("da_DK").letter(u'æ'), 0) << "a letter there";
}

TEST(CollationAlphabetIcu, IsOfUseWhereNoTwoUsualLettersCountAsOne)
{
    for (const char* locale : {"C", "it_IT", "en_US", "de_DE", "fr_FR", "fr_CA", "es_ES", "sv_SE", "pl_PL",
                               "ru_RU", "el_GR", "tr_TR"}) {
        EXPECT_TRUE(alphabetOf(locale).isUsable()) << locale;
    }
    for (const char* locale :
         {"cs_CZ", "sk_SK", "hu_HU", "da_DK", "nb_NO", "hr_HR", "cy_GB", "br_FR", "uz_UZ"}) {
        EXPECT_FALSE(alphabetOf(locale).isUsable()) << locale;
    }
}

TEST(CollationAlphabetIcu, LooksAtRarerCharactersWhenTheyCome)
{
    const QCollator collator = collatorOf("it_IT");
    const CollationAlphabet italian(collator);
    EXPECT_TRUE(italian.standApart(collator, {}));
    EXPECT_TRUE(italian.standApart(collator, {u'а', u'б', u'й', u'є', u'α', u'ώ', u'ž', u'ő', u'§', u'°'}));
    EXPECT_FALSE(italian.standApart(collator, {u'ž', u'·'}))
        << "l and the dot behind it are taken for one letter";
}
