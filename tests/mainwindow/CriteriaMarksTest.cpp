// What the criteria pages show by themselves: unusable values, values that do not count, pages with ticked criteria.
#include "tests/mainwindow/SmsFormTest.h"

#include <QAccessible>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

const QColor red(0xc6, 0x28, 0x28);

class CriteriaMarksTest : public SmsFormTest
{
protected:
    static QLineEdit* textBox(QWidget* field)
    {
        while (field->focusProxy() != nullptr) {
            field = field->focusProxy();
        }
        return qobject_cast<QLineEdit*>(field);
    }

    void type(QWidget* field, const QString& text)
    {
        textBox(field)->setFocus();
        textBox(field)->selectAll();
        QTest::keyClick(textBox(field), Qt::Key_Delete);
        QTest::keyClicks(textBox(field), text);
    }

    static bool isMarked(QWidget* field)
    {
        const QImage seen = textBox(field)->grab().toImage();
        return seen.pixelColor(seen.width() / 2, 0) == red;
    }

    static QString described(QWidget* field)
    {
        return QAccessible::queryAccessibleInterface(textBox(field))->text(QAccessible::Description);
    }

    QString tabName(int tab)
    {
        return QAccessible::queryAccessibleInterface(tabs("TabControl1")->tabBar())
            ->child(tab)
            ->text(QAccessible::Name);
    }

    QImage tabPicture(int tab)
    {
        QTabBar* bar = tabs("TabControl1")->tabBar();
        return bar->grab(bar->tabRect(tab)).toImage();
    }
};

TEST_F(CriteriaMarksTest, AnUnusableNumberIsMarkedAsItIsTyped)
{
    open();
    click("chkANA_Eta");
    QLineEdit* field = edit("txtANA_Eta_F");
    type(field, u"3"_s);
    EXPECT_FALSE(isMarked(field));
    EXPECT_EQ(field->toolTip(), QString());
    type(field, u"3x"_s);
    EXPECT_TRUE(isMarked(field)) << "with the focus";
    EXPECT_EQ(field->toolTip(), u"Non è un numero valido."_s);
    EXPECT_EQ(described(field), u"Non è un numero valido."_s);
    const QSize size = field->size();
    button("cmdElabora")->setFocus();
    EXPECT_TRUE(isMarked(field)) << "and without it";
    EXPECT_EQ(field->size(), size);
    EXPECT_EQ(effectiveBackground(field), QColor(Qt::white)) << "the colours of the focus stay as they are";
    type(field, u"30"_s);
    EXPECT_FALSE(isMarked(field));
    EXPECT_EQ(field->toolTip(), QString());
    EXPECT_EQ(described(field), QString());
}

TEST_F(CriteriaMarksTest, AnUnusableDateIsMarkedAndTheSearchGoesOnAllTheSame)
{
    open();
    page("TabControl1", 2);
    click("chkECO_PerAcq");
    type(dateField("cbbECO_PerAcq_DataI"),
         QLocale().dateFormat(QLocale::ShortFormat).startsWith(u'M') ? u"12/31/2024"_s : u"31/12/2024"_s);
    type(dateField("cbbECO_PerAcq_DataF"), u"domani"_s);
    EXPECT_FALSE(isMarked(dateField("cbbECO_PerAcq_DataI")));
    EXPECT_TRUE(isMarked(dateField("cbbECO_PerAcq_DataF")));
    EXPECT_TRUE(described(dateField("cbbECO_PerAcq_DataF")).contains(u"Non è una data valida ("_s));
    click("cmdElabora");
    EXPECT_TRUE(messages.empty()) << "one usable end is enough";
    EXPECT_EQ(host.operations("filter").size(), 2U);
}

TEST_F(CriteriaMarksTest, AFilledFieldSaysWhereItDoesNotCount)
{
    open();
    const QString ignored = u"Non conta nella ricerca: la casella «Età» non è spuntata."_s;
    type(edit("txtANA_Eta_I"), u"30"_s);
    EXPECT_EQ(edit("txtANA_Eta_I")->toolTip(), ignored);
    EXPECT_EQ(described(edit("txtANA_Eta_I")), ignored);
    EXPECT_EQ(edit("txtANA_Eta_F")->toolTip(), ignored) << "it holds the copy";
    EXPECT_FALSE(isMarked(edit("txtANA_Eta_I"))) << "it is usable";
    click("chkANA_Eta");
    EXPECT_EQ(edit("txtANA_Eta_I")->toolTip(), QString());
    click("chkANA_Eta");
    type(edit("txtANA_Eta_I"), u"x"_s);
    EXPECT_EQ(edit("txtANA_Eta_I")->toolTip(), u"Non è un numero valido.\n"_s + ignored);
    type(edit("txtANA_Eta_I"), QString());
    EXPECT_EQ(edit("txtANA_Eta_I")->toolTip(), QString());
}

TEST_F(CriteriaMarksTest, ASelectorKeepsItsOwnToolTipInFrontOfTheNote)
{
    open();
    page("TabControl1", 1);
    lookupOk();
    choose("cntrLOC_Comune");
    const QString ignored = u"Non conta nella ricerca: la casella «Comune» non è spuntata."_s;
    // The content, the keys, the note.
    const QString content = u"L'Aquila 😀\nInvio, F4 o Alt+Giù: scegli. Canc: svuota."_s;
    EXPECT_EQ(textBox(selector("cntrLOC_Comune"))->toolTip(), content + u'\n' + ignored);
    EXPECT_TRUE(described(selector("cntrLOC_Comune")).endsWith(ignored));
    page("TabControl1", 0);
    page("TabControl1", 1);
    QCoreApplication::processEvents();
    EXPECT_TRUE(described(selector("cntrLOC_Comune")).endsWith(ignored)) << "also when it shows again";
    click("chkLOC_Comune");
    EXPECT_EQ(textBox(selector("cntrLOC_Comune"))->toolTip(), content);
    EXPECT_FALSE(described(selector("cntrLOC_Comune")).contains(ignored));
}

TEST_F(CriteriaMarksTest, AChosenSexWithoutItsCriterionSaysSo)
{
    open();
    click("optFemmina");
    EXPECT_EQ(radio("optFemmina")->toolTip(),
              u"Non conta nella ricerca: la casella «Sesso» non è spuntata."_s);
    EXPECT_EQ(radio("optMaschio")->toolTip(), QString());
    click("chkANA_Sesso");
    EXPECT_EQ(radio("optFemmina")->toolTip(), QString());
}

TEST_F(CriteriaMarksTest, EachPageWithTickedCriteriaCarriesAMarkWithAName)
{
    open();
    const QRect before = tabs("TabControl1")->tabBar()->tabRect(2);
    page("TabControl1", 2);
    tabs("TabControl1")->tabBar()->clearFocus();
    const QImage plain = tabPicture(2);
    EXPECT_EQ(tabName(2), u"Economici"_s);
    click("chkECO_PtFid");
    tabs("TabControl1")->tabBar()->clearFocus();
    EXPECT_NE(tabPicture(2), plain);
    EXPECT_EQ(tabName(2), u"Economici, 1 criterio spuntato"_s);
    EXPECT_EQ(tabs("TabControl1")->tabToolTip(2), u"1 criterio spuntato"_s);
    EXPECT_EQ(tabs("TabControl1")->tabBar()->tabRect(2), before) << "nothing moves";
    click("chkECO_Fatt");
    EXPECT_EQ(tabName(2), u"Economici, 2 criteri spuntati"_s);
    EXPECT_EQ(tabName(0), u"Anagrafici"_s);
    click("chkECO_Fatt");
    click("chkECO_PtFid");
    EXPECT_EQ(tabName(2), u"Economici"_s);
    EXPECT_EQ(tabPicture(2), plain);
    EXPECT_EQ(tabs("TabControl1")->tabText(2).remove(u'&'), u"Economici"_s) << "the caption stays";
}

TEST_F(CriteriaMarksTest, TheAdvancedSearchMarksItsPage)
{
    open();
    page("TabControl1", 3);
    host.searchAnswers() = {"SELECT 1"};
    click("cmd_Ricerca_Avanzata");
    EXPECT_EQ(tabName(3), u"Avanzata, 1 criterio spuntato"_s);
}

} // namespace
} // namespace zul
