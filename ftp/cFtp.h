// The FTP client: one session per object, at most one connection at a time, and operations on it that answer
// success or failure and leave a readable text behind.
//
//     zul::cFtp ftp;
//     ftp.SetModePassive();
//     if (!ftp.OpenConnection(server, port, user, password) || !ftp.SimpleFTPGetFile(local, "export.txt"))
//         log(ftp.GetLastErrorMessage());
//
// Texts are UTF-8. Remote names go to the server as they are; a name with CR, LF or NUL is refused before
// anything is sent. Local paths may use "\" between folders. No operation checks that a connection is open: it
// fails with the message of an invalid handle.
//
// A failed network call never throws. Its message is
//     operation + " error code: " + number + " Message: " + system text
// or, when the server itself refused (12003), the server's words alone. It stays until the next failure; a
// success does not clear it. What does throw is an ftp::RunTimeError: a port that is no number, a local file of
// a transfer by pieces that cannot be opened.
//
// Everything is synchronous and belongs to one thread. Transfers by pieces call `yield` between the pieces, so
// that the owner can keep its windows alive; the owner must not start another transfer from there (file number
// 1, which every one of them uses, is then open already: ftp::RunTimeError 55).
#pragma once

#include "ftp/FtpTransport.h"
#include "ftp/cDirList.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zul {

class cFtp
{
public:
    /// Opens the session.
    cFtp();
    /// The same on another transport.
    explicit cFtp(std::unique_ptr<ftp::FtpTransport> transport);
    cFtp(const cFtp&) = delete;
    cFtp& operator=(const cFtp&) = delete;
    /// Closes the session, and with it a connection that is still open.
    ~cFtp();

    // Events and the hook; each may stay empty.

    /// 9 when FTPDownloadFile starts, 10 when it has ended well.
    std::function<void(std::int32_t State)> StateChanged;
    /// After every piece of FTPUploadFile and FTPDownloadFile, the last one included.
    std::function<void(std::int32_t lCurrentBytes, std::int32_t lTotalBytes)> FileTransferProgress;
    /// Lets the user interface process its pending events.
    std::function<void()> yield;

    /// Empty unless the session could not be opened.
    std::string stringaLog;

    /// Closes an open connection, then connects and logs in. @p sServer is a name or an address; with "ftpes://" in
    /// front the connection is secured by TLS and the server's certificate is checked. @p sPort is converted to a signed 16-bit number:
    /// ftp::RunTimeError 13 when it is none, 6 when it does not fit; nothing is then sent. 0 is the standard
    /// port; a negative number stands for the port 65536 higher. An empty user is the anonymous one.
    bool OpenConnection(const std::string& sServer, const std::string& sPort, const std::string& sUser,
                        const std::string& sPassword);
    void CloseConnection();

    bool SimpleFTPPutFile(const std::string& sLocal, const std::string& sRemote);
    /// An existing local file is replaced when the remote one has come whole. A download that fails or breaks off
    /// leaves it as it was, and makes none where there is none.
    bool SimpleFTPGetFile(const std::string& sLocal, const std::string& sRemote);

    /// Uploads in pieces of 255 bytes. Both names are trimmed in place; false without a message when one is
    /// then empty. When it breaks off, the remote file stays open on the connection.
    bool FTPUploadFile(std::string& sLocal, std::string& sRemote);
    /// Downloads exactly @p FileSize bytes in pieces of 255; see GetFTPFileSize. The local file is written from
    /// its first byte and not cut: the tail of a longer one stays. When the size is a multiple of 255, 256 zero
    /// bytes follow the data. @p FileSize is then the number of bytes received. Until all of it has come the local
    /// file is as it was, and none is made where there is none.
    bool FTPDownloadFile(const std::string& sLocal, const std::string& sRemote, std::int32_t& FileSize);

    bool RenameFTPFile(const std::string& sExisting, const std::string& sNewName);
    bool CreateFTPDirectory(const std::string& sDirectory);
    bool RemoveFTPDirectory(const std::string& sDirectory);
    bool DeleteFTPFile(const std::string& sFile);
    bool SetFTPDirectory(const std::string& sDirectory);
    /// Empty on failure. Paths of 1024 characters and more are a failure.
    std::string GetFTPDirectory();
    /// The low 32 bits of the size of the first entry that GetDirectoryListing would find. 0 for an empty file, a
    /// missing one and a failure alike.
    std::int32_t GetFTPFileSize(const std::string& sFile);

    /// The entries that @p sFilter describes: all when it is empty, those that match its `*` and `?`, the one of
    /// that name, or what is in the directory of that name.
    /// Nothing, with @p returnIsOK true, when the search finds nothing or cannot start; nothing, with
    /// @p returnIsOK false, when it breaks off or two entries have names that differ in case only. The entries
    /// that were read until then are in Directory().
    std::shared_ptr<cDirList> GetDirectoryListing(const std::string& sFilter, bool& returnIsOK);
    /// The listing that the object holds; never null.
    std::shared_ptr<cDirList> Directory();

    const std::string& GetLastErrorMessage() const { return m_lastErrorMessage; }

    /// What one SimpleFTPGetFile or SimpleFTPPutFile may cost: the largest local file, the lowest speed and the
    /// longest time; see TransferLimits for the defaults. A download that goes past one of them fails and leaves
    /// the local side as it was. Transfers by pieces are as long as their owner wants them.
    void SetTransferLimits(const ftp::TransferLimits& limits) { m_transport->setLimits(limits); }
    const ftp::TransferLimits& GetTransferLimits() const { return m_transport->limits(); }

    void SetTransferASCII() { m_transferType = ftp::TransferAscii; }
    void SetTransferBinary() { m_transferType = ftp::TransferBinary; }
    /// The mode takes effect at the next OpenConnection.
    void SetModeActive() { m_connectionMode = 0; }
    void SetModePassive() { m_connectionMode = ftp::ModePassive; }

private:
    void recordError(ftp::ErrorCode code, std::string_view operation);
    bool succeeded(ftp::ErrorCode code, std::string_view operation);
    void breathe();
    void raiseStateChanged(std::int32_t state);
    void raiseProgress(std::int32_t current, std::int32_t total);
    void closeFile();
    void addEntry(const ftp::FindRecord& record);

    std::unique_ptr<ftp::FtpTransport> m_transport;
    ftp::Handle m_session = 0;
    ftp::Handle m_connection = 0;
    ftp::Handle m_file = 0;
    std::uint32_t m_transferType = ftp::TransferAscii;
    std::uint32_t m_connectionMode = 0;
    std::string m_lastErrorMessage;
    std::shared_ptr<cDirList> m_directory;
};

} // namespace zul
