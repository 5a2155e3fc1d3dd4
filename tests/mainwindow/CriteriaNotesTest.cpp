#include "mainwindow/CriteriaNotes.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

const QLocale italian(QLocale::Italian, QLocale::Italy);

TEST(CriteriaNotesTest, AnEmptyFieldLeavesItsEndOpen)
{
    for (const FieldKind kind : {FieldKind::Number, FieldKind::Date, FieldKind::Other}) {
        EXPECT_EQ(unusableNote(kind, QString(), italian), QString());
    }
}

TEST(CriteriaNotesTest, NumbersAreThoseOfTheLocale)
{
    for (const QString& text : {u"18"_s, u"18,5"_s, u"1.234,50"_s, u"-3"_s, u" 7 "_s}) {
        EXPECT_EQ(unusableNote(FieldKind::Number, text, italian), QString()) << text.toStdString();
    }
    for (const QString& text : {u"abc"_s, u"18.5"_s, u" "_s, u"1e"_s, u"dieci 😀"_s, QString(10000, u'x')}) {
        EXPECT_EQ(unusableNote(FieldKind::Number, text, italian), u"Non è un numero valido."_s)
            << text.left(20).toStdString();
    }
}

TEST(CriteriaNotesTest, DatesAreThoseOfTheLocale)
{
    EXPECT_EQ(unusableNote(FieldKind::Date, u"31/12/2024"_s, italian), QString());
    for (const QString& text : {u"12/31/2024"_s, u"31/2/2024"_s, u"31/12"_s, u"ieri"_s, u"1/1/1700"_s}) {
        EXPECT_EQ(unusableNote(FieldKind::Date, text, italian), u"Non è una data valida (gg/mm/aaaa)."_s)
            << text.toStdString();
    }
}

TEST(CriteriaNotesTest, AChoiceIsNotJudged)
{
    EXPECT_EQ(unusableNote(FieldKind::Other, u"L'Aquila"_s, italian), QString());
}

TEST(CriteriaNotesTest, TheMarkCounts)
{
    EXPECT_EQ(tickedNote(0), QString());
    EXPECT_EQ(tickedNote(1), u"1 criterio spuntato"_s);
    EXPECT_EQ(tickedNote(3), u"3 criteri spuntati"_s);
    EXPECT_EQ(ignoredNote(u"Età"_s), u"Non conta nella ricerca: la casella «Età» non è spuntata."_s);
}

} // namespace
} // namespace zul
