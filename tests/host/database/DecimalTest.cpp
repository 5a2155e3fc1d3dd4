#include "host/database/Decimal.h"

#include <gtest/gtest.h>

using namespace zul::host;

TEST(Decimal, GoesThereAndBack)
{
    for (const char* text : {"0", "1", "-1", "12.50", "-0.01", "79228162514264337593543950335",
                             "0.0000000000000000000000000001", "123456789012345678901234.5678"}) {
        const auto decimal = decimalFromText(text);
        ASSERT_TRUE(decimal) << text;
        EXPECT_EQ(decimalToText(*decimal), text);
    }
}

TEST(Decimal, DropsFractionDigitsThatDoNotFit)
{
    const auto decimal = decimalFromText("1.00000000000000000000000000019999");
    ASSERT_TRUE(decimal);
    EXPECT_EQ(decimalToText(*decimal), "1.0000000000000000000000000001");
}

TEST(Decimal, RefusesWhatDoesNotFitOrIsNoNumber)
{
    for (const char* text : {"79228162514264337593543950336", "", "-", ".", "1e5", "1,5", "1.2.3", "NaN"}) {
        EXPECT_FALSE(decimalFromText(text)) << text;
    }
}

TEST(Decimal, WritesADoubleWithoutExponent)
{
    EXPECT_EQ(decimalText(214.57), "214.57");
    EXPECT_EQ(decimalText(1e20), "100000000000000000000");
    EXPECT_EQ(decimalText(-0.001), "-0.001");
    EXPECT_DOUBLE_EQ(decimalToDouble("+12.5"), 12.5);
}
