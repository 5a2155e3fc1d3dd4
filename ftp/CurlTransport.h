// The transport on libcurl.
//
// What it decides where FTP leaves room:
//  * A server that is sent away by its password (331, then a refusal) gives IncorrectPassword; refused before a
//    password was asked for, or asked for more than one, LoginFailure. "421" at the door is ExtendedError: the
//    server's words say more than a number.
//  * The address in a PASV reply is not followed: the data connection goes to the server itself. In active mode
//    only the server itself may connect.
//  * A connection that the server ended stays ended (ConnectionAborted) until it is opened anew. One that the
//    client itself had to cut (a file closed before its end) is silently restored, with its directory.
//  * ASCII transfers turn line ends into the platform's (LF) and into CR LF on the wire; a local CR LF stays
//    one line end.
//  * A search lists a directory and filters here, so filters mean the same on every server. The server's own
//    order and its "." and ".." entries are kept. A name without wildcards finds the entry of that name; the
//    name of a directory finds what is in it.
//  * "ftpes://" means TLS 1.2, asked for with AUTH TLS before the login, on every connection, and passive mode; no
//    user's name is sent when the server has none (SecureChannelFailed) or its certificate does not stand the check (InvalidCertificate).
//  * Proxies are those of the environment (ftp_proxy, all_proxy, no_proxy), as tunnels.
#pragma once

#include "ftp/FtpTransport.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

namespace zul::ftp {

class CurlConnection;

/// Time limits and memory limits beside those of a whole file (TransferLimits); every one ends in TimedOut or
/// InvalidServerResponse.
struct CurlTransportOptions
{
    std::chrono::milliseconds connectTimeout{20'000};  ///< name, connection and login together
    std::chrono::milliseconds stallTimeout{30'000};    ///< no reply and no byte of data for so long
    std::chrono::milliseconds commandTimeout{120'000}; ///< one command, listing or piece of a file
    std::chrono::milliseconds goodbyeTimeout{2'000};   ///< the farewell when a connection is closed
    std::string authorities; ///< a file of certificates that vouch for servers; empty: the system's
    std::size_t maxReplyBytes = 65'536; ///< replies of one operation
    std::size_t maxListingBytes = 16'777'216;
    std::size_t maxListingEntries = 100'000;
    std::size_t maxDrainBytes = 262'144; ///< read past the wanted end of a file to keep the connection
};

class CurlTransport : public FtpTransport
{
public:
    explicit CurlTransport(const CurlTransportOptions& options = {});
    ~CurlTransport() override;

    ErrorCode openSession(const std::string& agent, std::uint32_t accessType, Handle& session) override;
    ErrorCode connect(Handle session, const ConnectRequest& request, Handle& connection) override;
    ErrorCode closeHandle(Handle handle) override;
    ErrorCode putFile(Handle connection, const std::string& local, const std::string& remote,
                      std::uint32_t flags) override;
    ErrorCode getFile(Handle connection, const std::string& remote, const std::string& local,
                      bool failIfExists, std::uint32_t attributes, std::uint32_t flags) override;
    ErrorCode openFile(Handle connection, const std::string& remote, std::uint32_t access,
                       std::uint32_t flags, Handle& file) override;
    ErrorCode readFile(Handle file, char* buffer, std::size_t wanted, std::size_t& got) override;
    ErrorCode writeFile(Handle file, std::string_view data, std::size_t& written) override;
    ErrorCode renameFile(Handle connection, const std::string& existing, const std::string& newName) override;
    ErrorCode createDirectory(Handle connection, const std::string& directory) override;
    ErrorCode removeDirectory(Handle connection, const std::string& directory) override;
    ErrorCode deleteFile(Handle connection, const std::string& name) override;
    ErrorCode setCurrentDirectory(Handle connection, const std::string& directory) override;
    ErrorCode getCurrentDirectory(Handle connection, std::size_t capacity, std::string& directory) override;
    ErrorCode findFirst(Handle connection, const std::string& filter, FindRecord& record,
                        Handle& find) override;
    ErrorCode findNext(Handle find, FindRecord& record) override;
    std::string lastResponse() const override { return m_lastResponse; }

private:
    struct Find
    {
        Handle connection = 0;
        std::vector<FindRecord> entries;
        std::size_t next = 0;
    };

    struct File
    {
        Handle connection = 0;
        bool writing = false;
    };

    CurlConnection* find(Handle connection) const;
    ErrorCode ready(Handle connection, std::initializer_list<const std::string*> names,
                    CurlConnection*& found);
    ErrorCode command(Handle connection, const char* verb, const std::string& name);
    ErrorCode keep(const CurlConnection& connection, ErrorCode code);
    ErrorCode listing(CurlConnection& connection, const std::string& directory,
                      std::vector<FindRecord>& entries);
    ErrorCode search(CurlConnection& connection, const std::string& filter, std::vector<FindRecord>& entries);
    void forgetConnection(Handle connection);

    CurlTransportOptions m_options;
    Handle m_lastHandle = 0;
    std::map<Handle, std::unique_ptr<CurlConnection>> m_connections; // under their session
    std::map<Handle, Handle> m_sessionOf;
    std::map<Handle, File> m_files;
    std::map<Handle, Find> m_finds;
    std::vector<Handle> m_sessions;
    std::string m_lastResponse;
};

} // namespace zul::ftp
