// The client against real servers, in both modes.
#include "ftp/cFtp.h"
#include "tests/ftp/FtpServerProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <set>
#include <tuple>

namespace zul::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

/// Servers start once for all tests that need them.
class Servers : public ::testing::Environment
{
public:
    static FtpServerProcess& get(ServerKind kind)
    {
        auto& server = all()[kind];
        if (!server) {
            server = std::make_unique<FtpServerProcess>(kind);
        }
        return *server;
    }
    void TearDown() override { all().clear(); }

private:
    static std::map<ServerKind, std::unique_ptr<FtpServerProcess>>& all()
    {
        static std::map<ServerKind, std::unique_ptr<FtpServerProcess>> servers;
        return servers;
    }
};

[[maybe_unused]] const auto* const environment = ::testing::AddGlobalTestEnvironment(new Servers);

using Parameters = std::tuple<ServerKind, bool>;

class RealServersTest : public ::testing::TestWithParam<Parameters>
{
protected:
    void SetUp() override
    {
        if (const auto reason = FtpServerProcess::leftOut(std::get<0>(GetParam())); !reason.empty()) {
            GTEST_SKIP() << reason;
        }
        server = &Servers::get(std::get<0>(GetParam()));
        ASSERT_EQ(server->problem(), "");
        for (const auto& entry : std::filesystem::directory_iterator(server->served().path())) {
            std::filesystem::remove_all(entry.path());
        }
        if (std::get<1>(GetParam())) {
            client.SetModePassive();
        }
        client.SetTransferBinary();
        ASSERT_TRUE(connect()) << client.GetLastErrorMessage();
    }

    bool connect()
    {
        return client.OpenConnection("127.0.0.1", server->portText(), server->user(), server->password());
    }

    const TempFolder& remote() const { return server->served(); }

    /// A folder that the server's account may write too.
    void makeRemoteFolder(const std::string& name) const
    {
        std::filesystem::create_directory(remote().path() / name);
        std::filesystem::permissions(remote().path() / name, std::filesystem::perms::all);
    }

    std::set<std::string> list(const std::string& filter)
    {
        std::set<std::string> names;
        bool isOk = false;
        const auto found = client.GetDirectoryListing(filter, isOk);
        EXPECT_TRUE(isOk);
        if (found) {
            for (const auto& item : *found) {
                if (item->Filename != "." && item->Filename != "..") {
                    names.insert(item->Filename);
                }
            }
        }
        return names;
    }

    TempFolder folder;
    FtpServerProcess* server = nullptr;
    cFtp client;
};

std::string nameOf(const ::testing::TestParamInfo<Parameters>& info)
{
    const std::map<ServerKind, std::string> names{{ServerKind::Vsftpd, "Vsftpd"},
                                                  {ServerKind::PureFtpd, "PureFtpd"},
                                                  {ServerKind::Pyftpdlib, "Pyftpdlib"}};
    return names.at(std::get<0>(info.param)) + (std::get<1>(info.param) ? "Passive" : "Active");
}

INSTANTIATE_TEST_SUITE_P(Servers, RealServersTest,
                         ::testing::Combine(::testing::Values(ServerKind::Vsftpd, ServerKind::PureFtpd,
                                                              ServerKind::Pyftpdlib),
                                            ::testing::Bool()),
                         nameOf);

TEST_P(RealServersTest, WholeFilesComeAndGo)
{
    const std::string bytes = pattern(3'000'000);
    folder.write("up", bytes);
    EXPECT_TRUE(client.SimpleFTPPutFile(folder.file("up"), "big.bin")) << client.GetLastErrorMessage();
    EXPECT_TRUE(remote().read("big.bin") == bytes);
    EXPECT_TRUE(client.SimpleFTPGetFile(folder.file("down"), "big.bin")) << client.GetLastErrorMessage();
    EXPECT_TRUE(folder.read("down") == bytes);
    folder.write("none", "");
    EXPECT_TRUE(client.SimpleFTPPutFile(folder.file("none"), "none"));
    EXPECT_EQ(remote().read("none"), "");
    EXPECT_TRUE(client.SimpleFTPGetFile(folder.file("down"), "none"));
    EXPECT_EQ(folder.read("down"), "");
}

TEST_P(RealServersTest, AReportOfNumbersComesAsText)
{
    client.SetTransferASCII();
    remote().write("export.txt", "393331234567\n3331234567\n");
    EXPECT_TRUE(client.SimpleFTPGetFile(folder.file("export.txt"), "export.txt"))
        << client.GetLastErrorMessage();
    EXPECT_EQ(folder.read("export.txt"), "393331234567\n3331234567\n");
    folder.write("up", "one\r\ntwo\r\n");
    EXPECT_TRUE(client.SimpleFTPPutFile(folder.file("up"), "up"));
    EXPECT_EQ(remote().read("up"), "one\ntwo\n");
}

TEST_P(RealServersTest, FilesMoveByPiecesWithProgress)
{
    std::vector<std::pair<int, int>> progress;
    std::vector<int> states;
    client.FileTransferProgress = [&](std::int32_t current, std::int32_t total) {
        progress.emplace_back(current, total);
    };
    client.StateChanged = [&](std::int32_t state) { states.push_back(state); };
    std::string local = folder.write("up", pattern(600));
    std::string name = "pieces";
    EXPECT_TRUE(client.FTPUploadFile(local, name)) << client.GetLastErrorMessage();
    EXPECT_EQ(remote().read("pieces"), pattern(600));
    EXPECT_THAT(progress, ElementsAre(std::pair(255, 600), std::pair(510, 600), std::pair(600, 600)));
    progress.clear();
    std::int32_t size = client.GetFTPFileSize("pieces");
    EXPECT_EQ(size, 600);
    EXPECT_TRUE(client.FTPDownloadFile(folder.file("down"), "pieces", size)) << client.GetLastErrorMessage();
    EXPECT_EQ(folder.read("down"), pattern(600));
    EXPECT_THAT(progress, ElementsAre(std::pair(255, 600), std::pair(510, 600), std::pair(600, 600)));
    EXPECT_THAT(states, ElementsAre(9, 10));
    EXPECT_TRUE(client.DeleteFTPFile("pieces"))
        << "the connection is free again: " << client.GetLastErrorMessage();
}

TEST_P(RealServersTest, AnEmptyFileMovesByPieces)
{
    std::string local = folder.write("up", "");
    std::string name = "empty";
    EXPECT_TRUE(client.FTPUploadFile(local, name)) << client.GetLastErrorMessage();
    EXPECT_EQ(remote().read("empty"), "");
    std::int32_t size = 0;
    EXPECT_TRUE(client.FTPDownloadFile(folder.file("down"), "empty", size)) << client.GetLastErrorMessage();
    EXPECT_EQ(folder.read("down"), std::string(256, '\0'));
}

TEST_P(RealServersTest, ADownloadOfLessThanTheFileLeavesTheConnectionUsable)
{
    remote().write("long", pattern(5'000'000));
    makeRemoteFolder("sub");
    remote().write("sub/x", "x");
    ASSERT_TRUE(client.SetFTPDirectory("sub")) << client.GetLastErrorMessage();
    std::int32_t size = 300;
    EXPECT_TRUE(client.FTPDownloadFile(folder.file("down"), "../long", size)) << client.GetLastErrorMessage();
    EXPECT_EQ(folder.read("down"), pattern(300));
    EXPECT_TRUE(client.SimpleFTPGetFile(folder.file("x"), "x")) << client.GetLastErrorMessage();
    EXPECT_EQ(folder.read("x"), "x");
}

TEST_P(RealServersTest, WhatIsMissingIsToldInTheServersWords)
{
    folder.write("earlier", "kept");
    EXPECT_FALSE(client.SimpleFTPGetFile(folder.file("earlier"), "missing"));
    EXPECT_THAT(client.GetLastErrorMessage(), StartsWith("550"));
    EXPECT_TRUE(client.GetLastErrorMessage().ends_with("\r\n"));
    EXPECT_EQ(folder.read("earlier"), "kept");
    EXPECT_FALSE(client.DeleteFTPFile("missing"));
    EXPECT_FALSE(client.SetFTPDirectory("missing"));
    EXPECT_FALSE(client.RemoveFTPDirectory("missing"));
    EXPECT_FALSE(client.RenameFTPFile("missing", "x"));
    std::int32_t size = 1;
    EXPECT_FALSE(client.FTPDownloadFile(folder.file("new"), "missing", size));
    EXPECT_THAT(client.GetLastErrorMessage(), StartsWith("550"));
    EXPECT_EQ(folder.read("new"), std::nullopt);
    EXPECT_EQ(client.GetFTPFileSize("missing"), 0);
    EXPECT_TRUE(client.CreateFTPDirectory("d")) << "the connection stands all the while";
}

TEST_P(RealServersTest, DirectoriesAreMadeChangedAndRemoved)
{
    const std::string start = client.GetFTPDirectory();
    EXPECT_NE(start, "") << client.GetLastErrorMessage();
    EXPECT_TRUE(client.CreateFTPDirectory("new dir")) << client.GetLastErrorMessage();
    EXPECT_TRUE(std::filesystem::is_directory(remote().path() / "new dir"));
    EXPECT_TRUE(client.SetFTPDirectory("new dir")) << client.GetLastErrorMessage();
    EXPECT_TRUE(client.GetFTPDirectory().ends_with("/new dir"));
    EXPECT_EQ(list(""), std::set<std::string>{});
    folder.write("up", "x");
    EXPECT_TRUE(client.SimpleFTPPutFile(folder.file("up"), "in it"));
    EXPECT_EQ(remote().read("new dir/in it"), "x");
    EXPECT_FALSE(client.SimpleFTPGetFile(folder.file("no"), "missing"));
    EXPECT_THAT(list(""), UnorderedElementsAre("in it"));
    EXPECT_TRUE(client.DeleteFTPFile("in it"));
    EXPECT_TRUE(client.SetFTPDirectory(".."));
    EXPECT_EQ(client.GetFTPDirectory(), start);
    EXPECT_TRUE(client.RemoveFTPDirectory("new dir")) << client.GetLastErrorMessage();
    EXPECT_FALSE(std::filesystem::exists(remote().path() / "new dir"));
}

TEST_P(RealServersTest, FilesAreRenamedAndDeleted)
{
    remote().write("a", "content");
    EXPECT_TRUE(client.RenameFTPFile("a", "b c")) << client.GetLastErrorMessage();
    EXPECT_EQ(remote().read("b c"), "content");
    EXPECT_EQ(remote().read("a"), std::nullopt);
    EXPECT_TRUE(client.DeleteFTPFile("b c")) << client.GetLastErrorMessage();
    EXPECT_EQ(remote().read("b c"), std::nullopt);
}

TEST_P(RealServersTest, ListingsAreReadAndFiltered)
{
    remote().write("a.txt", "12345");
    remote().write("b.csv", "");
    makeRemoteFolder("sub");
    remote().write("sub/in.txt", "x");
    EXPECT_THAT(list(""), UnorderedElementsAre("a.txt", "b.csv", "sub"));
    EXPECT_THAT(list("*.txt"), UnorderedElementsAre("a.txt"));
    EXPECT_THAT(list("?.*"), UnorderedElementsAre("a.txt", "b.csv"));
    EXPECT_THAT(list("a.txt"), UnorderedElementsAre("a.txt"));
    EXPECT_THAT(list("sub"), UnorderedElementsAre("in.txt"));
    EXPECT_THAT(list("sub/*"), UnorderedElementsAre("in.txt"));
    EXPECT_EQ(list("*.none"), std::set<std::string>{});

    bool isOk = false;
    const auto entries = client.GetDirectoryListing("", isOk);
    ASSERT_NE(entries, nullptr);
    const auto file = entries->Item("A.TXT");
    EXPECT_EQ(file->FileSize, 5);
    EXPECT_TRUE(file->Normal);
    EXPECT_FALSE(file->Directory);
    EXPECT_TRUE(entries->Item("sub")->Directory);
    EXPECT_FALSE(entries->Item("sub")->Normal);
    // Written just now, to the day or so: the servers' time zones differ.
    const double now = 25'569 + std::chrono::duration<double, std::ratio<86'400>>(
                                    std::chrono::system_clock::now().time_since_epoch())
                                    .count();
    EXPECT_NEAR(file->LastWriteTime, now, 1.5);
}

TEST_P(RealServersTest, SizesBeyond4GiBAreTheirLow32Bits)
{
    remote().write("huge", "");
    std::error_code error;
    std::filesystem::resize_file(remote().path() / "huge", 0x1'0000'0100ULL, error);
    if (error) {
        GTEST_SKIP() << "no room for a file with a hole: " << error.message();
    }
    EXPECT_EQ(client.GetFTPFileSize("huge"), 0x100);
}

TEST_P(RealServersTest, NamesOfEveryKindArriveWhole)
{
    folder.write("up", "x");
    for (const std::string name :
         {"a b  c", "à è €😀", "100% 'off'", "\"quoted\"", "semi;colon", "hash#and?", "-l"}) {
        EXPECT_TRUE(client.SimpleFTPPutFile(folder.file("up"), name))
            << name << ": " << client.GetLastErrorMessage();
        EXPECT_EQ(remote().read(name), "x") << name;
        EXPECT_THAT(list(""), Contains(name));
        EXPECT_TRUE(client.SimpleFTPGetFile(folder.file("down"), name))
            << name << ": " << client.GetLastErrorMessage();
        EXPECT_TRUE(client.DeleteFTPFile(name)) << name << ": " << client.GetLastErrorMessage();
    }
}

TEST_P(RealServersTest, AWrongLoginIsRefused)
{
    cFtp other;
    if (std::get<0>(GetParam()) == ServerKind::Vsftpd) {
        // It knows no user but the anonymous one and says so before it asks for a password.
        EXPECT_FALSE(other.OpenConnection("127.0.0.1", server->portText(), "somebody", "x"));
        EXPECT_THAT(other.GetLastErrorMessage(), StartsWith("InternetConnect error code: 12015 Message: "));
    } else {
        EXPECT_FALSE(other.OpenConnection("127.0.0.1", server->portText(), "user", "wrong"));
        EXPECT_THAT(other.GetLastErrorMessage(), StartsWith("InternetConnect error code: 12014 Message: "));
    }
    EXPECT_FALSE(other.DeleteFTPFile("x"));
}

TEST_P(RealServersTest, ConnectionsComeAndGo)
{
    for (int i = 0; i < 3; ++i) {
        client.CloseConnection();
        EXPECT_FALSE(client.CreateFTPDirectory("x"));
        ASSERT_TRUE(connect()) << client.GetLastErrorMessage();
        ASSERT_TRUE(connect()) << client.GetLastErrorMessage();
    }
    EXPECT_TRUE(client.CreateFTPDirectory("x"));
}

} // namespace
} // namespace zul::test
