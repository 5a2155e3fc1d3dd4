#include "tests/host/tds/StandIn.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace zul::tds {

std::string freeTdsDriver()
{
    namespace fs = std::filesystem;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator("/usr/lib", none)) {
        std::string path = entry.path().string() + "/odbc/libtdsodbc.so";
        if (fs::exists(path, none)) {
            return path;
        }
    }
    return {};
}

StandIn::StandIn(ServerOptions options)
    : m_options(std::move(options))
    , m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (::bind(m_listener, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
        ::listen(m_listener, 16) != 0 ||
        ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        throw std::runtime_error("no port to listen on");
    }
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { listen(); });
}

StandIn::~StandIn()
{
    ::shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    ::close(m_listener);
    cutAll();
}

std::string StandIn::connectionString() const
{
    return "DRIVER=" + freeTdsDriver() + ";SERVER=127.0.0.1;PORT=" + std::to_string(m_port) +
           ";UID=" + m_options.user + ";PWD={" + m_options.password + "};DATABASE=zul;TDS_Version=7.4";
}

void StandIn::listen()
{
    while (true) {
        const int socket = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) {
            return;
        }
        const std::lock_guard lock(m_mutex);
        removeOver();
        Client& client = m_clients.emplace_back();
        client.channel = std::make_unique<Channel>(socket);
        client.thread = std::thread([this, &client] {
            try {
                Session(*client.channel, m_options, m_faults).serve();
            } catch (const Gone&) {
                // The client is told by the end of the connection.
            } catch (const std::exception& error) {
                std::fprintf(stderr, "stand-in: %s\n", error.what());
            }
            client.channel->shutDown();
            client.over = true;
        });
    }
}

void StandIn::removeOver()
{
    for (auto client = m_clients.begin(); client != m_clients.end();) {
        if (client->over) {
            client->thread.join();
            client = m_clients.erase(client);
        } else {
            ++client;
        }
    }
}

void StandIn::cutAll()
{
    const std::lock_guard lock(m_mutex);
    for (Client& client : m_clients) {
        client.channel->shutDown();
    }
    for (Client& client : m_clients) {
        client.thread.join();
    }
    m_clients.clear();
}

} // namespace zul::tds
