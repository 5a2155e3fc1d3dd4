#include <gtest/gtest.h>

#include "automation/Text.h"

using zul::equalNames;
using zul::utf16FromUtf8;
using zul::utf8FromUtf16;

TEST(Text, GoesToUtf16AndBack)
{
    const std::string tenThousand(10000, 'x');
    for (const std::string& text : {std::string(), std::string("O'Brien 100% \"x\""), std::string("à è € 😀"),
                                    std::string("a\0b", 3), tenThousand}) {
        EXPECT_EQ(utf8FromUtf16(utf16FromUtf8(text)), text);
    }
    EXPECT_EQ(utf16FromUtf8("à€😀"), u"à€😀");
    EXPECT_EQ(utf16FromUtf8("😀").size(), 2u);
}

TEST(Text, MarksWhatIsNotWellFormed)
{
    EXPECT_EQ(utf16FromUtf8("a\xFFz"), u"a\uFFFDz");
    EXPECT_EQ(utf16FromUtf8("a\xE2\x82"), u"a\uFFFD") << "cut off";
    EXPECT_EQ(utf16FromUtf8("\xC0\x80"), u"\uFFFD\uFFFD") << "overlong";
    EXPECT_EQ(utf16FromUtf8("\xED\xA0\x80"), u"\uFFFD") << "half a pair";
    EXPECT_EQ(utf16FromUtf8("\xF4\x90\x80\x80"), u"\uFFFD") << "beyond the last character";
    const char16_t halves[] = {u'a', char16_t{0xD83D}, u'b', char16_t{0xDE00}};
    EXPECT_EQ(utf8FromUtf16(std::u16string_view(halves, 4)), "a\uFFFDb\uFFFD");
}

TEST(Text, NamesAreEqualInAnyCase)
{
    EXPECT_TRUE(equalNames(u"ShowForm", u"SHOWFORM"));
    EXPECT_TRUE(equalNames(u"Città", u"CITTÀ"));
    EXPECT_TRUE(equalNames(u"", u""));
    EXPECT_FALSE(equalNames(u"ShowForm", u"ShowForms"));
    EXPECT_FALSE(equalNames(u"[", u"{"));
    EXPECT_FALSE(equalNames(u"×", u"÷")) << "signs, not letters";
}
