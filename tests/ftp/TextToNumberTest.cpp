#include "ftp/TextToNumber.h"

#include "ftp/FtpErrors.h"

#include <gtest/gtest.h>

namespace zul::test {
namespace {

using namespace ftp;

const NumberFormat Plain;
const NumberFormat Italian{",", "."};

/// The number, or 100000 plus the number of the error.
int convert(std::string_view text, const NumberFormat& format = Plain)
{
    try {
        return textToInt16(text, format);
    } catch (const RunTimeError& error) {
        return 100'000 + error.number;
    }
}

constexpr int TypeMismatched = 100'013;
constexpr int Overflowed = 100'006;

TEST(TextToNumberTest, Numbers)
{
    EXPECT_EQ(convert("21"), 21);
    EXPECT_EQ(convert("  21\t"), 21);
    EXPECT_EQ(convert("+21"), 21);
    EXPECT_EQ(convert("-21"), -21);
    EXPECT_EQ(convert("- 21"), -21);
    EXPECT_EQ(convert("00021"), 21);
    EXPECT_EQ(convert("0"), 0);
    EXPECT_EQ(convert("32767"), 32767);
    EXPECT_EQ(convert("-32768"), -32768);
}

TEST(TextToNumberTest, FractionsAreRoundedHalfToEven)
{
    EXPECT_EQ(convert("20.5"), 20);
    EXPECT_EQ(convert("21.5"), 22);
    EXPECT_EQ(convert("-21.5"), -22);
    EXPECT_EQ(convert("-20.5"), -20);
    EXPECT_EQ(convert("20.51"), 21);
    EXPECT_EQ(convert(".5"), 0);
    EXPECT_EQ(convert("1.5"), 2);
    EXPECT_EQ(convert("21."), 21);
    EXPECT_EQ(convert("32767.49"), 32767);
}

TEST(TextToNumberTest, WhatDoesNotFitOverflows)
{
    EXPECT_EQ(convert("32768"), Overflowed);
    EXPECT_EQ(convert("32767.5"), Overflowed);
    EXPECT_EQ(convert("-32769"), Overflowed);
    EXPECT_EQ(convert("-32768.5"), -32768);
    EXPECT_EQ(convert("70000"), Overflowed);
    EXPECT_EQ(convert("1e400"), Overflowed);
    EXPECT_EQ(convert("1e99999999999999999999"), Overflowed);
    EXPECT_EQ(convert("1" + std::string(400, '0') + "e-5"), Overflowed) << "large for all its exponent";
    EXPECT_EQ(convert("100.0e9223372036854775807"), Overflowed) << "the largest exponent that is read";
    EXPECT_EQ(convert("0.001e-9223372036854775808"), 0) << "and the smallest";
    EXPECT_EQ(convert(std::string(10'000, '9')), Overflowed);
    EXPECT_EQ(convert("&H10000"), Overflowed);
    EXPECT_EQ(convert("&HFFFFFFFFFFFFFFFFFF"), Overflowed);
}

TEST(TextToNumberTest, WhatIsNoNumberMismatches)
{
    for (const char* text : {"",   " ",   "abc",  "21x",   "x21",        "2 1", "--1", "+",    "-",
                             ".",  ",",   "1..2", "1.2.3", "e5",         "1e",  "1e+", "1e5x", "&",
                             "&H", "&HG", "&X1",  "à",     "21\xc2\xa0", "inf", "nan", "0x10", "1'000"}) {
        EXPECT_EQ(convert(text), TypeMismatched) << text;
    }
    EXPECT_EQ(convert(std::string_view("21\0", 3)), TypeMismatched);
}

TEST(TextToNumberTest, ExponentsAndOtherBases)
{
    EXPECT_EQ(convert("2.1e1"), 21);
    EXPECT_EQ(convert("2D3"), 2000);
    EXPECT_EQ(convert("2100E-2"), 21);
    EXPECT_EQ(convert("1e-400"), 0);
    EXPECT_EQ(convert("1e-99999999999999999999"), 0);
    EXPECT_EQ(convert("0." + std::string(400, '0') + "1"), 0) << "small without an exponent";
    EXPECT_EQ(convert("0." + std::string(400, '0') + "1e5"), 0);
    EXPECT_EQ(convert("&H15"), 21);
    EXPECT_EQ(convert("&hffff"), -1);
    EXPECT_EQ(convert("&o25"), 21);
}

TEST(TextToNumberTest, TheSeparatorsAreTheLocales)
{
    EXPECT_EQ(convert("20,6", Italian), 21);
    EXPECT_EQ(convert("2.121", Italian), 2121);
    EXPECT_EQ(convert("2.1,5", Italian), 22);
    EXPECT_EQ(convert("20,6"), TypeMismatched);
    EXPECT_EQ(convert("1,2.3", Italian), TypeMismatched);
}

} // namespace
} // namespace zul::test
