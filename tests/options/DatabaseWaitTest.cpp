#include "options/DatabaseWait.h"

#include "tests/support/ComponentTest.h"

#include <QCoreApplication>
#include <QTimer>
#include <gtest/gtest.h>

namespace zul {
namespace {

TEST(DatabaseWaitTest, WithoutAnObjectThereIsNothingToWaitFor)
{
    bool processed = false;
    QTimer::singleShot(0, [&] { processed = true; });
    waitWhile({});
    EXPECT_FALSE(processed) << "and no event is processed";
    QCoreApplication::processEvents();
    EXPECT_TRUE(processed);
}

TEST(DatabaseWaitTest, EventsAreProcessedUntilTheObjectStopsExecuting)
{
    // The statement ends by way of the event loop: a wait that processed no events would never return.
    bool executing = true;
    int asked = 0;
    QTimer::singleShot(20, [&] { executing = false; });
    waitWhile([&] {
        ++asked;
        return executing;
    });
    EXPECT_FALSE(executing);
    EXPECT_GT(asked, 1);
}

TEST(DatabaseWaitTest, AnObjectThatFailsEndsTheWait)
{
    EXPECT_EQ(test::errorOf([] { waitWhile([]() -> bool { throw Error(RunTime::ObjectNotSet); }); }), 91);
}

} // namespace
} // namespace zul
