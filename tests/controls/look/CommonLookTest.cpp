#include "controls/look/CommonLook.h"

#include "controls/fields/DateField.h"
#include "controls/fields/SelectorField.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

class CommonLookTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        before = QApplication::palette();
        for (QWidget* widget :
             std::initializer_list<QWidget*>{&label, &line, &button, &main, &selector, &date, &list}) {
            column.addWidget(widget);
        }
        zul::setPrimary(&main);
        zul::applyCommonLook(&form, false);
        form.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    }
    void TearDown() override { QApplication::setPalette(before); }

    static QColor pixel(QWidget& widget, int x)
    {
        const QImage image = widget.grab().toImage();
        return image.pixelColor(x, image.height() / 2);
    }

    static void makeDark()
    {
        QPalette dark(QColor(40, 40, 40), QColor(30, 30, 30));
        dark.setColor(QPalette::WindowText, Qt::white);
        QApplication::setPalette(dark);
    }

    QPalette before;
    QWidget form;
    QVBoxLayout column{&form};
    QLabel label{u"Testo"_s, &form};
    QLineEdit line{&form};
    QPushButton button{u"Cerca"_s, &form};
    QPushButton main{u"Prosegui"_s, &form};
    zul::SelectorField selector{&form};
    zul::DateField date{&form};
    QComboBox list{&form};
};

} // namespace

TEST_F(CommonLookTest, ControlsShareOneHeightPerMode)
{
    for (QWidget* widget : std::initializer_list<QWidget*>{&line, &button, &main, &selector, &date, &list}) {
        EXPECT_EQ(widget->sizeHint().height(), 28) << widget->metaObject()->className();
    }
    zul::applyCommonLook(&form, true);
    for (QWidget* widget : std::initializer_list<QWidget*>{&line, &button, &main, &selector, &date, &list}) {
        EXPECT_EQ(widget->sizeHint().height(), 44) << widget->metaObject()->className();
    }
    EXPECT_TRUE(form.property("touch").toBool());
}

TEST_F(CommonLookTest, NothingJumpsWhenTheFocusMoves)
{
    button.clearFocus();
    const QSize lineSize = line.sizeHint();
    const QSize buttonSize = button.sizeHint();
    line.setFocus();
    EXPECT_EQ(line.sizeHint(), lineSize);
    button.setFocus();
    EXPECT_EQ(button.sizeHint(), buttonSize);
}

TEST_F(CommonLookTest, TheFocusIsSeen)
{
    line.setFocus();
    const QImage without = button.grab().toImage();
    button.setFocus();
    EXPECT_NE(button.grab().toImage(), without);
    EXPECT_EQ(pixel(button, 1), zul::accentColor());
    EXPECT_NE(pixel(line, 1), zul::accentColor());
    line.setFocus();
    EXPECT_EQ(pixel(line, 1), zul::accentColor());
}

TEST_F(CommonLookTest, TheMainActionIsFilledWithTheAccent)
{
    line.setFocus();
    EXPECT_EQ(pixel(main, 6), zul::accentColor());
    EXPECT_NE(pixel(button, 6), zul::accentColor());
    zul::setPrimary(&main, false);
    EXPECT_NE(pixel(main, 6), zul::accentColor());
}

TEST_F(CommonLookTest, HasOneFontOfEightPoints)
{
    EXPECT_EQ(zul::commonFont().pointSize(), 8);
    for (QWidget* widget : std::initializer_list<QWidget*>{&label, &line, &button}) {
        EXPECT_EQ(widget->font().pointSize(), 8);
        EXPECT_EQ(widget->font().family(), zul::commonFont().family());
    }
}

TEST_F(CommonLookTest, ReachesControlsThatAreAddedLater)
{
    auto* late = new QPushButton(u"Dopo"_s, &form);
    form.layout()->addWidget(late);
    late->show();
    EXPECT_EQ(late->sizeHint().height(), 28);
    EXPECT_EQ(late->font().pointSize(), 8);
}

TEST_F(CommonLookTest, IsDarkWhereTheApplicationIs)
{
    EXPECT_EQ(pixel(form, 2), QColor(Qt::white));
    makeDark();
    zul::applyCommonLook(&form, false);
    EXPECT_TRUE(zul::isDark(zul::commonPalette()));
    EXPECT_LT(pixel(form, 2).lightness(), 60);
    for (QWidget* widget : std::initializer_list<QWidget*>{&line, &button, &selector, &date, &list}) {
        EXPECT_LT(pixel(*widget, 4).lightness(), 80) << widget->metaObject()->className();
        EXPECT_GT(widget->palette().color(QPalette::WindowText).lightness(), 180)
            << widget->metaObject()->className();
    }
}

TEST_F(CommonLookTest, LabelsAreReadableInBothModes)
{
    const auto contrast = [this] {
        return qAbs(label.palette().color(QPalette::WindowText).lightness() -
                    zul::commonPalette().color(QPalette::Window).lightness());
    };
    EXPECT_GT(contrast(), 150);
    makeDark();
    zul::applyCommonLook(&form, false);
    EXPECT_GT(contrast(), 150);
}

TEST_F(CommonLookTest, LeavesNoWordOfTheStyleSheetUnreplaced)
{
    EXPECT_FALSE(form.styleSheet().isEmpty());
    EXPECT_FALSE(form.styleSheet().section(u"*/"_s, 1).contains(u'@'));
}
