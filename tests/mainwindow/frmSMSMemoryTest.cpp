// The main window opens as its user left it.
#include "session/Remembered.h"
#include "tests/mainwindow/SmsFormTest.h"

#include <QSplitter>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class SmsFormMemoryTest : public SmsFormTest
{
protected:
    void openAndSearch()
    {
        open();
        scriptCustomers({customer(1, "Bianchi", "331", "b@x.it"), customer(2, "Rossi", "332", "r@x.it"),
                         customer(3, "Amato", "333", "a@x.it")});
        search();
    }

    QStringList names()
    {
        QStringList shown;
        for (const uint32_t record : grid()->recordsInScreenOrder()) {
            shown.append(grid()->cellText(record, 2));
        }
        return shown;
    }

    const QStringList asRead{u"Bianchi"_s, u"Rossi"_s, u"Amato"_s};
    const QStringList descending{u"Rossi"_s, u"Bianchi"_s, u"Amato"_s};
};

TEST_F(SmsFormMemoryTest, OrderAndGroupsAreThoseOfTheLastWindowInTheFirstSearchOfTheNext)
{
    openAndSearch();
    EXPECT_EQ(names(), asRead);
    grid()->groupBy(3);
    grid()->sortBy(2, true);
    EXPECT_EQ(names(), descending);
    form->close();
    openAndSearch();
    EXPECT_EQ(names(), descending);
    EXPECT_EQ(grid()->groupColumns(), std::vector<int>{3});
    EXPECT_EQ(grid()->sortColumn(), 2);
    EXPECT_TRUE(grid()->isSortDescending());
    search();
    EXPECT_EQ(names(), asRead) << "a further search forgets order and groups";
    EXPECT_TRUE(grid()->groupColumns().empty());
    form->close();
    openAndSearch();
    EXPECT_EQ(names(), asRead);
    EXPECT_FALSE(QFile::exists(layoutFile())) << "the layout file has no part in it";
}

TEST_F(SmsFormMemoryTest, AWindowWithoutASearchLeavesTheOrderAsItWas)
{
    openAndSearch();
    grid()->sortBy(2, true);
    form->close();
    open();
    form->close();
    openAndSearch();
    EXPECT_EQ(names(), descending);
}

TEST_F(SmsFormMemoryTest, AnOrderThatDoesNotFitIsLeftOut)
{
    for (const QString& text :
         {u"Sparita,1|Anche questa"_s, u"|||"_s, u"Cliente"_s, u"à è € 😀,%1"_s, u",1"_s}) {
        remember(u"frmSMS_Ordine"_s, text);
        openAndSearch();
        EXPECT_EQ(grid()->recordCount(), 3U) << utf8(text);
        EXPECT_TRUE(grid()->groupColumns().empty()) << utf8(text);
        form->close();
    }
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(SmsFormMemoryTest, TheWindowAndItsSplitterOpenAsTheyWereLeft)
{
    open();
    auto* splitter = find<QSplitter>(u"splitter"_s);
    splitter->setSizes({400, splitter->width() - 400});
    const int left = splitter->sizes().first();
    form->resize(760, 640);
    const int leftThen = splitter->sizes().first();
    EXPECT_GE(left, leftThen);
    form->close();
    form = std::make_unique<frmSMS>();
    form->setTouchMode(false);
    EXPECT_EQ(form->size(), QSize(760, 640));
    form->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
    EXPECT_NEAR(find<QSplitter>(u"splitter"_s)->sizes().first(), leftThen, 2);
}

TEST_F(SmsFormMemoryTest, AWindowThatWasLeftOnASmallerScreenShowsItsCommands)
{
    for (const QString& geometry : {u"638,358,0,0,0"_s, u"10,10,0,0,0"_s, u"1000,300,0,0,0"_s}) {
        remember(u"frmSMS_Geometria"_s, geometry);
        form = std::make_unique<frmSMS>();
        form->setTouchMode(false);
        form->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(form.get()));
        auto* search = find<QPushButton>(u"cmdElabora"_s);
        EXPECT_FALSE(search->visibleRegion().isEmpty()) << utf8(geometry);
        EXPECT_TRUE(form->rect().contains(find<QWidget>(u"Resizer"_s)->geometry())) << utf8(geometry);
        form->close();
    }
}

} // namespace
} // namespace zul
