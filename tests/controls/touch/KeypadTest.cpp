#include "controls/touch/Keypad.h"

#include "controls/fields/DateField.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

class KeypadTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        window.resize(800, 600);
        keypad.setLocale(QLocale(QLocale::Italian, QLocale::Italy));
        line.setGeometry(50, 60, 120, 28);
        other.setGeometry(50, 100, 120, 28);
        button.setGeometry(50, 140, 120, 28);
        date.setGeometry(400, 60, 160, 28);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        line.setFocus();
    }

    void press(const char* key)
    {
        auto* found = keypad.findChild<QPushButton*>(QLatin1String(key));
        ASSERT_NE(found, nullptr) << key;
        QTest::mouseClick(found, Qt::LeftButton);
    }

    QWidget window;
    QWidget page{&window};
    zul::Keypad keypad{&page};
    QLineEdit line{&window};
    QLineEdit other{&window};
    QPushButton button{&window};
    zul::DateField date{&window};
};

} // namespace

TEST_F(KeypadTest, StaysHiddenWithoutTouchButRemembersItsField)
{
    EXPECT_FALSE(keypad.isVisible());
    keypad.attach(&line);
    EXPECT_FALSE(keypad.isVisible());
    EXPECT_EQ(keypad.attachedField(), &line);
    EXPECT_FALSE(keypad.forDate());
    keypad.attach(&date, true);
    EXPECT_EQ(keypad.attachedField(), &date);
    EXPECT_TRUE(keypad.forDate());
}

TEST_F(KeypadTest, OpensInTouchModeInsideTheWindowBesideItsField)
{
    keypad.setTouchMode(true);
    keypad.attach(&line);
    ASSERT_TRUE(keypad.isVisible());
    EXPECT_EQ(keypad.parentWidget(), &window);
    EXPECT_TRUE(window.rect().contains(keypad.geometry()));
    EXPECT_FALSE(keypad.geometry().intersects(line.geometry()));
    const auto keys = keypad.findChildren<QPushButton*>();
    EXPECT_EQ(keys.size(), 16);
    for (const QPushButton* key : keys) {
        EXPECT_GE(key->width(), 44);
        EXPECT_GE(key->height(), 44);
        EXPECT_FALSE(key->accessibleName().isEmpty());
    }
}

TEST_F(KeypadTest, FollowsItsFieldWhenTheWindowIsResized)
{
    line.setGeometry(600, 560, 120, 28);
    keypad.setTouchMode(true);
    keypad.attach(&line);
    window.resize(820, 590);
    EXPECT_TRUE(window.rect().contains(keypad.geometry()));
    line.move(10, 10);
    EXPECT_FALSE(keypad.geometry().intersects(line.geometry()));
}

TEST_F(KeypadTest, TypesANumberAndNeverTakesTheFocus)
{
    keypad.setTouchMode(true);
    keypad.attach(&line);
    for (const char* key : {"keyMinus", "key1", "key2", "key3", "key4", "key5", "key6", "key7", "key8",
                            "key9", "key0", "keySeparator", "key5"}) {
        press(key);
    }
    EXPECT_EQ(line.text(), u"-1234567890,5"_s);
    press("keyBackspace");
    EXPECT_EQ(line.text(), u"-1234567890,"_s);
    EXPECT_TRUE(line.hasFocus());
    press("keyClear");
    EXPECT_EQ(line.text(), QString());
    EXPECT_TRUE(line.hasFocus());
}

TEST_F(KeypadTest, ReplacesTheSelectionAsAKeyDoes)
{
    line.setText(u"99"_s);
    line.selectAll();
    keypad.setTouchMode(true);
    keypad.attach(&line);
    press("key7");
    EXPECT_EQ(line.text(), u"7"_s);
}

TEST_F(KeypadTest, TypesSlashesIntoADateField)
{
    keypad.setTouchMode(true);
    date.setFocus();
    keypad.attach(&date, true);
    for (const char* key : {"key1", "keySeparator", "key2", "keySeparator", "key2", "key6"}) {
        press(key);
    }
    EXPECT_EQ(date.text(), u"1/2/26"_s);
    EXPECT_TRUE(date.isDate());
    keypad.attach(&line);
    press("keySeparator");
    EXPECT_EQ(line.text(), u","_s);
}

TEST_F(KeypadTest, FollowsTheLocalesDecimalSeparator)
{
    keypad.setTouchMode(true);
    keypad.attach(&line);
    keypad.setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    press("keySeparator");
    EXPECT_EQ(line.text(), u"."_s);
}

TEST_F(KeypadTest, NextGoesToTheFollowingField)
{
    keypad.setTouchMode(true);
    keypad.attach(&line);
    press("keyNext");
    EXPECT_TRUE(other.hasFocus());
    EXPECT_FALSE(keypad.isVisible());
}

TEST_F(KeypadTest, ClosesWhenTheFocusGoesElsewhereAndByItsKey)
{
    keypad.setTouchMode(true);
    keypad.attach(&line);
    button.setFocus();
    EXPECT_FALSE(keypad.isVisible());
    line.setFocus();
    keypad.attach(&line);
    EXPECT_TRUE(keypad.isVisible());
    press("keyHide");
    EXPECT_FALSE(keypad.isVisible());
    EXPECT_TRUE(line.hasFocus());
}

TEST_F(KeypadTest, ClosesWithThePageOfItsField)
{
    keypad.setTouchMode(true);
    keypad.attach(&line);
    line.hide();
    EXPECT_FALSE(keypad.isVisible());
}

TEST_F(KeypadTest, ItsFieldMayBeDestroyed)
{
    auto* doomed = new QLineEdit(&window);
    doomed->show();
    doomed->setFocus();
    keypad.setTouchMode(true);
    keypad.attach(doomed);
    delete doomed;
    EXPECT_EQ(keypad.attachedField(), nullptr);
    keypad.show();
    press("key1");
    press("keyClear");
    keypad.attach(nullptr);
    EXPECT_EQ(keypad.attachedField(), nullptr);
}
