// This machine's own address.
#pragma once

#include <arpa/inet.h>
#include <cstdint>
#include <netinet/in.h>

namespace zul::test {

inline sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

} // namespace zul::test
