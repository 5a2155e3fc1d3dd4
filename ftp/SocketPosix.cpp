#include "ftp/Socket.h"

#include <array>

#include <netdb.h>
#include <sys/socket.h>

namespace zul::ftp {

void shutSocket(curl_socket_t socket)
{
    shutdown(socket, SHUT_RDWR);
}

std::string peerAddress(curl_socket_t socket)
{
    sockaddr_storage peer{};
    socklen_t length = sizeof(peer);
    std::array<char, NI_MAXHOST> name{};
    if (getpeername(socket, reinterpret_cast<sockaddr*>(&peer), &length) != 0 ||
        getnameinfo(reinterpret_cast<const sockaddr*>(&peer), length, name.data(), name.size(), nullptr, 0,
                    NI_NUMERICHOST) != 0) {
        return {};
    }
    return name.data();
}

} // namespace zul::ftp
