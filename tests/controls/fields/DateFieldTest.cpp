#include "controls/fields/DateField.h"

#include <QCalendarWidget>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

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

    QCalendarWidget* calendar() { return field.findChild<QCalendarWidget*>(QStringLiteral("calendar")); }

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
    EXPECT_EQ(box->placeholderText(), QStringLiteral("gg/mm/aaaa"));
}

TEST_F(DateFieldTest, ItsTextBoxCarriesTheFocus)
{
    EXPECT_EQ(field.focusProxy(), box);
    EXPECT_TRUE(box->hasFocus());
}

TEST_F(DateFieldTest, TellsEveryChangeOfATypedDate)
{
    QTest::keyClicks(box, QStringLiteral("25/12/2025"));
    EXPECT_EQ(changed.count(), 10);
    EXPECT_TRUE(field.isDate());
    EXPECT_EQ(field.date(), QDate(2025, 12, 25));
    EXPECT_EQ(field.text(), QStringLiteral("25/12/2025"));
}

TEST_F(DateFieldTest, IsADateOnTheWayToALongerOne)
{
    QTest::keyClicks(box, QStringLiteral("25/12/20"));
    EXPECT_EQ(field.date(), QDate(2020, 12, 25));
    QTest::keyClicks(box, QStringLiteral("2"));
    EXPECT_FALSE(field.isDate());
    QTest::keyClicks(box, QStringLiteral("5"));
    EXPECT_EQ(field.date(), QDate(2025, 12, 25));
}

TEST_F(DateFieldTest, KeepsAnyTextAsTyped)
{
    for (const QString& text : {QStringLiteral("domani"), QStringLiteral("'%\" à 😀"), QString(10000, u'1')}) {
        field.setText(text);
        EXPECT_EQ(field.text(), text);
        EXPECT_FALSE(field.isDate());
    }
    field.setText(QStringLiteral("1/2/26"));
    QTest::keyClick(box, Qt::Key_Tab);
    EXPECT_EQ(field.text(), QStringLiteral("1/2/26"));
}

TEST_F(DateFieldTest, IsSetAndEmptiedByTheProgram)
{
    field.setDate(QDate(2026, 2, 1));
    EXPECT_EQ(field.property("text").toString(), QStringLiteral("01/02/2026"));
    field.setEmpty();
    EXPECT_EQ(field.text(), QString());
    EXPECT_EQ(changed.count(), 2);
    field.setEmpty();
    EXPECT_EQ(changed.count(), 2);
}

TEST_F(DateFieldTest, FollowsItsLocale)
{
    field.setLocale(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(box->placeholderText(), QStringLiteral("mm/dd/yyyy"));
    field.setText(QStringLiteral("12/25/2025"));
    EXPECT_EQ(field.date(), QDate(2025, 12, 25));
}

TEST_F(DateFieldTest, OpensACalendarOnItsDateByKeyAndTakesThePickedOne)
{
    field.setText(QStringLiteral("25/12/2025"));
    QTest::keyClick(box, Qt::Key_F4);
    ASSERT_NE(calendar(), nullptr);
    EXPECT_EQ(calendar()->selectedDate(), QDate(2025, 12, 25));
    auto* days = calendar()->findChild<QWidget*>(QStringLiteral("qt_calendar_calendarview"));
    ASSERT_NE(days, nullptr);
    QTest::keyClick(days, Qt::Key_Left);
    QTest::keyClick(days, Qt::Key_Return);
    EXPECT_EQ(field.text(), QStringLiteral("24/12/2025"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return calendar() == nullptr; }));
}

TEST_F(DateFieldTest, OpensTheCalendarByItsButtonAndLeavesTheDateOnEscape)
{
    auto* button = field.findChild<QToolButton*>(QStringLiteral("calendarButton"));
    ASSERT_NE(button, nullptr);
    field.setText(QStringLiteral("abc"));
    QTest::mouseClick(button, Qt::LeftButton);
    ASSERT_NE(calendar(), nullptr);
    EXPECT_EQ(calendar()->selectedDate(), QDate::currentDate());
    QTest::keyClick(calendar()->window(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([this] { return calendar() == nullptr; }));
    EXPECT_EQ(field.text(), QStringLiteral("abc"));
}

TEST_F(DateFieldTest, OpensTheCalendarByAltDown)
{
    QTest::keyClick(box, Qt::Key_Down, Qt::AltModifier);
    EXPECT_NE(calendar(), nullptr);
}
