// The transport against a well-behaved server: what it sends, what it keeps, what it says.
#include "ftp/CurlTransport.h"

#include "ftp/cFtp.h"
#include "tests/ftp/Modes.h"
#include "tests/ftp/ScriptedServer.h"
#include "tests/ftp/TempFolder.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zul::test {
namespace {

using namespace ftp;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;
using ::testing::StartsWith;

std::string nul(const std::string& text)
{
    return text + std::string(1, '\0') + "x";
}

/// Systems whose folders are separated by "\" end their lines as the wire does.
bool endsInCrLf()
{
    return std::filesystem::path::preferred_separator == '\\';
}

class CurlTransportTest : public ::testing::TestWithParam<std::uint32_t>
{
protected:
    void SetUp() override { ASSERT_EQ(transport.openSession("test", OpenPreconfigured, session), Success); }

    ErrorCode connect()
    {
        return transport.connect(
            session, {"127.0.0.1", server.port(), "user", "secret", ServiceFtp, GetParam()}, connection);
    }

    /// The commands after the login.
    std::vector<std::string> sent() const
    {
        auto commands = server.commands();
        const auto login = std::find(commands.begin(), commands.end(), "PWD");
        if (login != commands.end()) {
            commands.erase(commands.begin(), login + 1);
        }
        // Where the data goes is a matter of ports.
        for (auto& command : commands) {
            if (command.starts_with("PORT ")) {
                command = "PORT";
            }
        }
        return commands;
    }

    std::string dataCommand() const { return GetParam() == ModePassive ? "PASV" : "PORT"; }

    std::string readAll(Handle file)
    {
        std::string text;
        std::array<char, 255> buffer{};
        std::size_t got = 0;
        do {
            EXPECT_EQ(transport.readFile(file, buffer.data(), buffer.size(), got), Success);
            text.append(buffer.data(), got);
        } while (got == buffer.size());
        return text;
    }

    TempFolder folder;
    ScriptedServer server;
    CurlTransport transport;
    Handle session = 0;
    Handle connection = 0;
};

INSTANTIATE_TEST_SUITE_P(Modes, CurlTransportTest, ::testing::ValuesIn(modes()), modeName);

TEST_P(CurlTransportTest, ConnectingLogsIn)
{
    ASSERT_EQ(connect(), Success);
    EXPECT_NE(connection, 0U);
    EXPECT_THAT(server.commands(), ElementsAre("USER user", "PASS secret", "PWD"));
}

TEST_P(CurlTransportTest, OneConnectionCarriesEverything)
{
    server.files["/a.txt"] = "content";
    server.listing = "-rw-r--r-- 1 u g 7 Nov 21 2023 a.txt\r\n";
    ASSERT_EQ(connect(), Success);
    ASSERT_EQ(transport.getFile(connection, "a.txt", folder.file("a"), false, 0x80, TransferBinary), Success);
    ASSERT_EQ(transport.getFile(connection, "missing", folder.file("b"), false, 0x80, TransferBinary),
              ExtendedError);
    ASSERT_EQ(transport.deleteFile(connection, "missing"), ExtendedError);
    FindRecord record;
    Handle find = 0;
    ASSERT_EQ(transport.findFirst(connection, "", record, find), Success);
    ASSERT_EQ(transport.renameFile(connection, "missing", "b.txt"), ExtendedError);
    ASSERT_EQ(transport.renameFile(connection, "a.txt", "b.txt"), Success);
    EXPECT_THAT(sent(), ElementsAre(dataCommand(), "TYPE I", "RETR a.txt", dataCommand(), "RETR missing",
                                    "DELE missing", dataCommand(), "TYPE A", "LIST", "RNFR missing",
                                    "RNFR a.txt", "RNTO b.txt"));
}

TEST_P(CurlTransportTest, TheCurrentDirectoryIsKeptAcrossOperations)
{
    server.files["/sub/a.txt"] = "here";
    server.files["/top.txt"] = "there";
    ASSERT_EQ(connect(), Success);
    ASSERT_EQ(transport.setCurrentDirectory(connection, "sub"), Success);
    ASSERT_EQ(transport.getFile(connection, "no.txt", folder.file("n"), false, 0x80, TransferBinary),
              ExtendedError);
    ASSERT_EQ(transport.getFile(connection, "a.txt", folder.file("a"), false, 0x80, TransferBinary), Success);
    ASSERT_EQ(transport.getFile(connection, "/top.txt", folder.file("t"), false, 0x80, TransferBinary),
              Success);
    ASSERT_EQ(transport.getFile(connection, "a.txt", folder.file("a2"), false, 0x80, TransferBinary),
              Success);
    std::string directory;
    ASSERT_EQ(transport.getCurrentDirectory(connection, 1024, directory), Success);
    EXPECT_EQ(directory, "/sub");
    EXPECT_EQ(folder.read("a2"), "here");
    EXPECT_EQ(folder.read("t"), "there");
    EXPECT_THAT(sent(), Not(Contains("CWD /")));
}

TEST_P(CurlTransportTest, DownloadInAsciiGivesLocalLineEnds)
{
    server.files["/a.txt"] = "one\r\ntwo\r\n";
    ASSERT_EQ(connect(), Success);
    ASSERT_EQ(transport.getFile(connection, "a.txt", folder.file("a"), false, 0x80, TransferAscii), Success);
    EXPECT_EQ(folder.read("a"), endsInCrLf() ? "one\r\ntwo\r\n" : "one\ntwo\n");
    EXPECT_THAT(sent(), Contains("TYPE A"));
}

TEST_P(CurlTransportTest, UploadInAsciiSendsEveryLineEndOnceAsCrLf)
{
    std::string local;
    std::string wire;
    for (int i = 0; i < 20'000; ++i) {
        local += i % 3 == 0 ? "line\n" : i % 3 == 1 ? "line\r\n" : "li\rne\r\n";
        wire += i % 3 == 2 ? "li\rne\r\n" : "line\r\n";
    }
    folder.write("l.txt", local + "end\r");
    ASSERT_EQ(connect(), Success);
    ASSERT_EQ(transport.putFile(connection, folder.file("l.txt"), "r.txt", TransferAscii), Success);
    EXPECT_TRUE(server.files["/r.txt"] == wire + "end\r");

    Handle file = 0;
    std::size_t written = 0;
    ASSERT_EQ(transport.openFile(connection, "p.txt", AccessWrite, TransferAscii, file), Success);
    for (const char* piece : {"a\r", "\nb\r", "c\n", "d\r\n", "e\r"}) {
        ASSERT_EQ(transport.writeFile(file, piece, written), Success);
    }
    ASSERT_EQ(transport.closeHandle(file), Success);
    EXPECT_EQ(server.files["/p.txt"], "a\r\nb\rc\r\nd\r\ne\r");
}

TEST_P(CurlTransportTest, BinaryTransfersChangeNothing)
{
    std::string bytes;
    for (unsigned i = 0; i < 300'000; ++i) {
        bytes += static_cast<char>(i * i % 251U);
    }
    server.files["/a.bin"] = bytes;
    ASSERT_EQ(connect(), Success);
    ASSERT_EQ(transport.getFile(connection, "a.bin", folder.file("a"), false, 0x80, TransferBinary), Success);
    EXPECT_TRUE(folder.read("a") == bytes);
    ASSERT_EQ(transport.putFile(connection, folder.file("a"), "b.bin", TransferBinary), Success);
    EXPECT_TRUE(server.files["/b.bin"] == bytes);
}

TEST_P(CurlTransportTest, FilesAreReadByPieces)
{
    server.files["/a.bin"] = pattern(100'000);
    server.files["/empty"] = "";
    ASSERT_EQ(connect(), Success);
    Handle file = 0;
    ASSERT_EQ(transport.openFile(connection, "a.bin", AccessRead, TransferBinary, file), Success);
    EXPECT_TRUE(readAll(file) == pattern(100'000));
    EXPECT_EQ(transport.closeHandle(file), Success);
    ASSERT_EQ(transport.openFile(connection, "empty", AccessRead, TransferBinary, file), Success);
    EXPECT_EQ(readAll(file), "");
    EXPECT_EQ(transport.closeHandle(file), Success);
    EXPECT_EQ(transport.openFile(connection, "missing", AccessRead, TransferBinary, file), ExtendedError);
    EXPECT_EQ(file, 0U);
    EXPECT_EQ(transport.lastResponse(), "550 missing: no such file\r\n");
    EXPECT_EQ(transport.deleteFile(connection, "a.bin"), Success);
}

TEST_P(CurlTransportTest, AsciiFilesAreReadByPiecesWithLocalLineEnds)
{
    std::string wire;
    std::string local;
    for (int i = 0; i < 30'000; ++i) {
        wire += std::to_string(i) + "\r\n\r\n";
        local += std::to_string(i) + "\n\n";
    }
    server.files["/a.txt"] = wire;
    ASSERT_EQ(connect(), Success);
    Handle file = 0;
    ASSERT_EQ(transport.openFile(connection, "a.txt", AccessRead, TransferAscii, file), Success);
    EXPECT_TRUE(readAll(file) == (endsInCrLf() ? wire : local));
}

TEST_P(CurlTransportTest, FilesAreWrittenByPieces)
{
    ASSERT_EQ(connect(), Success);
    Handle file = 0;
    std::size_t written = 0;
    ASSERT_EQ(transport.openFile(connection, "a.bin", AccessWrite, TransferBinary, file), Success);
    const std::string bytes = pattern(25'500);
    for (std::size_t i = 0; i < bytes.size(); i += 255) {
        ASSERT_EQ(transport.writeFile(file, std::string_view(bytes).substr(i, 255), written), Success);
        ASSERT_EQ(written, 255U);
    }
    EXPECT_EQ(transport.closeHandle(file), Success);
    EXPECT_TRUE(server.files["/a.bin"] == bytes);

    ASSERT_EQ(transport.openFile(connection, "empty", AccessWrite, TransferBinary, file), Success);
    EXPECT_EQ(transport.writeFile(file, "", written), Success);
    EXPECT_EQ(transport.closeHandle(file), Success);
    EXPECT_EQ(server.files["/empty"], "");
}

TEST_P(CurlTransportTest, WhileAFileIsOpenTheConnectionIsBusy)
{
    server.files["/a.bin"] = pattern(1000);
    ASSERT_EQ(connect(), Success);
    Handle file = 0;
    Handle other = 0;
    FindRecord record;
    std::string directory;
    ASSERT_EQ(transport.openFile(connection, "a.bin", AccessRead, TransferBinary, file), Success);
    EXPECT_EQ(transport.deleteFile(connection, "a.bin"), TransferInProgress);
    EXPECT_EQ(transport.openFile(connection, "a.bin", AccessRead, TransferBinary, other), TransferInProgress);
    EXPECT_EQ(transport.findFirst(connection, "", record, other), TransferInProgress);
    EXPECT_EQ(transport.getCurrentDirectory(connection, 1024, directory), TransferInProgress);
    std::size_t written = 0;
    EXPECT_EQ(transport.writeFile(file, "x", written), InvalidHandle) << "a file that is read is not written";
    EXPECT_EQ(transport.closeHandle(file), Success);
    EXPECT_EQ(transport.deleteFile(connection, "a.bin"), Success);
}

TEST_P(CurlTransportTest, AFileClosedShortlyBeforeItsEndKeepsTheConnection)
{
    server.files["/a.bin"] = pattern(100'000);
    ASSERT_EQ(connect(), Success);
    Handle file = 0;
    std::array<char, 255> buffer{};
    std::size_t got = 0;
    ASSERT_EQ(transport.openFile(connection, "a.bin", AccessRead, TransferBinary, file), Success);
    ASSERT_EQ(transport.readFile(file, buffer.data(), buffer.size(), got), Success);
    EXPECT_EQ(transport.closeHandle(file), Success);
    EXPECT_EQ(transport.deleteFile(connection, "a.bin"), Success);
    const auto commands = server.commands();
    EXPECT_EQ(std::count(commands.begin(), commands.end(), "USER user"), 1);
}

TEST_P(CurlTransportTest, AFileClosedLongBeforeItsEndRestoresTheConnectionAndItsDirectory)
{
    server.files["/sub/a.bin"] = pattern(20'000'000);
    ASSERT_EQ(connect(), Success);
    ASSERT_EQ(transport.setCurrentDirectory(connection, "sub"), Success);
    Handle file = 0;
    std::array<char, 255> buffer{};
    std::size_t got = 0;
    ASSERT_EQ(transport.openFile(connection, "a.bin", AccessRead, TransferBinary, file), Success);
    ASSERT_EQ(transport.readFile(file, buffer.data(), buffer.size(), got), Success);
    transport.closeHandle(file);
    std::string directory;
    ASSERT_EQ(transport.getCurrentDirectory(connection, 1024, directory), Success);
    EXPECT_EQ(directory, "/sub");
    const auto commands = server.commands();
    EXPECT_EQ(std::count(commands.begin(), commands.end(), "USER user"), 2);
}

TEST_P(CurlTransportTest, AConnectionThatTheServerEndedStaysEnded)
{
    server.on["DELE"] = [](auto& client, const auto&) { client.hangUp(); };
    ASSERT_EQ(connect(), Success);
    EXPECT_EQ(transport.deleteFile(connection, "a"), ConnectionAborted);
    EXPECT_EQ(transport.createDirectory(connection, "b"), ConnectionAborted);
    EXPECT_THAT(sent(), ElementsAre("DELE a"));
    EXPECT_EQ(transport.closeHandle(connection), Success);
    EXPECT_EQ(connect(), Success) << "and can be opened anew";
}

TEST_P(CurlTransportTest, AServerThatLeavesBetweenTwoOperationsIsNoticedAndNothingIsSentTwice)
{
    server.on["MKD"] = [](auto& client, const auto&) {
        client.reply("257 made");
        client.hangUp();
    };
    ASSERT_EQ(connect(), Success);
    ASSERT_EQ(transport.createDirectory(connection, "b"), Success);
    EXPECT_EQ(transport.deleteFile(connection, "a"), ConnectionAborted);
    EXPECT_THAT(server.commands(), Not(Contains("DELE a")));
}

TEST_P(CurlTransportTest, HandlesThatAreNoneAreRefused)
{
    std::string directory;
    FindRecord record;
    Handle handle = 0;
    std::size_t count = 0;
    char byte = 0;
    EXPECT_EQ(transport.deleteFile(0, "a"), InvalidHandle);
    EXPECT_EQ(transport.putFile(0, "a", "b", 1), InvalidHandle);
    EXPECT_EQ(transport.getFile(0, "a", "b", false, 0, 1), InvalidHandle);
    EXPECT_EQ(transport.openFile(99, "a", AccessRead, 1, handle), InvalidHandle);
    EXPECT_EQ(transport.readFile(0, &byte, 1, count), InvalidHandle);
    EXPECT_EQ(transport.writeFile(0, "x", count), InvalidHandle);
    EXPECT_EQ(transport.renameFile(0, "a", "b"), InvalidHandle);
    EXPECT_EQ(transport.setCurrentDirectory(0, "a"), InvalidHandle);
    EXPECT_EQ(transport.getCurrentDirectory(0, 1024, directory), InvalidHandle);
    EXPECT_EQ(transport.findFirst(0, "", record, handle), InvalidHandle);
    EXPECT_EQ(transport.findNext(0, record), InvalidHandle);
    EXPECT_EQ(transport.closeHandle(0), InvalidHandle);
    EXPECT_EQ(transport.connect(0, {"127.0.0.1", server.port(), "u", "p"}, handle), InvalidHandle);
    EXPECT_TRUE(server.commands().empty());
}

TEST_P(CurlTransportTest, ClosingAConnectionClosesWhatStandsUnderIt)
{
    server.files["/a.bin"] = pattern(1000);
    server.listing = "-rw-r--r-- 1 u g 7 Nov 21 2023 a.txt\r\n";
    ASSERT_EQ(connect(), Success);
    FindRecord record;
    Handle find = 0;
    Handle file = 0;
    ASSERT_EQ(transport.findFirst(connection, "", record, find), Success);
    ASSERT_EQ(transport.openFile(connection, "a.bin", AccessRead, TransferBinary, file), Success);
    EXPECT_EQ(transport.closeHandle(connection), Success);
    char byte = 0;
    std::size_t got = 0;
    EXPECT_EQ(transport.readFile(file, &byte, 1, got), InvalidHandle);
    EXPECT_EQ(transport.findNext(find, record), InvalidHandle);
    EXPECT_EQ(transport.closeHandle(connection), InvalidHandle);
}

TEST_P(CurlTransportTest, ClosingTheSessionClosesItsConnections)
{
    ASSERT_EQ(connect(), Success);
    EXPECT_EQ(transport.closeHandle(session), Success);
    EXPECT_EQ(transport.deleteFile(connection, "a"), InvalidHandle);
    EXPECT_EQ(transport.closeHandle(session), InvalidHandle);
    EXPECT_EQ(connect(), InvalidHandle);
    EXPECT_EQ(server.commands().back(), "QUIT");
}

TEST_P(CurlTransportTest, NamesWithLineEndsOrNulAreRefusedBeforeAnythingIsSent)
{
    ASSERT_EQ(connect(), Success);
    const std::size_t before = server.commands().size();
    FindRecord record;
    Handle handle = 0;
    folder.write("l", "x");
    for (const std::string& bad :
         {std::string("a\rb"), std::string("a\nDELE b"), std::string("a\r\nDELE b"), nul("a")}) {
        EXPECT_EQ(transport.deleteFile(connection, bad), InvalidParameter);
        EXPECT_EQ(transport.createDirectory(connection, bad), InvalidParameter);
        EXPECT_EQ(transport.removeDirectory(connection, bad), InvalidParameter);
        EXPECT_EQ(transport.setCurrentDirectory(connection, bad), InvalidParameter);
        EXPECT_EQ(transport.renameFile(connection, bad, "b"), InvalidParameter);
        EXPECT_EQ(transport.renameFile(connection, "b", bad), InvalidParameter);
        EXPECT_EQ(transport.findFirst(connection, bad, record, handle), InvalidParameter);
        EXPECT_EQ(transport.getFile(connection, bad, folder.file("x"), false, 0x80, 1), InvalidParameter);
        EXPECT_EQ(transport.putFile(connection, folder.file("l"), bad, 1), InvalidParameter);
        EXPECT_EQ(transport.openFile(connection, bad, AccessRead, 1, handle), InvalidParameter);
        EXPECT_EQ(transport.openFile(connection, bad, AccessWrite, 1, handle), InvalidParameter);
        EXPECT_EQ(transport.connect(session, {bad, server.port(), "u", "p"}, handle), InvalidParameter);
        EXPECT_EQ(transport.connect(session, {"127.0.0.1", server.port(), bad, "p"}, handle),
                  InvalidParameter);
        EXPECT_EQ(transport.connect(session, {"127.0.0.1", server.port(), "u", bad}, handle),
                  InvalidParameter);
    }
    EXPECT_EQ(server.commands().size(), before);
}

TEST_P(CurlTransportTest, EmptyNamesAreRefused)
{
    ASSERT_EQ(connect(), Success);
    Handle handle = 0;
    folder.write("l", "x");
    EXPECT_EQ(transport.deleteFile(connection, ""), InvalidParameter);
    EXPECT_EQ(transport.setCurrentDirectory(connection, ""), InvalidParameter);
    EXPECT_EQ(transport.getFile(connection, "", folder.file("x"), false, 0x80, 1), InvalidParameter);
    EXPECT_EQ(transport.getFile(connection, "sub/", folder.file("x"), false, 0x80, 1), InvalidParameter);
    EXPECT_EQ(transport.putFile(connection, folder.file("l"), "", 1), InvalidParameter);
    EXPECT_EQ(transport.openFile(connection, "", AccessWrite, 1, handle), InvalidParameter);
    EXPECT_EQ(folder.read("x"), std::nullopt);
}

TEST_P(CurlTransportTest, NamesReachTheServerAsTheyAre)
{
    ASSERT_EQ(connect(), Success);
    for (const std::string name : {"a b", "à è €😀", "50% 'off' \"now\"", "a;type=i", "a?b#c", "-l", "..",
                                   "%0d%0aDELE x", "a\\b", "~root", "*x"}) {
        server.files["/" + name] = name;
        EXPECT_EQ(transport.getFile(connection, name, folder.file("x"), false, 0x80, TransferBinary), Success)
            << name;
        EXPECT_EQ(folder.read("x"), name);
        EXPECT_EQ(server.commands().back(), "RETR " + name);
        EXPECT_EQ(transport.deleteFile(connection, name), Success);
        EXPECT_EQ(server.commands().back(), "DELE " + name);
    }
}

TEST_P(CurlTransportTest, ControlCharactersInTheNameOfAFileAreRefusedAndTheConnectionStands)
{
    ASSERT_EQ(connect(), Success);
    EXPECT_EQ(transport.getFile(connection, "a\tb", folder.file("x"), false, 0x80, TransferBinary),
              InvalidParameter);
    FindRecord record;
    Handle find = 0;
    EXPECT_EQ(transport.findFirst(connection, "a\x01/*", record, find), InvalidParameter);
    EXPECT_EQ(transport.createDirectory(connection, "a\tb"), Success);
    EXPECT_THAT(sent(), ElementsAre("MKD a\tb"));
}

TEST_P(CurlTransportTest, ANameOfTenThousandCharactersIsSentOrRefusedWhole)
{
    ASSERT_EQ(connect(), Success);
    const std::string name(10'000, 'n');
    EXPECT_EQ(transport.deleteFile(connection, name), ExtendedError);
    EXPECT_EQ(server.commands().back(), "DELE " + name);
}

TEST_P(CurlTransportTest, ADownloadThatDeliversNothingLeavesTheEarlierFile)
{
    folder.write("old", "earlier");
    ASSERT_EQ(connect(), Success);
    EXPECT_EQ(transport.getFile(connection, "missing", folder.file("old"), false, 0x80, TransferBinary),
              ExtendedError);
    EXPECT_EQ(transport.getFile(connection, "missing", folder.file("new"), false, 0x80, TransferBinary),
              ExtendedError);
    EXPECT_EQ(folder.read("old"), "earlier");
    EXPECT_EQ(folder.read("new"), std::nullopt);
}

TEST_P(CurlTransportTest, ADownloadReplacesTheEarlierFileWhole)
{
    folder.write("old", std::string(1000, 'x'));
    server.files["/a"] = "short";
    server.files["/empty"] = "";
    ASSERT_EQ(connect(), Success);
    ASSERT_EQ(transport.getFile(connection, "a", folder.file("old"), false, 0x80, TransferBinary), Success);
    EXPECT_EQ(folder.read("old"), "short");
    ASSERT_EQ(transport.getFile(connection, "empty", folder.file("old"), false, 0x80, TransferBinary),
              Success);
    EXPECT_EQ(folder.read("old"), "");
    EXPECT_EQ(transport.getFile(connection, "a", folder.file("old"), true, 0x80, TransferBinary), FileExists);
}

TEST_P(CurlTransportTest, ADownloadThatBreaksOffLeavesTheEarlierFileAndNoHalfOne)
{
    folder.write("old", std::string(100'000, 'x'));
    server.on["RETR"] = [](auto& client, const auto&) {
        client.reply("150 here");
        client.openData();
        client.sendData("the beginning");
        client.closeData();
        client.reply("451 disk on fire");
    };
    ASSERT_EQ(connect(), Success);
    for (const char* name : {"old", "new"}) {
        EXPECT_EQ(transport.getFile(connection, "a", folder.file(name), false, 0x80, TransferBinary),
                  ExtendedError);
        EXPECT_EQ(transport.lastResponse(), "451 disk on fire\r\n");
    }
    EXPECT_EQ(folder.read("old"), std::string(100'000, 'x'));
    EXPECT_EQ(folder.names(), std::set<std::string>{"old"});
}

TEST_P(CurlTransportTest, LocalFilesThatCannotBeUsedAreToldBeforeTheTransfer)
{
    server.files["/a"] = "x";
    ASSERT_EQ(connect(), Success);
    const std::size_t before = server.commands().size();
    EXPECT_EQ(transport.getFile(connection, "a", folder.file("no/such/folder"), false, 0x80, 1),
              PathNotFound);
    EXPECT_EQ(transport.getFile(connection, "a", folder.path().string(), false, 0x80, 1), AccessDenied);
    EXPECT_EQ(transport.putFile(connection, folder.file("missing"), "b", 1), FileNotFound);
    EXPECT_EQ(transport.putFile(connection, folder.file("no/such"), "b", 1), PathNotFound);
    EXPECT_EQ(transport.putFile(connection, folder.path().string(), "b", 1), AccessDenied);
    EXPECT_EQ(server.commands().size(), before);
}

TEST_P(CurlTransportTest, TheServersWordsAreKeptWithAllTheirLines)
{
    server.on["DELE"] = [](auto& client, const auto&) {
        client.send("550-It is so:\r\n no such file\r\n550 à è €\r\n");
    };
    ASSERT_EQ(connect(), Success);
    EXPECT_EQ(transport.deleteFile(connection, "a"), ExtendedError);
    EXPECT_EQ(transport.lastResponse(), "550-It is so:\r\n no such file\r\n550 à è €\r\n");
}

TEST_P(CurlTransportTest, TheDirectoryIsUnquoted)
{
    server.on["PWD"] = [](auto& client, const auto&) { client.reply(R"(257 "/a ""b"" c" is it)"); };
    ASSERT_EQ(connect(), Success);
    std::string directory;
    EXPECT_EQ(transport.getCurrentDirectory(connection, 1024, directory), Success);
    EXPECT_EQ(directory, "/a \"b\" c");
    EXPECT_EQ(transport.getCurrentDirectory(connection, 8, directory), InsufficientBuffer);
    EXPECT_EQ(transport.getCurrentDirectory(connection, 9, directory), Success);
}

TEST_P(CurlTransportTest, ADirectoryChangeIsConfirmedByItsOwnReply)
{
    server.on["CWD"] = [](auto& client, const std::string& argument) {
        client.reply(argument == "there" ? "250 CWD ok" : "550 not there");
    };
    ASSERT_EQ(connect(), Success);
    EXPECT_EQ(transport.setCurrentDirectory(connection, "there"), Success);
    EXPECT_EQ(transport.lastResponse(), "250 CWD ok\r\n");
    EXPECT_EQ(transport.setCurrentDirectory(connection, "elsewhere"), ExtendedError);
    EXPECT_EQ(transport.lastResponse(), "550 not there\r\n");
}

// Logins.

TEST_P(CurlTransportTest, ARefusedPasswordIsAnIncorrectPassword)
{
    server.loginReply = "530 Login incorrect.";
    EXPECT_EQ(connect(), IncorrectPassword);
    EXPECT_EQ(connection, 0U);
    EXPECT_EQ(transport.lastResponse(), "530 Login incorrect.\r\n");
}

TEST_P(CurlTransportTest, ARefusedUserIsALoginFailure)
{
    server.on["USER"] = [](auto& client, const auto&) { client.reply("530 Not you."); };
    EXPECT_EQ(connect(), LoginFailure);
}

TEST_P(CurlTransportTest, AServerThatWantsAnAccountIsALoginFailure)
{
    server.loginReply = "332 Account?";
    EXPECT_EQ(connect(), LoginFailure);
}

TEST_P(CurlTransportTest, AServerThatIsFullSaysSoInItsOwnWords)
{
    server.greeting = [](auto& client) {
        client.reply("421 Too many users.");
        client.hangUp();
    };
    EXPECT_EQ(connect(), ExtendedError);
    EXPECT_EQ(transport.lastResponse(), "421 Too many users.\r\n");
}

TEST_P(CurlTransportTest, AnEmptyUserIsTheAnonymousOne)
{
    ASSERT_EQ(
        transport.connect(session, {"127.0.0.1", server.port(), "", "", ServiceFtp, GetParam()}, connection),
        Success);
    EXPECT_EQ(server.commands()[0], "USER anonymous");
    EXPECT_THAT(server.commands()[1], StartsWith("PASS anonymous@"));
}

TEST_P(CurlTransportTest, UsersAndPasswordsAreSentAsTheyAre)
{
    ASSERT_EQ(transport.connect(session,
                                {"127.0.0.1", server.port(), "u;x:y@z", "p@:/%41 è", ServiceFtp, GetParam()},
                                connection),
              Success);
    EXPECT_EQ(server.commands()[0], "USER u;x:y@z");
    EXPECT_EQ(server.commands()[1], "PASS p@:/%41 è");
}

TEST_P(CurlTransportTest, AnEmptyPasswordIsSentEmpty)
{
    ASSERT_EQ(
        transport.connect(session, {"127.0.0.1", server.port(), "u", "", ServiceFtp, GetParam()}, connection),
        Success);
    EXPECT_EQ(server.commands()[1], "PASS ");
}

TEST_P(CurlTransportTest, ServerNamesThatAreNoneDoNotResolve)
{
    for (const std::string name :
         {"", " ", "no such host", "127.0.0.1/../x", "user@127.0.0.1", "a#b", "127.0.0.1:21:21:zz",
          "an-impossibly-long-label-of-more-than-sixty-three-characters-is-no-name.example"}) {
        EXPECT_EQ(transport.connect(session, {name, server.port(), "u", "p"}, connection), NameNotResolved)
            << name;
    }
    EXPECT_TRUE(server.commands().empty());
}

TEST_P(CurlTransportTest, APortWhereNobodyListensCannotBeConnected)
{
    std::uint16_t port = 0;
    {
        const ScriptedServer gone;
        port = gone.port();
    }
    EXPECT_EQ(transport.connect(session, {"127.0.0.1", port, "u", "p", ServiceFtp, GetParam()}, connection),
              CannotConnect);
}

// Searches.

class SearchTest : public CurlTransportTest
{
protected:
    void SetUp() override
    {
        CurlTransportTest::SetUp();
        server.listing = "total 5\r\n"
                         "drwxr-xr-x 2 u g 4096 Nov 21 2023 .\r\n"
                         "-rw-r--r-- 1 u g    7 Nov 21 2023 a.txt\r\n"
                         "-rw-r--r-- 1 u g    8 Nov 21 2023 B.TXT\r\n"
                         "-rw-r--r-- 1 u g    9 Nov 21 2023 a b.csv\r\n"
                         "drwxr-xr-x 2 u g 4096 Nov 21 2023 sub\r\n";
        ASSERT_EQ(connect(), Success);
    }

    std::vector<std::string> search(const std::string& filter)
    {
        std::vector<std::string> names;
        FindRecord record;
        Handle find = 0;
        auto code = transport.findFirst(connection, filter, record, find);
        while (code == Success) {
            names.push_back(record.name);
            code = transport.findNext(find, record);
        }
        EXPECT_EQ(code, NoMoreFiles);
        transport.closeHandle(find);
        return names;
    }
};

INSTANTIATE_TEST_SUITE_P(Modes, SearchTest, ::testing::Values(ModePassive),
                         [](const auto&) { return "Passive"; });

TEST_P(SearchTest, WithoutAFilterEverythingIsFoundAsListed)
{
    EXPECT_THAT(search(""), ElementsAre(".", "a.txt", "B.TXT", "a b.csv", "sub"));
    EXPECT_EQ(server.commands().back(), "LIST");
}

TEST_P(SearchTest, WildcardsFilter)
{
    EXPECT_THAT(search("*"), ElementsAre(".", "a.txt", "B.TXT", "a b.csv", "sub"));
    EXPECT_THAT(search("*.txt"), ElementsAre("a.txt"));
    EXPECT_THAT(search("?.*"), ElementsAre("a.txt", "B.TXT"));
    EXPECT_THAT(search("*.pdf"), ElementsAre());
}

TEST_P(SearchTest, ANameFindsItsEntry)
{
    EXPECT_THAT(search("a b.csv"), ElementsAre("a b.csv"));
    EXPECT_THAT(search("b.txt"), ElementsAre());
    EXPECT_EQ(server.commands().back(), "LIST");
}

TEST_P(SearchTest, TheNameOfADirectoryFindsWhatIsInIt)
{
    EXPECT_EQ(search("sub").size(), 5U);
    EXPECT_EQ(server.commands().back(), "LIST sub");
    EXPECT_EQ(search("sub/").size(), 5U);
    EXPECT_EQ(server.commands().back(), "LIST sub");
    EXPECT_EQ(search("..").size(), 5U);
    EXPECT_EQ(server.commands().back(), "LIST ..");
    EXPECT_EQ(search("/").size(), 5U);
    EXPECT_EQ(server.commands().back(), "LIST /");
}

TEST_P(SearchTest, ThePathOfAFilterIsListed)
{
    EXPECT_THAT(search("sub dir/*.txt"), ElementsAre("a.txt"));
    EXPECT_EQ(server.commands().back(), "LIST sub dir");
    EXPECT_THAT(search("/x/y/a.txt"), ElementsAre("a.txt"));
    EXPECT_EQ(server.commands().back(), "LIST /x/y");
    EXPECT_THAT(search("/a.txt"), ElementsAre("a.txt"));
    EXPECT_EQ(server.commands().back(), "LIST /");
}

TEST_P(SearchTest, ADirectoryThatLooksLikeAnOptionIsNotOne)
{
    search("-R/*");
    EXPECT_EQ(server.commands().back(), "LIST ./-R");
}

TEST_P(SearchTest, AnEmptyDirectoryHasNoMoreFiles)
{
    server.listing.clear();
    EXPECT_THAT(search(""), ElementsAre());
    server.on["LIST"] = [](auto& client, const auto&) { client.reply("450 No files found"); };
    EXPECT_THAT(search(""), ElementsAre());
}

TEST_P(SearchTest, ARefusedListingIsTheServersWord)
{
    server.on["LIST"] = [](auto& client, const auto&) { client.reply("550 Not yours"); };
    FindRecord record;
    Handle find = 0;
    EXPECT_EQ(transport.findFirst(connection, "", record, find), ExtendedError);
    EXPECT_EQ(transport.lastResponse(), "550 Not yours\r\n");
    EXPECT_EQ(find, 0U);
}

TEST_P(SearchTest, OtherOperationsMayRunBetweenTheSteps)
{
    FindRecord record;
    Handle find = 0;
    ASSERT_EQ(transport.findFirst(connection, "*.txt", record, find), Success);
    EXPECT_EQ(transport.createDirectory(connection, "x"), Success);
    EXPECT_EQ(transport.findNext(find, record), NoMoreFiles);
}

} // namespace
} // namespace zul::test
