#include "options/frmShowPath.h"

#include "controls/fields/FolderTree.h"
#include "controls/look/Icons.h"
#include "session/FormHelpers.h"
#include "tests/support/ComponentTest.h"
#include "tests/support/SmallScreen.h"

#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class ShowPathTest : public ComponentTest
{
protected:
    ShowPathTest() { chooser.show(); }

    void click(const char* name)
    {
        QTest::mouseClick(chooser.findChild<QPushButton*>(QLatin1String(name)), Qt::LeftButton);
    }

    FolderTree* tree() { return chooser.findChild<FolderTree*>(u"FolderTreeview1"_s); }

    QTemporaryDir folder;
    frmShowPath chooser{nullptr};
};

TEST_F(ShowPathTest, ItsCaptionAndItsButtons)
{
    EXPECT_EQ(chooser.windowTitle(), u"Selezionare la cartella desiderata..."_s);
    EXPECT_EQ(read(chooser.findChild<QPushButton*>(u"cmdCancella"_s)->text()), u"Annulla"_s);
    const auto picture = [](const QIcon& icon) { return icon.pixmap(16, 16).toImage(); };
    EXPECT_EQ(picture(chooser.findChild<QPushButton*>(u"cmdOK"_s)->icon()),
              picture(imageListIcon(9, IconTone::OnAccent)));
    EXPECT_EQ(picture(chooser.findChild<QPushButton*>(u"cmdCancella"_s)->icon()), picture(imageListIcon(1)));
    EXPECT_NE(picture(imageListIcon(9)), picture(imageListIcon(1)));
    EXPECT_FALSE(chooser.findChild<QPushButton*>(u"cmdOK"_s)->accessibleName().isEmpty());
}

TEST_F(ShowPathTest, OkWithoutAFolderTellsSoAndStaysOpen)
{
    click("cmdOK");
    EXPECT_EQ(messages,
              std::vector<OperatorMessage>{told(u"Selezionare un percorso!"_s, MessageIcon::Critical)});
    EXPECT_TRUE(chooser.isVisible());
    EXPECT_EQ(tagOf(&chooser), QString());
}

TEST_F(ShowPathTest, OkWithAFolderLeavesItsTag)
{
    ASSERT_TRUE(tree()->selectPath(folder.path()));
    click("cmdOK");
    EXPECT_FALSE(chooser.isVisible());
    EXPECT_EQ(tagOf(&chooser), u"OK"_s);
    EXPECT_EQ(chooser.selectedPath(), folder.path());
}

TEST_F(ShowPathTest, EnterPressesAFocusedButton)
{
    ASSERT_TRUE(tree()->selectPath(folder.path()));
    auto* ok = chooser.findChild<QPushButton*>(u"cmdOK"_s);
    ok->setFocus();
    QTest::keyClick(ok, Qt::Key_Return);
    EXPECT_EQ(tagOf(&chooser), u"OK"_s);
}

TEST_F(ShowPathTest, OnASmallScreenItIsNoLargerThanIt)
{
    expectOnScreen(chooser);
    expectReachable(chooser.findChild<QPushButton*>(u"cmdOK"_s));
}

TEST_F(ShowPathTest, CancelLeavesEsc)
{
    ASSERT_TRUE(tree()->selectPath(folder.path()));
    click("cmdCancella");
    EXPECT_FALSE(chooser.isVisible());
    EXPECT_EQ(tagOf(&chooser), u"ESC"_s);
}

TEST_F(ShowPathTest, EscapeIsItsCancel)
{
    for (const char* name : {"cmdOK", "FolderTreeview1"}) {
        setTag(&chooser, FormChoice::None);
        chooser.show();
        auto* place = chooser.findChild<QWidget*>(QLatin1String(name));
        place->setFocus();
        QTest::keyClick(chooser.focusWidget(), Qt::Key_Escape);
        EXPECT_FALSE(chooser.isVisible()) << name;
        EXPECT_EQ(tagOf(&chooser), u"ESC"_s) << name;
    }
}

TEST_F(ShowPathTest, TheCloseButtonLeavesNothing)
{
    chooser.close();
    EXPECT_FALSE(chooser.isVisible());
    EXPECT_EQ(tagOf(&chooser), QString());
}

} // namespace
} // namespace zul
