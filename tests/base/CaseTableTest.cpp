// Our table of letters beside the one of Qt, which comes from Unicode.
#include "base/CaseFold.h"
#include "base/Utf8.h"

#include <QChar>

#include <gtest/gtest.h>

#include <utility>

namespace zul {

TEST(CaseTableTest, HasThePairsOfUnicode)
{
    // Greek without its archaic and Coptic letters, Latin without those of phonetic alphabets.
    constexpr std::pair<char32_t, char32_t> alphabets[]{{0, 0x17F},     {0x1CD, 0x1DC},  {0x1DE, 0x1EF},
                                                        {0x1F8, 0x21F}, {0x222, 0x233},  {0x386, 0x3CE},
                                                        {0x400, 0x52F}, {0x1E00, 0x1EFF}};
    for (const auto& [first, last] : alphabets) {
        for (char32_t c = first; c <= last; ++c) {
            const char32_t lower = QChar::toLower(c);
            EXPECT_EQ(lowerCharacter(c), QChar::toUpper(lower) == c ? lower : c)
                << std::hex << static_cast<unsigned>(c);
            const char32_t upper = QChar::toUpper(c);
            EXPECT_EQ(upperCharacter(c), QChar::toLower(upper) == c ? upper : c)
                << std::hex << static_cast<unsigned>(c);
        }
    }
}

TEST(CaseTableTest, HasNoOtherPairs)
{
    for (char32_t c = 0; c < 0x11000; ++c) {
        if (const char32_t lower = lowerCharacter(c); lower != c) {
            EXPECT_EQ(lower, QChar::toLower(c)) << std::hex << static_cast<unsigned>(c);
        }
        if (const char32_t upper = upperCharacter(c); upper != c) {
            EXPECT_EQ(upper, QChar::toUpper(c)) << std::hex << static_cast<unsigned>(c);
        }
    }
}

TEST(CaseTableTest, BothFormsTakeTheSameBytesUpToTwo)
{
    const auto bytes = [](char32_t c) {
        std::string text;
        appendUtf8(text, c);
        return text.size();
    };
    for (char32_t c = 0; c < 0x800; ++c) {
        EXPECT_EQ(bytes(c), bytes(lowerCharacter(c))) << std::hex << static_cast<unsigned>(c);
    }
}

} // namespace zul
