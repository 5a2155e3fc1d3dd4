#include "grid/CollationAlphabet.h"

#include <QCollator>

#include <gtest/gtest.h>

using namespace zul;

namespace {

QCollator collatorOf(const char* locale)
{
    QCollator collator{QLocale(QString::fromLatin1(locale))};
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

CollationAlphabet alphabetOf(const char* locale)
{
    return CollationAlphabet(collatorOf(locale));
}

} // namespace

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

TEST(CollationAlphabet, HasNoPlaceForWhatIsNotOneLetter)
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

TEST(CollationAlphabet, IsOfUseWhereNoTwoUsualLettersCountAsOne)
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

TEST(CollationAlphabet, LooksAtRarerCharactersWhenTheyCome)
{
    const QCollator collator = collatorOf("it_IT");
    const CollationAlphabet italian(collator);
    EXPECT_TRUE(italian.standApart(collator, {}));
    EXPECT_TRUE(italian.standApart(collator, {u'а', u'б', u'й', u'є', u'α', u'ώ', u'ž', u'ő', u'§', u'°'}));
    EXPECT_FALSE(italian.standApart(collator, {u'ž', u'·'}))
        << "l and the dot behind it are taken for one letter";
}
