// Sockets at this machine's own address, for the servers of tests; the same on every system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace zul::test {

using Socket = std::intptr_t;
inline constexpr Socket NoSocket = -1;

/// Listens on 127.0.0.1, on a port of the system's choice. Throws std::runtime_error where there is none.
Socket listenOnLoopback(std::uint16_t& port);
/// NoSocket where nobody listens.
Socket connectToLoopback(std::uint16_t port);
/// The connection of the next client; NoSocket when that has gone already.
Socket acceptClient(Socket listener);
void closeSocket(Socket& socket);

/// How many bytes went, as many as do without waiting; negative when the other side has closed.
std::ptrdiff_t sendSome(Socket socket, std::string_view bytes);
/// How many bytes came, after a wait for the first; 0 or less at the end.
std::ptrdiff_t receiveSome(Socket socket, std::span<char> buffer);
/// The other side reads the end.
void endSending(Socket socket);

/// The waits of one thread, which another can end for good.
class Waiting
{
public:
    enum class For
    {
        Reading,
        Writing
    };
    Waiting();
    Waiting(const Waiting&) = delete;
    Waiting& operator=(const Waiting&) = delete;
    ~Waiting();

    /// False when the waiting was ended.
    bool until(Socket socket, For what) const;
    void end();

private:
    Socket m_told = NoSocket;
    Socket m_teller = NoSocket;
};

/// Whether a client in the same process may listen for the connection of its server.
bool mayConnectBack();

/// Transfers of this process reach this machine directly, whatever its environment says of proxies.
void passOverProxies();

} // namespace zul::test
