#include <winsock2.h>

#include <ws2tcpip.h>

#include "tests/ftp/Sockets.h"

#include <array>
#include <cstdlib>
#include <stdexcept>

namespace zul::test {

namespace {

SOCKET number(Socket socket)
{
    return static_cast<SOCKET>(socket);
}

/// The system's sockets, for the life of the process.
void needSockets()
{
    static const int failed = [] {
        WSADATA data;
        return WSAStartup(MAKEWORD(2, 2), &data);
    }();
    if (failed != 0) {
        throw std::runtime_error("no sockets");
    }
}

Socket newSocket()
{
    needSockets();
    return static_cast<Socket>(::socket(AF_INET, SOCK_STREAM, 0));
}

sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// Nothing done with it waits.
void neverWaiting(Socket socket)
{
    u_long yes = 1;
    ioctlsocket(number(socket), static_cast<long>(FIONBIO), &yes);
    const int immediately = 1;
    setsockopt(number(socket), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&immediately),
               sizeof(immediately));
}

/// Waits for any of them; false when there was nothing to wait for.
bool wait(std::span<WSAPOLLFD> waiting)
{
    return WSAPoll(waiting.data(), static_cast<ULONG>(waiting.size()), -1) > 0;
}

} // namespace

Socket listenOnLoopback(std::uint16_t& port)
{
    const Socket socket = newSocket();
    sockaddr_in address = loopback(0);
    int length = sizeof(address);
    if (bind(number(socket), reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
        ::listen(number(socket), 8) != 0 ||
        getsockname(number(socket), reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        throw std::runtime_error("no loopback port");
    }
    port = ntohs(address.sin_port);
    return socket;
}

Socket connectToLoopback(std::uint16_t port)
{
    Socket socket = newSocket();
    const sockaddr_in address = loopback(port);
    if (connect(number(socket), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        closeSocket(socket);
        return NoSocket;
    }
    neverWaiting(socket);
    return socket;
}

Socket acceptClient(Socket listener)
{
    const auto client = static_cast<Socket>(accept(number(listener), nullptr, nullptr));
    neverWaiting(client);
    return client;
}

void closeSocket(Socket& socket)
{
    if (socket != NoSocket) {
        closesocket(number(socket));
    }
    socket = NoSocket;
}

std::ptrdiff_t sendSome(Socket socket, std::string_view bytes)
{
    const int count = ::send(number(socket), bytes.data(), static_cast<int>(bytes.size()), 0);
    return count < 0 && WSAGetLastError() == WSAEWOULDBLOCK ? 0 : count;
}

std::ptrdiff_t receiveSome(Socket socket, std::span<char> buffer)
{
    for (;;) {
        const int count = recv(number(socket), buffer.data(), static_cast<int>(buffer.size()), 0);
        if (count >= 0 || WSAGetLastError() != WSAEWOULDBLOCK) {
            return count;
        }
        std::array<WSAPOLLFD, 1> waiting{WSAPOLLFD{number(socket), POLLRDNORM, 0}};
        wait(waiting);
    }
}

void endSending(Socket socket)
{
    shutdown(number(socket), SD_SEND);
}

// Waits know sockets alone, so who is told of the end has a connection to who tells it.

Waiting::Waiting()
{
    std::uint16_t port = 0;
    Socket listener = listenOnLoopback(port);
    m_teller = connectToLoopback(port);
    m_told = acceptClient(listener);
    closeSocket(listener);
}

Waiting::~Waiting()
{
    closeSocket(m_teller);
    closeSocket(m_told);
}

bool Waiting::until(Socket socket, For what) const
{
    const SHORT events = what == For::Reading ? POLLRDNORM : POLLWRNORM;
    std::array<WSAPOLLFD, 2> waiting{WSAPOLLFD{number(socket), events, 0},
                                     WSAPOLLFD{number(m_told), POLLRDNORM, 0}};
    return wait(waiting) && waiting[1].revents == 0;
}

void Waiting::end()
{
    closeSocket(m_teller);
}

bool mayConnectBack()
{
    // Wine now and then forgets to wake a thread that waits for the connection of another one of its process. The server
    // of the scenarios, which is another process, connects back.
    return false;
}

void passOverProxies()
{
    _putenv_s("no_proxy", "127.0.0.1");
}

} // namespace zul::test
