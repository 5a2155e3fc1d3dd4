// The client against a server that means no good: every case ends in an error, in time, with bounded memory.
#include "ftp/CurlTransport.h"

#include "ftp/cFtp.h"
#include "tests/ftp/Modes.h"
#include "tests/ftp/ScriptedServer.h"
#include "tests/ftp/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zul::test {
namespace {

using namespace ftp;
using namespace std::chrono_literals;
using ::testing::AnyOf;

/// Patient, so that a slow machine fails no test; small where size is what counts.
CurlTransportOptions patient()
{
    CurlTransportOptions options;
    options.goodbyeTimeout = 100ms;
    options.maxListingBytes = 200'000;
    options.maxListingEntries = 1000;
    return options;
}

class HostileServerTest : public ::testing::TestWithParam<std::uint32_t>
{
protected:
    HostileServerTest() { use(patient()); }

    void use(const CurlTransportOptions& options)
    {
        client = std::make_unique<cFtp>(std::make_unique<CurlTransport>(options));
        if (GetParam() == ModePassive) {
            client->SetModePassive();
        }
        client->SetTransferBinary();
    }

    /// For the tests that wait for a silence to end.
    void hurry(std::chrono::milliseconds stall = 200ms)
    {
        auto options = patient();
        options.stallTimeout = stall;
        use(options);
    }

    bool connect() { return client->OpenConnection("127.0.0.1", server.portText(), "user", "secret"); }

    std::string message() const { return client->GetLastErrorMessage(); }

    /// The number in the message.
    int code() const
    {
        const std::string marker = " error code: ";
        const std::size_t at = message().find(marker);
        return at == std::string::npos ? 0 : std::stoi(message().substr(at + marker.size()));
    }

    static ScriptedServer::Hook stalling()
    {
        return [](auto& session, const auto&) { session.stall(); };
    }

    static ScriptedServer::Hook droppingBytes()
    {
        return [](auto& session, const auto&) {
            session.reply("150 here");
            session.openData();
            while (session.sendData("x")) {
                std::this_thread::sleep_for(20ms);
            }
            session.hangUp();
        };
    }

    /// A download that fails with this number and leaves the local side as it was.
    void expectNoDownload(int number)
    {
        folder.write("a", "earlier");
        EXPECT_FALSE(client->SimpleFTPGetFile(folder.file("a"), "a"));
        EXPECT_EQ(code(), number);
        EXPECT_EQ(folder.read("a"), "earlier");
        EXPECT_EQ(folder.names(), std::set<std::string>{"a"});
    }

    TempFolder folder;
    ScriptedServer server;
    TransferLimits limits;
    std::unique_ptr<cFtp> client;
};

INSTANTIATE_TEST_SUITE_P(Modes, HostileServerTest, ::testing::ValuesIn(modes()), modeName);

/// What happens on the control connection alone, where the mode makes no difference.
class HostileCommandTest : public HostileServerTest
{};

INSTANTIATE_TEST_SUITE_P(Modes, HostileCommandTest, ::testing::Values(ModePassive),
                         [](const auto&) { return "Passive"; });

TEST_P(HostileCommandTest, SilenceAtTheDoorTimesOut)
{
    auto options = patient();
    options.connectTimeout = 300ms;
    use(options);
    server.greeting = [](auto& session) { session.stall(); };
    EXPECT_FALSE(connect());
    EXPECT_EQ(message(), "InternetConnect error code: 12002 Message: The server did not answer in time.\r\n");
}

TEST_P(HostileCommandTest, SilenceAtTheLoginTimesOut)
{
    auto options = patient();
    options.connectTimeout = 300ms;
    use(options);
    for (const char* verb : {"USER", "PASS", "PWD"}) {
        server.on.clear();
        server.on[verb] = stalling();
        EXPECT_FALSE(connect());
        EXPECT_EQ(code(), 12002) << verb;
    }
}

TEST_P(HostileCommandTest, SilenceAfterACommandTimesOutAndTheConnectionIsOver)
{
    hurry();
    server.on["DELE"] = stalling();
    ASSERT_TRUE(connect());
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_EQ(code(), 12002);
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_EQ(code(), 12030);
}

TEST_P(HostileCommandTest, SilenceAtTheGoodbyeDoesNotHoldTheClient)
{
    server.on["QUIT"] = stalling();
    ASSERT_TRUE(connect());
    client->CloseConnection();
    EXPECT_TRUE(connect());
}

TEST_P(HostileCommandTest, ASecondGoodbyeIsNotWaitedFor)
{
    server.on["QUIT"] = [](auto& session, const auto&) {
        session.reply("221 but I stay");
        session.stall();
    };
    ASSERT_TRUE(connect());
    client->CloseConnection();
    EXPECT_TRUE(connect());
}

TEST_P(HostileServerTest, SilenceOnTheDataConnectionTimesOut)
{
    hurry(600ms);
    server.on["RETR"] = [](auto& session, const auto&) {
        session.reply("150 here");
        session.openData();
        session.sendData("first");
        session.stall();
    };
    ASSERT_TRUE(connect());
    EXPECT_FALSE(client->SimpleFTPGetFile(folder.file("a"), "a"));
    EXPECT_EQ(code(), 12002);
    EXPECT_EQ(folder.names(), std::set<std::string>()) << "half a file is none";
}

TEST_P(HostileServerTest, ADataConnectionThatNeverStandsTimesOut)
{
    hurry();
    folder.write("earlier", "kept");
    server.on["RETR"] = [](auto& session, const auto&) {
        session.reply("150 here");
        session.stall();
    };
    ASSERT_TRUE(connect());
    EXPECT_FALSE(client->SimpleFTPGetFile(folder.file("earlier"), "a"));
    EXPECT_EQ(code(), 12002);
    EXPECT_EQ(folder.read("earlier"), "kept");
}

TEST_P(HostileServerTest, SilenceAfterTheDataTimesOut)
{
    hurry(600ms);
    server.on["RETR"] = [](auto& session, const auto&) {
        session.reply("150 here");
        session.openData();
        session.sendData("all");
        session.closeData();
        session.stall();
    };
    ASSERT_TRUE(connect());
    EXPECT_FALSE(client->SimpleFTPGetFile(folder.file("a"), "a"));
    EXPECT_EQ(code(), 12002);
}

TEST_P(HostileServerTest, AStalledUploadTimesOut)
{
    hurry(600ms);
    server.on["STOR"] = [](auto& session, const auto&) {
        session.reply("150 go on");
        session.openData();
        session.stall();
    };
    folder.write("big", pattern(30'000'000));
    ASSERT_TRUE(connect());
    EXPECT_FALSE(client->SimpleFTPPutFile(folder.file("big"), "b"));
    EXPECT_EQ(code(), 12002);
}

TEST_P(HostileServerTest, AStallWithinADownloadByPiecesIsItsOwnError)
{
    hurry(600ms);
    server.on["RETR"] = [](auto& session, const auto&) {
        session.reply("150 here");
        session.openData();
        session.sendData(pattern(300));
        session.stall();
    };
    ASSERT_TRUE(connect());
    std::int32_t size = 600;
    EXPECT_FALSE(client->FTPDownloadFile(folder.file("a"), "a", size));
    EXPECT_EQ(message(),
              "InternetReadFile error code: 12002 Message: The server did not answer in time.\r\n");
    EXPECT_FALSE(folder.read("a")) << "no half file";
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_EQ(code(), 12110) << "the remote file stays open";
    EXPECT_TRUE(connect()) << "until the connection is opened anew";
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_EQ(message(), "550 a: no such file\r\n");
}

TEST_P(HostileCommandTest, AnEndlessReplyIsCutOff)
{
    server.on["DELE"] = [](auto& session, const auto&) {
        for (;;) {
            session.reply("250-" + std::string(70, 'x'));
        }
    };
    ASSERT_TRUE(connect());
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_EQ(code(), 12152);
}

TEST_P(HostileCommandTest, AnEndlessLineIsCutOff)
{
    hurry();
    server.on["DELE"] = [](auto& session, const auto&) {
        for (;;) {
            session.send(std::string(1000, 'x'));
        }
    };
    ASSERT_TRUE(connect());
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_THAT(code(), AnyOf(12002, 12152, 12030));
}

TEST_P(HostileCommandTest, AnEndlessGreetingIsCutOff)
{
    server.greeting = [](auto& session) {
        for (;;) {
            session.reply("220-hello");
        }
    };
    EXPECT_FALSE(connect());
    EXPECT_EQ(code(), 12152);
}

TEST_P(HostileCommandTest, EndlessPreliminaryRepliesEnd)
{
    server.on["DELE"] = [](auto& session, const auto&) {
        for (;;) {
            session.reply("150 wait");
        }
    };
    ASSERT_TRUE(connect());
    EXPECT_FALSE(client->DeleteFTPFile("a"));
}

TEST_P(HostileServerTest, AnEndlessListingIsCutOff)
{
    server.on["LIST"] = [](auto& session, const auto&) {
        session.reply("150 here");
        session.openData();
        while (session.sendData("-rw-r--r-- 1 u g 7 Nov 21 2023 " + std::string(200, 'n') + "\r\n")) {
        }
        session.hangUp();
    };
    ASSERT_TRUE(connect());
    bool isOk = false;
    EXPECT_EQ(client->GetDirectoryListing("", isOk), nullptr);
    EXPECT_EQ(code(), 12152);
    EXPECT_LT(server.dataBytes(), 20'000'000U);
    EXPECT_TRUE(isOk);
}

TEST_P(HostileServerTest, AListingOfTooManyEntriesIsRefused)
{
    for (int i = 0; i < 1001; ++i) {
        server.listing += "-rw-r--r-- 1 u g 7 Nov 21 2023 n" + std::to_string(i) + "\r\n";
    }
    ASSERT_TRUE(connect());
    bool isOk = false;
    EXPECT_EQ(client->GetDirectoryListing("", isOk), nullptr);
    EXPECT_EQ(code(), 12152);
}

TEST_P(HostileServerTest, AListingWithoutALineEndIsCutOff)
{
    server.on["LIST"] = [](auto& session, const auto&) {
        session.reply("150 here");
        session.openData();
        while (session.sendData(std::string(10'000, '-'))) {
        }
        session.hangUp();
    };
    ASSERT_TRUE(connect());
    bool isOk = false;
    EXPECT_EQ(client->GetDirectoryListing("", isOk), nullptr);
    EXPECT_EQ(code(), 12152);
}

TEST_P(HostileServerTest, AnEndlessFileDoesNotHoldADownloadByPieces)
{
    server.on["RETR"] = [](auto& session, const auto&) {
        session.reply("150 here");
        session.openData();
        while (session.sendData(pattern(10'000))) {
        }
        session.hangUp();
    };
    ASSERT_TRUE(connect());
    std::int32_t size = 300;
    EXPECT_TRUE(client->FTPDownloadFile(folder.file("a"), "a", size));
    EXPECT_EQ(folder.read("a"), pattern(300));
    EXPECT_TRUE(client->CreateFTPDirectory("d"));
}

TEST_P(HostileServerTest, AnEndlessFileEndsWithTheTimeOfTheTransfer)
{
    limits.longestTime = 1s;
    limits.lowestSpeed = 0;
    client->SetTransferLimits(limits);
    server.on["RETR"] = droppingBytes();
    ASSERT_TRUE(connect());
    expectNoDownload(12002);
}

TEST_P(HostileServerTest, AFileThatDripsEndsWithTheLowestSpeed)
{
    limits.lowestSpeed = 1000;
    limits.slowestFor = 1s;
    client->SetTransferLimits(limits);
    server.on["RETR"] = droppingBytes();
    ASSERT_TRUE(connect());
    const auto start = std::chrono::steady_clock::now();
    expectNoDownload(12002);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
}

TEST_P(HostileServerTest, AFileWithoutEndEndsWithTheLargestSize)
{
    limits.largestFile = 1'000'000;
    client->SetTransferLimits(limits);
    server.on["RETR"] = [](auto& session, const auto&) {
        session.reply("150 here");
        session.openData();
        while (session.sendData(std::string(10'000, 'x'))) {
        }
        session.hangUp();
    };
    ASSERT_TRUE(connect());
    expectNoDownload(223);
}

TEST_P(HostileServerTest, AFileOfExactlyTheLargestSizeIsTaken)
{
    limits.largestFile = 1000;
    client->SetTransferLimits(limits);
    server.files["/a"] = pattern(1000);
    server.files["/b"] = pattern(1001);
    ASSERT_TRUE(connect());
    EXPECT_TRUE(client->SimpleFTPGetFile(folder.file("a"), "a")) << message();
    EXPECT_EQ(folder.read("a"), pattern(1000));
    EXPECT_FALSE(client->SimpleFTPGetFile(folder.file("a"), "b"));
    EXPECT_EQ(folder.read("a"), pattern(1000));
    EXPECT_TRUE(client->DeleteFTPFile("b")) << "the connection is restored";
}

TEST_P(HostileServerTest, NamesInAListingAreData)
{
    server.listing = "-rw-r--r-- 1 u g 7 Nov 21 2023 ../../etc/passwd\r\n"
                     "-rw-r--r-- 1 u g 7 Nov 21 2023 /abs\r\n"
                     "-rw-r--r-- 1 u g 7 Nov 21 2023 C:\\x\r\n";
    ASSERT_TRUE(connect());
    bool isOk = false;
    const auto list = client->GetDirectoryListing("", isOk);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->Item(1)->Filename, "../../etc/passwd");
    EXPECT_EQ(list->Item(2)->Filename, "/abs");
    EXPECT_EQ(list->Item(3)->Filename, "C:\\x");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_P(HostileCommandTest, MalformedRepliesEndInAnError)
{
    hurry();
    for (const std::string reply :
         {"hello\r\n", "2\r\n", "25\r\n", "250\r\n", "25x ok\r\n", " 250 ok\r\n", "-50 ok\r\n", "\r\n",
          "000 zero\r\n", "150 wait\r\n", "350 more\r\n", "999 what\r\n", "099 low\r\n", "2500 ok\r\n"}) {
        server.on["DELE"] = [reply](auto& session, const auto&) { session.send(reply); };
        ASSERT_TRUE(connect()) << reply;
        EXPECT_FALSE(client->DeleteFTPFile("a")) << reply;
        EXPECT_NE(message(), "") << reply;
    }
    server.on["DELE"] = [](auto& session, const auto&) {
        session.send(std::string("\0\0\0\0 250 ok\r\n\xff\xfe\r\n", 17));
    };
    ASSERT_TRUE(connect());
    EXPECT_FALSE(client->DeleteFTPFile("a"));
}

TEST_P(HostileCommandTest, MalformedGreetingsEndInAnError)
{
    auto options = patient();
    options.connectTimeout = 300ms;
    use(options);
    for (const std::string greeting : {"SSH-2.0-OpenSSH_9.2\r\n", "HTTP/1.1 400 Bad Request\r\n\r\n",
                                       "120 later\r\n", "331 what\r\n", "500 no\r\n"}) {
        server.greeting = [greeting](auto& session) {
            session.send(greeting);
            session.stall();
        };
        EXPECT_FALSE(connect()) << greeting;
    }
}

TEST_P(HostileCommandTest, MalformedDirectoriesEndInAnError)
{
    for (const std::string reply : {"257 no quotes", "257 \"never ends", "257 \"", "200 \"/x\""}) {
        server.on["PWD"] = [reply](auto& session, const auto&) { session.reply(reply); };
        ASSERT_TRUE(connect()) << reply;
        const std::string directory = client->GetFTPDirectory();
        EXPECT_EQ(directory, reply.starts_with("200") ? "/x" : "") << reply;
    }
    server.on["PWD"] = [](auto& session, const auto&) {
        session.reply("257 \"/" + std::string(1023, 'd') + "\"");
    };
    ASSERT_TRUE(connect());
    EXPECT_EQ(client->GetFTPDirectory(), "");
    EXPECT_EQ(code(), 122);
}

// Cuts.

/// One session with everything in it; true when all went well.
bool wholeSession(cFtp& client, const ScriptedServer& server, const TempFolder& folder)
{
    bool isOk = false;
    std::int32_t size = 300;
    std::string local = folder.file("up");
    std::string remote = "up";
    bool ok = client.OpenConnection("127.0.0.1", server.portText(), "user", "secret");
    ok = client.SetFTPDirectory("/") && ok;
    ok = client.GetDirectoryListing("*", isOk) != nullptr && ok;
    ok = client.SimpleFTPGetFile(folder.file("got"), "a.txt") && ok;
    ok = client.FTPDownloadFile(folder.file("pieces"), "a.txt", size) && ok;
    ok = client.FTPUploadFile(local, remote) && ok;
    ok = client.RenameFTPFile("up", "up2") && ok;
    client.CloseConnection();
    return ok;
}

class CutTest : public HostileServerTest
{
protected:
    void SetUp() override
    {
        server.files["/a.txt"] = pattern(300);
        server.listing = "-rw-r--r-- 1 u g 300 Nov 21 2023 a.txt\r\n";
        folder.write("up", pattern(600));
    }
};

INSTANTIATE_TEST_SUITE_P(Modes, CutTest, ::testing::ValuesIn(modes()), modeName);

TEST_P(CutTest, TheControlConnectionMayEndAtEveryByte)
{
    // A session may take a connection more than it needs; the shortest counts. The goodbye comes after all that
    // is asked for.
    std::size_t all = ScriptedServer::Never;
    for (int i = 0; i < 5; ++i) {
        const std::size_t before = server.controlBytes();
        ASSERT_TRUE(wholeSession(*client, server, folder)) << message();
        all = std::min(all, server.controlBytes() - before - std::string("221 bye\r\n").size());
    }
    ASSERT_GT(all, 200U);
    for (std::size_t cut = 0; cut < all; ++cut) {
        server.cutControlAfter(cut);
        EXPECT_FALSE(wholeSession(*client, server, folder)) << "cut after " << cut;
        EXPECT_NE(message(), "") << "cut after " << cut;
    }
    server.cutControlAfter(ScriptedServer::Never);
    EXPECT_TRUE(wholeSession(*client, server, folder)) << message();
}

TEST_P(CutTest, TheDataConnectionMayEndAtEveryByte)
{
    ASSERT_TRUE(connect());
    // The server says that all is well: what came is then the file.
    for (std::size_t cut = 0; cut <= 300; ++cut) {
        server.cutDataAfter = cut;
        EXPECT_TRUE(client->SimpleFTPGetFile(folder.file("got"), "a.txt"));
        EXPECT_EQ(folder.read("got"), pattern(300).substr(0, cut));
        bool isOk = false;
        const auto list = client->GetDirectoryListing("", isOk);
        EXPECT_TRUE(isOk);
        EXPECT_TRUE(list == nullptr || list->Count() == 1);
    }
    // The server says that it broke off.
    server.on["RETR"] = [](auto& session, const auto&) {
        session.reply("150 here");
        session.openData();
        session.sendData(pattern(300));
        session.closeData();
        session.reply("426 broken off");
    };
    for (std::size_t cut = 0; cut <= 300; ++cut) {
        server.cutDataAfter = cut;
        folder.write("got", "earlier");
        EXPECT_FALSE(client->SimpleFTPGetFile(folder.file("got"), "a.txt"));
        EXPECT_EQ(message(), "426 broken off\r\n");
        EXPECT_EQ(folder.read("got"), "earlier");
    }
}

TEST_P(HostileCommandTest, AReplyMayStallAtEveryByte)
{
    hurry();
    const std::string reply = "550-no\r\n550 never\r\n";
    for (std::size_t cut = 0; cut < reply.size(); ++cut) {
        server.on["DELE"] = [&reply, cut](auto& session, const auto&) {
            session.send(reply.substr(0, cut));
            session.stall();
        };
        ASSERT_TRUE(connect());
        EXPECT_FALSE(client->DeleteFTPFile("a"));
        EXPECT_EQ(code(), 12002) << cut;
    }
}

// Passive addresses.

class PassiveAddressTest : public HostileServerTest
{};

INSTANTIATE_TEST_SUITE_P(Modes, PassiveAddressTest, ::testing::Values(ModePassive),
                         [](const auto&) { return "Passive"; });

TEST_P(PassiveAddressTest, AForeignAddressIsNotFollowed)
{
    server.files["/a"] = "from the server itself";
    server.on["PASV"] = [](auto& session, const auto&) {
        session.reply("227 Entering Passive Mode (" + session.listenForData("10,255,255,1") + ")");
    };
    ASSERT_TRUE(connect());
    EXPECT_TRUE(client->SimpleFTPGetFile(folder.file("a"), "a"));
    EXPECT_EQ(folder.read("a"), "from the server itself");
}

TEST_P(PassiveAddressTest, MalformedAddressesEndInAnError)
{
    for (const std::string reply :
         {"227 no address", "227 (1,2,3)", "227 (999,0,0,1,4,5)", "227 (127,0,0,1,999,999)",
          "227 (127,0,0,1,-1,-1)", "227 (127,0,0,1,0,0)", "500 no passive mode",
          "227 (127,0,0,1,99999999999999999999,1)", "200 (127,0,0,1,4,5)"}) {
        server.on["PASV"] = [reply](auto& session, const auto&) { session.reply(reply); };
        ASSERT_TRUE(connect()) << reply;
        EXPECT_FALSE(client->SimpleFTPGetFile(folder.file("a"), "a")) << reply;
        EXPECT_NE(message(), "") << reply;
    }
    EXPECT_EQ(folder.read("a"), std::nullopt);
}

TEST_P(PassiveAddressTest, APortWhereNobodyListensEndsInAnError)
{
    server.on["PASV"] = [](auto& session, const auto&) { session.reply("227 (127,0,0,1,0,1)"); };
    ASSERT_TRUE(connect());
    EXPECT_FALSE(client->SimpleFTPGetFile(folder.file("a"), "a"));
    EXPECT_EQ(code(), 12029);
}

class ActiveTest : public HostileServerTest
{};

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ActiveTest);
INSTANTIATE_TEST_SUITE_P(Modes, ActiveTest, ::testing::ValuesIn(activeMode()), modeName);

TEST_P(ActiveTest, ARefusedPortIsTheServersWord)
{
    server.on["PORT"] = [](auto& session, const auto&) { session.reply("500 no active mode"); };
    ASSERT_TRUE(connect());
    EXPECT_FALSE(client->SimpleFTPGetFile(folder.file("a"), "a"));
    EXPECT_EQ(message(), "500 no active mode\r\n");
}

TEST_P(ActiveTest, AReplyThatOvertakesTheDataConnectionLosesNothing)
{
    server.listing = "-rw-r--r-- 1 u g 300 Nov 21 2023 a\r\n";
    int ports = 0;
    int early = 0;
    server.on["PORT"] = [&](auto& session, const std::string& argument) {
        session.prepareActive(argument);
        session.send(++ports == early ? "200 ok\r\n150 here\r\n" : "200 ok\r\n");
    };
    const auto answer = [&](auto& session, const std::string& bytes) {
        if (ports == early) {
            std::this_thread::sleep_for(50ms);
        } else {
            session.reply("150 here");
        }
        if (!session.openData()) {
            session.hangUp();
        }
        session.sendData(bytes);
        session.closeData();
        session.reply("226 done");
    };
    server.on["RETR"] = [&](auto& session, const auto&) { answer(session, pattern(300)); };
    server.on["LIST"] = [&](auto& session, const auto&) { answer(session, server.listing); };
    ASSERT_TRUE(connect());
    ASSERT_TRUE(client->SimpleFTPGetFile(folder.file("first"), "a"));
    early = ports + 1;
    EXPECT_TRUE(client->SimpleFTPGetFile(folder.file("second"), "a")) << message();
    EXPECT_EQ(folder.read("second"), pattern(300));
    early = ports + 1;
    std::int32_t size = 300;
    EXPECT_TRUE(client->FTPDownloadFile(folder.file("third"), "a", size)) << message();
    EXPECT_EQ(folder.read("third"), pattern(300));
    bool isOk = false;
    ASSERT_NE(client->GetDirectoryListing("", isOk), nullptr);
    early = ports + 1;
    const auto list = client->GetDirectoryListing("", isOk);
    ASSERT_NE(list, nullptr) << message();
    EXPECT_EQ(list->Count(), 1);
}

} // namespace
} // namespace zul::test
