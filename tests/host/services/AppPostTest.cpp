#include "host/services/AppPost.h"
#include "automation/Bstr.h"
#include "automation/ErrorInfo.h"
#include "base/DateText.h"
#include "host/session/HostDatabase.h"
#include "tests/support/TemporaryFolder.h"

#include <Zul_Host.h>

#include <servprov.h>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

using namespace zul;
using namespace zul::host;

namespace {

/// Answers one request on a free port of this machine and keeps what it was sent.
class OneShotServer
{
public:
    explicit OneShotServer(std::string answer)
        : m_answer(std::move(answer))
    {
        m_listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        static_cast<void>(::bind(m_listener, reinterpret_cast<sockaddr*>(&address), length));
        ::listen(m_listener, 1);
        ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length);
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { serve(); });
    }
    ~OneShotServer() { stop(); }

    std::string url() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/push"; }

    const std::string& request()
    {
        stop();
        return m_request;
    }

private:
    void serve()
    {
        const int peer = ::accept(m_listener, nullptr, nullptr);
        if (peer < 0) {
            return;
        }
        char buffer[4096];
        std::size_t wanted = std::string::npos;
        while (m_request.size() < wanted) {
            const ssize_t got = ::recv(peer, buffer, sizeof buffer, 0);
            if (got <= 0) {
                break;
            }
            m_request.append(buffer, static_cast<std::size_t>(got));
            const std::size_t end = m_request.find("\r\n\r\n");
            const std::size_t length = m_request.find("Content-Length: ");
            if (end != std::string::npos && length != std::string::npos) {
                wanted = end + 4 + std::stoul(m_request.substr(length + 16));
            }
        }
        ::send(peer, m_answer.data(), m_answer.size(), MSG_NOSIGNAL);
        ::close(peer);
    }
    void stop()
    {
        if (!m_thread.joinable()) {
            return;
        }
        ::shutdown(m_listener, SHUT_RDWR);
        m_thread.join();
        ::close(m_listener);
    }

    std::string m_answer;
    std::string m_request;
    int m_listener = -1;
    int m_port = 0;
    std::thread m_thread;
};

AppMessage sample()
{
    return {"negozio", "mario@example.com", "Ciao \"Mario\" à € 😀\r\n",
            *parseDate("2024-01-15 10:20:30.123")};
}

/// Takes connections and never answers.
class SilentServer
{
public:
    SilentServer()
    {
        m_listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        static_cast<void>(::bind(m_listener, reinterpret_cast<sockaddr*>(&address), length));
        ::listen(m_listener, 16);
        ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length);
        m_port = ntohs(address.sin_port);
    }
    ~SilentServer() { ::close(m_listener); }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

    std::string url() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/push"; }

private:
    int m_listener = -1;
    int m_port = 0;
};

} // namespace

TEST(AppPost, ASilentServiceIsWaitedForSoManyTimesARun)
{
    const TemporaryFolder folder;
    const SilentServer silent;
    constexpr std::chrono::milliseconds patience(150);
    // The library that waits counts in its own clock and in whole milliseconds.
    constexpr std::chrono::milliseconds waited = patience - std::chrono::milliseconds(10);
    bool timedOut = false;
    EXPECT_NE(postAppMessage(silent.url(), "sale", sample(), patience, &timedOut), "");
    EXPECT_TRUE(timedOut);

    HostDatabaseOptions options;
    options.database = folder.file("x.db");
    options.appUrl = silent.url();
    options.appPatience = {patience, 2};
    createDemo(options.database, 0);
    const HostDatabase database(options);
    ComPtr<IAppConnector> connector;
    ASSERT_EQ(queryFor<IServiceProvider>(database.connection())
                  ->QueryService(iidOf<IAppConnector>(), iidOf<IAppConnector>(), connector.putVoid()),
              S_OK);
    const auto send = [&](std::string& why) {
        Bstr error;
        VARIANT_BOOL sent = VARIANT_TRUE;
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(
            connector->SendToContact(Bstr(u"a@b.it").get(), 45000.5, Bstr(u"x").get(), error.put(), &sent),
            S_OK);
        EXPECT_EQ(sent, VARIANT_FALSE);
        why = error.toUtf8();
        return std::chrono::steady_clock::now() - start;
    };
    for (int run = 0; run < 2; ++run) {
        // Each run begins anew.
        ASSERT_EQ(connector->Init(Bstr(u"s").get(), Bstr(u"t").get()), S_OK);
        std::string first;
        std::string later;
        EXPECT_GE(send(first), waited);
        EXPECT_GE(send(first), waited);
        EXPECT_NE(first, "");
        constexpr int others = 20;
        std::chrono::steady_clock::duration all{};
        for (int i = 0; i < others; ++i) {
            all += send(later);
            EXPECT_EQ(later, first) << "the same reason";
        }
        EXPECT_LT(all, others * waited);
    }
}

TEST(AppPost, SignsTheBodyUnderTheSalt)
{
    // The test vector of RFC 4231, case 2.
    EXPECT_EQ(appSignature("what do ya want for nothing?", "Jefe"),
              "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
}

TEST(AppPost, WritesTheMessageAsJson)
{
    const std::string body = appMessageBody(sample());
    EXPECT_NE(body.find("\"slug\":\"negozio\""), std::string::npos) << body;
    EXPECT_NE(body.find("\"email\":\"mario@example.com\""), std::string::npos) << body;
    EXPECT_NE(body.find("\"text\":\"Ciao \\\"Mario\\\" à € 😀\\r\\n\""), std::string::npos) << body;
    EXPECT_NE(body.find("\"date\":\"2024-01-15T10:20:30.123"), std::string::npos) << body;
    AppMessage everybody = sample();
    everybody.email.reset();
    EXPECT_NE(appMessageBody(everybody).find("\"email\":null"), std::string::npos);
}

TEST(AppPost, PostsTheSignedBody)
{
    OneShotServer server("HTTP/1.1 204 No Content\r\n\r\n");
    EXPECT_EQ(postAppMessage(server.url(), "sale", sample()), "");
    const std::string& request = server.request();
    const std::string body = appMessageBody(sample());
    EXPECT_EQ(request.substr(0, 16), "POST /push HTTP/");
    EXPECT_NE(request.find("X-Signature: " + appSignature(body, "sale") + "\r\n"), std::string::npos)
        << request;
    EXPECT_NE(request.find("Content-Type: application/json\r\n"), std::string::npos);
    EXPECT_EQ(request.substr(request.find("\r\n\r\n") + 4), body);
}

TEST(AppPost, TellsWhatTheServiceAnswered)
{
    OneShotServer server("HTTP/1.1 403 Forbidden\r\nContent-Length: 12\r\n\r\nfirma\r\nerrata");
    EXPECT_EQ(postAppMessage(server.url(), "sale", sample()), "il servizio app ha risposto 403: firma errat");
}

TEST(AppPost, DoesNotFollowARedirection)
{
    OneShotServer server("HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:9/\r\nContent-Length: 0\r\n\r\n");
    EXPECT_EQ(postAppMessage(server.url(), "sale", sample()), "il servizio app ha risposto 302");
}

TEST(AppPost, TellsWhenNobodyAnswers)
{
    OneShotServer closed("");
    const std::string url = closed.url();
    EXPECT_NE(postAppMessage(url, "sale", sample()), "");
    EXPECT_NE(postAppMessage("file:///etc/hostname", "sale", sample()), "");
    EXPECT_NE(postAppMessage("nonsense url", "sale", sample()), "");
}
