#include "ftp/CurlConnection.h"

#include "ftp/Socket.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace zul::ftp {

namespace {

/// How long curl may wait for its sockets. It does not always watch the data connection while that is being
/// made, so it is woken often at first and rarely when nothing happens for long.
std::chrono::milliseconds pollSlice(std::chrono::steady_clock::duration idle)
{
    constexpr std::chrono::milliseconds shortest(1);
    constexpr std::chrono::milliseconds longest(100);
    return std::clamp(std::chrono::duration_cast<std::chrono::milliseconds>(idle / 4), shortest, longest);
}

/// curl counts some of its limits in whole seconds. They stand behind our own, which come first.
long wholeSeconds(std::chrono::milliseconds time)
{
    return static_cast<long>(std::chrono::ceil<std::chrono::seconds>(time).count());
}

/// The part of the URL in front of the path. Nothing when the server's name cannot be one: it is set through
/// curl's own URL parts, so that no name can smuggle in a user, a port or a path.
std::string urlBase(const ConnectRequest& request)
{
    const std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url(curl_url(), &curl_url_cleanup);
    std::string host = request.server;
    if (host.find(':') != std::string::npos && !host.starts_with('[')) {
        host = "[" + host + "]"; // a bare IPv6 address
    }
    const unsigned port = request.port == 0 ? 21 : request.port;
    if (host.empty() || curl_url_set(url.get(), CURLUPART_SCHEME, "ftp", 0) != CURLUE_OK ||
        curl_url_set(url.get(), CURLUPART_HOST, host.c_str(), 0) != CURLUE_OK ||
        curl_url_set(url.get(), CURLUPART_PORT, std::to_string(port).c_str(), 0) != CURLUE_OK ||
        curl_url_set(url.get(), CURLUPART_PATH, "/", 0) != CURLUE_OK) {
        return {};
    }
    char* text = nullptr;
    if (curl_url_get(url.get(), CURLUPART_URL, &text, 0) != CURLUE_OK) {
        return {};
    }
    std::string base = text;
    curl_free(text);
    return base;
}

std::string escaped(CURL* easy, const std::string& text)
{
    if (text.empty()) {
        return {};
    }
    char* raw = curl_easy_escape(easy, text.data(), static_cast<int>(text.size()));
    if (raw == nullptr) {
        return {};
    }
    std::string result = raw;
    curl_free(raw);
    return result;
}

bool hasSecureScheme(const std::string& server)
{
    return server.size() >= SecureScheme.size() &&
           std::equal(SecureScheme.begin(), SecureScheme.end(), server.begin(), [](char wanted, char given) {
               return wanted == (given | ('A' <= given && given <= 'Z' ? 0x20 : 0));
           });
}

} // namespace

template <typename Value>
void CurlConnection::set(CURLoption option, Value value)
{
    curl_easy_setopt(m_easy.get(), option, value);
}

CurlConnection::CurlConnection(ConnectRequest request, const CurlTransportOptions& options)
    : m_request(std::move(request))
    , m_secure(hasSecureScheme(m_request.server))
    , m_options(options)
    , m_multi(curl_multi_init())
    , m_easy(curl_easy_init())
{
    if (m_secure) {
        m_request.server.erase(0, SecureScheme.size());
        // No router on the way can read where the server is to connect to.
        m_request.flags |= ModePassive;
    }
    if (m_request.user.empty()) {
        m_request.user = "anonymous";
        if (m_request.password.empty()) {
            m_request.password = "anonymous@";
        }
    }
}

CurlConnection::~CurlConnection()
{
    if (m_running) {
        cut(State::Closed);
    }
    if (m_state == State::Open) {
        m_options.commandTimeout = std::min(m_options.commandTimeout, m_options.goodbyeTimeout);
        command("QUIT");
        // curl says goodbye once more when it gives up a connection, and waits long for the answer. With the
        // line shut there is nothing to wait for.
        discard();
    }
    m_easy.reset();
}

ErrorCode CurlConnection::open()
{
    m_directory.clear();
    m_directoryChanged = false;
    return connect();
}

ErrorCode CurlConnection::connect()
{
    if (!m_multi || !m_easy) {
        return NotEnoughMemory;
    }
    m_connecting = true;
    m_ownPort = 0;
    if (const auto code = prepare({}); code != Success) {
        m_connecting = false;
        return code;
    }
    set(CURLOPT_NOBODY, 1L);
    auto code = begin(m_options.connectTimeout);
    if (code == Success) {
        code = runToEnd();
    }
    m_connecting = false;
    m_state = code == Success ? State::Open : State::Lost;
    return code;
}

/// After a cut of our own, the next operation finds the connection as it was.
ErrorCode CurlConnection::restore()
{
    if (m_state == State::Closed) {
        if (const auto code = connect(); code != Success) {
            return code;
        }
        if (m_directoryChanged) {
            if (m_directory.empty()) {
                m_state = State::Lost;
                return ConnectionAborted;
            }
            return command("CWD " + m_directory);
        }
    }
    return m_state == State::Open ? Success : ConnectionAborted;
}

ErrorCode CurlConnection::command(const std::string& line, bool (FtpReply::*expected)() const)
{
    if (const auto code = restore(); code != Success) {
        return code;
    }
    if (const auto code = prepare({}); code != Success) {
        return code;
    }
    // With the star curl does not end the connection over a refusal.
    m_quote.reset(curl_slist_append(nullptr, ("*" + line).c_str()));
    set(CURLOPT_QUOTE, m_quote.get());
    set(CURLOPT_NOBODY, 1L);
    auto code = begin(m_options.commandTimeout);
    if (code == Success) {
        code = runToEnd();
    }
    if (code == Success && !(lastReply().*expected)()) {
        code = lastReply().isRefusal() ? ExtendedError : InvalidServerResponse;
    }
    return code;
}

ErrorCode CurlConnection::changeDirectory(const std::string& directory)
{
    if (const auto code = command("CWD " + directory); code != Success) {
        return code;
    }
    // Where we are is needed only if the connection has to be restored; a server that does not tell is no
    // failure. The reply to the command proper stays the last one.
    const ReplyReader replies = m_replies;
    m_directoryChanged = true;
    m_directory.clear();
    const auto code = command("PWD");
    if (code == Success) {
        m_directory = quotedDirectory(lastReply().text).value_or(std::string());
    }
    if (!isSendable(m_directory)) {
        m_directory.clear();
    }
    m_replies = replies;
    return Success;
}

ErrorCode CurlConnection::list(const std::string& directory, std::string& text)
{
    // A directory whose name starts with a dash would be read as an option.
    std::string path = directory.starts_with('-') ? "./" + directory : directory;
    if (!path.empty() && !path.ends_with('/')) {
        path += '/';
    }
    const auto prepareOnce = [this, &path, &text] {
        text.clear();
        const auto code = restore();
        return code == Success ? prepare(path) : code;
    };
    const auto sink = [this, &text](std::string_view data) -> ErrorCode {
        if (data.size() > m_options.maxListingBytes - text.size()) {
            return InvalidServerResponse;
        }
        text += data;
        return Success;
    };
    return download(prepareOnce, sink, m_options.commandTimeout);
}

ErrorCode CurlConnection::get(const std::string& remote, bool ascii, const TransferLimits& limits,
                              const Sink& sink)
{
    return download([&] { return prepareWhole(remote, ascii, false, limits); }, sink, limits.longestTime);
}

ErrorCode CurlConnection::download(const std::function<ErrorCode()>& prepareOnce, const Sink& sink,
                                   std::chrono::milliseconds limit)
{
    ErrorCode code = Success;
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (code = prepareOnce(); code != Success) {
            return code;
        }
        m_downloading = true;
        m_sink = sink;
        code = begin(limit);
        if (code == Success) {
            code = runToEnd();
        }
        m_sink = nullptr;
        if (!missedData()) {
            break;
        }
        discard();
    }
    return code;
}

/// Some versions of curl take a download in active mode for done when the server's 150 is there at once but its
/// data connection is not: it then ends well, without data and without the final reply. On a new connection, on
/// which curl sets the transfer type first, it cannot happen.
bool CurlConnection::missedData() const
{
    return m_downloading && m_done && m_result == CURLE_OK && m_failure == Success &&
           lastReply().isPreliminary();
}

/// Gives up the connection, to be restored by the next operation.
void CurlConnection::discard()
{
    if (m_running) {
        end();
    }
    if (m_control != CURL_SOCKET_BAD) {
        shutSocket(m_control);
    }
    m_control = CURL_SOCKET_BAD;
    m_multi.reset(curl_multi_init());
    m_state = State::Closed;
}

ErrorCode CurlConnection::put(const std::string& remote, bool ascii, const TransferLimits& limits,
                              const Source& source)
{
    if (const auto code = prepareWhole(remote, ascii, true, limits); code != Success) {
        return code;
    }
    m_source = source;
    auto code = begin(limits.longestTime);
    if (code == Success) {
        code = runToEnd();
    }
    m_source = nullptr;
    return code;
}

ErrorCode CurlConnection::openRead(const std::string& remote, bool ascii)
{
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (const auto code = prepareTransfer(remote, ascii, false); code != Success) {
            return code;
        }
        m_downloading = true;
        m_sink = [this](std::string_view data) {
            m_incoming += data;
            return Success;
        };
        if (const auto code = begin(m_options.commandTimeout); code != Success) {
            return code;
        }
        const auto code = drive([this] { return lastReply().isPreliminary(); }, m_options.stallTimeout);
        if (code != Success || (m_done && m_result != CURLE_OK)) {
            return end();
        }
        if (!missedData()) {
            m_fileOpen = true;
            return Success;
        }
        discard();
    }
    return ConnectionAborted;
}

ErrorCode CurlConnection::openWrite(const std::string& remote, bool ascii)
{
    if (const auto code = prepareTransfer(remote, ascii, true); code != Success) {
        return code;
    }
    if (const auto code = begin(m_options.commandTimeout); code != Success) {
        return code;
    }
    // The server's 150, and curl asking for the first bytes: only now does the data connection stand.
    auto code = drive([this] { return m_paused; }, m_options.stallTimeout);
    if (code != Success || m_done) {
        code = end();
        return code == Success ? ConnectionAborted : code;
    }
    m_fileOpen = true;
    return Success;
}

ErrorCode CurlConnection::read(char* buffer, std::size_t wanted, std::size_t& got)
{
    got = 0;
    m_deadline = Clock::now() + m_options.commandTimeout;
    touch();
    const auto enough = [this, wanted] { return m_incoming.size() >= wanted; };
    const auto code = m_done || enough() ? Success : drive(enough, m_options.stallTimeout);
    if (code != Success) {
        return code;
    }
    if (m_incoming.size() < wanted && m_done && outcome() != Success) {
        return outcome();
    }
    got = std::min(wanted, m_incoming.size());
    std::memcpy(buffer, m_incoming.data(), got);
    m_incoming.erase(0, got);
    return Success;
}

ErrorCode CurlConnection::write(std::string_view data)
{
    if (m_done) {
        return outcome() == Success ? ConnectionAborted : outcome();
    }
    if (data.empty()) {
        return Success;
    }
    m_deadline = Clock::now() + m_options.commandTimeout;
    touch();
    m_outgoing.erase(0, m_outgoingSent);
    m_outgoingSent = 0;
    for (const char c : data) {
        // curl writes CR LF for every LF of an ASCII transfer; a CR that stands there already would be doubled.
        if (m_normaliseLineEnds && std::exchange(m_heldCarriageReturn, c == '\r') && c != '\n') {
            m_outgoing += '\r';
        }
        if (!m_normaliseLineEnds || c != '\r') {
            m_outgoing += c;
        }
    }
    resume();
    const auto code =
        drive([this] { return m_paused && m_outgoingSent == m_outgoing.size(); }, m_options.stallTimeout);
    if (code != Success) {
        return code;
    }
    if (m_done) {
        return outcome() == Success ? ConnectionAborted : outcome();
    }
    return Success;
}

ErrorCode CurlConnection::closeFile()
{
    m_fileOpen = false;
    m_deadline = Clock::now() + m_options.commandTimeout;
    touch();
    ErrorCode code = Success;
    if (m_uploading) {
        if (m_heldCarriageReturn) {
            m_outgoing += '\r';
        }
        m_outgoingEnd = true;
        resume();
        return runToEnd();
    }
    // Reading on for a little keeps the connection; a longer rest costs more than a new one.
    std::size_t drained = 0;
    m_incoming.clear();
    m_sink = [&drained](std::string_view data) {
        drained += data.size();
        return Success;
    };
    m_deadline = Clock::now() + std::min(m_options.goodbyeTimeout, m_options.commandTimeout);
    const auto enough = [this, &drained] {
        return drained > m_options.maxDrainBytes || Clock::now() >= m_deadline;
    };
    if (!m_done) {
        code = drive(enough, m_options.stallTimeout);
    }
    if (m_done) {
        code = end();
    } else if (m_running) {
        cut(State::Closed);
    }
    m_sink = nullptr;
    return code;
}

/// Sets everything that holds for each operation; @p path is a plain path, empty for none.
ErrorCode CurlConnection::prepare(const std::string& path)
{
    const std::string base = urlBase(m_request);
    if (base.empty()) {
        return NameNotResolved;
    }
    // curl takes no path with control characters, and would give up the connection over one.
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20; };
    if (path.size() > m_options.maxReplyBytes || std::any_of(path.begin(), path.end(), isControl)) {
        return InvalidParameter;
    }

    curl_easy_reset(m_easy.get());
    m_quote.reset();
    m_sink = nullptr;
    m_source = nullptr;
    m_replies = ReplyReader(m_options.maxReplyBytes);
    m_incoming.clear();
    m_outgoing.clear();
    m_outgoingSent = 0;
    m_outgoingEnd = false;
    m_paused = false;
    m_uploading = false;
    m_downloading = false;
    m_normaliseLineEnds = false;
    m_heldCarriageReturn = false;

    set(CURLOPT_URL, (base + escaped(m_easy.get(), path)).c_str());
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_PROTOCOLS_STR, "ftp");
    set(CURLOPT_USERNAME, m_request.user.c_str());
    set(CURLOPT_PASSWORD, m_request.password.c_str());
    if (m_secure) {
        // All or nothing: a server that refuses gets no password.
        set(CURLOPT_USE_SSL, static_cast<long>(CURLUSESSL_ALL));
        // With 1.3 uploads break off at their end: a server sends session tickets that curl does not read before it
        // closes the data connection, which resets it under what is still on the way.
        constexpr long version = CURL_SSLVERSION_TLSv1_2;
        set(CURLOPT_SSLVERSION, version | version << 16); // the least and the most
        set(CURLOPT_FTPSSLAUTH, static_cast<long>(CURLFTPAUTH_TLS));
        if (!m_options.authorities.empty()) {
            set(CURLOPT_CAINFO, m_options.authorities.c_str());
        }
    }
    set(CURLOPT_HTTPPROXYTUNNEL, 1L);
    set(CURLOPT_NOSIGNAL, 1L);
    // Names go to the server as they are, and no directory is changed behind our back.
    set(CURLOPT_FTP_FILEMETHOD, static_cast<long>(CURLFTPMETHOD_NOCWD));
    set(CURLOPT_FTP_SKIP_PASV_IP, 1L);
    set(CURLOPT_FTP_USE_EPSV, 0L);
    set(CURLOPT_FTP_USE_EPRT, 0L);
    if ((m_request.flags & ModePassive) == 0) {
        set(CURLOPT_FTPPORT, "-");
    }
    set(CURLOPT_IGNORE_CONTENT_LENGTH, 1L); // no SIZE command in front of every download
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(m_options.connectTimeout.count()));
    set(CURLOPT_ACCEPTTIMEOUT_MS, static_cast<long>(m_options.stallTimeout.count()));
    set(CURLOPT_SERVER_RESPONSE_TIMEOUT, wholeSeconds(m_options.stallTimeout));
    set(CURLOPT_HEADERFUNCTION, &CurlConnection::onHeader);
    set(CURLOPT_HEADERDATA, static_cast<void*>(this));
    set(CURLOPT_WRITEFUNCTION, &CurlConnection::onData);
    set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    set(CURLOPT_READFUNCTION, &CurlConnection::onRead);
    set(CURLOPT_READDATA, static_cast<void*>(this));
    set(CURLOPT_PREREQFUNCTION, &CurlConnection::onReady);
    set(CURLOPT_PREREQDATA, static_cast<void*>(this));
    set(CURLOPT_SOCKOPTFUNCTION, &CurlConnection::onSocket);
    set(CURLOPT_SOCKOPTDATA, static_cast<void*>(this));
    return Success;
}

ErrorCode CurlConnection::prepareTransfer(const std::string& remote, bool ascii, bool upload)
{
    // Of a name that ends in a slash curl would fetch the listing.
    if (remote.empty() || remote.ends_with('/')) {
        return InvalidParameter;
    }
    if (const auto code = restore(); code != Success) {
        return code;
    }
    if (const auto code = prepare(remote); code != Success) {
        return code;
    }
    set(CURLOPT_TRANSFERTEXT, ascii ? 1L : 0L);
    // On a system whose own line ends are CR LF curl takes the local side for such, unless it is told.
    set(CURLOPT_CRLF, ascii && upload ? 1L : 0L);
    set(CURLOPT_UPLOAD, upload ? 1L : 0L);
    m_uploading = upload;
    m_normaliseLineEnds = upload && ascii;
    return Success;
}

/// A transfer by pieces is as fast as its owner; a whole file's speed is the server's.
ErrorCode CurlConnection::prepareWhole(const std::string& remote, bool ascii, bool upload,
                                       const TransferLimits& limits)
{
    const auto code = prepareTransfer(remote, ascii, upload);
    if (code == Success) {
        set(CURLOPT_LOW_SPEED_LIMIT, static_cast<long>(limits.lowestSpeed));
        set(CURLOPT_LOW_SPEED_TIME, static_cast<long>(limits.slowestFor.count()));
    }
    return code;
}

ErrorCode CurlConnection::begin(std::chrono::milliseconds limit)
{
    m_done = false;
    m_result = CURLE_OK;
    m_failure = Success;
    m_deadline = Clock::now() + limit;
    touch();
    if (curl_multi_add_handle(m_multi.get(), m_easy.get()) != CURLM_OK) {
        return InternalError;
    }
    m_running = true;
    return Success;
}

/// Lets curl work until @p enough, the end of the operation or a limit.
ErrorCode CurlConnection::drive(const std::function<bool()>& enough, std::chrono::milliseconds stall)
{
    for (;;) {
        int running = 0;
        if (curl_multi_perform(m_multi.get(), &running) != CURLM_OK) {
            m_failure = InternalError;
            cut(State::Lost);
            return InternalError;
        }
        int left = 0;
        while (const CURLMsg* message = curl_multi_info_read(m_multi.get(), &left)) {
            if (message->msg == CURLMSG_DONE) {
                m_done = true;
                m_result = message->data.result;
            }
        }
        if (m_done || enough()) {
            return Success;
        }

        const auto now = Clock::now();
        const auto limit = std::min(m_deadline, m_lastActivity + stall);
        if (now >= limit) {
            m_failure = TimedOut;
            cut(State::Lost);
            return TimedOut;
        }
        const auto wait = std::min(std::chrono::ceil<std::chrono::milliseconds>(limit - now),
                                   pollSlice(now - m_lastActivity));
        curl_multi_poll(m_multi.get(), nullptr, 0, static_cast<int>(wait.count()), nullptr);
    }
}

ErrorCode CurlConnection::runToEnd()
{
    // While connecting the one limit covers it all.
    const auto stall = m_connecting ? m_options.connectTimeout : m_options.stallTimeout;
    if (!m_done) {
        if (const auto code = drive([] { return false; }, stall); code != Success) {
            return code;
        }
    }
    return end();
}

/// Takes the operation out of curl and says how it went.
ErrorCode CurlConnection::end()
{
    if (m_running) {
        m_control = CURL_SOCKET_BAD;
        curl_easy_getinfo(m_easy.get(), CURLINFO_ACTIVESOCKET, &m_control);
        curl_multi_remove_handle(m_multi.get(), m_easy.get());
        m_running = false;
        // A local failure makes curl cut the connection; that is no fault of the server's.
        if (!m_connecting && m_control == CURL_SOCKET_BAD) {
            m_state =
                m_failure != Success && m_failure != InvalidServerResponse ? State::Closed : State::Lost;
        }
    }
    return outcome();
}

void CurlConnection::cut(State state)
{
    curl_multi_remove_handle(m_multi.get(), m_easy.get());
    m_control = CURL_SOCKET_BAD;
    m_running = false;
    m_done = true;
    if (m_result == CURLE_OK) {
        m_result = CURLE_ABORTED_BY_CALLBACK;
    }
    m_state = state;
}

ErrorCode CurlConnection::outcome() const
{
    if (m_failure != Success) {
        return m_failure;
    }
    if (m_result == CURLE_OK) {
        return missedData() ? ConnectionAborted : Success;
    }
    if (m_result == CURLE_USE_SSL_FAILED) {
        return SecureChannelFailed;
    }
    if (m_connecting) {
        if (const auto code = loginOutcome(); code != Success) {
            return code;
        }
    }
    if (lastReply().isRefusal()) {
        return ExtendedError;
    }
    switch (m_result) {
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_FTP_ACCEPT_TIMEOUT:
        return TimedOut;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
        return NameNotResolved;
    case CURLE_URL_MALFORMAT:
        return m_connecting ? NameNotResolved : InvalidParameter;
    case CURLE_COULDNT_CONNECT:
    case CURLE_FTP_PORT_FAILED: // no local port; a refusal by the server has gone above
        return CannotConnect;
    case CURLE_OUT_OF_MEMORY:
        return NotEnoughMemory;
    case CURLE_PEER_FAILED_VERIFICATION:
        return InvalidCertificate;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CACERT_BADFILE:
        return SecureChannelFailed;
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_FTP_WEIRD_PASS_REPLY:
    case CURLE_FTP_WEIRD_PASV_REPLY:
    case CURLE_FTP_WEIRD_227_FORMAT:
    case CURLE_FTP_CANT_GET_HOST:
    case CURLE_FTP_COULDNT_SET_TYPE:
    case CURLE_FTP_COULDNT_RETR_FILE:
    case CURLE_LOGIN_DENIED:
    case CURLE_REMOTE_ACCESS_DENIED:
    case CURLE_REMOTE_FILE_NOT_FOUND:
    case CURLE_UPLOAD_FAILED:
    case CURLE_WRITE_ERROR:
        return InvalidServerResponse; // a refusal has gone above; this is a code that nobody expects here
    default:
        return ConnectionAborted;
    }
}

/// A refusal at the login, if it was one.
ErrorCode CurlConnection::loginOutcome() const
{
    const auto& codes = m_replies.codes();
    if (codes.size() < 2 || m_result == CURLE_OPERATION_TIMEDOUT) {
        return Success; // refused at the door
    }
    const int code = codes.back();
    if (code == 421) {
        return Success;
    }
    if (code == 332) {
        return LoginFailure;
    }
    if (!lastReply().isRefusal()) {
        return Success;
    }
    return std::find(codes.begin(), codes.end(), 331) != codes.end() ? IncorrectPassword : LoginFailure;
}

void CurlConnection::resume()
{
    if (std::exchange(m_paused, false)) {
        curl_easy_pause(m_easy.get(), CURLPAUSE_CONT);
    }
}

std::size_t CurlConnection::onHeader(char* data, std::size_t size, std::size_t count, void* self)
{
    auto* connection = static_cast<CurlConnection*>(self);
    const std::size_t replies = connection->m_replies.codes().size();
    if (!connection->m_replies.addLine({data, size * count})) {
        connection->m_failure = InvalidServerResponse;
        return 0;
    }
    // Lines without a reply are no sign of life.
    if (connection->m_replies.codes().size() != replies) {
        connection->touch();
    }
    return size * count;
}

std::size_t CurlConnection::onData(char* data, std::size_t size, std::size_t count, void* self)
{
    auto* connection = static_cast<CurlConnection*>(self);
    connection->touch();
    if (!connection->m_sink) {
        return size * count;
    }
    connection->m_failure = connection->m_sink({data, size * count});
    // A count that differs from what came ends the operation.
    return connection->m_failure == Success ? size * count : size * count + 1;
}

std::size_t CurlConnection::onRead(char* buffer, std::size_t size, std::size_t count, void* self)
{
    auto* connection = static_cast<CurlConnection*>(self);
    connection->touch();
    if (connection->m_source) {
        std::size_t got = 0;
        connection->m_failure = connection->m_source(buffer, size * count, got);
        return connection->m_failure == Success ? got : CURL_READFUNC_ABORT;
    }
    const std::size_t rest = connection->m_outgoing.size() - connection->m_outgoingSent;
    if (rest == 0) {
        if (connection->m_outgoingEnd) {
            return 0;
        }
        connection->m_paused = true;
        return CURL_READFUNC_PAUSE;
    }
    const std::size_t got = std::min(rest, size * count);
    std::memcpy(buffer, connection->m_outgoing.data() + connection->m_outgoingSent, got);
    connection->m_outgoingSent += got;
    return got;
}

/// curl is about to start an operation. It must do so on the connection that we know: a new one, made because
/// the server had ended the old one, would stand in another directory.
int CurlConnection::onReady(void* self, char* serverAddress, char*, int, int ownPort)
{
    auto* connection = static_cast<CurlConnection*>(self);
    if (connection->m_connecting) {
        connection->m_ownPort = ownPort;
        connection->m_serverAddress = serverAddress;
    }
    return connection->m_ownPort == ownPort ? CURL_PREREQFUNC_OK : CURL_PREREQFUNC_ABORT;
}

/// In active mode anybody could be faster than the server; only the server may connect.
int CurlConnection::onSocket(void* self, curl_socket_t socket, curlsocktype purpose)
{
    if (purpose != CURLSOCKTYPE_ACCEPT) {
        return CURL_SOCKOPT_OK;
    }
    const auto* connection = static_cast<CurlConnection*>(self);
    const std::string peer = peerAddress(socket);
    return !peer.empty() && connection->m_serverAddress == peer ? CURL_SOCKOPT_OK : CURL_SOCKOPT_ERROR;
}

} // namespace zul::ftp
