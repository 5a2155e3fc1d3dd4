#include "controls/notices/ProgressWindow.h"

#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

class ProgressWindowTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        owner.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&owner));
    }

    // As after a task that has lasted long enough.
    void showNow()
    {
        QTest::qWait(zul::ProgressWindow::untilShown + 50);
        ASSERT_TRUE(progress.advance(1));
        ASSERT_TRUE(progress.isVisible());
    }

    QWidget owner;
    zul::ProgressWindow progress{&owner, u"Esportazione in corso…"_s, 10};
};

} // namespace

TEST_F(ProgressWindowTest, AShortTaskShowsNothing)
{
    EXPECT_TRUE(progress.advance(5));
    EXPECT_FALSE(progress.isVisible());
    EXPECT_EQ(progress.findChild<QProgressBar*>()->value(), 5);
}

TEST_F(ProgressWindowTest, ALongOneIsModalToItsOwnerAndGoesOn)
{
    showNow();
    EXPECT_EQ(progress.windowModality(), Qt::WindowModal);
    EXPECT_FALSE(progress.windowTitle().isEmpty());
    EXPECT_TRUE(progress.advance(10));
    EXPECT_EQ(progress.findChild<QProgressBar*>()->value(), 10);
}

TEST_F(ProgressWindowTest, TheButtonBreaksTheTaskOff)
{
    showNow();
    QTest::mouseClick(progress.findChild<QPushButton*>(u"cmdAnnulla"_s), Qt::LeftButton);
    EXPECT_FALSE(progress.advance(2));
    EXPECT_FALSE(progress.isVisible()) << "it does not come back";
}

TEST_F(ProgressWindowTest, EscBreaksItOffToo)
{
    showNow();
    QTest::keyClick(&progress, Qt::Key_Escape);
    EXPECT_FALSE(progress.advance(2));
}

TEST(ProgressWindow, ATaskWithoutStepsDividesByNothing)
{
    zul::ProgressWindow progress(nullptr, u"x"_s, 0);
    EXPECT_TRUE(progress.advance(0));
    EXPECT_EQ(progress.findChild<QProgressBar*>()->maximum(), 1);
}
