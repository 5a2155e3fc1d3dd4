#include "tests/host/tds/Channel.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace zul::tds {

namespace {

constexpr std::size_t headerBytes = 8;
constexpr std::size_t packetBytes = 4096;
constexpr std::uint8_t endOfMessage = 0x01;

} // namespace

Channel::Channel(int socket)
    : m_socket(socket)
{
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

Channel::~Channel()
{
    ::close(m_socket);
}

void Channel::shutDown()
{
    ::shutdown(m_socket, SHUT_RDWR);
}

void Channel::readExactly(char* to, std::size_t count)
{
    while (count > 0) {
        const ssize_t got = ::recv(m_socket, to, count, 0);
        if (got <= 0) {
            throw Gone("the client has gone");
        }
        to += got;
        count -= static_cast<std::size_t>(got);
    }
}

Message Channel::receive()
{
    Message message;
    while (true) {
        std::array<char, headerBytes> header{};
        readExactly(header.data(), header.size());
        const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(header.at(i)); };
        message.type = static_cast<MessageType>(byte(0));
        const std::size_t length = byte(2) * std::size_t{256} + byte(3);
        if (length < headerBytes) {
            throw Gone("the client sends no packets");
        }
        const std::size_t from = message.body.size();
        message.body.resize(from + length - headerBytes);
        readExactly(message.body.data() + from, length - headerBytes);
        if ((byte(1) & endOfMessage) != 0) {
            return message;
        }
    }
}

bool Channel::attentionWaits()
{
    pollfd waiting{m_socket, POLLIN, 0};
    char type = 0;
    return ::poll(&waiting, 1, 0) > 0 && ::recv(m_socket, &type, 1, MSG_PEEK) == 1 &&
           static_cast<MessageType>(type) == MessageType::Attention;
}

void Channel::put(std::string_view bytes)
{
    m_out += bytes;
    while (m_out.size() > packetBytes - headerBytes) {
        send(false);
    }
}

void Channel::finish()
{
    send(true);
}

void Channel::breakOff()
{
    if (!m_out.empty()) {
        send(false);
    }
}

void Channel::send(bool last)
{
    const std::size_t count = std::min(m_out.size(), packetBytes - headerBytes);
    const std::size_t length = count + headerBytes;
    std::string packet;
    packet += static_cast<char>(MessageType::Reply);
    packet += static_cast<char>(last ? endOfMessage : 0);
    packet += static_cast<char>(length / 256);
    packet += static_cast<char>(length % 256);
    packet += std::string("\0\x35", 2); // the session's number
    packet += static_cast<char>(++m_packet);
    packet += '\0';
    packet.append(m_out, 0, count);
    m_out.erase(0, count);
    for (std::size_t sent = 0; sent < packet.size();) {
        const ssize_t taken = ::send(m_socket, packet.data() + sent, packet.size() - sent, MSG_NOSIGNAL);
        if (taken <= 0) {
            throw Gone("the client has gone");
        }
        sent += static_cast<std::size_t>(taken);
    }
}

} // namespace zul::tds
