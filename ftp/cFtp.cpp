#include "ftp/cFtp.h"

#include "base/Utf8.h"
#include "ftp/FileTime.h"
#include "ftp/LocalFile.h"
#include "ftp/TextToNumber.h"

#include <array>
#include <atomic>
#include <limits>
#include <utility>
#include <vector>

namespace zul {

namespace {

constexpr std::string_view AgentName = "QVR FTP Client";
constexpr std::int32_t ChunkSize = 255;
constexpr std::size_t ErrorTextBuffer = 2048;
constexpr std::size_t DirectoryBuffer = 1024;
constexpr std::size_t FileNameField = 260;

constexpr std::int32_t DownloadStarted = 9;
constexpr std::int32_t DownloadEnded = 10;

void check(ftp::LocalError error)
{
    if (error != ftp::LocalError::None) {
        throw ftp::RunTimeError(ftp::runTimeNumber(error));
    }
}

/// File number 1: every transfer by pieces opens its local file under it, so only one can run at a time.
class FileNumberOne
{
public:
    FileNumberOne()
    {
        if (s_taken.exchange(true)) {
            throw ftp::RunTimeError(ftp::FileAlreadyOpen);
        }
    }
    FileNumberOne(const FileNumberOne&) = delete;
    FileNumberOne& operator=(const FileNumberOne&) = delete;
    ~FileNumberOne() { release(); }

protected:
    void release()
    {
        if (std::exchange(m_held, false)) {
            s_taken = false;
        }
    }

private:
    static inline std::atomic<bool> s_taken = false;
    bool m_held = true;
};

/// The local side of an upload by pieces.
class UploadedFile : private FileNumberOne
{
public:
    explicit UploadedFile(const std::string& path) { check(m_file.open(path)); }

    /// The length in bytes; it must fit the 32 bits of the progress event.
    std::int32_t length() const
    {
        std::uint64_t bytes = 0;
        check(m_file.size(bytes));
        if (bytes > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max())) {
            throw ftp::RunTimeError(ftp::Overflow);
        }
        return static_cast<std::int32_t>(bytes);
    }

    /// Fills as much of @p buffer as the file still has; the rest of the buffer keeps what it held.
    void read(std::array<char, ChunkSize>& buffer)
    {
        std::size_t got = 0;
        check(m_file.read(buffer.data(), buffer.size(), got));
    }

    /// Before the end is told: its listener may start the next transfer.
    void close()
    {
        m_file.close();
        release();
    }

private:
    ftp::LocalFile m_file;
};

/// The local side of a download by pieces, which takes the place of an earlier file at its end only.
class DownloadedFile : private FileNumberOne
{
public:
    explicit DownloadedFile(const std::string& path)
        : m_path(path)
    {
        check(m_file.open(path));
    }

    void write(std::string_view data) { check(m_file.write(data)); }

    /// Before the end is told: its listener may start the next transfer, or read the file.
    void close()
    {
        // The earlier file is not cut: the tail of a longer one stays.
        check(m_file.keepTailOf(m_path));
        check(m_file.commit());
        release();
    }

private:
    std::string m_path;
    ftp::LocalReplacement m_file;
};

void trim(std::string& text)
{
    const std::size_t last = text.find_last_not_of(' ');
    text.resize(last == std::string::npos ? 0 : last + 1);
    text.erase(0, text.find_first_not_of(' '));
}

std::string_view untilNul(std::string_view text)
{
    return text.substr(0, text.find('\0'));
}

std::int32_t low32(std::uint64_t size)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(size));
}

} // namespace

cFtp::cFtp()
    : cFtp(ftp::makePlatformTransport())
{}

cFtp::cFtp(std::unique_ptr<ftp::FtpTransport> transport)
    : m_transport(std::move(transport))
{
    const auto code = m_transport->openSession(std::string(AgentName), ftp::OpenPreconfigured, m_session);
    if (!succeeded(code, "InternetOpen")) {
        stringaLog = "Apertura internet errata (" + std::to_string(code) + ")";
    }
}

cFtp::~cFtp()
{
    m_transport->closeHandle(m_session);
}

bool cFtp::OpenConnection(const std::string& sServer, const std::string& sPort, const std::string& sUser,
                          const std::string& sPassword)
{
    CloseConnection();
    ftp::ConnectRequest request;
    request.server = sServer;
    request.port = static_cast<std::uint16_t>(ftp::textToInt16(sPort, ftp::localeNumberFormat()));
    request.user = sUser;
    request.password = sPassword;
    request.flags = m_connectionMode;
    return succeeded(m_transport->connect(m_session, request, m_connection), "InternetConnect");
}

void cFtp::CloseConnection()
{
    if (m_connection != 0) {
        m_transport->closeHandle(m_connection);
    }
    m_connection = 0;
}

bool cFtp::SimpleFTPPutFile(const std::string& sLocal, const std::string& sRemote)
{
    return succeeded(m_transport->putFile(m_connection, sLocal, sRemote, m_transferType), "SimpleFtpPutFile");
}

bool cFtp::SimpleFTPGetFile(const std::string& sLocal, const std::string& sRemote)
{
    return succeeded(m_transport->getFile(m_connection, sRemote, sLocal, false, ftp::AttributeNormal,
                                          m_transferType | ftp::FlagReload),
                     "SimpleFtpGetFile");
}

bool cFtp::FTPUploadFile(std::string& sLocal, std::string& sRemote)
{
    trim(sLocal);
    trim(sRemote);
    if (sLocal.empty() || sRemote.empty()) {
        return false;
    }
    if (!succeeded(m_transport->openFile(m_connection, sRemote, ftp::AccessWrite, m_transferType, m_file),
                   "FtpOpenFile:PutFile")) {
        return false;
    }

    UploadedFile local(sLocal);
    const std::int32_t total = local.length();
    const std::int32_t chunks = total / ChunkSize;
    const std::int32_t remainder = total % ChunkSize;
    std::int32_t sent = 0;
    std::size_t written = 0;
    std::array<char, ChunkSize> buffer{};

    // Where a write fails, the remote file is left open, on purpose: the connection then refuses other
    // operations until it is opened anew.
    for (std::int32_t i = 0; i < chunks; ++i) {
        local.read(buffer);
        const auto code = m_transport->writeFile(m_file, {buffer.data(), buffer.size()}, written);
        if (!succeeded(code, "InternetWriteFile")) {
            return false;
        }
        breathe();
        breathe();
        sent += ChunkSize;
        raiseProgress(sent, total);
    }

    // The last piece is written also when it has no bytes.
    local.read(buffer);
    const auto code =
        m_transport->writeFile(m_file, {buffer.data(), static_cast<std::size_t>(remainder)}, written);
    if (!succeeded(code, "InternetWriteFile2")) {
        return false;
    }
    sent += remainder;
    raiseProgress(sent, total);
    local.close();
    closeFile();
    return true;
}

bool cFtp::FTPDownloadFile(const std::string& sLocal, const std::string& sRemote, std::int32_t& FileSize)
{
    breathe();
    raiseStateChanged(DownloadStarted);
    if (sLocal.empty() || sRemote.empty() || FileSize < 0) {
        return false;
    }
    if (!succeeded(m_transport->openFile(m_connection, sRemote, ftp::AccessRead, m_transferType, m_file),
                   "FtpOpenFile:GetFile")) {
        return false;
    }
    breathe();
    breathe();

    DownloadedFile local(sLocal);
    const std::int32_t chunks = FileSize / ChunkSize;
    const std::int32_t remainder = FileSize % ChunkSize;
    std::int32_t received = 0;
    std::size_t got = 0;
    std::array<char, ChunkSize> buffer{};

    for (std::int32_t i = 0; i < chunks; ++i) {
        const auto code = m_transport->readFile(m_file, buffer.data(), buffer.size(), got);
        if (!succeeded(code, "InternetReadFile")) {
            return false; // the remote file stays open, as in the upload
        }
        // The whole buffer, also when the file ended early: the size was the caller's to know.
        local.write({buffer.data(), buffer.size()});
        breathe();
        breathe();
        received += ChunkSize;
        raiseProgress(received, FileSize);
    }

    // Without a remainder the last buffer has 256 bytes, into which nothing is read and which are written all
    // the same: 256 zero bytes behind the data. It is meant so.
    std::vector<char> last(remainder == 0 ? 256 : static_cast<std::size_t>(remainder));
    const auto code = m_transport->readFile(m_file, last.data(), static_cast<std::size_t>(remainder), got);
    if (!succeeded(code, "InternetReadFile2")) {
        return false;
    }
    local.write({last.data(), last.size()});
    breathe();
    breathe();
    received += remainder;
    FileSize = received;
    raiseProgress(received, FileSize);
    local.close();
    closeFile();
    raiseStateChanged(DownloadEnded);
    return true;
}

bool cFtp::RenameFTPFile(const std::string& sExisting, const std::string& sNewName)
{
    return succeeded(m_transport->renameFile(m_connection, sExisting, sNewName), "RenameFTPFile");
}

bool cFtp::CreateFTPDirectory(const std::string& sDirectory)
{
    return succeeded(m_transport->createDirectory(m_connection, sDirectory), "CreateFTPDirectory");
}

bool cFtp::RemoveFTPDirectory(const std::string& sDirectory)
{
    return succeeded(m_transport->removeDirectory(m_connection, sDirectory), "RemoveFTPDirectory");
}

bool cFtp::DeleteFTPFile(const std::string& sFile)
{
    return succeeded(m_transport->deleteFile(m_connection, sFile), "DeleteFTPFile");
}

bool cFtp::SetFTPDirectory(const std::string& sDirectory)
{
    return succeeded(m_transport->setCurrentDirectory(m_connection, sDirectory), "FtpSetCurrentDirectory");
}

std::string cFtp::GetFTPDirectory()
{
    std::string directory;
    if (!succeeded(m_transport->getCurrentDirectory(m_connection, DirectoryBuffer, directory),
                   "FtpGetCurrentDirectory")) {
        return {};
    }
    return std::string(untilNul(directory));
}

std::int32_t cFtp::GetFTPFileSize(const std::string& sFile)
{
    ftp::FindRecord record;
    ftp::Handle find = 0;
    const auto code = m_transport->findFirst(m_connection, sFile, record, find);
    if (code != ftp::Success) {
        record = {};
        if (code != ftp::NoMoreFiles) {
            recordError(code, "FtpFindFirstFile");
        }
    }
    m_transport->closeHandle(find); // also when it is 0
    return low32(record.size);
}

std::shared_ptr<cDirList> cFtp::GetDirectoryListing(const std::string& sFilter, bool& returnIsOK)
{
    returnIsOK = false;
    m_directory.reset();

    ftp::FindRecord record;
    ftp::Handle find = 0;
    auto code = m_transport->findFirst(m_connection, sFilter, record, find);
    if (code != ftp::Success) {
        if (code != ftp::NoMoreFiles) {
            recordError(code, "FtpFindFirstFile");
        }
        returnIsOK = true; // meant so: a search that cannot start is told by the message alone
        return nullptr;
    }

    std::shared_ptr<cDirList> result;
    try {
        while (code == ftp::Success) {
            addEntry(record);
            record = {};
            code = m_transport->findNext(find, record);
        }
        if (code == ftp::NoMoreFiles) {
            result = Directory();
            returnIsOK = true;
        } else {
            recordError(code, "InternetFindNextFile");
        }
    } catch (const ftp::RunTimeError&) {
        // Two names that the collection takes for one key: the answer is no listing.
        returnIsOK = false;
    }
    m_transport->closeHandle(find);
    return result;
}

std::shared_ptr<cDirList> cFtp::Directory()
{
    if (!m_directory) {
        m_directory = std::make_shared<cDirList>();
    }
    return m_directory;
}

void cFtp::recordError(ftp::ErrorCode code, std::string_view operation)
{
    m_lastErrorMessage = std::string(operation) + " error code: " + std::to_string(code) +
                         " Message: " + m_transport->systemText(code);
    if (code == ftp::ExtendedError) {
        const std::string response = m_transport->lastResponse();
        m_lastErrorMessage = leftCharacters(untilNul(response), ErrorTextBuffer - 1);
    }
}

bool cFtp::succeeded(ftp::ErrorCode code, std::string_view operation)
{
    if (code != ftp::Success) {
        recordError(code, operation);
    }
    return code == ftp::Success;
}

void cFtp::breathe()
{
    if (yield) {
        yield();
    }
}

void cFtp::raiseStateChanged(std::int32_t state)
{
    if (StateChanged) {
        StateChanged(state);
    }
}

void cFtp::raiseProgress(std::int32_t current, std::int32_t total)
{
    if (FileTransferProgress) {
        FileTransferProgress(current, total);
    }
}

void cFtp::closeFile()
{
    m_transport->closeHandle(m_file);
    m_file = 0;
}

void cFtp::addEntry(const ftp::FindRecord& record)
{
    const std::string name(leftCharacters(untilNul(record.name), FileNameField - 1));
    Directory()->Add(static_cast<std::int32_t>(record.attributes),
                     ftp::fileTimeToLocalDate(record.creationTime),
                     ftp::fileTimeToLocalDate(record.lastAccessTime),
                     ftp::fileTimeToLocalDate(record.lastWriteTime), low32(record.size), name);
}

} // namespace zul
