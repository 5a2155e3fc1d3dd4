#include "ftp/ListingParser.h"

#include "ftp/FileTime.h"

#include <gtest/gtest.h>
#include <string>

namespace zul::test {
namespace {

using namespace ftp;
using namespace std::chrono;

const sys_seconds Now = sys_days{2024y / 11 / 21} + 3h + 41min;

std::optional<FindRecord> parse(std::string_view line)
{
    return parseListingLine(line, Now);
}

void expectEntry(std::string_view line, std::string_view name, std::uint64_t size, std::uint32_t attributes,
                 sys_seconds time)
{
    const auto record = parse(line);
    ASSERT_TRUE(record) << line;
    EXPECT_EQ(record->name, name) << line;
    EXPECT_EQ(record->size, size) << line;
    EXPECT_EQ(record->attributes, attributes) << line;
    EXPECT_EQ(record->lastWriteTime, toFileTime(time)) << line;
    EXPECT_EQ(record->creationTime, 0U);
    EXPECT_EQ(record->lastAccessTime, 0U);
}

TEST(ListingParserTest, UnixWithATime)
{
    expectEntry("-rw-r--r--    1 0        0               6 Nov 20 04:18 hello.txt", "hello.txt", 6,
                AttributeNormal, sys_days{2024y / 11 / 20} + 4h + 18min);
}

TEST(ListingParserTest, UnixWithAYear)
{
    expectEntry("-rw-r--r--   1 owner group  1234 Feb  3  2019 a", "a", 1234, AttributeNormal,
                sys_days{2019y / 2 / 3});
}

TEST(ListingParserTest, ATimeWithoutAYearIsTheLastSuchDay)
{
    const std::string head = "-rw-r--r-- 1 u g 1 ";
    expectEntry(head + "Nov 21 03:41 a", "a", 1, AttributeNormal, Now);
    expectEntry(head + "Nov 22 03:41 a", "a", 1, AttributeNormal, sys_days{2024y / 11 / 22} + 3h + 41min);
    expectEntry(head + "Nov 22 03:42 a", "a", 1, AttributeNormal, sys_days{2023y / 11 / 22} + 3h + 42min);
    expectEntry(head + "Dec 31 23:59 a", "a", 1, AttributeNormal, sys_days{2023y / 12 / 31} + 23h + 59min);
    expectEntry(head + "Feb 29 00:00 a", "a", 1, AttributeNormal, sys_days{2024y / 2 / 29});
    // Around the turn of the year a server may be a little ahead.
    const auto record = parseListingLine(head + "Jan  1 00:30 a", sys_days{2024y / 12 / 31} + 23h);
    ASSERT_TRUE(record);
    EXPECT_EQ(record->lastWriteTime, toFileTime(sys_days{2025y / 1 / 1} + 30min));
}

TEST(ListingParserTest, Directories)
{
    expectEntry("drwxr-xr-x 2 u g 4096 Nov 20  2023 sub", "sub", 4096, AttributeDirectory,
                sys_days{2023y / 11 / 20});
    expectEntry("drwxr-xr-x 2 u g 4096 Nov 20  2023 .", ".", 4096, AttributeDirectory,
                sys_days{2023y / 11 / 20});
    expectEntry("drwxr-xr-x 2 u g 4096 Nov 20  2023 ..", "..", 4096, AttributeDirectory,
                sys_days{2023y / 11 / 20});
}

TEST(ListingParserTest, AttributesFollowRightsAndNames)
{
    const sys_days day{2023y / 11 / 20};
    expectEntry("-r--r--r-- 1 u g 1 Nov 20  2023 a", "a", 1, AttributeReadOnly, day);
    expectEntry("-r--r--rw- 1 u g 1 Nov 20  2023 a", "a", 1, AttributeNormal, day);
    expectEntry("-rw-r--r-- 1 u g 1 Nov 20  2023 .a", ".a", 1, AttributeHidden, day);
    expectEntry("dr-xr-xr-x 1 u g 1 Nov 20  2023 .a", ".a", 1,
                AttributeDirectory | AttributeHidden | AttributeReadOnly, day);
    expectEntry("-rwsr-Sr-t+ 1 u g 1 Nov 20  2023 a", "a", 1, AttributeNormal, day);
}

TEST(ListingParserTest, SymbolicLinksAreNamedBeforeTheArrow)
{
    const sys_days day{2023y / 11 / 20};
    expectEntry("lrwxrwxrwx 1 u g 7 Nov 20  2023 link -> ../target", "link", 7, AttributeNormal, day);
    expectEntry("lrwxrwxrwx 1 u g 7 Nov 20  2023 link", "link", 7, AttributeNormal, day);
    expectEntry("-rw-rw-rw- 1 u g 7 Nov 20  2023 no -> link", "no -> link", 7, AttributeNormal, day);
    EXPECT_FALSE(parse("lrwxrwxrwx 1 u g 7 Nov 20  2023  -> target"));
}

TEST(ListingParserTest, NamesAreKeptAsTheyAre)
{
    const sys_days day{2023y / 11 / 20};
    for (const std::string name : {"a b  c", " leading", "trailing ", "à è € 😀", "'%\"", "Nov 20 2023 x",
                                   "a\tb", "x/../y", "/abs", "-rw-r--r--"}) {
        expectEntry("-rw-r--r-- 1 u g 7 Nov 20  2023 " + name, name, 7, AttributeNormal, day);
    }
    const std::string longName(10'000, 'n');
    expectEntry("-rw-r--r-- 1 u g 7 Nov 20  2023 " + longName, longName, 7, AttributeNormal, day);
}

TEST(ListingParserTest, SizesBeyond4GiB)
{
    expectEntry("-rw-r--r-- 1 u g 5000000000 Nov 20  2023 a", "a", 5'000'000'000ULL, AttributeNormal,
                sys_days{2023y / 11 / 20});
    expectEntry("-rw-r--r-- 1 u g 18446744073709551615 Nov 20  2023 a", "a", 18'446'744'073'709'551'615ULL,
                AttributeNormal, sys_days{2023y / 11 / 20});
    EXPECT_FALSE(parse("-rw-r--r-- 1 u g 18446744073709551616 Nov 20  2023 a"));
}

TEST(ListingParserTest, OwnersMayHaveBlanksDigitsOrBeMissing)
{
    const sys_days day{2023y / 11 / 20};
    expectEntry("-rw-r--r-- 1 Domain Users 7 Nov 20  2023 a", "a", 7, AttributeNormal, day);
    expectEntry("-rw-r--r-- 1 1000 1000 7 Nov 20  2023 a", "a", 7, AttributeNormal, day);
    expectEntry("-rw-r--r-- 1 owner 7 Nov 20  2023 a", "a", 7, AttributeNormal, day);
    expectEntry("-rw-r--r-- 7 Nov 20  2023 a", "a", 7, AttributeNormal, day);
    expectEntry("crw-rw-rw- 1 root root 1, 3 Nov 20  2023 null", "null", 3, AttributeNormal, day);
}

TEST(ListingParserTest, OtherDatesOfUnix)
{
    expectEntry("-rw-r--r-- 1 u g 7 20 Nov  2023 a", "a", 7, AttributeNormal, sys_days{2023y / 11 / 20});
    expectEntry("-rw-r--r-- 1 u g 7 20 nov 04:05 a", "a", 7, AttributeNormal,
                sys_days{2024y / 11 / 20} + 4h + 5min);
    expectEntry("-rw-r--r-- 1 u g 7 2023-11-20 04:05 a", "a", 7, AttributeNormal,
                sys_days{2023y / 11 / 20} + 4h + 5min);
    expectEntry("-rw-r--r-- 1 u g 7 2023-11-20 04:05:06.123456789 +0100 a", "a", 7, AttributeNormal,
                sys_days{2023y / 11 / 20} + 4h + 5min + 6s);
}

TEST(ListingParserTest, MsDos)
{
    expectEntry("11-20-23  03:41AM                 1234 a b.txt", "a b.txt", 1234, AttributeNormal,
                sys_days{2023y / 11 / 20} + 3h + 41min);
    expectEntry("11-20-23  03:41PM       <DIR>          sub dir", "sub dir", 0, AttributeDirectory,
                sys_days{2023y / 11 / 20} + 15h + 41min);
    expectEntry("11-20-2023  12:00AM  1,234,567 x", "x", 1'234'567, AttributeNormal,
                sys_days{2023y / 11 / 20});
    expectEntry("11-20-99  12:30 PM  7 x", "x", 7, AttributeNormal, sys_days{1999y / 11 / 20} + 12h + 30min);
    expectEntry("2023-11-20  23:59  5000000000 x", "x", 5'000'000'000ULL, AttributeNormal,
                sys_days{2023y / 11 / 20} + 23h + 59min);
    expectEntry("11-20-23  03:41AM  7 .x", ".x", 7, AttributeHidden, sys_days{2023y / 11 / 20} + 3h + 41min);
}

TEST(ListingParserTest, WhatIsNoEntryIsPassedOver)
{
    for (const char* line : {"",
                             " ",
                             "total 12",
                             "total",
                             "hello world",
                             "-rw-r--r--",
                             "-rw-r--r-- 1 u g 7",
                             "-rw-r--r-- 1 u g 7 Nov 20  2023",
                             "-rw-r--r-- 1 u g 7 Nov 20  2023 ",
                             "-rw-r--r-- 1 u g x Nov 20  2023 a",
                             "-rw-r--r-- 1 u g -7 Nov 20  2023 a",
                             "-rw-r--r-- 1 u g 7 Nov 31  2023 a",
                             "-rw-r--r-- 1 u g 7 Feb 29  2023 a",
                             "-rw-r--r-- 1 u g 7 Nov 20 24:00 a",
                             "-rw-r--r-- 1 u g 7 Nov 20 12:60 a",
                             "-rw-r--r-- 1 u g 7 Nov 0 2023 a",
                             "-rw-r--r-- 1 u g 7 Foo 20  2023 a",
                             "zrw-r--r-- 1 u g 7 Nov 20  2023 a",
                             "-rw-r--r 1 u g 7 Nov 20  2023 a",
                             "11-20-23",
                             "11-20-23 03:41AM",
                             "11-20-23 03:41AM 7",
                             "11-20-23 03:41AM 7 ",
                             "13-20-23 03:41AM 7 x",
                             "11-32-23 03:41AM 7 x",
                             "11-20-23 13:41AM 7 x",
                             "11-20-23 00:41PM 7 x",
                             "11-20-23 03:41AM <DIR>",
                             "11-20-23 03:41AM seven x",
                             "11-20-23 AM 7 x",
                             "1-20-23 03:41AM 7 x",
                             "-rw-r--r-- 1 u g 7 Nov 20 0000 a"}) {
        EXPECT_FALSE(parse(line)) << line;
    }
}

TEST(ListingParserTest, ListingsHaveEitherLineEnd)
{
    const auto listing = parseListing("total 2\r\n"
                                      "-rw-r--r-- 1 u g 7 Nov 20  2023 one\r\n"
                                      "-rw-r--r-- 1 u g 7 Nov 20  2023 two\n"
                                      "\n"
                                      "nonsense\n"
                                      "11-20-23 03:41AM 7 three",
                                      Now, 100);
    ASSERT_EQ(listing.entries.size(), 3U);
    EXPECT_EQ(listing.entries[0].name, "one");
    EXPECT_EQ(listing.entries[1].name, "two");
    EXPECT_EQ(listing.entries[2].name, "three");
    EXPECT_FALSE(listing.tooMany);
}

TEST(ListingParserTest, ListingsAreLimited)
{
    std::string text;
    for (int i = 0; i < 3; ++i) {
        text += "-rw-r--r-- 1 u g 7 Nov 20  2023 x\n";
    }
    EXPECT_FALSE(parseListing(text, Now, 3).tooMany);
    const auto cut = parseListing(text, Now, 2);
    EXPECT_TRUE(cut.tooMany);
    EXPECT_EQ(cut.entries.size(), 2U);
    EXPECT_TRUE(parseListing("", Now, 0).entries.empty());
}

} // namespace
} // namespace zul::test
