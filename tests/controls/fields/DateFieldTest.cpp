#include "controls/fields/DateField.h"

#include <QCalendarWidget>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

class DateFieldTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        field.setLocale(QLocale(QLocale::Italian, QLocale::Italy));
        (new QVBoxLayout(&window))->addWidget(&field);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        field.setFocus();
        box = field.findChild<QLineEdit*>();
        ASSERT_NE(box, nullptr);
    }

    QCalendarWidget* calendar() { return field.findChild<QCalendarWidget*>(u"calendar"_s); }

    QWidget window;
    zul::DateField field{&window};
    QLineEdit* box = nullptr;
    QSignalSpy changed{&field, &zul::DateField::valueChanged};
};

} // namespace

TEST_F(DateFieldTest, IsEmptyAtFirstAndShowsTheOrderOfADate)
{
    EXPECT_EQ(field.text(), QString());
    EXPECT_FALSE(field.isDate());
    EXPECT_FALSE(field.date().isValid());
    EXPECT_EQ(box->placeholderText(), u"gg/mm/aaaa"_s);
}

TEST_F(DateFieldTest, ItsTextBoxCarriesTheFocus)
{
    EXPECT_EQ(field.focusProxy(), box);
    EXPECT_TRUE(box->hasFocus());
}

TEST_F(DateFieldTest, TellsEveryChangeOfATypedDate)
{
    QTest::keyClicks(box, u"25/12/2025"_s);
    EXPECT_EQ(changed.count(), 10);
    EXPECT_TRUE(field.isDate());
    EXPECT_EQ(field.date(), QDate(2025, 12, 25));
    EXPECT_EQ(field.text(), u"25/12/2025"_s);
}

TEST_F(DateFieldTest, IsADateOnTheWayToALongerOne)
{
    QTest::keyClicks(box, u"25/12/20"_s);
    EXPECT_EQ(field.date(), QDate(2020, 12, 25));
    QTest::keyClicks(box, u"2"_s);
    EXPECT_FALSE(field.isDate());
    QTest::keyClicks(box, u"5"_s);
    EXPECT_EQ(field.date(), QDate(2025, 12, 25));
}

TEST_F(DateFieldTest, KeepsAnyTextAsTyped)
{
    for (const QString& text : {u"domani"_s, u"'%\" à 😀"_s, QString(10000, u'1')}) {
        field.setText(text);
        EXPECT_EQ(field.text(), text);
        EXPECT_FALSE(field.isDate());
    }
    field.setText(u"1/2/26"_s);
    QTest::keyClick(box, Qt::Key_Tab);
    EXPECT_EQ(field.text(), u"1/2/26"_s);
}

TEST_F(DateFieldTest, IsSetAndEmptiedByTheProgram)
{
    field.setDate(QDate(2026, 2, 1));
    EXPECT_EQ(field.property("text").toString(), u"01/02/2026"_s);
    field.setEmpty();
    EXPECT_EQ(field.text(), QString());
    EXPECT_EQ(changed.count(), 2);
    field.setEmpty();
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(DateFieldTest, FollowsItsLocale)
{
    field.setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(box->placeholderText(), u"mm/dd/yyyy"_s);
    field.setText(u"12/25/2025"_s);
    EXPECT_EQ(field.date(), QDate(2025, 12, 25));
}

TEST_F(DateFieldTest, OpensACalendarOnItsDateByKeyAndTakesThePickedOne)
{
    field.setText(u"25/12/2025"_s);
    QTest::keyClick(box, Qt::Key_F4);
    ASSERT_NE(calendar(), nullptr);
    EXPECT_EQ(calendar()->selectedDate(), QDate(2025, 12, 25));
    auto* days = calendar()->findChild<QWidget*>(u"qt_calendar_calendarview"_s);
    ASSERT_NE(days, nullptr);
    QTest::keyClick(days, Qt::Key_Left);
    QTest::keyClick(days, Qt::Key_Return);
    EXPECT_EQ(field.text(), u"24/12/2025"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return calendar() == nullptr; }));
}

TEST_F(DateFieldTest, OpensTheCalendarByItsButtonAndLeavesTheDateOnEscape)
{
    auto* button = field.findChild<QToolButton*>(u"calendarButton"_s);
    ASSERT_NE(button, nullptr);
    field.setText(u"abc"_s);
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_NE(calendar(), nullptr);
    EXPECT_EQ(calendar()->selectedDate(), QDate::currentDate());
    QTest::keyClick(calendar()->window(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([this] { return calendar() == nullptr; }));
    EXPECT_EQ(field.text(), u"abc"_s);
}

TEST_F(DateFieldTest, OpensTheCalendarByAltDown)
{
    QTest::keyClick(box, Qt::Key_Down, Qt::AltModifier);
    EXPECT_NE(calendar(), nullptr);
}

TEST_F(DateFieldTest, TellsItsKeys)
{
    EXPECT_EQ(box->accessibleDescription(), u"F4 o Alt+Giù: calendario."_s);
    EXPECT_EQ(box->toolTip(), u"F4 o Alt+Giù: calendario."_s);
    EXPECT_EQ(field.findChild<QToolButton*>(u"calendarButton"_s)->toolTip(), u"Calendario (F4 o Alt+Giù)"_s);
}
