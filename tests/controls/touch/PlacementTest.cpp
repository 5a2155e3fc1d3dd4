#include "controls/touch/Placement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

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

TEST(Placement, PrefersTheOrdinaryPlaceThatIsFree)
{
    const QRect field(300, 250, 120, 28);
    const QRect under(300, 300, 40, 10);
    const QRect over(300, 200, 40, 10);
    const QRect beside(500, 250, 40, 10);
    EXPECT_LT(zul::placeBeside(field, panel, window, {under}).bottom(), field.top());
    EXPECT_GT(zul::placeBeside(field, panel, window, {under, over}).left(), field.right());
    EXPECT_LT(zul::placeBeside(field, panel, window, {under, over, beside}).right(), field.left());
}

TEST(Placement, FindsAFreePlaceWhereverThereIsOne)
{
    std::mt19937 random(11);
    const auto upTo = [&random](int limit) {
        return static_cast<int>(random() % static_cast<unsigned>(limit));
    };
    int found = 0;
    for (int round = 0; round < 300; ++round) {
        const QRect field(upTo(680), upTo(570), 120, 28);
        QList<QRect> taken;
        for (int i = upTo(4); i >= 0; --i) {
            taken.append(QRect(upTo(700), upTo(500), 50 + upTo(500), 30 + upTo(300)));
        }
        const auto isFree = [&](const QRect& place) {
            return window.contains(place) && !place.intersects(field) &&
                   std::none_of(taken.begin(), taken.end(),
                                [&](const QRect& one) { return one.intersects(place); });
        };
        const std::optional<QRect> place = zul::freePlace(field, panel, window, taken);
        if (place) {
            ++found;
            EXPECT_TRUE(isFree(*place)) << round;
            EXPECT_EQ(place->size(), panel);
            continue;
        }
        // Places nearer to what is taken than the gap do not count.
        for (int y = 0; y <= 400; y += 8) {
            for (int x = 0; x <= 600; x += 8) {
                EXPECT_FALSE(isFree(QRect(QPoint(x, y), panel).adjusted(-4, -4, 4, 4)) &&
                             isFree(QRect(QPoint(x, y), panel)))
                    << round << ' ' << x << ' ' << y;
            }
        }
    }
    EXPECT_GT(found, 50);
    EXPECT_LT(found, 300);
}

TEST(Placement, KeepsOffTheFieldWhenEverythingElseIsTaken)
{
    const QRect field(300, 250, 120, 28);
    const QRect placed = zul::placeBeside(field, panel, window, {window});
    EXPECT_FALSE(placed.intersects(field));
    EXPECT_TRUE(window.contains(placed));
}

TEST(Placement, GoesToTheTopForWhatItWouldCoverAtTheBottom)
{
    const QRect field(100, 250, 120, 28);
    const QRect low = zul::placeAtBottom(field, panel, window);
    EXPECT_EQ(low.bottom(), window.bottom());
    EXPECT_EQ(zul::placeAtBottom(field, panel, window, {QRect(350, 500, 50, 28)}).top(), window.top());
    EXPECT_EQ(zul::placeAtBottom(field, panel, window, {window}), low) << "all is as bad";
    const QRect atBottom(350, 590, 50, 28);
    EXPECT_EQ(zul::placeAtBottom(atBottom, panel, window, {window}).top(), window.top())
        << "its own field comes first";
}

TEST(Placement, StandsBetweenWhatItWouldCoverAtTopAndBottom)
{
    const QRect field(350, 20, 50, 28);
    const QRect other(350, 500, 50, 28);
    const QRect placed = zul::placeAtBottom(field, panel, window, {other});
    EXPECT_TRUE(window.contains(placed));
    EXPECT_FALSE(placed.intersects(field));
    EXPECT_FALSE(placed.intersects(other));
}

TEST(Placement, IsMadeLowerRatherThanCoverTheFieldInALowWindow)
{
    const QRect low(5, 5, 630, 470);
    const QSize keyboard(626, 246);
    for (const auto& [field, below] :
         {std::pair{QRect(317, 162, 164, 96), true}, {QRect(10, 240, 500, 96), false}}) {
        const QRect placed = zul::placeAtBottom(field, keyboard, low);
        EXPECT_FALSE(placed.intersects(field)) << field.y();
        EXPECT_TRUE(low.contains(placed)) << field.y();
        EXPECT_LT(placed.height(), keyboard.height());
        EXPECT_GE(placed.height(), keyboard.height() * 3 / 4);
        EXPECT_EQ(placed.y() > field.y(), below);
    }
    // Keys that nobody can hit are of no use.
    EXPECT_EQ(zul::placeAtBottom(QRect(10, 150, 500, 200), keyboard, low).height(), keyboard.height());
}
