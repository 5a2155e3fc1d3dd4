// The tab controls of the main window: a hidden page opens by the step that shows it, and by nothing else.
#include "mainwindow/PageTabs.h"
#include "tests/mainwindow/SmsFormTest.h"

#include <QAccessible>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

void turnWheel(QWidget* over, int notches)
{
    const QPointF place = over->rect().center();
    constexpr int NotchDegrees = 120; // eighths of a degree
    QWheelEvent event(place, over->mapToGlobal(place), QPoint(), QPoint(0, -notches * NotchDegrees),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(over, &event);
}

/// Every way by which a person goes on to the next pages.
void tryEverything(QTabWidget* tabs)
{
    QTabBar* bar = tabs->tabBar();
    turnWheel(bar, 1);
    turnWheel(bar, 3);
    bar->setFocus();
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Down, Qt::Key_End, Qt::Key_PageDown}) {
        QTest::keyClick(bar, key);
    }
    for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab}) {
        QTest::keyClick(bar, key, Qt::ControlModifier);
    }
    QTest::keyClick(bar, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(bar);
    for (int tab = tabs->count() - 1; tab >= 0 && !tabs->isTabVisible(tab); --tab) {
        accessible->child(tab)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }
}

class PageTabsTest : public SmsFormTest
{};

TEST_F(PageTabsTest, ThePreparationOpensByNothingButItsChecks)
{
    open();
    scriptCustomers({customer(1, "Rossi", "333", "a@b.it")});
    search();
    tick(0);
    click("cmdProsegui1");
    click("RBN_SoloSMS");
    for (const int from : {1, 0}) {
        tabs("tab_Invio")->setCurrentIndex(from);
        tryEverything(tabs("tab_Invio"));
        EXPECT_NE(tabs("tab_Invio")->currentIndex(), 2);
        EXPECT_FALSE(tabs("tab_Invio")->isTabVisible(2));
        EXPECT_FALSE(button("cmdCreaMessaggi")->isVisible());
    }
    tabs("tab_Invio")->setCurrentIndex(1);
    selector("cntrMessaggio(0)")->setSelection(12, u"Ciao"_s);
    click("cmdProsegui2");
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 2);
    EXPECT_TRUE(button("cmdCreaMessaggi")->isVisible());
    EXPECT_TRUE(button("cmdCreaMessaggi")->isEnabled());
}

TEST_F(PageTabsTest, AHiddenPushPageStaysHidden)
{
    open(true, true, false);
    click("cmdProsegui1");
    tryEverything(tabs("TabControlTipo"));
    EXPECT_EQ(tabs("TabControlTipo")->currentIndex(), 0);
    EXPECT_FALSE(freeText(1)->isVisible());
}

TEST_F(PageTabsTest, AHiddenPageOfSmsAndMailStaysHidden)
{
    open(false, false, true);
    click("cmdProsegui1");
    QTabBar* bar = tabs("TabControlTipo")->tabBar();
    turnWheel(bar, -2);
    bar->setFocus();
    QTest::keyClick(bar, Qt::Key_Left);
    QTest::keyClick(bar, Qt::Key_Tab, Qt::ControlModifier);
    QAccessible::queryAccessibleInterface(bar)->child(0)->actionInterface()->doAction(
        QAccessibleActionInterface::pressAction());
    EXPECT_EQ(tabs("TabControlTipo")->currentIndex(), 1);
    EXPECT_FALSE(radio("RBN_SoloSMS")->isVisible());
}

TEST_F(PageTabsTest, ShownPagesAreTurnedByWheelAndKeysAsEver)
{
    open();
    QTabBar* bar = tabs("TabControl1")->tabBar();
    turnWheel(bar, 1);
    EXPECT_EQ(tabs("TabControl1")->currentIndex(), 1);
    bar->setFocus();
    QTest::keyClick(bar, Qt::Key_Right);
    EXPECT_EQ(tabs("TabControl1")->currentIndex(), 2);
    QTest::keyClick(bar, Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(tabs("TabControl1")->currentIndex(), 3);
}

} // namespace
} // namespace zul
