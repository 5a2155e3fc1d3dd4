// A real FTP server, started for a test on a free loopback port and stopped with it.
#pragma once

#include "tests/ftp/TempFolder.h"

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace zul::test {

enum class ServerKind
{
    Vsftpd,
    PureFtpd,
    Pyftpdlib
};

class FtpServerProcess
{
public:
    enum class Channel
    {
        Plain,
        Secure ///< TLS alone, with a certificate for 127.0.0.1; vsftpd only
    };
    explicit FtpServerProcess(ServerKind kind, Channel channel = Channel::Plain);
    FtpServerProcess(const FtpServerProcess&) = delete;
    FtpServerProcess& operator=(const FtpServerProcess&) = delete;
    ~FtpServerProcess();

    /// Why a kind of server is left out on this machine; empty when it is not. ZUL_FTP_SERVERS_DIR=none in the
    /// environment leaves out all. pure-ftpd serves only when the administrator starts it; where continuous
    /// integration runs (CI is set) that is no excuse.
    static std::string leftOut(ServerKind kind);

    /// Why the server does not run; empty when it does.
    const std::string& problem() const { return m_problem; }
    std::string portText() const { return std::to_string(static_cast<std::int16_t>(m_port)); }
    std::string user() const { return m_kind == ServerKind::Vsftpd ? "anonymous" : "user"; }
    std::string password() const { return "secret"; }
    /// What the client sees as its first directory.
    const TempFolder& served() const { return m_served; }
    /// The certificate of a secure server, which vouches for itself.
    std::string certificate() const { return m_private.file("certificate"); }

private:
    std::vector<std::string> command();
    std::string file(const std::string& name) const;
    void makeCertificate();
    void start(const std::vector<std::string>& command);
    void waitUntilItListens();

    ServerKind m_kind;
    Channel m_channel;
    TempFolder m_served;
    TempFolder m_private;
    std::string m_folder; ///< of the server programs
    std::uint16_t m_port = 0;
    pid_t m_process = -1;
    std::string m_problem;
};

} // namespace zul::test
