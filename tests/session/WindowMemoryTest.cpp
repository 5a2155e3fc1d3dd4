#include "session/WindowMemory.h"

#include "session/Remembered.h"
#include "session/ScreenFit.h"
#include "tests/support/ComponentTest.h"

#include <QScreen>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class WindowMemoryTest : public ComponentTest
{
protected:
    struct Window : QWidget
    {
        explicit Window(WindowMemory::Keeps keeps)
        {
            setObjectName(u"frmProva"_s);
            setMinimumSize(150, 100);
            resize(300, 200);
            new ScreenFit(this);
            new WindowMemory(this, keeps);
        }
    };
};

TEST_F(WindowMemoryTest, AWindowOpensWhereAndAsLargeAsItWasLeft)
{
    QPoint left;
    {
        Window first(WindowMemory::Keeps::SizeAndPlace);
        EXPECT_EQ(first.size(), QSize(300, 200)) << "its own size at first";
        first.show();
        first.setGeometry(120, 90, 410, 320);
        left = first.pos();
        first.hide();
    }
    Window second(WindowMemory::Keeps::SizeAndPlace);
    EXPECT_EQ(second.size(), QSize(410, 320));
    second.show();
    EXPECT_EQ(second.pos(), left);
    EXPECT_EQ(second.size(), QSize(410, 320));
}

TEST_F(WindowMemoryTest, ADialogKeepsItsSizeAlone)
{
    {
        Window first(WindowMemory::Keeps::Size);
        first.show();
        first.setGeometry(120, 90, 410, 320);
        first.close();
    }
    Window second(WindowMemory::Keeps::Size);
    EXPECT_EQ(second.size(), QSize(410, 320));
    EXPECT_FALSE(second.testAttribute(Qt::WA_Moved)) << "it opens over its window";
}

TEST_F(WindowMemoryTest, AMaximizedWindowKeepsTheSizeToGoBackTo)
{
    {
        Window first(WindowMemory::Keeps::SizeAndPlace);
        first.show();
        first.setGeometry(50, 60, 310, 220);
        first.showMaximized();
        first.hide();
    }
    Window second(WindowMemory::Keeps::SizeAndPlace);
    EXPECT_TRUE(second.isMaximized());
    EXPECT_EQ(second.size(), QSize(310, 220));
}

TEST_F(WindowMemoryTest, APlaceOnNoScreenCountsForNothingAndAWindowIsNeverLargerThanTheScreen)
{
    for (const QString& text :
         {u"400,300,-5000,40,0"_s, u"400,300,100,-200,0"_s, u"400,300,90000,90000,0"_s}) {
        remember(u"frmProva_Geometria"_s, text);
        Window window(WindowMemory::Keeps::SizeAndPlace);
        EXPECT_EQ(window.size(), QSize(400, 300)) << utf8(text);
        EXPECT_FALSE(window.testAttribute(Qt::WA_Moved)) << utf8(text);
    }
    remember(u"frmProva_Geometria"_s, u"40000,30000,10,10,0"_s);
    Window window(WindowMemory::Keeps::SizeAndPlace);
    window.show();
    EXPECT_LE(window.frameGeometry().width(), window.screen()->availableGeometry().width());
    EXPECT_LE(window.frameGeometry().height(), window.screen()->availableGeometry().height());
}

TEST_F(WindowMemoryTest, WhatIsNoSizeCountsForNothing)
{
    for (const QString& text : {u""_s, u"x"_s, u"1"_s, u"1,x"_s, u"-4,-4"_s, u"0,0"_s, u",,,,"_s,
                                u"99999999999999999999,1"_s, u"à è € 😀,1"_s}) {
        remember(u"frmProva_Geometria"_s, text);
        const Window window(WindowMemory::Keeps::SizeAndPlace);
        EXPECT_GE(window.width(), 150) << utf8(text);
        EXPECT_LE(window.width(), 300) << utf8(text);
        EXPECT_GE(window.height(), 100) << utf8(text);
    }
    EXPECT_TRUE(logged().isEmpty());
}

} // namespace
} // namespace zul
