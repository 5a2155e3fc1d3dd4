#include "controls/access/TabBarAccessible.h"

#include <QAccessible>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class TabBarAccessibleTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        for (const QString& caption : {u"&Ricerca"_s, u"Tipo di invio"_s, u"Prepara"_s}) {
            tabs.addTab(new QWidget, caption);
        }
        zul::describeTabs(tabs.tabBar());
        tabs.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&tabs));
    }

    QAccessibleInterface& bar() { return *QAccessible::queryAccessibleInterface(tabs.tabBar()); }
    QAccessibleInterface& tab(int index) { return *bar().child(index); }

    QTabWidget tabs;
};

} // namespace

TEST_F(TabBarAccessibleTest, IsNamedAfterItsControlOrItsPages)
{
    EXPECT_EQ(bar().role(), QAccessible::PageTabList);
    tabs.setTabVisible(2, false);
    EXPECT_EQ(bar().text(QAccessible::Name), u"Ricerca, Tipo di invio"_s);
    tabs.setAccessibleName(u"Fasi dell'invio"_s);
    EXPECT_EQ(bar().text(QAccessible::Name), u"Fasi dell'invio"_s);
}

TEST_F(TabBarAccessibleTest, TabsTellCaptionAndWhichIsInFront)
{
    ASSERT_EQ(bar().childCount(), 3);
    EXPECT_EQ(bar().child(3), nullptr);
    EXPECT_EQ(tab(0).role(), QAccessible::PageTab);
    EXPECT_EQ(tab(0).text(QAccessible::Name), u"Ricerca"_s);
    EXPECT_TRUE(tab(0).state().selected);
    EXPECT_FALSE(tab(1).state().selected);
    EXPECT_EQ(bar().indexOfChild(&tab(1)), 1);
    EXPECT_EQ(tab(1).parent(), &bar());
    const QPoint middle = tab(1).rect().center();
    EXPECT_EQ(bar().childAt(middle.x(), middle.y()), &tab(1));
    tabs.tabBar()->setFocus();
    tabs.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&tabs));
    EXPECT_EQ(bar().focusChild(), &tab(0));
    EXPECT_TRUE(tab(0).state().focused);
    tabs.tabBar()->setAccessibleTabName(0, u"Ricerca, con criteri"_s);
    EXPECT_EQ(tab(0).text(QAccessible::Name), u"Ricerca, con criteri"_s);
}

TEST_F(TabBarAccessibleTest, AHiddenTabIsNotShowingAndCannotBePressed)
{
    tabs.setTabVisible(2, false);
    EXPECT_TRUE(tab(2).state().invisible);
    EXPECT_FALSE(tab(2).state().focusable);
    EXPECT_TRUE(tab(2).actionInterface()->actionNames().isEmpty());
    tab(2).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(tabs.currentIndex(), 0);
    tab(1).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(tabs.currentIndex(), 1);
    tabs.setTabVisible(2, true);
    EXPECT_FALSE(tab(2).state().invisible);
}

TEST_F(TabBarAccessibleTest, ABarOfSomebodyElseStaysAsItIs)
{
    QTabWidget others;
    others.addTab(new QWidget, u"Altro"_s);
    const QAccessibleInterface* own = QAccessible::queryAccessibleInterface(others.tabBar());
    ASSERT_NE(own, nullptr);
    const QAccessibleInterface& ours = bar();
    EXPECT_NE(typeid(*own), typeid(ours));
}
