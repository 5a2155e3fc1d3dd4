#include "grid/TextPool.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace zul;

namespace {

TextPool::Id intern(TextPool& pool, const std::string& text)
{
    return pool.intern(text.data(), text.size());
}

/// Texts of many kinds, each its own.
std::string distinctText(int number)
{
    switch (number % 5) {
    case 0:
        return "cliente" + std::to_string(number) + "@example.com";
    case 1:
        return "D'Angelò \"" + std::to_string(number) + "\" 100%";
    case 2:
        return std::to_string(number) + " € 😀";
    case 3:
        return std::string(static_cast<size_t>(number % 300), 'x') + std::to_string(number);
    default:
        return std::string("zero\0in the middle ", 19) + std::to_string(number);
    }
}

} // namespace

TEST(TextPool, GivesEqualTextsOneId)
{
    TextPool pool;
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 1000; ++i) {
            EXPECT_EQ(intern(pool, distinctText(i)), static_cast<TextPool::Id>(i));
        }
    }
    EXPECT_EQ(pool.size(), 1000U);
}

TEST(TextPool, TextsThatHardlyRepeatAreReadBackAsTheyWere)
{
    constexpr int count = 120000;
    TextPool pool;
    std::vector<TextPool::Id> ids;
    ids.reserve(count);
    for (int i = 0; i < count; ++i) {
        ids.push_back(intern(pool, i % 100 == 99 ? distinctText(i / 2) : distinctText(i)));
    }
    pool.dropIndex();
    for (int i = 0; i < 100; ++i) {
        ids.push_back(intern(pool, distinctText(count + i)));
    }
    for (int i = 0; i < count + 100; ++i) {
        const std::string text = i < count && i % 100 == 99 ? distinctText(i / 2) : distinctText(i);
        ASSERT_EQ(pool.text(ids[static_cast<size_t>(i)]), text);
    }
    EXPECT_GT(pool.size(), static_cast<size_t>(count) * 9 / 10);
}

TEST(TextPool, NoticesWhenTextsBeginToRepeat)
{
    // As a list has it that goes through its texts in turn: none repeats for long, and then each does.
    constexpr int distinct = 60000;
    TextPool pool;
    for (int round = 0; round < 10; ++round) {
        for (int i = 0; i < distinct; ++i) {
            ASSERT_EQ(pool.text(intern(pool, distinctText(i))), distinctText(i));
        }
    }
    EXPECT_LT(pool.size(), distinct * 2U) << "most of the repeated texts are kept once";
}

TEST(TextPool, KeepsTheEmptyTextOnceWhateverElseComes)
{
    TextPool pool;
    const TextPool::Id empty = pool.intern(nullptr, 0);
    for (int i = 0; i < 80000; ++i) {
        intern(pool, distinctText(i + 5));
        if (i % 1000 == 0) {
            ASSERT_EQ(pool.intern("", 0), empty);
        }
    }
    pool.dropIndex();
    EXPECT_EQ(pool.intern("", 0), empty);
    EXPECT_EQ(pool.text(empty), "");
}

TEST(TextPool, NeedsLittleIndexWhereTextsHardlyRepeat)
{
    TextPool pool;
    size_t texts = 0;
    constexpr size_t count = 200000;
    for (size_t i = 0; i < count; ++i) {
        const std::string text = "cliente" + std::to_string(i) + "@example.com";
        texts += text.size() + 1;
        intern(pool, text);
    }
    EXPECT_LT(pool.bytes(), texts + count * 4 + count) << "a text, its offset and less than a byte of index";
}
