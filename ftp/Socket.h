// The two things that the client does with a socket itself; the rest is the transfer library's.
#pragma once

#include <string>

#include <curl/curl.h>

namespace zul::ftp {

/// Ends both directions of a connection; whoever waits for it wakes up. The socket is still to be closed.
void shutSocket(curl_socket_t socket);

/// The numeric address of the other end; empty when it cannot be had.
std::string peerAddress(curl_socket_t socket);

} // namespace zul::ftp
