#include "controls/fields/FocusPaint.h"

#include "controls/fields/DateField.h"
#include "controls/look/Background.h"
#include "controls/look/CommonLook.h"

#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

const QColor yellow(255, 255, 0);
const QColor white(255, 255, 255);

class FocusPaintTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        for (QWidget* widget : std::initializer_list<QWidget*>{&other, &first, &second, &date}) {
            column.addWidget(widget);
        }
        zul::applyCommonLook(&form, false);
        painter.watch(&first, zul::FocusSelect::First100);
        painter.watch(&second);
        painter.watch(&date, zul::FocusSelect::Nothing, zul::FocusPaint::Paint::No);
        form.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
        other.setFocus();
    }

    QWidget form;
    QVBoxLayout column{&form};
    QPushButton other{&form};
    QLineEdit first{&form};
    QLineEdit second{&form};
    zul::DateField date{&form};
    zul::FocusPaint painter;
    QSignalSpy entered{&painter, &zul::FocusPaint::entered};
    QSignalSpy left{&painter, &zul::FocusPaint::left};
};

} // namespace

TEST_F(FocusPaintTest, AnInputIsYellowWhileItHasTheFocusAndWhiteAfterwards)
{
    QTest::keyClick(&other, Qt::Key_Tab);
    ASSERT_TRUE(first.hasFocus());
    EXPECT_EQ(zul::effectiveBackground(&first), yellow);
    EXPECT_EQ(painter.current(), &first);
    QTest::keyClick(&first, Qt::Key_Tab);
    EXPECT_EQ(zul::effectiveBackground(&first), white);
    EXPECT_EQ(zul::effectiveBackground(&second), yellow);
    other.setFocus();
    EXPECT_EQ(zul::effectiveBackground(&second), white);
    EXPECT_EQ(entered.count(), 2);
    EXPECT_EQ(left.count(), 2);
    EXPECT_EQ(painter.current(), nullptr);
}

TEST_F(FocusPaintTest, SelectsTheFirstHundredCharacters)
{
    first.setText(QString(150, u'a'));
    first.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(first.selectionStart(), 0);
    EXPECT_EQ(first.selectionLength(), 100);
    first.setText(u"18"_s);
    other.setFocus();
    first.setFocus(Qt::OtherFocusReason);
    EXPECT_EQ(first.selectedText(), u"18"_s);
}

TEST_F(FocusPaintTest, TheSelectionOutlivesTheClickThatGaveTheFocus)
{
    first.setText(u"1234"_s);
    QTest::mouseClick(&first, Qt::LeftButton, {}, QPoint(20, first.height() / 2));
    EXPECT_EQ(first.selectedText(), u"1234"_s);
    QTest::mouseClick(&first, Qt::LeftButton, {}, QPoint(20, first.height() / 2));
    EXPECT_FALSE(first.hasSelectedText()) << "a second click places the cursor";
}

TEST_F(FocusPaintTest, SelectsInATextOfManyLines)
{
    QPlainTextEdit text(&form);
    text.setPlainText(QString(150, u'b'));
    zul::paintFocusIn(&text, zul::FocusSelect::First100);
    EXPECT_EQ(text.textCursor().selectedText().size(), 100);
    text.setPlainText({});
    zul::paintFocusIn(&text, zul::FocusSelect::First100);
    EXPECT_FALSE(text.textCursor().hasSelection());
}

TEST_F(FocusPaintTest, AFieldMadeOfPartsIsToldAsAWhole)
{
    date.setFocus();
    ASSERT_EQ(entered.count(), 1);
    EXPECT_EQ(entered.at(0).at(0).value<QWidget*>(), &date);
    EXPECT_FALSE(date.property("background").isValid()) << "watched without painting";
}

TEST_F(FocusPaintTest, AMenuOrADialogInBetweenChangesNothing)
{
    first.setFocus();
    QMenu menu;
    menu.addAction(u"x"_s);
    menu.popup(form.mapToGlobal(QPoint(0, 0)));
    EXPECT_EQ(zul::effectiveBackground(&first), yellow);
    menu.close();
    QDialog dialog(&form);
    dialog.open();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_EQ(zul::effectiveBackground(&first), yellow);
    dialog.close();
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    EXPECT_EQ(entered.count(), 1);
    EXPECT_EQ(left.count(), 0);
}

TEST_F(FocusPaintTest, AnInputMayBeDestroyedWhileItHasTheFocus)
{
    auto* doomed = new QLineEdit(&form);
    doomed->show();
    painter.watch(doomed);
    doomed->setFocus();
    EXPECT_EQ(painter.current(), doomed);
    delete doomed;
    EXPECT_EQ(painter.current(), nullptr);
    first.setFocus();
    EXPECT_EQ(zul::effectiveBackground(&first), yellow);
}

TEST_F(FocusPaintTest, PassesOverNoInput)
{
    painter.watch(nullptr);
    zul::paintFocusIn(nullptr);
    zul::paintFocusOut(nullptr);
    EXPECT_EQ(painter.current(), nullptr);
}
