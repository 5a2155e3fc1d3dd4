#include "ftp/CurlTransport.h"

#include "base/Utf8.h"
#include "ftp/CurlConnection.h"
#include "ftp/FtpReply.h"
#include "ftp/ListingParser.h"
#include "ftp/LocalFile.h"
#include "ftp/NamePattern.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace zul::ftp {

namespace {

void startLibrary()
{
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

bool isAscii(std::uint32_t flags)
{
    return (flags & TransferBinary) == 0;
}

/// A path as its directory and its last name: "a/b" is "a" and "b", "/b" is "/" and "b".
std::pair<std::string, std::string> splitPath(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos) {
        return {{}, path};
    }
    return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

} // namespace

std::unique_ptr<FtpTransport> makePlatformTransport()
{
    return std::make_unique<CurlTransport>();
}

CurlTransport::CurlTransport(const CurlTransportOptions& options)
    : m_options(options)
{
    startLibrary();
}

CurlTransport::~CurlTransport() = default;

ErrorCode CurlTransport::openSession(const std::string&, std::uint32_t, Handle& session)
{
    // FTP has no place for the agent's name.
    session = ++m_lastHandle;
    m_sessions.push_back(session);
    return Success;
}

ErrorCode CurlTransport::connect(Handle session, const ConnectRequest& request, Handle& connection)
{
    connection = 0;
    if (std::find(m_sessions.begin(), m_sessions.end(), session) == m_sessions.end()) {
        return InvalidHandle;
    }
    if (request.service != ServiceFtp || !isSendable(request.server) || !isSendable(request.user) ||
        !isSendable(request.password)) {
        return InvalidParameter;
    }
    auto made = std::make_unique<CurlConnection>(request, m_options);
    if (const auto code = keep(*made, made->open()); code != Success) {
        return code;
    }
    connection = ++m_lastHandle;
    m_connections.emplace(connection, std::move(made));
    m_sessionOf.emplace(connection, session);
    return Success;
}

ErrorCode CurlTransport::closeHandle(Handle handle)
{
    if (const auto file = m_files.find(handle); file != m_files.end()) {
        CurlConnection& connection = *m_connections.at(file->second.connection);
        m_files.erase(file);
        return keep(connection, connection.closeFile());
    }
    if (m_finds.erase(handle) != 0) {
        return Success;
    }
    if (m_connections.contains(handle)) {
        forgetConnection(handle);
        return Success;
    }
    if (std::erase(m_sessions, handle) == 0) {
        return InvalidHandle;
    }
    const auto sessionOf = m_sessionOf;
    for (const auto& [connection, session] : sessionOf) {
        if (session == handle) {
            forgetConnection(connection);
        }
    }
    return Success;
}

void CurlTransport::forgetConnection(Handle connection)
{
    std::erase_if(m_files, [connection](const auto& file) { return file.second.connection == connection; });
    std::erase_if(m_finds,
                  [connection](const auto& search) { return search.second.connection == connection; });
    m_sessionOf.erase(connection);
    m_connections.erase(connection);
}

CurlConnection* CurlTransport::find(Handle connection) const
{
    const auto found = m_connections.find(connection);
    return found == m_connections.end() ? nullptr : found->second.get();
}

/// What every operation asks first.
ErrorCode CurlTransport::ready(Handle connection, std::initializer_list<const std::string*> names,
                               CurlConnection*& found)
{
    found = find(connection);
    if (found == nullptr) {
        return InvalidHandle;
    }
    for (const std::string* name : names) {
        if (name->empty() || !isSendable(*name)) {
            return InvalidParameter;
        }
    }
    return found->isFileOpen() ? TransferInProgress : Success;
}

/// Keeps the server's words of an operation.
ErrorCode CurlTransport::keep(const CurlConnection& connection, ErrorCode code)
{
    m_lastResponse = connection.lastReply().text;
    return code;
}

ErrorCode CurlTransport::command(Handle handle, const char* verb, const std::string& name)
{
    CurlConnection* connection = nullptr;
    if (const auto code = ready(handle, {&name}, connection); code != Success) {
        return code;
    }
    return keep(*connection, connection->command(std::string(verb) + ' ' + name));
}

ErrorCode CurlTransport::putFile(Handle handle, const std::string& local, const std::string& remote,
                                 std::uint32_t flags)
{
    CurlConnection* connection = nullptr;
    if (const auto code = ready(handle, {&remote}, connection); code != Success) {
        return code;
    }
    LocalFile file;
    if (const auto error = file.open(local); error != LocalError::None) {
        return errorCode(error);
    }
    // curl writes CR LF for every LF of an ASCII transfer, so a local CR LF goes out as its LF. A CR at the end
    // of a piece is held back until it is known what follows.
    bool held = false;
    const auto source = [&file, &held, ascii = isAscii(flags)](char* buffer, std::size_t wanted,
                                                               std::size_t& got) -> ErrorCode {
        for (;;) {
            std::size_t read = 0;
            const std::size_t start = held ? 1 : 0;
            if (held) {
                buffer[0] = '\r';
            }
            if (const auto error = file.read(buffer + start, wanted - start, read);
                error != LocalError::None) {
                return errorCode(error);
            }
            const bool atEnd = read < wanted - start;
            const std::size_t total = start + read;
            held = false;
            if (!ascii) {
                got = total;
                return Success;
            }
            got = 0;
            for (std::size_t i = 0; i < total; ++i) {
                const bool last = i + 1 == total;
                if (buffer[i] == '\r' && last && !atEnd) {
                    held = true;
                } else if (buffer[i] != '\r' || last || buffer[i + 1] != '\n') {
                    buffer[got++] = buffer[i];
                }
            }
            if (got > 0 || atEnd) {
                return Success;
            }
        }
    };
    return keep(*connection, connection->put(remote, isAscii(flags), limits(), source));
}

ErrorCode CurlTransport::getFile(Handle handle, const std::string& remote, const std::string& local,
                                 bool failIfExists, std::uint32_t, std::uint32_t flags)
{
    CurlConnection* connection = nullptr;
    if (const auto code = ready(handle, {&remote}, connection); code != Success) {
        return code;
    }
    if (failIfExists && LocalFile::exists(local)) {
        return FileExists;
    }
    // Better to know before the transfer than in its midst.
    if (const auto error = LocalReplacement::probe(local); error != LocalError::None) {
        return errorCode(error);
    }

    // What comes is written beside the local file, which half a file must not take the place of.
    LocalReplacement file;
    std::uint64_t room = limits().largestFile;
    const auto write = [&file, &local, &room](std::string_view data) -> ErrorCode {
        if (data.size() > room) {
            return FileTooLarge;
        }
        room -= data.size();
        auto error = LocalError::None;
        if (!file.isOpen()) {
            error = file.open(local);
        }
        if (error == LocalError::None) {
            error = file.write(data);
        }
        return errorCode(error);
    };
    auto code = keep(*connection, connection->get(remote, isAscii(flags), limits(), write));
    if (code == Success && !file.isOpen()) {
        code = write({}); // an empty remote file makes an empty local one
    }
    return code == Success ? errorCode(file.commit()) : code;
}

ErrorCode CurlTransport::openFile(Handle handle, const std::string& remote, std::uint32_t access,
                                  std::uint32_t flags, Handle& file)
{
    file = 0;
    CurlConnection* connection = nullptr;
    if (const auto code = ready(handle, {&remote}, connection); code != Success) {
        return code;
    }
    const bool writing = access == AccessWrite;
    const auto code = writing ? connection->openWrite(remote, isAscii(flags))
                              : connection->openRead(remote, isAscii(flags));
    if (keep(*connection, code) != Success) {
        return code;
    }
    file = ++m_lastHandle;
    m_files.emplace(file, File{handle, writing});
    return Success;
}

ErrorCode CurlTransport::readFile(Handle file, char* buffer, std::size_t wanted, std::size_t& got)
{
    got = 0;
    const auto found = m_files.find(file);
    if (found == m_files.end() || found->second.writing) {
        return InvalidHandle;
    }
    CurlConnection& connection = *m_connections.at(found->second.connection);
    return keep(connection, connection.read(buffer, wanted, got));
}

ErrorCode CurlTransport::writeFile(Handle file, std::string_view data, std::size_t& written)
{
    written = 0;
    const auto found = m_files.find(file);
    if (found == m_files.end() || !found->second.writing) {
        return InvalidHandle;
    }
    CurlConnection& connection = *m_connections.at(found->second.connection);
    const auto code = keep(connection, connection.write(data));
    if (code == Success) {
        written = data.size();
    }
    return code;
}

ErrorCode CurlTransport::renameFile(Handle handle, const std::string& existing, const std::string& newName)
{
    CurlConnection* connection = nullptr;
    if (const auto code = ready(handle, {&existing, &newName}, connection); code != Success) {
        return code;
    }
    auto code = connection->command("RNFR " + existing, &FtpReply::isIntermediate);
    if (code == Success) {
        code = connection->command("RNTO " + newName);
    }
    return keep(*connection, code);
}

ErrorCode CurlTransport::createDirectory(Handle connection, const std::string& directory)
{
    return command(connection, "MKD", directory);
}

ErrorCode CurlTransport::removeDirectory(Handle connection, const std::string& directory)
{
    return command(connection, "RMD", directory);
}

ErrorCode CurlTransport::deleteFile(Handle connection, const std::string& name)
{
    return command(connection, "DELE", name);
}

ErrorCode CurlTransport::setCurrentDirectory(Handle handle, const std::string& directory)
{
    CurlConnection* connection = nullptr;
    if (const auto code = ready(handle, {&directory}, connection); code != Success) {
        return code;
    }
    return keep(*connection, connection->changeDirectory(directory));
}

ErrorCode CurlTransport::getCurrentDirectory(Handle handle, std::size_t capacity, std::string& directory)
{
    directory.clear();
    CurlConnection* connection = nullptr;
    if (const auto code = ready(handle, {}, connection); code != Success) {
        return code;
    }
    if (const auto code = keep(*connection, connection->command("PWD")); code != Success) {
        return code;
    }
    auto quoted = quotedDirectory(m_lastResponse);
    if (!quoted) {
        return InvalidServerResponse;
    }
    if (characterCount(*quoted) >= capacity) {
        return InsufficientBuffer;
    }
    directory = std::move(*quoted);
    return Success;
}

ErrorCode CurlTransport::listing(CurlConnection& connection, const std::string& directory,
                                 std::vector<FindRecord>& entries)
{
    std::string text;
    if (const auto code = keep(connection, connection.list(directory, text)); code != Success) {
        return code;
    }
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    Listing parsed = parseListing(text, now, m_options.maxListingEntries);
    if (parsed.tooMany) {
        return InvalidServerResponse;
    }
    entries = std::move(parsed.entries);
    return Success;
}

ErrorCode CurlTransport::search(CurlConnection& connection, const std::string& filter,
                                std::vector<FindRecord>& entries)
{
    const auto [directory, pattern] = splitPath(filter);
    if (pattern.empty() || pattern == "." || pattern == "..") {
        return listing(connection, filter, entries);
    }
    if (const auto code = listing(connection, directory, entries); code != Success) {
        return code;
    }
    std::erase_if(entries, [&pattern = pattern](const FindRecord& entry) {
        return hasWildcards(pattern) ? !matchesPattern(entry.name, pattern) : entry.name != pattern;
    });
    if (!hasWildcards(pattern) && !entries.empty() &&
        (entries.front().attributes & AttributeDirectory) != 0) {
        return listing(connection, filter, entries);
    }
    return Success;
}

ErrorCode CurlTransport::findFirst(Handle handle, const std::string& filter, FindRecord& record, Handle& find)
{
    find = 0;
    CurlConnection* connection = nullptr;
    if (const auto code = ready(handle, {}, connection); code != Success) {
        return code;
    }
    if (!isSendable(filter)) {
        return InvalidParameter;
    }
    Find search;
    search.connection = handle;
    if (const auto code = this->search(*connection, filter, search.entries); code != Success) {
        return code;
    }
    if (search.entries.empty()) {
        return NoMoreFiles;
    }
    record = search.entries.front();
    search.next = 1;
    find = ++m_lastHandle;
    m_finds.emplace(find, std::move(search));
    return Success;
}

ErrorCode CurlTransport::findNext(Handle find, FindRecord& record)
{
    const auto found = m_finds.find(find);
    if (found == m_finds.end()) {
        return InvalidHandle;
    }
    if (found->second.next == found->second.entries.size()) {
        return NoMoreFiles;
    }
    record = found->second.entries[found->second.next++];
    return Success;
}

} // namespace zul::ftp
