#include "controls/notices/WaitIndicator.h"

#include <QProgressBar>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace Qt::StringLiterals;

class WaitIndicatorTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        window.resize(800, 600);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    }

    [[nodiscard]] int barValue() const { return indicator.findChild<QProgressBar*>()->value(); }

    QWidget window;
    zul::WaitIndicator indicator{&window};
};

} // namespace

TEST_F(WaitIndicatorTest, BeginsHiddenAndOpensInTheMiddleOfItsParent)
{
    EXPECT_FALSE(indicator.isVisible());
    indicator.show();
    EXPECT_EQ(indicator.geometry().center(), window.rect().center());
    window.resize(500, 400);
    EXPECT_EQ(indicator.geometry().center(), window.rect().center());
    window.resize(100, 60);
    EXPECT_TRUE(window.rect().contains(indicator.geometry()));
}

TEST_F(WaitIndicatorTest, TellsEachChangeOfCaptionAndValueOnce)
{
    QSignalSpy captions(&indicator, &zul::WaitIndicator::captionChanged);
    QSignalSpy values(&indicator, &zul::WaitIndicator::valueChanged);
    indicator.setProperty("caption", u"Invio notifica 1 di 2 – 100% 'à' 😀"_s);
    indicator.setCaption(indicator.caption());
    indicator.setProperty("value", 40);
    indicator.setValue(40);
    EXPECT_EQ(captions.count(), 1);
    EXPECT_EQ(values.count(), 1);
    EXPECT_EQ(indicator.property("caption").toString(), u"Invio notifica 1 di 2 – 100% 'à' 😀"_s);
    EXPECT_EQ(indicator.property("value").toInt(), 40);
    EXPECT_EQ(barValue(), 40);
}

TEST_F(WaitIndicatorTest, KeepsAnyValueAndKeepsTheBarInItsRange)
{
    indicator.setValue(std::numeric_limits<int>::max());
    EXPECT_EQ(indicator.value(), std::numeric_limits<int>::max());
    EXPECT_EQ(barValue(), 100);
    indicator.setValue(-5);
    EXPECT_EQ(indicator.value(), -5);
    EXPECT_EQ(barValue(), 0);
    indicator.setValue(150);
    indicator.setMaximum(200);
    EXPECT_EQ(barValue(), 150);
    indicator.setMaximum(0);
    EXPECT_EQ(indicator.maximum(), 1);
}

TEST_F(WaitIndicatorTest, FollowsANewParent)
{
    QWidget second(&window);
    second.setGeometry(0, 0, 400, 300);
    second.show();
    indicator.setParent(&second);
    indicator.show();
    second.resize(600, 500);
    EXPECT_EQ(indicator.geometry().center(), second.rect().center());
    indicator.setParent(&window);
    EXPECT_FALSE(indicator.isVisible());
}
