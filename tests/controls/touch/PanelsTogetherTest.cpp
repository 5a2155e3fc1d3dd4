// Calendar, keypad and keyboard open in one window at one time.
#include "controls/fields/CalendarPopup.h"
#include "controls/fields/DateField.h"
#include "controls/look/CommonLook.h"
#include "controls/touch/Keypad.h"
#include "controls/touch/OnScreenKeyboard.h"

#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;

class PanelsTogetherTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        window.setGeometry(window.screen()->availableGeometry());
        zul::applyCommonLook(&window, true);
        text.setGeometry(10, 10, 200, 44);
        date.setGeometry(10, 100, 180, 44);
        keypad.setTouchMode(true);
        keyboard.setTouchMode(true);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    zul::CalendarPopup* calendar() { return date.findChild<zul::CalendarPopup*>(); }

    static QRect onScreen(const QWidget& widget) { return {widget.mapToGlobal(QPoint(0, 0)), widget.size()}; }

    /// What is to be seen, by name.
    QMap<QString, QRect> seen()
    {
        QMap<QString, QRect> places{{u"field"_s, onScreen(date)}};
        if (keypad.isVisible()) {
            places.insert(u"keypad"_s, onScreen(keypad));
        }
        if (keyboard.isVisible()) {
            places.insert(u"keyboard"_s, onScreen(keyboard));
            places.insert(u"text"_s, onScreen(text));
        }
        if (calendar() != nullptr && calendar()->isVisible()) {
            places.insert(u"calendar"_s, onScreen(*calendar()));
        }
        return places;
    }

    void expectNothingCovered(const std::string& where)
    {
        const QMap<QString, QRect> places = seen();
        for (auto one = places.begin(); one != places.end(); ++one) {
            // A window that fills the screen may stand a frame's width off its corner.
            const QRect room = one.key() == u"calendar"_s ? window.screen()->geometry() : onScreen(window);
            EXPECT_TRUE(room.contains(one.value())) << one.key().toStdString() << ' ' << where;
            for (auto other = std::next(one); other != places.end(); ++other) {
                const bool panel = other.key() != u"text"_s || one.key() != u"field"_s;
                // The calendar belongs to the date alone.
                const bool apart = one.key() == u"calendar"_s && other.key() == u"text"_s;
                EXPECT_FALSE(panel && !apart && one.value().intersects(other.value()))
                    << one.key().toStdString() << " and " << other.key().toStdString() << ' ' << where;
            }
        }
    }

    void closeCalendar()
    {
        calendar()->close();
        ASSERT_TRUE(QTest::qWaitFor([this] { return calendar() == nullptr; }));
    }

    QWidget window;
    QLineEdit text{&window};
    zul::DateField date{&window};
    zul::Keypad keypad{&window};
    zul::OnScreenKeyboard keyboard{&window};
};

} // namespace

TEST_F(PanelsTogetherTest, TheCalendarKeepsOffTheFieldAndTheKeypadEverywhere)
{
    int places = 0;
    int both = 0;
    for (int y = 0; y <= window.height() - 44; y += 90) {
        for (int x = 0; x <= window.width() - 180; x += 100) {
            date.move(x, y);
            keypad.attach(&date, true);
            ASSERT_TRUE(keypad.isVisible());
            date.openCalendar();
            ++places;
            both += keypad.isVisible() ? 1 : 0;
            expectNothingCovered(std::to_string(x) + ',' + std::to_string(y));
            closeCalendar();
        }
    }
    EXPECT_GT(both, places * 9 / 10) << "nearly everywhere there is room for both";
}

TEST_F(PanelsTogetherTest, KeypadAndKeyboardKeepOffEachOtherAndTheirFields)
{
    // Shown by hand: it stays when the focus goes to another field.
    keyboard.setTouchMode(false);
    keyboard.attach(&text);
    keyboard.show();
    for (int y = 60; y <= window.height() - 44; y += 90) {
        for (int x = 0; x <= window.width() - 180; x += 100) {
            date.move(x, y);
            date.setFocus();
            keypad.attach(&date, true);
            ASSERT_TRUE(keypad.isVisible() && keyboard.isVisible());
            expectNothingCovered(std::to_string(x) + ',' + std::to_string(y));
            date.openCalendar();
            expectNothingCovered("calendar at " + std::to_string(x) + ',' + std::to_string(y));
            closeCalendar();
            ASSERT_TRUE(keypad.isVisible() && keyboard.isVisible()) << "they come back";
        }
    }
}

TEST_F(PanelsTogetherTest, APanelThatGaveWayStillClosesWithItsFocus)
{
    QPushButton button(u"Altrove"_s, &window);
    button.setGeometry(600, 10, 100, 44);
    button.show();
    keypad.attach(&date, true);
    date.setFocus();
    {
        const QObject other;
        keypad.giveWayTo(&other);
        EXPECT_FALSE(keypad.isVisible());
    }
    EXPECT_TRUE(keypad.isVisible());
    button.setFocus();
    EXPECT_FALSE(keypad.isVisible());
}

TEST_F(PanelsTogetherTest, DaysAndButtonsOfTheCalendarAreOfAFingersSizeInTouchMode)
{
    date.openCalendar();
    const auto* view = calendar()->findChild<QAbstractItemView*>(u"qt_calendar_calendarview"_s);
    ASSERT_NE(view, nullptr);
    const QAbstractItemModel& days = *view->model();
    EXPECT_EQ(days.rowCount(), 7);
    for (int row = 0; row < days.rowCount(); ++row) {
        for (int column = days.columnCount() - 7; column < days.columnCount(); ++column) {
            const QRect day = view->visualRect(days.index(row, column));
            EXPECT_GE(day.width(), 44) << row << ' ' << column;
            EXPECT_GE(day.height(), 44) << row << ' ' << column;
            const QRect seen(view->viewport()->mapTo(calendar(), day.topLeft()), day.size());
            EXPECT_TRUE(calendar()->rect().contains(seen)) << row << ' ' << column;
        }
    }
    for (const char* name : {"qt_calendar_prevmonth", "qt_calendar_nextmonth", "qt_calendar_monthbutton",
                             "qt_calendar_yearbutton"}) {
        const auto* button = calendar()->findChild<QToolButton*>(QLatin1String(name));
        ASSERT_NE(button, nullptr) << name;
        EXPECT_GE(button->width(), 44) << name;
        EXPECT_GE(button->height(), 44) << name;
    }
}

TEST_F(PanelsTogetherTest, WithoutTouchTheCalendarIsSmall)
{
    zul::applyCommonLook(&window, false);
    date.openCalendar();
    EXPECT_LT(calendar()->width(), 300);
    EXPECT_LT(calendar()->height(), 260);
}
