#include "grid/CellText.h"

#include <gtest/gtest.h>

using namespace zul;

namespace {

struct Moment
{
    double value;
    QDateTime shown;
};

} // namespace

TEST(CellText, ShowsATimeToTheNearestSecondOfItsDay)
{
    constexpr double day = 45413; // 2024-05-01
    constexpr double millisecond = 1.0 / 86'400'000;
    const auto at = [](int date, int hour, int minute, int second) {
        return QDateTime(QDate(2024, 5, date), QTime(hour, minute, second));
    };
    for (const Moment& moment : {Moment{day, at(1, 0, 0, 0)}, Moment{day + 0.5, at(1, 12, 0, 0)},
                                 Moment{day + 0.5 + 499 * millisecond, at(1, 12, 0, 0)},
                                 Moment{day + 0.5 + 500 * millisecond, at(1, 12, 0, 1)},
                                 // A server's last moment of the day.
                                 Moment{day + 1 - 3 * millisecond, at(1, 23, 59, 59)},
                                 Moment{day + 1 - millisecond, at(1, 23, 59, 59)},
                                 // The dust of a sum is no time.
                                 Moment{day + 1 - 0.01 * millisecond, at(2, 0, 0, 0)}}) {
        const DateAndTime shown = fromOleDays(moment.value);
        EXPECT_EQ(QDateTime(shown.date, shown.time), moment.shown) << moment.shown.toString().toStdString();
    }
    const DateAndTime early = fromOleDays(-1.25);
    EXPECT_EQ(QDateTime(early.date, early.time), QDateTime(QDate(1899, 12, 29), QTime(6, 0)));
    EXPECT_EQ(fromOleDays(-1.0 - (1 - 3 * millisecond)).date, QDate(1899, 12, 29));
}
