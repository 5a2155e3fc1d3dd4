// Every member of the client, on a transport that does what the test says.
#include "ftp/cFtp.h"

#include "ftp/FileTime.h"
#include "tests/ftp/FakeTransport.h"
#include "tests/ftp/TempFolder.h"

#include <clocale>
#include <cstdlib>
#include <ctime>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>

namespace zul::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string NullHandleText = " error code: 6 Message: There is no open handle for this operation.\r\n";

class cFtpTest : public ::testing::Test
{
protected:
    cFtpTest()
        : world(std::make_shared<FakeWorld>())
        , client(makeClient())
    {
        listen(*client);
    }

    std::unique_ptr<cFtp> makeClient()
    {
        return std::make_unique<cFtp>(std::make_unique<FakeTransport>(world));
    }

    /// Writes down events and breaths in their order.
    void listen(cFtp& ftp)
    {
        ftp.StateChanged = [this](std::int32_t state) { events.push_back("state " + std::to_string(state)); };
        ftp.FileTransferProgress = [this](std::int32_t current, std::int32_t total) {
            events.push_back(std::to_string(current) + "/" + std::to_string(total));
        };
        ftp.yield = [this] { events.emplace_back("breath"); };
    }

    bool connect() { return client->OpenConnection("server", "21", "user", "secret"); }

    /// The events without the breaths.
    std::vector<std::string> progress() const
    {
        auto result = events;
        std::erase(result, "breath");
        return result;
    }

    /// An error number thrown by @p action; 0 when there is none.
    template <typename Action>
    static int thrownBy(Action action)
    {
        try {
            action();
        } catch (const ftp::RunTimeError& error) {
            return error.number;
        }
        return 0;
    }

    void find(const std::string& name, std::uint32_t attributes = ftp::AttributeNormal,
              std::uint64_t size = 0)
    {
        ftp::FindRecord record;
        record.name = name;
        record.attributes = attributes;
        record.size = size;
        world->found.push_back(record);
    }

    TempFolder folder;
    std::shared_ptr<FakeWorld> world;
    std::unique_ptr<cFtp> client;
    std::vector<std::string> events;
};

// Life.

TEST_F(cFtpTest, ConstructionOpensTheSession)
{
    EXPECT_THAT(world->calls, ElementsAre("openSession QVR FTP Client 0"));
    EXPECT_EQ(client->stringaLog, "");
    EXPECT_EQ(client->GetLastErrorMessage(), "");
}

TEST_F(cFtpTest, ASessionThatCannotBeOpenedIsLogged)
{
    world->answers["openSession"] = {12029};
    client = makeClient();
    EXPECT_EQ(client->stringaLog, "Apertura internet errata (12029)");
    EXPECT_EQ(client->GetLastErrorMessage(),
              "InternetOpen error code: 12029 Message: A connection with the server could not be made.\r\n");
    EXPECT_FALSE(connect());
    EXPECT_EQ(client->GetLastErrorMessage(), "InternetConnect" + NullHandleText);
}

TEST_F(cFtpTest, DestructionClosesTheSessionAndDoesNotCloseTheConnectionFirst)
{
    ASSERT_TRUE(connect());
    client.reset();
    EXPECT_THAT(world->closed, ElementsAre(FakeTransport::Session));
}

TEST_F(cFtpTest, OpenConnectionConnectsOnTheSession)
{
    ASSERT_TRUE(connect());
    EXPECT_EQ(world->calls.back(), "connect 1");
    EXPECT_EQ(world->request.server, "server");
    EXPECT_EQ(world->request.port, 21);
    EXPECT_EQ(world->request.user, "user");
    EXPECT_EQ(world->request.password, "secret");
    EXPECT_EQ(world->request.service, 1U);
    EXPECT_EQ(world->request.flags, 0U) << "the mode is active at first";
}

TEST_F(cFtpTest, OpenConnectionWhileConnectedClosesTheOldConnectionFirst)
{
    ASSERT_TRUE(connect());
    ASSERT_TRUE(connect());
    EXPECT_THAT(world->calls,
                ElementsAre("openSession QVR FTP Client 0", "connect 1", "closeHandle 2", "connect 1"));
}

TEST_F(cFtpTest, TheModeTakesEffectAtTheNextConnection)
{
    client->SetModePassive();
    ASSERT_TRUE(connect());
    EXPECT_EQ(world->request.flags, 0x08000000U);
    client->SetModeActive();
    ASSERT_TRUE(connect());
    EXPECT_EQ(world->request.flags, 0U);
}

TEST_F(cFtpTest, CloseConnectionClosesOnce)
{
    client->CloseConnection();
    EXPECT_THAT(world->closed, IsEmpty());
    ASSERT_TRUE(connect());
    client->CloseConnection();
    client->CloseConnection();
    EXPECT_THAT(world->closed, ElementsAre(FakeTransport::Connection));
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_EQ(client->GetLastErrorMessage(), "DeleteFTPFile" + NullHandleText);
}

// Ports.

TEST_F(cFtpTest, APort70000OverflowsAndNothingIsConnected)
{
    EXPECT_EQ(thrownBy([this] { client->OpenConnection("server", "70000", "u", "p"); }), 6);
    EXPECT_THAT(world->calls, ElementsAre("openSession QVR FTP Client 0"));
    EXPECT_EQ(thrownBy([this] { client->OpenConnection("server", "32768", "u", "p"); }), 6);
}

TEST_F(cFtpTest, APortThatIsNoNumberIsATypeMismatch)
{
    for (const std::string port : {"", "abc", " ", "21x", "2 1", "ftp", "à"}) {
        EXPECT_EQ(thrownBy([&] { client->OpenConnection("server", port, "u", "p"); }), 13) << port;
    }
    EXPECT_THAT(world->calls, Not(Contains("connect 1")));
}

TEST_F(cFtpTest, AWrongPortClosesTheOldConnectionAllTheSame)
{
    ASSERT_TRUE(connect());
    EXPECT_EQ(thrownBy([this] { client->OpenConnection("server", "x", "u", "p"); }), 13);
    EXPECT_THAT(world->closed, ElementsAre(FakeTransport::Connection));
    EXPECT_FALSE(client->DeleteFTPFile("a"));
}

TEST_F(cFtpTest, PortsAreConvertedAsNumbersAre)
{
    ASSERT_TRUE(client->OpenConnection("server", " 2121 ", "u", "p"));
    EXPECT_EQ(world->request.port, 2121);
    ASSERT_TRUE(client->OpenConnection("server", "32767", "u", "p"));
    EXPECT_EQ(world->request.port, 32767);
    ASSERT_TRUE(client->OpenConnection("server", "-1", "u", "p"));
    EXPECT_EQ(world->request.port, 65535);
    ASSERT_TRUE(client->OpenConnection("server", "0", "u", "p"));
    EXPECT_EQ(world->request.port, 0);
}

// Errors.

TEST_F(cFtpTest, AFailureLeavesOperationCodeAndText)
{
    world->answers["connect"] = {12007};
    EXPECT_FALSE(connect());
    EXPECT_EQ(client->GetLastErrorMessage(),
              "InternetConnect error code: 12007 Message: The name of the server could not be resolved.\r\n");
}

TEST_F(cFtpTest, AnExtendedErrorIsTheServersTextAlone)
{
    ASSERT_TRUE(connect());
    world->answers["deleteFile"] = {12003};
    world->lastResponse = "550 non c'è: à è € 😀\r\n";
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_EQ(client->GetLastErrorMessage(), "550 non c'è: à è € 😀\r\n");
}

TEST_F(cFtpTest, TheServersTextIsCutToItsBuffer)
{
    ASSERT_TRUE(connect());
    world->answers["deleteFile"] = {12003, 12003};
    world->lastResponse.clear();
    for (int i = 0; i < 10'000; ++i) {
        world->lastResponse += "è";
    }
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_EQ(client->GetLastErrorMessage(), world->lastResponse.substr(0, std::size_t{2} * 2047));
    world->lastResponse = std::string("550 a\0b", 7);
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_EQ(client->GetLastErrorMessage(), "550 a");
}

TEST_F(cFtpTest, ASuccessDoesNotClearTheMessageAndAFailureReplacesIt)
{
    ASSERT_TRUE(connect());
    world->answers["deleteFile"] = {12002, 0, 12030};
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    const std::string first = client->GetLastErrorMessage();
    EXPECT_TRUE(client->DeleteFTPFile("a"));
    EXPECT_EQ(client->GetLastErrorMessage(), first);
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_EQ(client->GetLastErrorMessage(),
              "DeleteFTPFile error code: 12030 Message: The connection with the server broke off.\r\n");
}

TEST_F(cFtpTest, ACodeWithoutATextLeavesTheTextEmpty)
{
    ASSERT_TRUE(connect());
    world->answers["deleteFile"] = {4711};
    EXPECT_FALSE(client->DeleteFTPFile("a"));
    EXPECT_EQ(client->GetLastErrorMessage(), "DeleteFTPFile error code: 4711 Message: ");
}

TEST_F(cFtpTest, AnOperationAfterAFailedConnectionFailsOnTheNullConnection)
{
    world->answers["connect"] = {12029};
    EXPECT_FALSE(connect());
    std::string local = folder.write("l", "x");
    std::string remote = "r";
    std::int32_t size = 1;
    bool isOk = false;
    EXPECT_FALSE(client->SimpleFTPPutFile(local, remote));
    EXPECT_EQ(client->GetLastErrorMessage(), "SimpleFtpPutFile" + NullHandleText);
    EXPECT_FALSE(client->SimpleFTPGetFile(local, remote));
    EXPECT_EQ(client->GetLastErrorMessage(), "SimpleFtpGetFile" + NullHandleText);
    EXPECT_FALSE(client->FTPUploadFile(local, remote));
    EXPECT_EQ(client->GetLastErrorMessage(), "FtpOpenFile:PutFile" + NullHandleText);
    EXPECT_FALSE(client->FTPDownloadFile(local, remote, size));
    EXPECT_EQ(client->GetLastErrorMessage(), "FtpOpenFile:GetFile" + NullHandleText);
    EXPECT_FALSE(client->RenameFTPFile("a", "b"));
    EXPECT_EQ(client->GetLastErrorMessage(), "RenameFTPFile" + NullHandleText);
    EXPECT_FALSE(client->CreateFTPDirectory("a"));
    EXPECT_EQ(client->GetLastErrorMessage(), "CreateFTPDirectory" + NullHandleText);
    EXPECT_FALSE(client->RemoveFTPDirectory("a"));
    EXPECT_EQ(client->GetLastErrorMessage(), "RemoveFTPDirectory" + NullHandleText);
    EXPECT_FALSE(client->SetFTPDirectory("a"));
    EXPECT_EQ(client->GetLastErrorMessage(), "FtpSetCurrentDirectory" + NullHandleText);
    EXPECT_EQ(client->GetFTPDirectory(), "");
    EXPECT_EQ(client->GetLastErrorMessage(), "FtpGetCurrentDirectory" + NullHandleText);
    EXPECT_EQ(client->GetFTPFileSize("a"), 0);
    EXPECT_EQ(client->GetLastErrorMessage(), "FtpFindFirstFile" + NullHandleText);
    EXPECT_EQ(client->GetDirectoryListing("", isOk), nullptr);
    EXPECT_EQ(client->GetLastErrorMessage(), "FtpFindFirstFile" + NullHandleText);
    EXPECT_EQ(folder.read("l"), "x");
}

// Simple operations.

TEST_F(cFtpTest, SimpleTransfersUseTheTransferType)
{
    ASSERT_TRUE(connect());
    EXPECT_TRUE(client->SimpleFTPPutFile("local", "remote"));
    EXPECT_EQ(world->calls.back(), "putFile local|remote|1") << "ASCII at first";
    EXPECT_TRUE(client->SimpleFTPGetFile("local", "remote"));
    EXPECT_EQ(world->calls.back(), "getFile remote|local|replace|128|2147483649");
    client->SetTransferBinary();
    EXPECT_TRUE(client->SimpleFTPPutFile("local", "remote"));
    EXPECT_EQ(world->calls.back(), "putFile local|remote|2");
    EXPECT_TRUE(client->SimpleFTPGetFile("local", "remote"));
    EXPECT_EQ(world->calls.back(), "getFile remote|local|replace|128|2147483650");
    client->SetTransferASCII();
    EXPECT_TRUE(client->SimpleFTPPutFile(" local ", " remote "));
    EXPECT_EQ(world->calls.back(), "putFile  local | remote |1") << "nothing is trimmed";
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(cFtpTest, SimpleOperationsPassTheirNames)
{
    ASSERT_TRUE(connect());
    EXPECT_TRUE(client->RenameFTPFile("a 'è'", "b%"));
    EXPECT_EQ(world->calls.back(), "renameFile a 'è'|b%");
    EXPECT_TRUE(client->CreateFTPDirectory("d"));
    EXPECT_EQ(world->calls.back(), "createDirectory d");
    EXPECT_TRUE(client->RemoveFTPDirectory("d"));
    EXPECT_EQ(world->calls.back(), "removeDirectory d");
    EXPECT_TRUE(client->DeleteFTPFile("f"));
    EXPECT_EQ(world->calls.back(), "deleteFile f");
    EXPECT_TRUE(client->SetFTPDirectory("/d"));
    EXPECT_EQ(world->calls.back(), "setCurrentDirectory /d");
}

TEST_F(cFtpTest, SimpleOperationsTellTheirFailures)
{
    ASSERT_TRUE(connect());
    const std::string tail = " error code: 12002 Message: The server did not answer in time.\r\n";
    for (const char* call : {"putFile", "getFile", "renameFile", "createDirectory", "removeDirectory",
                             "deleteFile", "setCurrentDirectory", "getCurrentDirectory"}) {
        world->answers[call] = {12002};
    }
    EXPECT_FALSE(client->SimpleFTPPutFile("l", "r"));
    EXPECT_EQ(client->GetLastErrorMessage(), "SimpleFtpPutFile" + tail);
    EXPECT_FALSE(client->SimpleFTPGetFile("l", "r"));
    EXPECT_EQ(client->GetLastErrorMessage(), "SimpleFtpGetFile" + tail);
    EXPECT_FALSE(client->RenameFTPFile("a", "b"));
    EXPECT_EQ(client->GetLastErrorMessage(), "RenameFTPFile" + tail);
    EXPECT_FALSE(client->CreateFTPDirectory("d"));
    EXPECT_EQ(client->GetLastErrorMessage(), "CreateFTPDirectory" + tail);
    EXPECT_FALSE(client->RemoveFTPDirectory("d"));
    EXPECT_EQ(client->GetLastErrorMessage(), "RemoveFTPDirectory" + tail);
    EXPECT_FALSE(client->DeleteFTPFile("d"));
    EXPECT_EQ(client->GetLastErrorMessage(), "DeleteFTPFile" + tail);
    EXPECT_FALSE(client->SetFTPDirectory("d"));
    EXPECT_EQ(client->GetLastErrorMessage(), "FtpSetCurrentDirectory" + tail);
    EXPECT_EQ(client->GetFTPDirectory(), "");
    EXPECT_EQ(client->GetLastErrorMessage(), "FtpGetCurrentDirectory" + tail);
}

TEST_F(cFtpTest, TheDirectoryIsCutBeforeItsFirstNul)
{
    ASSERT_TRUE(connect());
    world->currentDirectory = std::string("/a b/è\0\0\0", 10);
    EXPECT_EQ(client->GetFTPDirectory(), "/a b/è");
    EXPECT_EQ(world->calls.back(), "getCurrentDirectory 1024");
}

// Upload.

class UploadTest : public cFtpTest
{
protected:
    void SetUp() override { ASSERT_TRUE(connect()); }

    bool upload(std::size_t size)
    {
        local = folder.write("l", pattern(size));
        return client->FTPUploadFile(local, remote);
    }

    std::string written() const
    {
        std::string all;
        for (const auto& piece : world->written) {
            all += piece;
        }
        return all;
    }

    std::string local;
    std::string remote = "remote";
};

TEST_F(UploadTest, MovesPiecesOf255Bytes)
{
    EXPECT_TRUE(upload(600));
    EXPECT_THAT(world->calls,
                ElementsAre("openSession QVR FTP Client 0", "connect 1", "openFile remote|1073741824|1",
                            "writeFile 255", "writeFile 255", "writeFile 90", "closeHandle 3"));
    EXPECT_EQ(written(), pattern(600));
    EXPECT_THAT(events, ElementsAre("breath", "breath", "255/600", "breath", "breath", "510/600", "600/600"));
}

TEST_F(UploadTest, OfAnEmptyFileWritesOneEmptyPiece)
{
    EXPECT_TRUE(upload(0));
    EXPECT_THAT(world->written, ElementsAre(""));
    EXPECT_THAT(events, ElementsAre("0/0"));
    EXPECT_EQ(client->GetLastErrorMessage(), "");
}

TEST_F(UploadTest, OfAMultipleOf255EndsWithAnEmptyPiece)
{
    EXPECT_TRUE(upload(510));
    EXPECT_THAT(world->written, ElementsAre(pattern(255), pattern(510).substr(255), ""));
    EXPECT_THAT(progress(), ElementsAre("255/510", "510/510", "510/510"));
}

TEST_F(UploadTest, TrimsBothNamesInPlace)
{
    local = "  " + folder.write("l", "x") + " ";
    remote = "  a b  ";
    EXPECT_TRUE(client->FTPUploadFile(local, remote));
    EXPECT_EQ(local, folder.file("l"));
    EXPECT_EQ(remote, "a b");
    EXPECT_THAT(world->calls, Contains("openFile a b|1073741824|1"));
}

TEST_F(UploadTest, WithAnEmptyNameLeavesTheMessageAlone)
{
    std::string blank = "   ";
    local = folder.write("l", "x");
    EXPECT_FALSE(client->FTPUploadFile(blank, remote));
    EXPECT_EQ(blank, "");
    blank = "  ";
    EXPECT_FALSE(client->FTPUploadFile(local, blank));
    EXPECT_EQ(client->GetLastErrorMessage(), "");
    EXPECT_EQ(world->calls.back(), "connect 1");
}

TEST_F(UploadTest, UsesTheTransferType)
{
    client->SetTransferBinary();
    EXPECT_TRUE(upload(1));
    EXPECT_THAT(world->calls, Contains("openFile remote|1073741824|2"));
}

TEST_F(UploadTest, ThatCannotOpenTheRemoteFileSaysSo)
{
    world->answers["openFile"] = {12002};
    EXPECT_FALSE(upload(300));
    EXPECT_EQ(client->GetLastErrorMessage(),
              "FtpOpenFile:PutFile error code: 12002 Message: The server did not answer in time.\r\n");
    EXPECT_THAT(events, IsEmpty());
}

TEST_F(UploadTest, ThatFailsAtAFullPieceLeavesTheRemoteFileOpen)
{
    world->answers["writeFile"] = {0, 12030};
    EXPECT_FALSE(upload(600));
    EXPECT_EQ(client->GetLastErrorMessage(),
              "InternetWriteFile error code: 12030 Message: The connection with the server broke off.\r\n");
    EXPECT_THAT(world->closed, IsEmpty());
    EXPECT_THAT(progress(), ElementsAre("255/600"));
}

TEST_F(UploadTest, ThatFailsAtTheLastPieceLeavesTheRemoteFileOpen)
{
    world->answers["writeFile"] = {0, 0, 12030};
    EXPECT_FALSE(upload(600));
    EXPECT_EQ(client->GetLastErrorMessage(),
              "InternetWriteFile2 error code: 12030 Message: The connection with the server broke off.\r\n");
    EXPECT_THAT(world->closed, IsEmpty());
    EXPECT_THAT(progress(), ElementsAre("255/600", "510/600"));
}

TEST_F(UploadTest, OfAFileThatIsNotThereIsARunTimeErrorAfterTheRemoteFileWasOpened)
{
    local = folder.file("missing");
    EXPECT_EQ(thrownBy([this] { client->FTPUploadFile(local, remote); }), 53);
    EXPECT_EQ(world->calls.back(), "openFile remote|1073741824|1");
    local = folder.file("no/such/folder");
    EXPECT_EQ(thrownBy([this] { client->FTPUploadFile(local, remote); }), 76);
    local = folder.path().string();
    EXPECT_EQ(thrownBy([this] { client->FTPUploadFile(local, remote); }), 75);
    EXPECT_TRUE(upload(10)) << "the file number is free again";
}

TEST_F(UploadTest, AFileThatShrinksMeanwhileSendsWhatTheBufferHeld)
{
    local = folder.write("l", std::string(510, 'a') + std::string(90, 'b'));
    client->FileTransferProgress = [this](std::int32_t current, std::int32_t) {
        if (current == 255) {
            std::filesystem::resize_file(folder.file("l"), 300);
        }
    };
    EXPECT_TRUE(client->FTPUploadFile(local, remote));
    EXPECT_EQ(written(), std::string(600, 'a'));
}

TEST_F(UploadTest, BackslashesSeparateLocalFolders)
{
    folder.write("l", "x");
    local = folder.path().string() + "\\l";
    EXPECT_TRUE(client->FTPUploadFile(local, remote));
    EXPECT_EQ(written(), "x");
}

TEST_F(UploadTest, WithoutListenersWorksToo)
{
    client->StateChanged = nullptr;
    client->FileTransferProgress = nullptr;
    client->yield = nullptr;
    EXPECT_TRUE(upload(600));
}

TEST_F(UploadTest, ASecondTransferFromAnEventFindsFileNumberOneOpen)
{
    auto other = makeClient();
    other->OpenConnection("server", "21", "u", "p");
    std::vector<int> numbers;
    client->FileTransferProgress = [&](std::int32_t, std::int32_t) {
        std::int32_t size = 1;
        numbers.push_back(thrownBy([&] { other->FTPDownloadFile(folder.file("x"), "r", size); }));
        numbers.push_back(thrownBy([&] { other->FTPUploadFile(local, remote); }));
    };
    EXPECT_TRUE(upload(10));
    EXPECT_THAT(numbers, ElementsAre(55, 55));
}

// Download.

class DownloadTest : public cFtpTest
{
protected:
    void SetUp() override { ASSERT_TRUE(connect()); }

    bool download(std::size_t remoteSize, std::int32_t wanted)
    {
        world->remoteContent = pattern(remoteSize);
        size = wanted;
        return client->FTPDownloadFile(folder.file("l"), "remote", size);
    }

    std::int32_t size = 0;
};

TEST_F(DownloadTest, Of300BytesMovesTwoPieces)
{
    EXPECT_TRUE(download(300, 300));
    EXPECT_EQ(folder.read("l"), pattern(300));
    EXPECT_EQ(size, 300);
    EXPECT_THAT(world->calls,
                ElementsAre("openSession QVR FTP Client 0", "connect 1", "openFile remote|2147483648|1",
                            "readFile 255", "readFile 45", "closeHandle 3"));
    EXPECT_THAT(progress(), ElementsAre("state 9", "255/300", "300/300", "state 10"));
    EXPECT_EQ(events.front(), "breath");
}

TEST_F(DownloadTest, BreathesTwiceBetweenTheSteps)
{
    EXPECT_TRUE(download(300, 300));
    EXPECT_THAT(events, ElementsAre("breath", "state 9", "breath", "breath", "breath", "breath", "255/300",
                                    "breath", "breath", "300/300", "state 10"));
}

TEST_F(DownloadTest, TheLocalFileIsClosedBeforeTheEndIsTold)
{
    auto other = makeClient();
    other->OpenConnection("server", "21", "u", "p");
    int second = -1;
    client->StateChanged = [&](std::int32_t state) {
        std::int32_t one = 1;
        if (state == 10) {
            second = thrownBy([&] { other->FTPDownloadFile(folder.file("next"), "r", one); });
        }
    };
    EXPECT_TRUE(download(300, 300));
    EXPECT_EQ(second, 0) << "the next transfer may start there";
    EXPECT_TRUE(folder.read("next").has_value());
}

TEST_F(DownloadTest, Of510BytesAppends256ZeroBytes)
{
    EXPECT_TRUE(download(510, 510));
    EXPECT_EQ(folder.read("l"), pattern(510) + std::string(256, '\0'));
    EXPECT_EQ(size, 510);
    EXPECT_EQ(world->calls[world->calls.size() - 2], "readFile 0");
    EXPECT_THAT(progress(), ElementsAre("state 9", "255/510", "510/510", "510/510", "state 10"));
}

TEST_F(DownloadTest, Of0BytesWrites256ZeroBytes)
{
    EXPECT_TRUE(download(0, 0));
    EXPECT_EQ(folder.read("l"), std::string(256, '\0'));
    EXPECT_THAT(progress(), ElementsAre("state 9", "0/0", "state 10"));
}

TEST_F(DownloadTest, IntoALongerFileKeepsItsTail)
{
    folder.write("l", std::string(1000, 'x'));
    EXPECT_TRUE(download(300, 300));
    EXPECT_EQ(folder.read("l"), pattern(300) + std::string(700, 'x'));
}

TEST_F(DownloadTest, NeverReadsPastTheSize)
{
    EXPECT_TRUE(download(10'000, 300));
    EXPECT_EQ(world->readAt, 300U);
    EXPECT_EQ(folder.read("l"), pattern(300));
}

TEST_F(DownloadTest, OfAShorterRemoteFileWritesWholeBuffers)
{
    EXPECT_TRUE(download(300, 600));
    // The second piece had 45 bytes: behind them stands what the first had left in the buffer.
    EXPECT_EQ(folder.read("l"), pattern(300) + pattern(255).substr(45) + std::string(90, '\0'));
    EXPECT_EQ(size, 600);
}

TEST_F(DownloadTest, WithAnEmptyLocalNameStartsAndNeverEnds)
{
    size = 10;
    EXPECT_FALSE(client->FTPDownloadFile("", "remote", size));
    EXPECT_FALSE(client->FTPDownloadFile(folder.file("l"), "", size));
    size = -1;
    EXPECT_FALSE(client->FTPDownloadFile(folder.file("l"), "remote", size));
    EXPECT_THAT(progress(), ElementsAre("state 9", "state 9", "state 9"));
    EXPECT_EQ(client->GetLastErrorMessage(), "");
    EXPECT_EQ(world->calls.back(), "connect 1");
    EXPECT_EQ(folder.read("l"), std::nullopt);
}

TEST_F(DownloadTest, DoesNotTrimNames)
{
    size = 0;
    EXPECT_TRUE(client->FTPDownloadFile(folder.file(" l "), " r ", size));
    EXPECT_THAT(world->calls, Contains("openFile  r |2147483648|1"));
    EXPECT_NE(folder.read(" l "), std::nullopt);
}

TEST_F(DownloadTest, ThatCannotOpenTheRemoteFileMakesNoLocalOne)
{
    world->answers["openFile"] = {12003};
    world->lastResponse = "550 no\r\n";
    EXPECT_FALSE(download(300, 300));
    EXPECT_EQ(client->GetLastErrorMessage(), "550 no\r\n");
    EXPECT_EQ(folder.read("l"), std::nullopt);
    EXPECT_THAT(progress(), ElementsAre("state 9"));
}

TEST_F(DownloadTest, ThatFailsAtAFullPieceLeavesTheRemoteFileOpen)
{
    world->answers["readFile"] = {0, 12030};
    EXPECT_FALSE(download(600, 600));
    EXPECT_EQ(client->GetLastErrorMessage(),
              "InternetReadFile error code: 12030 Message: The connection with the server broke off.\r\n");
    EXPECT_THAT(world->closed, IsEmpty());
    EXPECT_THAT(progress(), ElementsAre("state 9", "255/600"));
    EXPECT_EQ(size, 600);
}

TEST_F(DownloadTest, ThatBreaksOffLeavesTheLocalSideAsItWas)
{
    for (const std::vector<ftp::ErrorCode>& answers :
         {std::vector<ftp::ErrorCode>{12030}, {0, 12030}, {0, 0, 12002}}) {
        world->answers["readFile"] = {answers.begin(), answers.end()};
        EXPECT_FALSE(download(600, 600));
        EXPECT_THAT(folder.names(), IsEmpty()) << "no half file";
        folder.write("l", "earlier");
        world->answers["readFile"] = {answers.begin(), answers.end()};
        EXPECT_FALSE(download(600, 600));
        EXPECT_EQ(folder.read("l"), "earlier");
        EXPECT_EQ(folder.names(), std::set<std::string>{"l"});
        std::filesystem::remove(folder.path() / "l");
    }
}

TEST_F(DownloadTest, IsInItsPlaceWhenTheEndIsToldAndNotBefore)
{
    folder.write("l", "earlier");
    std::vector<std::optional<std::string>> seen;
    client->FileTransferProgress = [&](std::int32_t, std::int32_t) { seen.push_back(folder.read("l")); };
    client->StateChanged = [&](std::int32_t) { seen.push_back(folder.read("l")); };
    EXPECT_TRUE(download(300, 300));
    EXPECT_THAT(seen, ElementsAre("earlier", "earlier", "earlier", pattern(300)));
}

TEST_F(DownloadTest, ThatFailsAtTheLastPieceLeavesTheRemoteFileOpen)
{
    world->answers["readFile"] = {0, 0, 12002};
    EXPECT_FALSE(download(600, 600));
    EXPECT_EQ(client->GetLastErrorMessage(),
              "InternetReadFile2 error code: 12002 Message: The server did not answer in time.\r\n");
    EXPECT_THAT(world->closed, IsEmpty());
}

TEST_F(DownloadTest, IntoAFolderThatIsNotThereIsARunTimeError)
{
    size = 10;
    EXPECT_EQ(thrownBy([this] { client->FTPDownloadFile(folder.file("no/such"), "r", size); }), 76);
    EXPECT_EQ(thrownBy([this] { client->FTPDownloadFile(folder.path().string(), "r", size); }), 75);
    EXPECT_THAT(progress(), ElementsAre("state 9", "state 9"));
}

TEST_F(DownloadTest, AConnectionClosedFromAnEventEndsTheDownload)
{
    client->FileTransferProgress = [this](std::int32_t, std::int32_t) { client->CloseConnection(); };
    world->answers["readFile"] = {0, 6};
    EXPECT_FALSE(download(600, 600));
    EXPECT_EQ(client->GetLastErrorMessage(), "InternetReadFile" + NullHandleText);
}

// Sizes and listings.

class SearchingTest : public cFtpTest
{
protected:
    void SetUp() override { ASSERT_TRUE(connect()); }

    bool isOk = false;
};

TEST_F(SearchingTest, TheSizeIsTheLow32Bits)
{
    find("a", ftp::AttributeNormal, 1234);
    EXPECT_EQ(client->GetFTPFileSize("a"), 1234);
    EXPECT_EQ(world->calls[world->calls.size() - 2], "findFirst a");
    EXPECT_EQ(world->calls.back(), "closeHandle 4");
    find("a", ftp::AttributeNormal, 0x1'0000'0005ULL);
    EXPECT_EQ(client->GetFTPFileSize("a"), 5);
    find("a", ftp::AttributeNormal, 0x8000'0000ULL);
    EXPECT_EQ(client->GetFTPFileSize("a"), std::numeric_limits<std::int32_t>::min());
}

TEST_F(SearchingTest, TheSizeOfANameThatMatchesNothingIs0AndLeavesTheMessage)
{
    world->answers["deleteFile"] = {12002};
    client->DeleteFTPFile("x");
    const std::string before = client->GetLastErrorMessage();
    EXPECT_EQ(client->GetFTPFileSize("a"), 0);
    EXPECT_EQ(client->GetLastErrorMessage(), before);
    EXPECT_EQ(world->calls.back(), "closeHandle 0") << "the handle is closed also when it is none";
}

TEST_F(SearchingTest, TheSizeAfterAFailureIs0AndTheMessageTells)
{
    world->answers["findFirst"] = {12002};
    EXPECT_EQ(client->GetFTPFileSize("a"), 0);
    EXPECT_EQ(client->GetLastErrorMessage(),
              "FtpFindFirstFile error code: 12002 Message: The server did not answer in time.\r\n");
}

TEST_F(SearchingTest, AListingHoldsTheEntriesInTheirOrder)
{
    find("b", ftp::AttributeDirectory);
    find("a", ftp::AttributeReadOnly | ftp::AttributeArchive, 0x1'0000'0007ULL);
    find("à è € 😀 'x' %");
    const auto list = client->GetDirectoryListing("*", isOk);
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(isOk);
    ASSERT_EQ(list->Count(), 3);
    EXPECT_EQ(list->Item(1)->Filename, "b");
    EXPECT_TRUE(list->Item(1)->Directory);
    EXPECT_EQ(list->Item(2)->FileSize, 7);
    EXPECT_TRUE(list->Item("A")->ReadOnly);
    EXPECT_TRUE(list->Item("A")->Archive);
    EXPECT_EQ(list->Item(3)->Filename, "à è € 😀 'x' %");
    EXPECT_EQ(client->Directory(), list);
    EXPECT_EQ(world->calls.back(), "closeHandle 4");
}

TEST_F(SearchingTest, AListingConvertsItsThreeTimesToLocalDates)
{
    constexpr std::uint64_t day = 864'000'000'000ULL;
    ftp::FindRecord record;
    record.name = "a";
    record.creationTime = 109'205 * day;
    record.lastAccessTime = 109'206 * day;
    record.lastWriteTime = 154'000 * day + day / 2;
    world->found.push_back(record);
    const auto list = client->GetDirectoryListing("", isOk);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->Item(1)->CreationTime, ftp::fileTimeToLocalDate(record.creationTime));
    EXPECT_EQ(list->Item(1)->LastAccessTime, ftp::fileTimeToLocalDate(record.lastAccessTime));
    EXPECT_EQ(list->Item(1)->LastWriteTime, ftp::fileTimeToLocalDate(record.lastWriteTime));
    // Whatever the zone, they are days apart.
    EXPECT_NEAR(list->Item(1)->LastWriteTime, 154'000 - 109'205 + 0.5, 1.0);
}

TEST_F(SearchingTest, NamesAreCutBeforeTheFirstNulAndToTheirField)
{
    find(std::string("a\0b", 3));
    std::string accents;
    for (int i = 0; i < 300; ++i) {
        accents += "è";
    }
    find(accents);
    find(std::string(10'000, 'n'));
    const auto list = client->GetDirectoryListing("", isOk);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->Item(1)->Filename, "a");
    EXPECT_EQ(list->Item(2)->Filename, accents.substr(0, std::size_t{2} * 259));
    EXPECT_EQ(list->Item(3)->Filename, std::string(259, 'n'));
}

TEST_F(SearchingTest, APatternThatMatchesNothingIsOkAndNothing)
{
    EXPECT_EQ(client->GetDirectoryListing("*.nothing", isOk), nullptr);
    EXPECT_TRUE(isOk);
    EXPECT_EQ(client->GetLastErrorMessage(), "");
}

TEST_F(SearchingTest, AFailedFirstSearchAlsoReportsTrue)
{
    world->answers["findFirst"] = {12002};
    EXPECT_EQ(client->GetDirectoryListing("*", isOk), nullptr);
    EXPECT_TRUE(isOk);
    EXPECT_EQ(client->GetLastErrorMessage(),
              "FtpFindFirstFile error code: 12002 Message: The server did not answer in time.\r\n");
}

TEST_F(SearchingTest, AFailedNextSearchIsNothingAndTheEntriesSoFarStay)
{
    isOk = true;
    find("a");
    find("b");
    find("c");
    world->answers["findNext"] = {0, 12030};
    EXPECT_EQ(client->GetDirectoryListing("*", isOk), nullptr);
    EXPECT_FALSE(isOk);
    EXPECT_EQ(
        client->GetLastErrorMessage(),
        "InternetFindNextFile error code: 12030 Message: The connection with the server broke off.\r\n");
    EXPECT_EQ(client->Directory()->Count(), 2);
    EXPECT_EQ(world->calls.back(), "closeHandle 4");
}

TEST_F(SearchingTest, NamesThatDifferInCaseOnlyAreOneKeyAndNoListing)
{
    isOk = true;
    find("Export.txt");
    find("EXPORT.TXT");
    find("z");
    EXPECT_EQ(client->GetDirectoryListing("*", isOk), nullptr);
    EXPECT_FALSE(isOk);
    EXPECT_EQ(client->Directory()->Count(), 1);
    EXPECT_EQ(world->calls.back(), "closeHandle 4");
}

TEST_F(SearchingTest, EachListingReplacesTheHeldOne)
{
    find("a");
    const auto first = client->GetDirectoryListing("*", isOk);
    find("b");
    const auto second = client->GetDirectoryListing("*", isOk);
    EXPECT_EQ(first->Item(1)->Filename, "a") << "a listing in the caller's hands stays";
    EXPECT_EQ(second->Item(1)->Filename, "b");
    EXPECT_EQ(client->GetDirectoryListing("*", isOk), nullptr);
    EXPECT_EQ(client->Directory()->Count(), 0);
}

TEST_F(SearchingTest, DirectoryIsMadeEmptyOnFirstRead)
{
    ASSERT_NE(client->Directory(), nullptr);
    EXPECT_EQ(client->Directory()->Count(), 0);
    EXPECT_EQ(client->Directory(), client->Directory());
}

} // namespace
} // namespace zul::test
