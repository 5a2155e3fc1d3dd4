#include "ftp/NamePattern.h"

#include <gtest/gtest.h>
#include <string>

namespace zul::test {
namespace {

using namespace ftp;

TEST(NamePatternTest, PlainNamesMatchThemselves)
{
    EXPECT_TRUE(matchesPattern("export.txt", "export.txt"));
    EXPECT_FALSE(matchesPattern("export.txt", "EXPORT.TXT"));
    EXPECT_FALSE(matchesPattern("export.txt", "export.tx"));
    EXPECT_FALSE(matchesPattern("export.tx", "export.txt"));
    EXPECT_TRUE(matchesPattern("", ""));
}

TEST(NamePatternTest, AStarIsAnyCharactersOrNone)
{
    EXPECT_TRUE(matchesPattern("", "*"));
    EXPECT_TRUE(matchesPattern("anything", "*"));
    EXPECT_TRUE(matchesPattern("a.txt", "*.txt"));
    EXPECT_TRUE(matchesPattern(".txt", "*.txt"));
    EXPECT_FALSE(matchesPattern("a.txt.bak", "*.txt"));
    EXPECT_TRUE(matchesPattern("a.txt.txt", "*.txt"));
    EXPECT_TRUE(matchesPattern("abcabd", "*ab?"));
    EXPECT_TRUE(matchesPattern("abc", "a**c"));
    EXPECT_FALSE(matchesPattern("abc", "a*b"));
}

TEST(NamePatternTest, AQuestionMarkIsOneCharacter)
{
    EXPECT_TRUE(matchesPattern("è", "?"));
    EXPECT_TRUE(matchesPattern("😀.txt", "?.txt"));
    EXPECT_FALSE(matchesPattern("", "?"));
    EXPECT_FALSE(matchesPattern("ab", "?"));
    EXPECT_TRUE(matchesPattern("\xff", "?"));
}

TEST(NamePatternTest, OtherSignsAreThemselves)
{
    EXPECT_TRUE(matchesPattern("[a]'%\"", "[a]'%\""));
    EXPECT_FALSE(matchesPattern("a", "[a]"));
    EXPECT_TRUE(hasWildcards("a*"));
    EXPECT_TRUE(hasWildcards("?"));
    EXPECT_FALSE(hasWildcards("a[b]"));
}

TEST(NamePatternTest, ManyStarsOnALongNameEnd)
{
    std::string stars;
    for (int i = 0; i < 50; ++i) {
        stars += "*a";
    }
    EXPECT_FALSE(matchesPattern(std::string(10'000, 'a') + "b", stars));
    EXPECT_TRUE(matchesPattern(std::string(10'000, 'a'), stars));
}

} // namespace
} // namespace zul::test
