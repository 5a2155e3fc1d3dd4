#include "host/dialect/base/Like.h"

#include <string>

#include <gtest/gtest.h>

using namespace zul::dialect;

namespace {

TEST(Like, Wildcards)
{
    EXPECT_TRUE(likeMatch("%", ""));
    EXPECT_TRUE(likeMatch("", ""));
    EXPECT_FALSE(likeMatch("", "a"));
    EXPECT_TRUE(likeMatch("a%c", "abbbc"));
    EXPECT_TRUE(likeMatch("%b%b%", "abab"));
    EXPECT_FALSE(likeMatch("a_c", "ac"));
    EXPECT_TRUE(likeMatch("a_c", "a€c"));
    EXPECT_TRUE(likeMatch("_", "😀"));
    EXPECT_TRUE(likeMatch("%%a%%", "a"));
    EXPECT_FALSE(likeMatch("%a", "ab"));
}

TEST(Like, LettersInAnyCaseAccentsCount)
{
    EXPECT_TRUE(likeMatch("FORLÌ", "forlì"));
    EXPECT_FALSE(likeMatch("forli", "forlì"));
    EXPECT_TRUE(likeMatch("%À%", "città"));
    EXPECT_TRUE(likeMatch("ЖУК", "жук"));
    EXPECT_TRUE(likeMatch("ŠÉF", "šéf"));
}

TEST(Like, Sets)
{
    EXPECT_TRUE(likeMatch("[abc]", "B"));
    EXPECT_TRUE(likeMatch("[a-c]%", "Cx"));
    EXPECT_FALSE(likeMatch("[^a-c]", "b"));
    EXPECT_TRUE(likeMatch("[^a-c]", "d"));
    EXPECT_FALSE(likeMatch("[^a-c]", ""));
    EXPECT_TRUE(likeMatch("5[%]", "5%"));
    EXPECT_FALSE(likeMatch("5[%]", "5x"));
    EXPECT_TRUE(likeMatch("[_]n", "_n"));
    EXPECT_TRUE(likeMatch("[[]", "["));
    EXPECT_TRUE(likeMatch("]", "]"));
    EXPECT_TRUE(likeMatch("[a-]", "-"));
    EXPECT_TRUE(likeMatch("[à-ü]", "è"));
    EXPECT_FALSE(likeMatch("[a", "[a"));
    EXPECT_FALSE(likeMatch("[]", ""));
    EXPECT_TRUE(likeMatch("[0-9][0-9]%", "12x"));
}

TEST(Like, Escape)
{
    EXPECT_TRUE(likeMatch("50!%", "50%", U'!'));
    EXPECT_FALSE(likeMatch("50!%", "500", U'!'));
    EXPECT_TRUE(likeMatch("a!_b", "a_b", U'!'));
    EXPECT_TRUE(likeMatch("![a]", "[a]", U'!'));
    EXPECT_TRUE(likeMatch("!!", "!", U'!'));
    EXPECT_FALSE(likeMatch("a!", "a!", U'!'));
    EXPECT_TRUE(likeMatch("[!]a]", "]", U'!'));
    EXPECT_TRUE(likeMatch("€%%", "%x", U'€'));
}

TEST(Like, ManyPercentsAreNotSlow)
{
    std::string pattern;
    for (int i = 0; i < 1000; ++i) {
        pattern += "%a";
    }
    EXPECT_FALSE(likeMatch(pattern + "b", std::string(10000, 'a')));
    EXPECT_TRUE(likeMatch(pattern + "%", std::string(10000, 'a')));
}

TEST(Like, BrokenTextDoesNoHarm)
{
    EXPECT_TRUE(likeMatch("_", "\xFF"));
    EXPECT_FALSE(likeMatch("\xC3", "a"));
    EXPECT_TRUE(likeMatch("%", std::string_view("a\0b", 3)));
}

TEST(PatternIndex, Places)
{
    EXPECT_EQ(patternIndex("%b%", "abc"), 2U);
    EXPECT_EQ(patternIndex("%c", "abcc"), 4U);
    EXPECT_EQ(patternIndex("a%", "abc"), 1U);
    EXPECT_EQ(patternIndex("b", "abc"), 0U);
    EXPECT_EQ(patternIndex("%€%", "à€"), 2U);
    EXPECT_EQ(patternIndex("%x%", ""), 0U);
    EXPECT_EQ(patternIndex("%", "abc"), 1U);
}

} // namespace
