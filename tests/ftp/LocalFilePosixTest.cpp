// What only this kind of system has in the place of a file: pipes, devices, links, rights, "\" in a name.
#include "ftp/LocalFile.h"
#include "tests/ftp/TempFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace zul::test {
namespace {

using namespace ftp;

TEST(LocalFilePosixTest, NobodyWaitsForTheOtherEndOfAPipe)
{
    const TempFolder folder;
    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    LocalFile file;
    EXPECT_EQ(file.open(folder.file("pipe")), LocalError::Denied);
    EXPECT_EQ(file.open("/dev/zero"), LocalError::Denied);
}

TEST(LocalReplacementPosixTest, ABackslashInANameHasACharacterOfItsOwn)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder.path() / "a\\..\\b");
    const std::string path = folder.path().string() + "\\a\xEF\x81\x9C..\xEF\x81\x9C"
                                                      "b\\c";
    LocalReplacement file;
    ASSERT_EQ(file.open(path), LocalError::None);
    ASSERT_EQ(file.commit(), LocalError::None);
    EXPECT_TRUE(LocalFile::exists(path));
    EXPECT_TRUE(std::filesystem::exists(folder.path() / "a\\..\\b" / "c"));
}

TEST(LocalReplacementPosixTest, TheNewFileBelongsToItsOwnerAlone)
{
    const TempFolder folder;
    LocalReplacement file;
    ASSERT_EQ(file.open(folder.file("a")), LocalError::None);
    ASSERT_EQ(file.commit(), LocalError::None);
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(folder.path() / "a").permissions(),
              perms::owner_read | perms::owner_write);
}

TEST(LocalReplacementPosixTest, ALinkIsFollowedAndWhatIsNoFileIsLeftAlone)
{
    const TempFolder folder;
    folder.write("a", "earlier");
    std::filesystem::create_symlink("a", folder.path() / "link");
    LocalReplacement file;
    ASSERT_EQ(file.open(folder.file("link")), LocalError::None);
    EXPECT_EQ(file.write("new"), LocalError::None);
    ASSERT_EQ(file.commit(), LocalError::None);
    EXPECT_EQ(folder.read("a"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path() / "link"));

    ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(file.open(folder.file("pipe")), LocalError::Denied) << "and nobody waits for its other end";
    EXPECT_EQ(file.open("/dev/full"), LocalError::Denied);
    EXPECT_FALSE(file.isOpen());
}

} // namespace
} // namespace zul::test
