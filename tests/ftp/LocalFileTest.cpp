#include "ftp/LocalFile.h"

#include "tests/ftp/TempFolder.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>

namespace zul::test {
namespace {

using namespace ftp;

TEST(LocalFileTest, ReadsUntilTheEnd)
{
    const TempFolder folder;
    folder.write("a", "12345");
    LocalFile file;
    ASSERT_EQ(file.open(folder.file("a")), LocalError::None);
    std::uint64_t size = 0;
    EXPECT_EQ(file.size(size), LocalError::None);
    EXPECT_EQ(size, 5U);
    std::array<char, 4> buffer{};
    std::size_t got = 0;
    EXPECT_EQ(file.read(buffer.data(), buffer.size(), got), LocalError::None);
    EXPECT_EQ(got, 4U);
    EXPECT_EQ(file.read(buffer.data(), buffer.size(), got), LocalError::None);
    EXPECT_EQ(got, 1U);
    EXPECT_EQ(file.read(buffer.data(), buffer.size(), got), LocalError::None);
    EXPECT_EQ(got, 0U);
}

TEST(LocalFileTest, FailuresAreToldApart)
{
    const TempFolder folder;
    folder.write("a", "x");
    LocalFile file;
    EXPECT_EQ(file.open(folder.file("none")), LocalError::NoFile);
    EXPECT_EQ(file.open(folder.file("no/such")), LocalError::NoFolder);
    EXPECT_EQ(file.open(folder.file("a/b")), LocalError::NoFolder);
    EXPECT_EQ(file.open(folder.path().string()), LocalError::Denied);
    EXPECT_EQ(file.open(""), LocalError::NoFolder);
    EXPECT_NE(file.open(std::string(10'000, 'n')), LocalError::None);
    EXPECT_EQ(file.open(folder.file("a") + std::string(1, '\0')), LocalError::NoFolder);
    EXPECT_FALSE(file.isOpen());
}

TEST(LocalReplacementTest, BackslashesAndAccentsInPaths)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder.path("à 'b'"));
    LocalReplacement file;
    ASSERT_EQ(file.open(folder.path().string() + "\\à 'b'\\€😀%.txt"), LocalError::None);
    EXPECT_EQ(file.write("x"), LocalError::None);
    EXPECT_EQ(file.commit(), LocalError::None);
    EXPECT_EQ(folder.read("à 'b'/€😀%.txt"), "x");
}

TEST(LocalReplacementTest, ProbingTouchesNothing)
{
    const TempFolder folder;
    folder.write("a", "x");
    EXPECT_EQ(LocalReplacement::probe(folder.file("a")), LocalError::None);
    EXPECT_EQ(LocalReplacement::probe(folder.file("new")), LocalError::None);
    EXPECT_EQ(LocalReplacement::probe(folder.file("no/such")), LocalError::NoFolder);
    EXPECT_EQ(LocalReplacement::probe(folder.file("a/b")), LocalError::NoFolder);
    EXPECT_EQ(LocalReplacement::probe(folder.path().string()), LocalError::Denied);
    EXPECT_EQ(LocalReplacement::probe(""), LocalError::NoFolder);
    EXPECT_EQ(folder.read("a"), "x");
    EXPECT_EQ(folder.names(), std::set<std::string>{"a"});
    EXPECT_TRUE(LocalFile::exists(folder.file("a")));
    EXPECT_FALSE(LocalFile::exists(folder.file("new")));
}

TEST(LocalReplacementTest, TheEarlierFileStaysUntilTheNewOneIsWhole)
{
    const TempFolder folder;
    folder.write("a", "earlier");
    for (const char* name : {"a", "new"}) {
        LocalReplacement file;
        ASSERT_EQ(file.open(folder.file(name)), LocalError::None);
        EXPECT_EQ(file.write("half, "), LocalError::None);
        EXPECT_EQ(folder.read("a"), "earlier");
        EXPECT_FALSE(LocalFile::exists(folder.file("new")));
        EXPECT_EQ(file.write("whole"), LocalError::None);
        EXPECT_EQ(file.commit(), LocalError::None);
        EXPECT_EQ(folder.read(name), "half, whole");
        folder.write("a", "earlier");
    }
    EXPECT_EQ(folder.names(), (std::set<std::string>{"a", "new"}));
}

TEST(LocalReplacementTest, WithoutACommitNothingStaysBehind)
{
    const TempFolder folder;
    folder.write("a", "earlier");
    for (const char* name : {"a", "new"}) {
        LocalReplacement file;
        ASSERT_EQ(file.open(folder.file(name)), LocalError::None);
        EXPECT_EQ(file.write("half"), LocalError::None);
    }
    EXPECT_EQ(folder.read("a"), "earlier");
    EXPECT_EQ(folder.names(), std::set<std::string>{"a"});
}

TEST(LocalReplacementTest, TakesAwayWhatAKilledProgramLeftLongAgo)
{
    const TempFolder folder;
    const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(2);
    for (const char* name : {".zul-left", "zul-mine", ".zul"}) {
        folder.write(name, "x");
        std::filesystem::last_write_time(folder.path() / name, old);
    }
    std::filesystem::create_directory(folder.path() / ".zul-folder");
    std::error_code notEverySystemAgesFolders;
    std::filesystem::last_write_time(folder.path() / ".zul-folder", old, notEverySystemAgesFolders);
    folder.write(".zul-new", "x");
    LocalReplacement file;
    ASSERT_EQ(file.open(folder.file("a")), LocalError::None);
    ASSERT_EQ(file.commit(), LocalError::None);
    EXPECT_EQ(folder.names(), (std::set<std::string>{".zul", ".zul-folder", ".zul-new", "a", "zul-mine"}))
        << "somebody may be at a new one";
}

TEST(LocalReplacementTest, TheTailOfALongerFileCanBeKept)
{
    const TempFolder folder;
    for (const std::size_t earlier : {0U, 4U, 5U, 5000U, 20'000U}) {
        folder.write("a", std::string(earlier, 'e'));
        LocalReplacement file;
        ASSERT_EQ(file.open(folder.file("a")), LocalError::None);
        EXPECT_EQ(file.write("1234"), LocalError::None);
        EXPECT_EQ(file.write("5"), LocalError::None);
        EXPECT_EQ(file.keepTailOf(folder.file("a")), LocalError::None);
        EXPECT_EQ(file.commit(), LocalError::None);
        EXPECT_EQ(folder.read("a"), "12345" + std::string(earlier < 5 ? 0 : earlier - 5, 'e'));
    }
    LocalReplacement file;
    ASSERT_EQ(file.open(folder.file("new")), LocalError::None);
    EXPECT_EQ(file.keepTailOf(folder.file("new")), LocalError::None) << "there is none";
}

} // namespace
} // namespace zul::test
