#include "hostlib/LocalClock.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

TEST(LocalClockTest, SaysWhatTheSystemSays)
{
    LocalClock clock;
    for (int i = 0; i < 3; ++i) {
        const QDateTime before = QDateTime::currentDateTime();
        const QDateTime now = clock.now();
        const QDateTime after = QDateTime::currentDateTime();
        EXPECT_EQ(now.timeSpec(), Qt::UTC);
        const auto sameReading = [](const QDateTime& local) {
            return QDateTime(local.date(), local.time(), Qt::UTC);
        };
        // An hour that comes twice in autumn may stand between the two readings of the system.
        if (before.offsetFromUtc() == after.offsetFromUtc()) {
            EXPECT_LE(sameReading(before), now);
            EXPECT_LE(now, sameReading(after));
        }
    }
}

} // namespace
} // namespace zul
