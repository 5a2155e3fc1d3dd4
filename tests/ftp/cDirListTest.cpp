#include "ftp/cDirList.h"

#include "ftp/FtpErrors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zul::test {
namespace {

using ::testing::ElementsAre;

std::string name(int number)
{
    return std::string("f").append(std::to_string(number));
}

cDirList listOf(int count)
{
    cDirList list;
    for (int i = 1; i <= count; ++i) {
        list.Add(0x80, 0, 0, 0, i, name(i));
    }
    return list;
}

std::vector<std::string> names(const cDirList& list)
{
    std::vector<std::string> result;
    for (const auto& item : list) {
        result.push_back(item->Filename);
    }
    return result;
}

template <typename Action>
int thrownBy(Action action)
{
    try {
        action();
    } catch (const ftp::RunTimeError& error) {
        return error.number;
    }
    return 0;
}

std::string flags(const cDirItem& item)
{
    std::string text;
    text += item.ReadOnly ? 'R' : '-';
    text += item.Hidden ? 'H' : '-';
    text += item.System ? 'S' : '-';
    text += item.Directory ? 'D' : '-';
    text += item.Archive ? 'A' : '-';
    text += item.Normal ? 'N' : '-';
    text += item.Temporary ? 'T' : '-';
    text += item.Compressed ? 'C' : '-';
    text += item.Offline ? 'O' : '-';
    return text;
}

TEST(cDirListTest, AddKeepsAllFields)
{
    cDirList list;
    const auto item = list.Add(0x10, 1.5, 2.5, 3.5, -7, "à 'x' €😀");
    EXPECT_EQ(item->CreationTime, 1.5);
    EXPECT_EQ(item->LastAccessTime, 2.5);
    EXPECT_EQ(item->LastWriteTime, 3.5);
    EXPECT_EQ(item->FileSize, -7);
    EXPECT_EQ(item->Filename, "à 'x' €😀");
    EXPECT_EQ(list.Item(1), item);
    EXPECT_EQ(list.Count(), 1);
}

TEST(cDirListTest, AttributesOf0x21AreReadOnlyAndArchive)
{
    cDirList list;
    EXPECT_EQ(flags(*list.Add(0x21, 0, 0, 0, 0, "a")), "R---A----");
}

TEST(cDirListTest, EveryFlagIsItsBitAndNoOther)
{
    cDirList list;
    const std::pair<std::int32_t, const char*> bits[] = {
        {0x1, "R--------"},    {0x2, "-H-------"},    {0x4, "--S------"},   {0x10, "---D-----"},
        {0x20, "----A----"},   {0x80, "-----N---"},   {0x100, "------T--"}, {0x800, "-------C-"},
        {0x1000, "--------O"}, {0x8, "---------"},    {0x40, "---------"},  {0x200, "---------"},
        {0x400, "---------"},  {0x2000, "---------"}, {0, "---------"},     {-1, "RHSDANTCO"},
    };
    for (const auto& [bit, expected] : bits) {
        EXPECT_EQ(flags(*list.Add(bit, 0, 0, 0, 0, name(bit))), expected) << bit;
    }
}

TEST(cDirListTest, ANameAlreadyPresentFailsAndLeavesTheListUnchanged)
{
    cDirList list;
    list.Add(0x80, 0, 0, 0, 1, "Perché.txt");
    EXPECT_EQ(thrownBy([&] { list.Add(0x80, 0, 0, 0, 2, "Perché.txt"); }), 457);
    EXPECT_EQ(thrownBy([&] { list.Add(0x80, 0, 0, 0, 2, "PERCHÉ.TXT"); }), 457) << "case makes no other key";
    EXPECT_EQ(list.Count(), 1);
    EXPECT_EQ(list.Item("perché.txt")->FileSize, 1);
    list.Add(0x80, 0, 0, 0, 2, "Perche.txt");
    EXPECT_EQ(list.Count(), 2);
}

TEST(cDirListTest, ItemsAreFoundByPositionFrom1AndByNameInAnyCase)
{
    const cDirList list = listOf(3);
    EXPECT_EQ(list.Item(1)->Filename, "f1");
    EXPECT_EQ(list.Item(3)->Filename, "f3");
    EXPECT_EQ(list.Item("f2")->FileSize, 2);
    EXPECT_EQ(list.Item("F2")->FileSize, 2);
}

TEST(cDirListTest, APositionThatIsNotThereIsOutOfRange)
{
    const cDirList list = listOf(3);
    EXPECT_EQ(thrownBy([&] { (void)list.Item(0); }), 9);
    EXPECT_EQ(thrownBy([&] { (void)list.Item(4); }), 9);
    EXPECT_EQ(thrownBy([&] { (void)list.Item(-1); }), 9);
    EXPECT_EQ(thrownBy([&] { (void)cDirList().Item(1); }), 9);
}

TEST(cDirListTest, AnUnknownNameIsAnInvalidArgument)
{
    const cDirList list = listOf(3);
    EXPECT_EQ(thrownBy([&] { (void)list.Item("f4"); }), 5);
    EXPECT_EQ(thrownBy([&] { (void)list.Item(""); }), 5);
    EXPECT_EQ(thrownBy([&] { (void)list.Item("1"); }), 5) << "a text is a key, not a position";
}

TEST(cDirListTest, IterationFollowsTheOrderOfAddition)
{
    cDirList list;
    EXPECT_TRUE(list.begin() == list.end());
    for (const char* added : {"z", "a", "m"}) {
        list.Add(0, 0, 0, 0, 0, added);
    }
    EXPECT_THAT(names(list), ElementsAre("z", "a", "m"));
    EXPECT_EQ((*list.NewEnum())->Filename, "z");
}

TEST(cDirListTest, ClearDoesNotEmptyTheList)
{
    cDirList none;
    none.Clear();
    EXPECT_EQ(none.Count(), 0);
    cDirList one = listOf(1);
    one.Clear();
    EXPECT_THAT(names(one), ElementsAre("f1"));
    cDirList two = listOf(2);
    two.Clear();
    EXPECT_THAT(names(two), ElementsAre("f2"));
    cDirList three = listOf(3);
    three.Clear();
    EXPECT_THAT(names(three), ElementsAre("f2"));
}

TEST(cDirListTest, ClearOnFourEntriesFailsAtTheThirdRemovalAndLeavesTwo)
{
    cDirList list = listOf(4);
    EXPECT_EQ(thrownBy([&] { list.Clear(); }), 9);
    EXPECT_THAT(names(list), ElementsAre("f2", "f4"));
}

TEST(cDirListTest, ClearOnFiveEntriesFailsAtTheFourthRemovalAndLeavesTwo)
{
    cDirList list = listOf(5);
    EXPECT_EQ(thrownBy([&] { list.Clear(); }), 9);
    EXPECT_THAT(names(list), ElementsAre("f2", "f4"));
}

TEST(cDirListTest, ARemovedNameIsFreeAgain)
{
    cDirList list = listOf(2);
    const auto removed = list.Item(1);
    list.Clear();
    EXPECT_EQ(removed->Filename, "f1") << "an item outlives its place in the list";
    EXPECT_EQ(thrownBy([&] { (void)list.Item("f1"); }), 5);
    list.Add(0, 0, 0, 0, 9, "F1");
    EXPECT_EQ(list.Item("f1")->FileSize, 9);
}

TEST(cDirListTest, KeysFoldLettersOfManyAlphabets)
{
    for (const auto& [name, key] : {std::pair("PERCHÉ.TXT", "perché.txt"), std::pair("Ελλάδα", "ελλάδα"),
                                    std::pair("ЖУРНАЛ Ё", "журнал ё"), std::pair("ȘTEFAN", "ștefan")}) {
        cDirList list;
        list.Add(0, 0, 0, 0, 1, name);
        EXPECT_EQ(list.Item(key)->Filename, name);
    }
}

} // namespace
} // namespace zul::test
