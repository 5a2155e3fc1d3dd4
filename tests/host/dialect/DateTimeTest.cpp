#include "host/dialect/base/DateTime.h"

#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

using namespace zul::dialect;

namespace {

std::string normal(std::string_view text)
{
    const auto moment = parseMoment(text);
    return moment ? formatMoment(*moment) : "-";
}

struct Reading
{
    const char* text;
    const char* stored; ///< "-" for what is no date
};

constexpr Reading readings[] = {
    {"20261121", "2026-11-21 00:00:00.000"},
    {"2026-11-21", "2026-11-21 00:00:00.000"},
    {"2026/1/2", "2026-01-02 00:00:00.000"},
    {"20261121 10:20:30.123", "2026-11-21 10:20:30.123"},
    {"2026-11-21T10:20:30", "2026-11-21 10:20:30.000"},
    {"2026-11-21 10:20:30.1234567", "2026-11-21 10:20:30.123"},
    {" 20261121 1:05 pm ", "2026-11-21 13:05:00.000"},
    {"12 AM", "1900-01-01 00:00:00.000"},
    {"10:20", "1900-01-01 10:20:00.000"},
    {"", "1900-01-01 00:00:00.000"},
    {"00010101", "0001-01-01 00:00:00.000"},
    {"99991231 23:59:59.999", "9999-12-31 23:59:59.999"},
    {"20240229", "2024-02-29 00:00:00.000"},
    {"21/11/2026", "-"},
    {"20261131", "-"},
    {"20230229", "-"},
    {"2026-13-01", "-"},
    {"2026-11-21 25:00", "-"},
    {"2026-11-21 10:60", "-"},
    {"x", "-"},
    {"2026", "-"},
    {"202611211", "-"},
    {"2026-11-21x", "-"},
    {"2026-11-21 10", "-"},
    {"00000101", "-"},
    {"2026-11-21 10:20:30.", "-"},
    {"13:00 PM", "-"},
    {"\xFF", "-"},
};

TEST(DateTime, ReadsUnambiguousFormsAndRefusesTheRest)
{
    for (const Reading& reading : readings) {
        EXPECT_EQ(normal(reading.text), reading.stored) << reading.text;
    }
}

TEST(DateTime, NumbersAreDaysSince1900)
{
    EXPECT_EQ(formatMoment(*momentOfNumber(0)), "1900-01-01 00:00:00.000");
    EXPECT_EQ(formatMoment(*momentOfNumber(1.5)), "1900-01-02 12:00:00.000");
    EXPECT_EQ(formatMoment(*momentOfNumber(-0.25)), "1899-12-31 18:00:00.000");
    EXPECT_FALSE(momentOfNumber(1e9));
    EXPECT_FALSE(momentOfNumber(-1e9));
    EXPECT_EQ(numberOfMoment(*parseMoment("19000103 06:00")), 2.25);
}

TEST(DateTime, EveryPartHasItsNames)
{
    const std::pair<std::string_view, std::vector<std::string_view>> parts[] = {
        {"year", {"year", "yy", "YYYY"}},
        {"quarter", {"quarter", "qq", "q"}},
        {"month", {"month", "mm", "m"}},
        {"dayofyear", {"dayofyear", "dy", "y"}},
        {"day", {"day", "dd", "d"}},
        {"week", {"week", "wk", "ww"}},
        {"weekday", {"weekday", "dw", "w"}},
        {"hour", {"hour", "hh"}},
        {"minute", {"minute", "mi", "n"}},
        {"second", {"second", "ss", "s"}},
        {"millisecond", {"millisecond", "ms"}},
    };
    for (const auto& [full, names] : parts) {
        for (const std::string_view name : names) {
            const auto part = datePartNamed(name);
            ASSERT_TRUE(part) << name;
            EXPECT_EQ(nameOf(*part), full) << name;
        }
    }
    EXPECT_FALSE(datePartNamed("century"));
    EXPECT_FALSE(datePartNamed(""));
}

TEST(DateTime, DifferenceIsTheSumsInverse)
{
    const Moment from = *parseMoment("20240229 23:59:59.999");
    for (const char* name :
         {"year", "quarter", "month", "day", "week", "hour", "minute", "second", "millisecond"}) {
        for (const std::int64_t number : {-100, -1, 0, 1, 7, 100}) {
            const DatePart part = *datePartNamed(name);
            const auto sum = dateSum(part, number, from);
            ASSERT_TRUE(sum) << name;
            EXPECT_EQ(dateDifference(part, from, *sum), number) << name << " " << number;
        }
    }
}

TEST(DateTime, OutOfRangeSumsAreNothing)
{
    const Moment last = *parseMoment("99991231 23:59:59.999");
    const Moment first = *parseMoment("00010101");
    EXPECT_FALSE(dateSum(DatePart::Millisecond, 1, last));
    EXPECT_FALSE(dateSum(DatePart::Day, -1, first));
    EXPECT_FALSE(dateSum(DatePart::Month, 1, last));
    EXPECT_FALSE(dateSum(DatePart::Year, INT64_MAX, last));
    EXPECT_FALSE(dateSum(DatePart::Week, INT64_MIN, last));
    EXPECT_EQ(dateDifference(DatePart::Millisecond, first, last), 315537897599999);
}

TEST(DateTime, StylesReadBack)
{
    const Moment moment = *parseMoment("20261121");
    for (const int style :
         {101, 102, 103, 104, 105, 110, 111, 112, 120, 121, 126, 1, 2, 3, 4, 5, 10, 11, 23}) {
        const auto text = momentInStyle(moment, style);
        ASSERT_TRUE(text) << style;
        EXPECT_EQ(parseMomentInStyle(*text, style), moment) << style << " " << *text;
    }
    EXPECT_FALSE(momentInStyle(moment, 999));
    EXPECT_FALSE(parseMomentInStyle("31/02/2026", 103));
    EXPECT_FALSE(parseMomentInStyle("1/2", 103));
    EXPECT_FALSE(parseMomentInStyle("", 103).has_value());
}

} // namespace
