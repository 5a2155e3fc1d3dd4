#include "base/LocaleInput.h"

#include <gtest/gtest.h>

namespace {

const QLocale italian(QLocale::Italian, QLocale::Italy);
const QLocale american(QLocale::English, QLocale::UnitedStates);
const QLocale french(QLocale::French, QLocale::France);
const QLocale swedish(QLocale::Swedish, QLocale::Sweden);

double italianNumber(QStringView text)
{
    return zul::toNumber(text, italian).value_or(-999.0);
}

QDate italianDate(QStringView text)
{
    return zul::toDate(text, italian).value_or(QDate());
}

} // namespace

TEST(LocaleInput, ReadsItalianNumbers)
{
    EXPECT_EQ(italianNumber(u"18"), 18.0);
    EXPECT_EQ(italianNumber(u"18,5"), 18.5);
    EXPECT_EQ(italianNumber(u"1.234,50"), 1234.5);
    EXPECT_EQ(italianNumber(u"1.234.567"), 1234567.0);
    EXPECT_EQ(italianNumber(u"1234567,25"), 1234567.25);
    EXPECT_EQ(italianNumber(u"-3"), -3.0);
    EXPECT_EQ(italianNumber(u"+3,0"), 3.0);
    EXPECT_EQ(italianNumber(u"\u22125"), -5.0);
    EXPECT_EQ(italianNumber(u",5"), 0.5);
    EXPECT_EQ(italianNumber(u"5,"), 5.0);
    EXPECT_EQ(italianNumber(u" 42 "), 42.0);
}

TEST(LocaleInput, RejectsWhatIsNoItalianNumber)
{
    for (const char16_t* text :
         {u"",  u" ",   u"abc", u"18.5", u"1.23", u"12.34,5", u"1..234", u".234", u"1,2,3", u",",
          u"-", u"+-3", u"3-",  u"1e5",  u"12a",  u"0x1F",    u"'",      u"%",    u"😀",     u"1,234.50"}) {
        EXPECT_FALSE(zul::isNumeric(text, italian)) << QString::fromUtf16(text).toStdString();
    }
}

TEST(LocaleInput, FollowsTheLocalesSeparators)
{
    EXPECT_EQ(zul::toNumber(u"1,234.50", american).value_or(0), 1234.5);
    EXPECT_FALSE(zul::isNumeric(u"18,5", american));
    EXPECT_EQ(zul::toNumber(u"1 234,5", french).value_or(0), 1234.5);
    EXPECT_EQ(zul::toNumber(u"-1 234", swedish).value_or(0), -1234.0);
}

TEST(LocaleInput, ANumberTooLargeIsNone)
{
    EXPECT_TRUE(zul::isNumeric(QString(300, u'9'), italian));
    EXPECT_FALSE(zul::isNumeric(QString(10000, u'9'), italian));
    EXPECT_FALSE(zul::isNumeric(QString(10000, u'x'), italian));
}

TEST(LocaleInput, ReadsItalianDates)
{
    const QDate christmas(2025, 12, 25);
    EXPECT_EQ(italianDate(u"25/12/2025"), christmas);
    EXPECT_EQ(italianDate(u"25-12-2025"), christmas);
    EXPECT_EQ(italianDate(u"25.12.2025"), christmas);
    EXPECT_EQ(italianDate(u"2025-12-25"), christmas);
    EXPECT_EQ(italianDate(u"2025/12/25"), christmas);
    EXPECT_EQ(italianDate(u"  25/12/2025 "), christmas);
    EXPECT_EQ(italianDate(u"1/2/26"), QDate(2026, 2, 1));
    EXPECT_EQ(italianDate(u"29/2/2024"), QDate(2024, 2, 29));
}

TEST(LocaleInput, ReadsTwoDigitYearsBetween1930And2029)
{
    EXPECT_EQ(italianDate(u"1/1/00").year(), 2000);
    EXPECT_EQ(italianDate(u"1/1/29").year(), 2029);
    EXPECT_EQ(italianDate(u"1/1/30").year(), 1930);
    EXPECT_EQ(italianDate(u"1/1/99").year(), 1999);
}

TEST(LocaleInput, RejectsWhatIsNoItalianDate)
{
    for (const char16_t* text :
         {u"",           u" ",          u"abc",        u"25/12",      u"25/12/",
          u"/12/2025",   u"25//2025",   u"25/12-2025", u"31/2/2025",  u"29/2/2025",
          u"12/25/2025", u"0/1/2025",   u"1/0/2025",   u"1/1/5",      u"1/1/202",
          u"1/1/20255",  u"001/1/2025", u"1/1/2025/1", u"25 12 2025", u"25/12/2025 10:30",
          u"-1/1/2025",  u"'",          u"😀"}) {
        EXPECT_FALSE(zul::isDate(text, italian)) << QString::fromUtf16(text).toStdString();
    }
    EXPECT_FALSE(zul::isDate(QString(10000, u'1'), italian));
}

TEST(LocaleInput, TakesOnlyDatesThatTheDatabaseCanHold)
{
    EXPECT_TRUE(zul::isDate(u"1/1/1753", italian));
    EXPECT_FALSE(zul::isDate(u"31/12/1752", italian));
    EXPECT_TRUE(zul::isDate(u"31/12/9999", italian));
}

TEST(LocaleInput, FollowsTheLocalesOrderOfADate)
{
    EXPECT_EQ(zul::toDate(u"12/25/2025", american), QDate(2025, 12, 25));
    EXPECT_FALSE(zul::isDate(u"25/12/2025", american));
    EXPECT_EQ(zul::toDate(u"2025-12-25", american), QDate(2025, 12, 25));
    EXPECT_EQ(zul::toDate(u"25-12-24", swedish), QDate(2025, 12, 24));
}

TEST(LocaleInput, WritesADateThatItReadsBack)
{
    const QDate date(2026, 2, 1);
    EXPECT_EQ(zul::dateText(date, italian), QStringLiteral("01/02/2026"));
    EXPECT_EQ(zul::dateText(date, american), QStringLiteral("02/01/2026"));
    EXPECT_EQ(zul::dateText(QDate(), italian), QString());
    for (const QLocale& locale : {italian, american, french, swedish}) {
        EXPECT_EQ(zul::toDate(zul::dateText(date, locale), locale), date) << locale.name().toStdString();
    }
}

TEST(LocaleInput, TellsTheOrderInThePlaceholder)
{
    EXPECT_EQ(zul::datePlaceholder(italian), QStringLiteral("gg/mm/aaaa"));
    EXPECT_EQ(zul::datePlaceholder(american), QStringLiteral("mm/dd/yyyy"));
}
