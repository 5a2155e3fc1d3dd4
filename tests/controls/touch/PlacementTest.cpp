#include "controls/touch/Placement.h"

#include <gtest/gtest.h>

namespace {

const QRect window(0, 0, 800, 600);
const QSize panel(200, 200);

} // namespace

TEST(Placement, OpensBelowWhereThereIsRoom)
{
    const QRect field(100, 50, 120, 28);
    const QRect placed = zul::placeBeside(field, panel, window);
    EXPECT_EQ(placed.size(), panel);
    EXPECT_GT(placed.top(), field.bottom());
    EXPECT_EQ(placed.left(), field.left());
}

TEST(Placement, NeverCoversAFieldAnywhereAndStaysInside)
{
    for (int x = 0; x <= 680; x += 20) {
        for (int y = 0; y <= 572; y += 13) {
            const QRect field(x, y, 120, 28);
            const QRect placed = zul::placeBeside(field, panel, window);
            EXPECT_TRUE(window.contains(placed)) << x << ' ' << y;
            EXPECT_FALSE(placed.intersects(field)) << x << ' ' << y;
        }
    }
}

TEST(Placement, OpensAtTheSideInALowWindow)
{
    const QRect low(0, 0, 800, 220);
    const QRect toRight = zul::placeBeside(QRect(100, 100, 120, 28), panel, low);
    EXPECT_GT(toRight.left(), 219);
    const QRect toLeft = zul::placeBeside(QRect(650, 100, 120, 28), panel, low);
    EXPECT_LT(toLeft.right(), 650);
    EXPECT_TRUE(low.contains(toRight));
    EXPECT_TRUE(low.contains(toLeft));
}

TEST(Placement, IsMadeNoLargerThanTheWindow)
{
    const QRect tiny(0, 0, 90, 70);
    EXPECT_EQ(zul::placeBeside(QRect(0, 0, 90, 28), panel, tiny), tiny);
    EXPECT_EQ(zul::placeAtBottom(QRect(0, 0, 90, 28), panel, tiny), tiny);
}

TEST(Placement, StandsAtTheBottomUnlessTheFieldIsThere)
{
    const QRect above = zul::placeAtBottom(QRect(100, 50, 120, 28), panel, window);
    EXPECT_EQ(above.bottom(), window.bottom());
    EXPECT_EQ(above.center().x(), window.center().x());
    const QRect below = zul::placeAtBottom(QRect(300, 550, 120, 28), panel, window);
    EXPECT_EQ(below.top(), window.top());
}
