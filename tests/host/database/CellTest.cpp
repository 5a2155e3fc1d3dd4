#include "host/database/Cell.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

using namespace zul::host;

namespace {

ZulCell textCell(const char* text)
{
    return {CellText, static_cast<LONG>(std::strlen(text)), 0, 0,
            reinterpret_cast<const unsigned char*>(text)};
}

} // namespace

TEST(Cell, IsAWholeNumberHoweverItCame)
{
    EXPECT_EQ(cellNumber({CellInteger, 0, -7, 0, nullptr}), -7);
    EXPECT_EQ(cellNumber({CellBoolean, 0, 1, 0, nullptr}), 1);
    EXPECT_EQ(cellNumber({CellReal, 0, 0, 12.9, nullptr}), 12) << "a fraction is cut";
    EXPECT_EQ(cellNumber(textCell("-42")), -42);
    EXPECT_EQ(cellNumber(textCell("due")), 0);
    EXPECT_EQ(cellNumber({CellNull, 0, 9, 9, nullptr}), 0);
}

TEST(Cell, BeyondSixtyFourBitsIsNoNumber)
{
    for (const double beyond : {1e300, -1e300, 9'223'372'036'854'775'808.0, std::nan(""),
                                std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(cellNumber({CellReal, 0, 0, beyond, nullptr}), 0) << beyond;
    }
    EXPECT_EQ(cellNumber({CellReal, 0, 0, 9e18, nullptr}), 9'000'000'000'000'000'000);
    EXPECT_EQ(cellNumber(textCell("99999999999999999999")), 0);
}
