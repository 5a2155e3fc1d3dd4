#include "base/Utf8.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace zul {
namespace {

/// Bytes that are not well-formed, what they become in UTF-16, and where the first of them stands.
struct BrokenText
{
    std::string bytes;
    std::u16string utf16;
    std::size_t firstInvalid;
};

const std::vector<BrokenText> brokenTexts{
    {"a\xFFz", u"a\uFFFDz", 1},
    {"a\x80z", u"a\uFFFDz", 1},
    {"a\xE2\x82", u"a\uFFFD", 1},                        // cut off
    {"à\xE2\x82z", u"à\uFFFDz", 2},                      // cut off by another character
    {"\xC0\x80", u"\uFFFD\uFFFD", 0},                    // overlong
    {"\xC1\xBF", u"\uFFFD\uFFFD", 0},                    // overlong
    {"\xE0\x9F\xBF", u"\uFFFD", 0},                      // overlong
    {"\xF0\x8F\xBF\xBF", u"\uFFFD", 0},                  // overlong
    {"\xED\xA0\x80", u"\uFFFD", 0},                      // half a pair
    {"\xF4\x90\x80\x80", u"\uFFFD", 0},                  // beyond the last character
    {"\xF5\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD", 0} // no such first byte
};

} // namespace

TEST(Utf8Test, GoesToUtf16AndBack)
{
    for (const std::string& text :
         {std::string(), std::string("O'Brien 100% \"x\""), std::string("a à è € 😀 z"),
          std::string("a\0b", 3), std::string(10000, 'x')}) {
        EXPECT_EQ(utf8FromUtf16(utf16FromUtf8(text)), text);
        EXPECT_EQ(utf8FromCharacters(charactersFromUtf8(text)), text);
        EXPECT_EQ(firstInvalidUtf8(text), std::string::npos);
    }
    EXPECT_EQ(utf16FromUtf8("à€😀"), u"à€😀");
    EXPECT_EQ(utf16FromUtf8("😀").size(), 2U);
}

TEST(Utf8Test, EveryCharacterGoesThereAndBack)
{
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        if (c == 0xD800) {
            c = 0xE000;
        }
        std::string text;
        appendUtf8(text, c);
        const Utf8Character read = utf8CharacterAt(text, 0);
        ASSERT_TRUE(read.isWellFormed) << std::hex << static_cast<unsigned>(c);
        ASSERT_EQ(read.value, c);
        ASSERT_EQ(read.bytes, text.size());
        ASSERT_EQ(utf8FromUtf16(utf16FromUtf8(text)), text);
    }
}

TEST(Utf8Test, MarksWhatIsNotWellFormed)
{
    for (const BrokenText& broken : brokenTexts) {
        EXPECT_EQ(utf16FromUtf8(broken.bytes), broken.utf16) << testing::PrintToString(broken.bytes);
        EXPECT_EQ(firstInvalidUtf8(broken.bytes), broken.firstInvalid)
            << testing::PrintToString(broken.bytes);
    }
    const char16_t halves[] = {u'a', char16_t{0xD83D}, u'b', char16_t{0xDE00}};
    EXPECT_EQ(utf8FromUtf16(std::u16string_view(halves, 4)), "a\uFFFDb\uFFFD");
    EXPECT_EQ(utf8FromUtf16(std::u16string_view(halves, 2)), "a\uFFFD") << "half a pair at the end";
}

TEST(Utf8Test, WalksEveryTextByteByByteWhereItIsBroken)
{
    EXPECT_EQ(charactersFromUtf8("aà€😀"), U"aà€😀");
    const std::u32string walked{U'a', 0xFF, U'z', 0xE2, 0x82};
    EXPECT_EQ(charactersFromUtf8("a\xFFz\xE2\x82"), walked);
    const std::u32string surrogate{0xED, 0xA0, 0x80};
    EXPECT_EQ(charactersFromUtf8("\xED\xA0\x80"), surrogate);
}

TEST(Utf8Test, CountsAndCutsCharacters)
{
    EXPECT_EQ(characterCount("aà€😀"), 4U);
    EXPECT_EQ(characterCount("\xe0\x80x"), 3U) << "each byte that is no UTF-8 counts";
    EXPECT_EQ(leftCharacters("aà€😀z", 4), "aà€😀");
    EXPECT_EQ(leftCharacters("aà", 10), "aà");
    EXPECT_EQ(leftCharacters("aà", 0), "");
    EXPECT_EQ(characterSize("a", 1), 0U) << "at the end";
    EXPECT_EQ(characterSize("😀", 0), 4U);
}

} // namespace zul
