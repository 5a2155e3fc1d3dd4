// The seam between cFtp and the platform's FTP functions.
//
// The primitives are those of the platform's Internet library: a session, connections under it, and files and
// searches under a connection, all known by handles. A handle of 0, or one that is closed already, makes every
// call answer InvalidHandle. Closing a handle closes what stands under it. One connection carries one thing at
// a time: while a file of it is open, the other calls on it answer TransferInProgress.
//
// Calls block until they are done, and end within the transport's time limits whatever the server does. An
// object belongs to one thread. Texts are UTF-8; remote names go to the server as they are.
#pragma once

#include "ftp/FindRecord.h"
#include "ftp/FtpErrors.h"
#include "ftp/TransferLimits.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace zul::ftp {

using Handle = std::uintptr_t;

inline constexpr std::uint32_t TransferAscii = 1;
inline constexpr std::uint32_t TransferBinary = 2;
inline constexpr std::uint32_t ModePassive = 0x08000000; ///< connection flag; without it the mode is active
inline constexpr std::uint32_t FlagReload = 0x80000000;  ///< always fetch from the server
inline constexpr std::uint32_t AccessRead = 0x80000000;
inline constexpr std::uint32_t AccessWrite = 0x40000000;
inline constexpr std::uint32_t ServiceFtp = 1;
inline constexpr std::uint32_t OpenPreconfigured = 0; ///< use the system's proxy settings

/// In front of a server's name: FTP with explicit TLS, on the control connection and on those of the data, and with
/// a certificate that is checked against the name. Neither name nor password of the user is sent before. The case of its
/// letters does not matter. Every other name means plain FTP.
inline constexpr std::string_view SecureScheme = "ftpes://";

struct ConnectRequest
{
    std::string server;     ///< with SecureScheme or without
    std::uint16_t port = 0; ///< 0 is the service's own port, 21
    std::string user;       ///< empty: anonymous
    std::string password;
    std::uint32_t service = ServiceFtp;
    std::uint32_t flags = 0; ///< 0 or ModePassive
};

class FtpTransport
{
public:
    FtpTransport() = default;
    FtpTransport(const FtpTransport&) = delete;
    FtpTransport& operator=(const FtpTransport&) = delete;
    virtual ~FtpTransport() = default;

    /// What putFile and getFile keep to.
    const TransferLimits& limits() const { return m_limits; }
    void setLimits(const TransferLimits& limits) { m_limits = limits; }

    virtual ErrorCode openSession(const std::string& agent, std::uint32_t accessType, Handle& session) = 0;
    virtual ErrorCode connect(Handle session, const ConnectRequest& request, Handle& connection) = 0;
    /// Closes any kind of handle. For a file that was written this waits for the server's last word.
    virtual ErrorCode closeHandle(Handle handle) = 0;

    /// Whole files. A local file is replaced when the remote one has come whole; a download that fails leaves the
    /// local side as it was.
    virtual ErrorCode putFile(Handle connection, const std::string& local, const std::string& remote,
                              std::uint32_t flags) = 0;
    virtual ErrorCode getFile(Handle connection, const std::string& remote, const std::string& local,
                              bool failIfExists, std::uint32_t attributes, std::uint32_t flags) = 0;

    /// Files by pieces. @p access is AccessRead or AccessWrite.
    virtual ErrorCode openFile(Handle connection, const std::string& remote, std::uint32_t access,
                               std::uint32_t flags, Handle& file) = 0;
    /// Reads @p wanted bytes, or fewer at the end of the file only; @p got says how many.
    virtual ErrorCode readFile(Handle file, char* buffer, std::size_t wanted, std::size_t& got) = 0;
    /// Writes all of @p data, or fails.
    virtual ErrorCode writeFile(Handle file, std::string_view data, std::size_t& written) = 0;

    virtual ErrorCode renameFile(Handle connection, const std::string& existing,
                                 const std::string& newName) = 0;
    virtual ErrorCode createDirectory(Handle connection, const std::string& directory) = 0;
    virtual ErrorCode removeDirectory(Handle connection, const std::string& directory) = 0;
    virtual ErrorCode deleteFile(Handle connection, const std::string& name) = 0;
    virtual ErrorCode setCurrentDirectory(Handle connection, const std::string& directory) = 0;
    /// @p capacity is in characters, the closing NUL included; a longer answer is InsufficientBuffer.
    virtual ErrorCode getCurrentDirectory(Handle connection, std::size_t capacity,
                                          std::string& directory) = 0;

    /// Starts a search; NoMoreFiles when nothing matches. On success @p find is a handle to close.
    virtual ErrorCode findFirst(Handle connection, const std::string& filter, FindRecord& record,
                                Handle& find) = 0;
    virtual ErrorCode findNext(Handle find, FindRecord& record) = 0;

    /// What the server said last, all lines of the reply as they were sent.
    virtual std::string lastResponse() const = 0;
    /// The text of @p code. A platform with a message formatter of its own overrides it.
    virtual std::string systemText(ErrorCode code) const { return ftp::systemText(code); }

private:
    TransferLimits m_limits;
};

/// The transport of this platform.
std::unique_ptr<FtpTransport> makePlatformTransport();

} // namespace zul::ftp
