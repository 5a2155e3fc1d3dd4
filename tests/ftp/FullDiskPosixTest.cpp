// Downloads onto a disk that is full, and onto what is no disk. The limit of a process stands for the first.
#include "ftp/CurlTransport.h"
#include "ftp/cFtp.h"
#include "tests/ftp/FakeTransport.h"
#include "tests/ftp/ScriptedServer.h"
#include "tests/ftp/SmallDisk.h"
#include "tests/ftp/TempFolder.h"

#include <gtest/gtest.h>

namespace zul::test {
namespace {

using namespace ftp;

TEST(FullDiskTest, ADownloadAtOnceEndsAndTheConnectionIsRestored)
{
    for (const std::uint32_t mode : {0U, ModePassive}) {
        const TempFolder folder;
        ScriptedServer server;
        server.files["/a"] = pattern(1'000'000);
        CurlTransport transport;
        Handle session = 0;
        Handle connection = 0;
        ASSERT_EQ(transport.openSession("test", OpenPreconfigured, session), Success);
        ASSERT_EQ(transport.connect(session, {"127.0.0.1", server.port(), "user", "secret", ServiceFtp, mode},
                                    connection),
                  Success);
        {
            const SmallDisk disk(100'000);
            EXPECT_EQ(transport.getFile(connection, "a", folder.file("a"), false, 0x80, TransferBinary),
                      ftp::DiskFull);
        }
        EXPECT_EQ(folder.names(), std::set<std::string>());
        EXPECT_EQ(transport.deleteFile(connection, "a"), Success);
    }
}

class DownloadByPiecesTest : public ::testing::Test
{
protected:
    /// The number of the error that a download of 600 bytes to this path comes to.
    static int errorOf(const std::string& path)
    {
        const auto world = std::make_shared<FakeWorld>();
        world->remoteContent = pattern(600);
        cFtp client(std::make_unique<FakeTransport>(world));
        EXPECT_TRUE(client.OpenConnection("server", "21", "user", "secret"));
        std::int32_t size = 600;
        try {
            client.FTPDownloadFile(path, "remote", size);
        } catch (const RunTimeError& error) {
            return error.number;
        }
        return 0;
    }

    TempFolder folder;
};

TEST_F(DownloadByPiecesTest, OntoAFullDiskIsARunTimeError)
{
    folder.write("l", "earlier");
    {
        const SmallDisk disk(400);
        EXPECT_EQ(errorOf(folder.file("l")), 61);
    }
    EXPECT_EQ(folder.read("l"), "earlier");
    EXPECT_EQ(folder.names(), std::set<std::string>{"l"});
    EXPECT_EQ(errorOf(folder.file("l")), 0);
}

TEST_F(DownloadByPiecesTest, ADeviceIsNotTakenThePlaceOf)
{
    EXPECT_EQ(errorOf("/dev/full"), 75);
}

} // namespace
} // namespace zul::test
