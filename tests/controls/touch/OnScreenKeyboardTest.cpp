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
        auto* found = keyboard.findChild<QPushButton*>(QStringLiteral("key") + key);
        ASSERT_NE(found, nullptr) << key.toStdString();
        QTest::mouseClick(found, Qt::LeftButton);
    }

    void pressAll(const QString& characters)
    {
        for (const QChar character : characters)
            press(character);
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
    pressAll(QStringLiteral("perch"));
    press(QStringLiteral("é"));
    press(QStringLiteral("Space"));
    pressAll(QStringLiteral("1234567890'àèìòù.,-+@"));
    EXPECT_EQ(line.text(), QStringLiteral("perché 1234567890'àèìòù.,-+@"));
    EXPECT_TRUE(line.hasFocus());
    press(QStringLiteral("Backspace"));
    EXPECT_TRUE(line.text().endsWith(u'+'));
}

TEST_F(OnScreenKeyboardTest, ShiftHoldsForOneKeyAndTwiceForAll)
{
    openOn(&line);
    press(QStringLiteral("Shift"));
    pressAll(QStringLiteral("ro"));
    EXPECT_EQ(line.text(), QStringLiteral("Ro"));
    press(QStringLiteral("Shift"));
    press(QStringLiteral("Shift"));
    pressAll(QStringLiteral("mà"));
    press(QStringLiteral("Shift"));
    pressAll(QStringLiteral("x"));
    EXPECT_EQ(line.text(), QStringLiteral("RoMÀx"));
}

TEST_F(OnScreenKeyboardTest, HasAPageOfSymbols)
{
    openOn(&line);
    press(QStringLiteral("Symbols"));
    pressAll(QStringLiteral("qwertyuiopè"));
    EXPECT_EQ(line.text(), QStringLiteral("!\"£$%&/()=?"));
    line.clear();
    pressAll(QStringLiteral("asdfghjkl"));
    EXPECT_EQ(line.text(), QStringLiteral("@#€[]{}<>"));
    press(QStringLiteral("Symbols"));
    line.clear();
    pressAll(QStringLiteral("q"));
    EXPECT_EQ(line.text(), QStringLiteral("q"));
}

TEST_F(OnScreenKeyboardTest, ShowsAnAmpersandAsItself)
{
    openOn(&line);
    press(QStringLiteral("Symbols"));
    auto* key = keyboard.findChild<QPushButton*>(QStringLiteral("keyy"));
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(key->text(), QStringLiteral("&&"));
    EXPECT_EQ(key->accessibleName(), QStringLiteral("&"));
}

TEST_F(OnScreenKeyboardTest, EnterBreaksTheLineOfATextAndReturnsFromALine)
{
    openOn(&text);
    press(QStringLiteral("a"));
    press(QStringLiteral("Enter"));
    press(QStringLiteral("b"));
    EXPECT_EQ(text.toPlainText(), QStringLiteral("a\nb"));
    QSignalSpy returned(&line, &QLineEdit::returnPressed);
    openOn(&line);
    press(QStringLiteral("Enter"));
    EXPECT_EQ(returned.count(), 1);
}

TEST_F(OnScreenKeyboardTest, ArrowsMoveTheCursor)
{
    openOn(&line);
    pressAll(QStringLiteral("ac"));
    press(QStringLiteral("Left"));
    press(QStringLiteral("b"));
    press(QStringLiteral("Right"));
    press(QStringLiteral("d"));
    EXPECT_EQ(line.text(), QStringLiteral("abcd"));
}

TEST_F(OnScreenKeyboardTest, WritesIntoARichText)
{
    QTextEdit rich(&window);
    rich.setGeometry(400, 60, 200, 80);
    rich.show();
    openOn(&rich);
    pressAll(QStringLiteral("ciao"));
    EXPECT_EQ(rich.toPlainText(), QStringLiteral("ciao"));
}

TEST_F(OnScreenKeyboardTest, OnceShownByTheProgramItStaysWhenTheFocusGoes)
{
    openOn(&line);
    button.setFocus();
    EXPECT_TRUE(keyboard.isVisible());
    press(QStringLiteral("x"));
    EXPECT_EQ(line.text(), QStringLiteral("x"));
    EXPECT_TRUE(button.hasFocus());
    press(QStringLiteral("Hide"));
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
    auto* key = keyboard.findChild<QPushButton*>(QStringLiteral("keyp"));
    ASSERT_NE(key, nullptr);
    EXPECT_TRUE(keyboard.rect().contains(key->geometry()));
}

TEST_F(OnScreenKeyboardTest, LeavesAReadOnlyFieldAlone)
{
    line.setReadOnly(true);
    openOn(&line);
    press(QStringLiteral("a"));
    EXPECT_EQ(line.text(), QString());
}
