#include "controls/look/CommonLook.h"

#include "controls/fields/DateField.h"
#include "controls/fields/SelectorField.h"
#include "controls/look/Background.h"
#include "controls/look/Icons.h"
#include "controls/report/ReportGrid.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

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

    /// As the guidelines for accessible contents measure it: 1 to 21.
    static double contrast(const QColor& one, const QColor& other)
    {
        const auto part = [](double value) {
            return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        };
        const auto luminance = [&](const QColor& color) {
            return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
        };
        const double a = luminance(one) + 0.05;
        const double b = luminance(other) + 0.05;
        return std::max(a, b) / std::min(a, b);
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
    QToolButton tool(&form);
    tool.setText(u"Esporta"_s);
    tool.setIcon(zul::icon(zul::IconId::Save));
    tool.setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    tool.show();
    for (QWidget* widget :
         std::initializer_list<QWidget*>{&line, &button, &main, &selector, &date, &list, &tool}) {
        EXPECT_EQ(widget->sizeHint().height(), 28) << widget->metaObject()->className();
    }
    zul::applyCommonLook(&form, true);
    for (QWidget* widget :
         std::initializer_list<QWidget*>{&line, &button, &main, &selector, &date, &list, &tool}) {
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

TEST_F(CommonLookTest, FollowsTheSizeOfTheSystemsFont)
{
    const QFont usual = QApplication::font();
    QFont larger = usual;
    larger.setPointSize(18);
    QApplication::setFont(larger);
    zul::applyCommonLook(&form, false);
    EXPECT_EQ(zul::commonFont().pointSize(), 16) << "8 points at a system font of 9";
    EXPECT_EQ(zul::fixedFont().pointSize(), 20);
    for (QWidget* widget : std::initializer_list<QWidget*>{&label, &line, &button}) {
        EXPECT_EQ(widget->font().pointSize(), 16) << widget->metaObject()->className();
    }
    QFont smaller = usual;
    smaller.setPointSize(6);
    QApplication::setFont(smaller);
    zul::applyCommonLook(&form, false);
    EXPECT_EQ(label.font().pointSize(), 8) << "no smaller than its own size";
    QApplication::setFont(usual);
}

TEST_F(CommonLookTest, ReachesControlsThatAreAddedLater)
{
    auto* late = new QPushButton(u"Dopo"_s, &form);
    form.layout()->addWidget(late);
    late->show();
    EXPECT_EQ(late->sizeHint().height(), 28);
    EXPECT_EQ(late->font().pointSize(), 8);
}

TEST_F(CommonLookTest, TheCommonPaletteSetsEveryRoleOfEveryGroup)
{
    for (int group = 0; group < QPalette::NColorGroups; ++group) {
        for (int role = 0; role < QPalette::NColorRoles; ++role) {
            EXPECT_TRUE(zul::commonPalette().isBrushSet(static_cast<QPalette::ColorGroup>(group),
                                                        static_cast<QPalette::ColorRole>(role)) ||
                        role == QPalette::NoRole)
                << group << ' ' << role;
        }
    }
}

TEST_F(CommonLookTest, IsWhiteWhereTheSystemIsDark)
{
    makeDark();
    QWidget dark;
    QVBoxLayout inDark(&dark);
    auto* grid = new zul::ReportGrid;
    auto* check = new QCheckBox(u"Casella"_s);
    auto* combo = new QComboBox;
    auto* text = new QPlainTextEdit;
    auto* picked = new zul::DateField;
    for (QWidget* widget : std::initializer_list<QWidget*>{grid, check, combo, text, picked}) {
        inDark.addWidget(widget);
    }
    auto* off = new QGroupBox(u"Spento"_s);
    inDark.addWidget(off);
    off->setEnabled(false);
    zul::applyCommonLook(&dark, false);
    auto* late = new QLineEdit;
    inDark.addWidget(late);
    auto* menu = new QMenu(grid);
    dark.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dark));
    menu->popup({0, 0});
    combo->showPopup();
    picked->openCalendar();
    const QList<QWidget*> all = dark.findChildren<QWidget*>();
    EXPECT_GT(all.size(), 30);
    for (const QWidget* widget : all) {
        const QPalette palette = widget->palette();
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::AlternateBase,
                                                   QPalette::Button, QPalette::Light}) {
                const QColor color = palette.color(group, role);
                EXPECT_TRUE(color.lightness() > 200 || color.alpha() == 0 || color == zul::accentColor())
                    << widget->metaObject()->className() << ' ' << widget->objectName().toStdString() << ' '
                    << group << ' ' << role;
            }
            for (const QPalette::ColorRole role :
                 {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::PlaceholderText}) {
                EXPECT_LT(palette.color(group, role).lightness(), 180)
                    << widget->metaObject()->className() << ' ' << widget->objectName().toStdString() << ' '
                    << group << ' ' << role;
            }
        }
    }
    EXPECT_EQ(pixel(*late, 4), QColor(Qt::white));
    EXPECT_EQ(pixel(dark, 2), QColor(Qt::white));
}

TEST_F(CommonLookTest, WhatAControlHasSetItselfStays)
{
    QPalette own = label.palette();
    own.setColor(QPalette::WindowText, Qt::red);
    auto* late = new QLabel(u"rosso"_s);
    late->setPalette(own);
    form.layout()->addWidget(late);
    late->show();
    EXPECT_EQ(late->palette().color(QPalette::WindowText), QColor(Qt::red));
    EXPECT_EQ(late->palette().color(QPalette::Base), QColor(Qt::white));
}

TEST_F(CommonLookTest, ADisabledTickIsSeen)
{
    QCheckBox check(&form);
    check.setEnabled(false);
    check.resize(30, 30);
    check.show();
    const QImage off = check.grab().toImage();
    check.setChecked(true);
    const QImage on = check.grab().toImage();
    int filled = 0;
    for (int y = 0; y < on.height(); ++y) {
        for (int x = 0; x < on.width(); ++x) {
            filled += contrast(on.pixelColor(x, y), off.pixelColor(x, y)) > 2 ? 1 : 0;
        }
    }
    EXPECT_GT(filled, 60) << "the box is filled, and the tick stands out of it";
}

TEST_F(CommonLookTest, BordersOfCheckBoxesStandOut)
{
    auto* check = new QCheckBox(u"Casella"_s);
    auto* option = new QRadioButton(u"Opzione"_s);
    for (QAbstractButton* box : std::initializer_list<QAbstractButton*>{check, option}) {
        form.layout()->addWidget(box);
        box->show();
        QApplication::processEvents();
        const QImage image = box->grab().toImage();
        double strongest = 1;
        for (int x = 0; x < 16; ++x) {
            strongest = std::max(strongest, contrast(image.pixelColor(x, image.height() / 2), Qt::white));
        }
        EXPECT_GE(strongest, 3) << box->metaObject()->className();
    }
    EXPECT_GE(contrast(zul::boxColor(), zul::commonPalette().color(QPalette::Button)), 3);
}

TEST_F(CommonLookTest, PlaceholdersCanBeReadOnWhiteAndOnYellow)
{
    line.setPlaceholderText(u"gg/mm/aaaa"_s);
    const auto placeholder = [](const QWidget& input) {
        return input.palette().color(QPalette::PlaceholderText);
    };
    EXPECT_EQ(placeholder(line).alpha(), 255);
    EXPECT_GE(contrast(placeholder(line), Qt::white), 4.5);
    EXPECT_GE(contrast(placeholder(*date.findChild<QLineEdit*>()), Qt::white), 4.5);
    zul::setBackground(&line, Qt::yellow);
    EXPECT_GE(contrast(placeholder(line), Qt::yellow), 4.5);
    zul::setBackground(&line, Qt::white);
    EXPECT_GE(contrast(placeholder(line), Qt::white), 4.5);
}

TEST_F(CommonLookTest, LeavesNoWordOfTheStyleSheetUnreplaced)
{
    EXPECT_FALSE(form.styleSheet().isEmpty());
    EXPECT_FALSE(form.styleSheet().section(u"*/"_s, 1).contains(u'@'));
}
