#include "ftp/LocalFile.h"

#include "tests/ftp/TempFolder.h"

#include <array>
#include <gtest/gtest.h>

namespace zul::test {
namespace {

using namespace ftp;

TEST(LocalFileTest, ReadsUntilTheEnd)
{
    const TempFolder folder;
    folder.write("a", "12345");
    LocalFile file;
    ASSERT_EQ(file.open(folder.file("a"), LocalFile::Mode::Read), LocalError::None);
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

TEST(LocalFileTest, UpdateKeepsWhatIsThereAndReplaceDoesNot)
{
    const TempFolder folder;
    folder.write("a", "12345");
    LocalFile file;
    ASSERT_EQ(file.open(folder.file("a"), LocalFile::Mode::Update), LocalError::None);
    EXPECT_EQ(file.write("ab"), LocalError::None);
    file.close();
    EXPECT_EQ(folder.read("a"), "ab345");
    ASSERT_EQ(file.open(folder.file("a"), LocalFile::Mode::Replace), LocalError::None);
    EXPECT_EQ(file.write("x"), LocalError::None);
    file.close();
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(folder.read("a"), "x");
}

TEST(LocalFileTest, BackslashesAndAccentsInPaths)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder.path() / "à 'b'");
    LocalFile file;
    ASSERT_EQ(file.open(folder.path().string() + "\\à 'b'\\€😀%.txt", LocalFile::Mode::Replace),
              LocalError::None);
    EXPECT_EQ(file.write("x"), LocalError::None);
    EXPECT_EQ(folder.read("à 'b'/€😀%.txt"), "x");
}

TEST(LocalFileTest, FailuresAreToldApart)
{
    const TempFolder folder;
    folder.write("a", "x");
    LocalFile file;
    EXPECT_EQ(file.open(folder.file("none"), LocalFile::Mode::Read), LocalError::NoFile);
    EXPECT_EQ(file.open(folder.file("no/such"), LocalFile::Mode::Read), LocalError::NoFolder);
    EXPECT_EQ(file.open(folder.file("a/b"), LocalFile::Mode::Update), LocalError::NoFolder);
    EXPECT_EQ(file.open(folder.file("no/such"), LocalFile::Mode::Update), LocalError::NoFolder);
    EXPECT_EQ(file.open(folder.path().string(), LocalFile::Mode::Read), LocalError::Denied);
    EXPECT_EQ(file.open(folder.path().string(), LocalFile::Mode::Update), LocalError::Denied);
    EXPECT_EQ(file.open("", LocalFile::Mode::Update), LocalError::NoFolder);
    EXPECT_EQ(file.open(std::string(10'000, 'n'), LocalFile::Mode::Update), LocalError::Denied);
    EXPECT_EQ(file.open(folder.file("a") + std::string(1, '\0'), LocalFile::Mode::Read),
              LocalError::NoFolder);
    EXPECT_FALSE(file.isOpen());
}

TEST(LocalFileTest, ProbingTouchesNothing)
{
    const TempFolder folder;
    folder.write("a", "x");
    EXPECT_EQ(LocalFile::probeReplace(folder.file("a")), LocalError::None);
    EXPECT_EQ(LocalFile::probeReplace(folder.file("new")), LocalError::None);
    EXPECT_EQ(LocalFile::probeReplace(folder.file("no/such")), LocalError::NoFolder);
    EXPECT_EQ(LocalFile::probeReplace(folder.file("a/b")), LocalError::NoFolder);
    EXPECT_EQ(LocalFile::probeReplace(folder.path().string()), LocalError::Denied);
    EXPECT_EQ(LocalFile::probeReplace(""), LocalError::NoFolder);
    EXPECT_EQ(folder.read("a"), "x");
    EXPECT_TRUE(LocalFile::exists(folder.file("a")));
    EXPECT_FALSE(LocalFile::exists(folder.file("new")));
}

} // namespace
} // namespace zul::test
