#include "controls/touch/OnScreenKeyboard.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QTextEdit>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

class OnScreenKeyboardTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        window.resize(1024, 700);
        line.setGeometry(50, 60, 300, 28);
        text.setGeometry(50, 100, 300, 80);
        button.setGeometry(50, 200, 100, 28);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        line.setFocus();
    }

    void press(const QString& key)
    {
        auto* found = keyboard.findChild<QPushButton*>(u"key"_s + key);
        ASSERT_NE(found, nullptr) << key.toStdString();
        QTest::mouseClick(found, Qt::LeftButton);
    }

    void pressAll(const QString& characters)
    {
        for (const QChar character : characters) {
            press(character);
        }
    }

    void openOn(QWidget* field)
    {
        field->setFocus();
        keyboard.show();
        keyboard.attach(field);
    }

    QWidget window;
    zul::OnScreenKeyboard keyboard{&window};
    QLineEdit line{&window};
    QPlainTextEdit text{&window};
    QPushButton button{&window};
};

} // namespace

TEST_F(OnScreenKeyboardTest, BeginsHiddenAndStandsAtTheWindowsLowerEdge)
{
    EXPECT_FALSE(keyboard.isVisible());
    openOn(&line);
    EXPECT_TRUE(window.rect().contains(keyboard.geometry()));
    EXPECT_GT(keyboard.geometry().top(), window.height() / 2);
    line.move(50, 660);
    EXPECT_FALSE(keyboard.geometry().intersects(line.geometry()));
}

TEST_F(OnScreenKeyboardTest, TypesLettersDigitsAndAccents)
{
    openOn(&line);
    pressAll(u"perch"_s);
    press(u"é"_s);
    press(u"Space"_s);
    pressAll(u"1234567890'àèìòù.,-+@"_s);
    EXPECT_EQ(line.text(), u"perché 1234567890'àèìòù.,-+@"_s);
    EXPECT_TRUE(line.hasFocus());
    press(u"Backspace"_s);
    EXPECT_TRUE(line.text().endsWith(u'+'));
}

TEST_F(OnScreenKeyboardTest, ShiftHoldsForOneKeyAndTwiceForAll)
{
    openOn(&line);
    press(u"Shift"_s);
    pressAll(u"ro"_s);
    EXPECT_EQ(line.text(), u"Ro"_s);
    press(u"Shift"_s);
    press(u"Shift"_s);
    pressAll(u"mà"_s);
    press(u"Shift"_s);
    pressAll(u"x"_s);
    EXPECT_EQ(line.text(), u"RoMÀx"_s);
}

TEST_F(OnScreenKeyboardTest, HasAPageOfSymbols)
{
    openOn(&line);
    press(u"Symbols"_s);
    pressAll(u"qwertyuiopè"_s);
    EXPECT_EQ(line.text(), u"!\"£$%&/()=?"_s);
    line.clear();
    pressAll(u"asdfghjkl"_s);
    EXPECT_EQ(line.text(), u"@#€[]{}<>"_s);
    press(u"Symbols"_s);
    line.clear();
    pressAll(u"q"_s);
    EXPECT_EQ(line.text(), u"q"_s);
}

TEST_F(OnScreenKeyboardTest, ShowsAnAmpersandAsItself)
{
    openOn(&line);
    press(u"Symbols"_s);
    auto* key = keyboard.findChild<QPushButton*>(u"keyy"_s);
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(key->text(), u"&&"_s);
    EXPECT_EQ(key->accessibleName(), u"&"_s);
}

TEST_F(OnScreenKeyboardTest, EnterBreaksTheLineOfATextAndReturnsFromALine)
{
    openOn(&text);
    press(u"a"_s);
    press(u"Enter"_s);
    press(u"b"_s);
    EXPECT_EQ(text.toPlainText(), u"a\nb"_s);
    QSignalSpy returned(&line, &QLineEdit::returnPressed);
    openOn(&line);
    press(u"Enter"_s);
    EXPECT_EQ(returned.count(), 1);
}

TEST_F(OnScreenKeyboardTest, ArrowsMoveTheCursor)
{
    openOn(&line);
    pressAll(u"ac"_s);
    press(u"Left"_s);
    press(u"b"_s);
    press(u"Right"_s);
    press(u"d"_s);
    EXPECT_EQ(line.text(), u"abcd"_s);
}

TEST_F(OnScreenKeyboardTest, WritesIntoARichText)
{
    QTextEdit rich(&window);
    rich.setGeometry(400, 60, 200, 80);
    rich.show();
    openOn(&rich);
    pressAll(u"ciao"_s);
    EXPECT_EQ(rich.toPlainText(), u"ciao"_s);
}

TEST_F(OnScreenKeyboardTest, OnceShownByTheProgramItStaysWhenTheFocusGoes)
{
    openOn(&line);
    button.setFocus();
    EXPECT_TRUE(keyboard.isVisible());
    press(u"x"_s);
    EXPECT_EQ(line.text(), u"x"_s);
    EXPECT_TRUE(button.hasFocus());
    press(u"Hide"_s);
    EXPECT_FALSE(keyboard.isVisible());
}

TEST_F(OnScreenKeyboardTest, IsAwayWhileAnotherPageCoversTheFields)
{
    QStackedWidget pages(&window);
    auto* page = new QWidget;
    auto* field = new QLineEdit(page);
    pages.addWidget(new QWidget);
    pages.addWidget(page);
    pages.setCurrentIndex(1);
    pages.show();
    openOn(field);
    ASSERT_TRUE(keyboard.isVisible());
    pages.setCurrentIndex(0);
    EXPECT_FALSE(keyboard.isVisible());
    EXPECT_EQ(keyboard.attachedField(), field);
    pages.setCurrentIndex(1);
    EXPECT_TRUE(keyboard.isVisible());
    // With the whole window it is not away: it stays what it was.
    window.hide();
    window.show();
    EXPECT_TRUE(keyboard.isVisible());
    // Put away by the program, it does not come back by itself.
    keyboard.hide();
    pages.setCurrentIndex(0);
    pages.setCurrentIndex(1);
    EXPECT_FALSE(keyboard.isVisible());
}

TEST_F(OnScreenKeyboardTest, InTouchModeComesAndGoesWithTheFocus)
{
    keyboard.setTouchMode(true);
    keyboard.attach(&line);
    EXPECT_TRUE(keyboard.isVisible());
    button.setFocus();
    EXPECT_FALSE(keyboard.isVisible());
}

TEST_F(OnScreenKeyboardTest, FitsIntoASmallWindow)
{
    window.resize(420, 300);
    openOn(&line);
    EXPECT_TRUE(window.rect().contains(keyboard.geometry()));
    auto* key = keyboard.findChild<QPushButton*>(u"keyp"_s);
    ASSERT_NE(key, nullptr);
    EXPECT_TRUE(keyboard.rect().contains(key->geometry()));
}

TEST_F(OnScreenKeyboardTest, LeavesAReadOnlyFieldAlone)
{
    line.setReadOnly(true);
    openOn(&line);
    press(u"a"_s);
    EXPECT_EQ(line.text(), QString());
}
