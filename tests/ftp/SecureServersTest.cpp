// The client over TLS: a real server, one without TLS, and certificates that do not fit.
#include "ftp/CurlTransport.h"
#include "ftp/cFtp.h"
#include "tests/ftp/FtpServerProcess.h"
#include "tests/ftp/ScriptedServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

namespace zul::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

std::unique_ptr<cFtp> clientThatTrusts(const std::string& certificate)
{
    ftp::CurlTransportOptions options;
    options.authorities = certificate;
    return std::make_unique<cFtp>(std::make_unique<ftp::CurlTransport>(options));
}

class SecureServersTest : public ::testing::TestWithParam<bool>
{
protected:
    static void SetUpTestSuite()
    {
        if (FtpServerProcess::leftOut(ServerKind::Vsftpd).empty()) {
            server =
                std::make_unique<FtpServerProcess>(ServerKind::Vsftpd, FtpServerProcess::Channel::Secure);
        }
    }
    static void TearDownTestSuite() { server.reset(); }

    void SetUp() override
    {
        if (!server) {
            GTEST_SKIP() << FtpServerProcess::leftOut(ServerKind::Vsftpd);
        }
        ASSERT_EQ(server->problem(), "");
    }

    static bool connect(cFtp& client, const std::string& address)
    {
        client.SetTransferBinary();
        if (GetParam()) {
            client.SetModePassive();
        }
        return client.OpenConnection(address, server->portText(), server->user(), server->password());
    }

    inline static std::unique_ptr<FtpServerProcess> server;
    TempFolder folder;
};

INSTANTIATE_TEST_SUITE_P(Modes, SecureServersTest, ::testing::Bool(),
                         [](const auto& mode) { return mode.param ? "Passive" : "Active"; });

TEST_P(SecureServersTest, FilesComeAndGo)
{
    const auto client = clientThatTrusts(server->certificate());
    ASSERT_TRUE(connect(*client, "ftpes://127.0.0.1")) << client->GetLastErrorMessage();
    const std::string bytes = pattern(1'000'000);
    folder.write("up", bytes);
    EXPECT_TRUE(client->SimpleFTPPutFile(folder.file("up"), "big.bin")) << client->GetLastErrorMessage();
    EXPECT_TRUE(server->served().read("big.bin") == bytes);
    EXPECT_TRUE(client->SimpleFTPGetFile(folder.file("down"), "big.bin")) << client->GetLastErrorMessage();
    EXPECT_TRUE(folder.read("down") == bytes);
    // The connection is as usable as a plain one, also when a file was left before its end.
    std::int32_t part = 300;
    EXPECT_TRUE(client->FTPDownloadFile(folder.file("part"), "big.bin", part))
        << client->GetLastErrorMessage();
    EXPECT_EQ(folder.read("part"), bytes.substr(0, 300));
    bool found = false;
    EXPECT_TRUE(client->GetDirectoryListing("*", found));
    EXPECT_TRUE(found);
    EXPECT_TRUE(client->DeleteFTPFile("big.bin")) << client->GetLastErrorMessage();
}

TEST_P(SecureServersTest, TheSchemeMayBeWrittenInCapitals)
{
    const auto client = clientThatTrusts(server->certificate());
    EXPECT_TRUE(connect(*client, "FtpES://127.0.0.1")) << client->GetLastErrorMessage();
}

TEST_P(SecureServersTest, ACertificateThatNobodyVouchesForIsRefused)
{
    cFtp client;
    EXPECT_FALSE(connect(client, "ftpes://127.0.0.1"));
    EXPECT_THAT(client.GetLastErrorMessage(), HasSubstr(ftp::systemText(ftp::InvalidCertificate)));
}

TEST_P(SecureServersTest, ACertificateOfAnotherNameIsRefused)
{
    const auto client = clientThatTrusts(server->certificate());
    EXPECT_FALSE(connect(*client, "ftpes://localhost"));
    EXPECT_THAT(client->GetLastErrorMessage(), HasSubstr(ftp::systemText(ftp::InvalidCertificate)));
}

TEST_P(SecureServersTest, WithoutTheSchemeItIsPlainFtp)
{
    const auto client = clientThatTrusts(server->certificate());
    // This server wants TLS and says so.
    EXPECT_FALSE(connect(*client, "127.0.0.1"));
}

TEST(SecureChannelTest, AServerWithoutTlsLearnsNoPassword)
{
    ScriptedServer server;
    cFtp client;
    EXPECT_FALSE(client.OpenConnection("ftpes://127.0.0.1", server.portText(), "user", "secret"));
    EXPECT_THAT(client.GetLastErrorMessage(), HasSubstr(ftp::systemText(ftp::SecureChannelFailed)));
    EXPECT_THAT(server.commands(), Contains("AUTH TLS"));
    EXPECT_THAT(server.commands(), Not(Contains(StartsWith("USER"))));
    EXPECT_THAT(server.commands(), Not(Contains(StartsWith("PASS"))));
}

TEST(SecureChannelTest, AServerThatBreaksTheHandshakeLearnsNoPassword)
{
    ScriptedServer server;
    server.on["AUTH"] = [](ScriptedServer::Session& session, const std::string&) {
        session.reply("234 go ahead");
        session.reply("this is no handshake");
        session.hangUp();
    };
    cFtp client;
    EXPECT_FALSE(client.OpenConnection("ftpes://127.0.0.1", server.portText(), "user", "secret"));
    EXPECT_THAT(server.commands(), Not(Contains(StartsWith("USER"))));
}

} // namespace
} // namespace zul::test
