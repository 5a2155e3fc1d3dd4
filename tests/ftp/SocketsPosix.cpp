#include "tests/ftp/Sockets.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace zul::test {

namespace {

int number(Socket socket)
{
    return static_cast<int>(socket);
}

sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace

Socket listenOnLoopback(std::uint16_t& port)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int reuse = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof(reuse));
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof(address);
    if (bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0 ||
        ::listen(socket, 8) != 0 ||
        getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        throw std::runtime_error("no loopback port");
    }
    port = ntohs(address.sin_port);
    return socket;
}

Socket connectToLoopback(std::uint16_t port)
{
    Socket socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(port);
    if (connect(number(socket), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        closeSocket(socket);
    }
    return socket;
}

Socket acceptClient(Socket listener)
{
    const int client = accept4(number(listener), nullptr, nullptr, SOCK_CLOEXEC);
    const int immediately = 1;
    setsockopt(client, IPPROTO_TCP, TCP_NODELAY, &immediately, sizeof(immediately));
    return client;
}

void closeSocket(Socket& socket)
{
    if (socket != NoSocket) {
        ::close(number(socket));
    }
    socket = NoSocket;
}

std::ptrdiff_t sendSome(Socket socket, std::string_view bytes)
{
    const ssize_t count = ::send(number(socket), bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    return count < 0 && errno == EAGAIN ? 0 : count;
}

std::ptrdiff_t receiveSome(Socket socket, std::span<char> buffer)
{
    return recv(number(socket), buffer.data(), buffer.size(), 0);
}

void endSending(Socket socket)
{
    shutdown(number(socket), SHUT_WR);
}

Waiting::Waiting()
{
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe");
    }
    m_told = ends[0];
    m_teller = ends[1];
}

Waiting::~Waiting()
{
    closeSocket(m_teller);
    closeSocket(m_told);
}

bool Waiting::until(Socket socket, For what) const
{
    const short events = what == For::Reading ? POLLIN : POLLOUT;
    std::array<pollfd, 2> waiting{pollfd{number(socket), events, 0}, pollfd{number(m_told), POLLIN, 0}};
    poll(waiting.data(), waiting.size(), -1);
    return waiting[1].revents == 0;
}

void Waiting::end()
{
    closeSocket(m_teller);
}

bool mayConnectBack()
{
    return true;
}

void passOverProxies()
{
    setenv("no_proxy", "127.0.0.1", 1);
}

} // namespace zul::test
