#include "controls/look/Background.h"

#include "controls/fields/DateField.h"
#include "controls/look/CommonLook.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

const QColor yellow(255, 255, 0);

/// The colour that is really painted near the widget's left edge, inside its border.
QColor paintedColor(QWidget* widget)
{
    const QImage image = widget->grab().toImage();
    return image.pixelColor(3, image.height() / 2);
}

class BackgroundTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        auto* column = new QVBoxLayout(&form);
        column->addWidget(&line);
        column->addWidget(&date);
        column->addWidget(&frame);
        auto* inside = new QVBoxLayout(&frame);
        inside->addWidget(&check);
        inside->addWidget(&innerLine);
        column->addWidget(&button);
        zul::applyCommonLook(&form, false);
        form.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
    }

    QWidget form;
    QLineEdit line{&form};
    zul::DateField date{&form};
    QGroupBox frame{&form};
    QCheckBox check{&frame};
    QLineEdit innerLine{&frame};
    QPushButton button{&form};
};

} // namespace

TEST_F(BackgroundTest, PaintsAnInputAndTellsItsColourInAProperty)
{
    zul::setBackground(&line, yellow);
    EXPECT_EQ(paintedColor(&line), yellow);
    EXPECT_EQ(line.property("background").value<QColor>(), yellow);
    EXPECT_EQ(zul::effectiveBackground(&line), yellow);
    zul::setBackground(&line, Qt::white);
    EXPECT_EQ(paintedColor(&line), QColor(Qt::white));
    EXPECT_EQ(zul::effectiveBackground(&line).name(), u"#ffffff"_s);
}

TEST_F(BackgroundTest, PaintsAFieldMadeOfPartsInItsTextBox)
{
    zul::setBackground(&date, yellow);
    EXPECT_EQ(paintedColor(&date), yellow);
    EXPECT_EQ(date.property("background").value<QColor>(), yellow);
    EXPECT_EQ(zul::effectiveBackground(date.focusProxy()), yellow);
}

TEST_F(BackgroundTest, AFramesColourStaysOutOfItsInputs)
{
    zul::setBackground(&frame, yellow);
    EXPECT_EQ(paintedColor(&innerLine), zul::commonPalette().color(QPalette::Base));
    EXPECT_EQ(zul::effectiveBackground(&check), yellow);
    EXPECT_NE(zul::effectiveBackground(&innerLine), yellow);
}

TEST_F(BackgroundTest, KeepsTheCommonLooksBorderAndHeight)
{
    const int height = line.height();
    zul::setBackground(&line, yellow);
    EXPECT_EQ(line.sizeHint().height(), height);
    EXPECT_NE(line.grab().toImage().pixelColor(line.width() / 2, 0), yellow);
}

TEST_F(BackgroundTest, WithoutAColourOfItsOwnTellsThePalettes)
{
    EXPECT_EQ(zul::effectiveBackground(&form), zul::commonPalette().color(QPalette::Window));
    EXPECT_EQ(zul::effectiveBackground(&check), zul::commonPalette().color(QPalette::Window));
    EXPECT_EQ(zul::effectiveBackground(&button), paintedColor(&button));
    EXPECT_EQ(zul::effectiveBackground(&line), paintedColor(&line));
}

TEST_F(BackgroundTest, SurvivesApplyingTheLookAgain)
{
    zul::setBackground(&line, yellow);
    zul::applyCommonLook(&form, true);
    EXPECT_EQ(paintedColor(&line), yellow);
}

TEST_F(BackgroundTest, PassesOverNoWidgetAndNoColour)
{
    zul::setBackground(nullptr, yellow);
    zul::setBackground(&line, QColor());
    EXPECT_FALSE(line.property("background").isValid());
    EXPECT_FALSE(zul::effectiveBackground(nullptr).isValid());
}

TEST(ReadableOn, IsDarkOnLightAndLightOnDark)
{
    EXPECT_LT(zul::readableOn(yellow).lightness(), 100);
    EXPECT_LT(zul::readableOn(Qt::white).lightness(), 100);
    EXPECT_GT(zul::readableOn(Qt::black).lightness(), 200);
    EXPECT_GT(zul::readableOn(Qt::darkBlue).lightness(), 200);
}
