// One control connection over libcurl, and one operation on it at a time.
#pragma once

#include "ftp/CurlTransport.h"
#include "ftp/FtpReply.h"

#include <chrono>
#include <cstddef>
#include <curl/curl.h>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zul::ftp {

/// Every call blocks until the operation ends, well or not, within the limits of the options.
class CurlConnection
{
public:
    /// Takes data that arrived; an error ends the operation with it.
    using Sink = std::function<ErrorCode(std::string_view)>;
    /// Gives the next bytes, none at the end; an error ends the operation with it.
    using Source = std::function<ErrorCode(char* buffer, std::size_t wanted, std::size_t& got)>;

    CurlConnection(ConnectRequest request, const CurlTransportOptions& options);
    CurlConnection(const CurlConnection&) = delete;
    CurlConnection& operator=(const CurlConnection&) = delete;
    /// Says goodbye and closes.
    ~CurlConnection();

    /// Connects and logs in.
    ErrorCode open();

    /// Sends one command. Success only for a reply that @p expected accepts.
    ErrorCode command(const std::string& line, bool (FtpReply::*expected)() const = &FtpReply::isCompletion);
    ErrorCode changeDirectory(const std::string& directory);

    /// The raw listing of @p directory; empty: of the current one.
    ErrorCode list(const std::string& directory, std::string& text);
    /// Whole files, within the limits; what the sink keeps is for the sink to limit.
    ErrorCode get(const std::string& remote, bool ascii, const TransferLimits& limits, const Sink& sink);
    ErrorCode put(const std::string& remote, bool ascii, const TransferLimits& limits, const Source& source);

    /// A file by pieces. While it is open, only read, write and closeFile may be called.
    ErrorCode openRead(const std::string& remote, bool ascii);
    ErrorCode openWrite(const std::string& remote, bool ascii);
    ErrorCode read(char* buffer, std::size_t wanted, std::size_t& got);
    ErrorCode write(std::string_view data);
    ErrorCode closeFile();
    bool isFileOpen() const { return m_fileOpen; }

    /// The last reply of the last operation.
    const FtpReply& lastReply() const { return m_replies.last(); }

private:
    using Clock = std::chrono::steady_clock;

    enum class State
    {
        Closed, ///< never opened, or cut by ourselves: may be opened (again)
        Open,
        Lost ///< ended by the server or by a failure
    };

    struct EasyDeleter
    {
        void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
    };
    struct MultiDeleter
    {
        void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
    };
    struct ListDeleter
    {
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    ErrorCode connect();
    ErrorCode restore();
    ErrorCode prepare(const std::string& path);
    ErrorCode download(const std::function<ErrorCode()>& prepareOnce, const Sink& sink,
                       std::chrono::milliseconds limit);
    bool missedData() const;
    void discard();
    ErrorCode prepareTransfer(const std::string& remote, bool ascii, bool upload);
    ErrorCode prepareWhole(const std::string& remote, bool ascii, bool upload, const TransferLimits& limits);
    ErrorCode begin(std::chrono::milliseconds limit);
    ErrorCode drive(const std::function<bool()>& enough, std::chrono::milliseconds stall);
    ErrorCode runToEnd();
    ErrorCode end();
    ErrorCode outcome() const;
    ErrorCode loginOutcome() const;
    void cut(State state);
    void resume();
    void touch() { m_lastActivity = Clock::now(); }

    template <typename Value>
    void set(CURLoption option, Value value);

    static std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* self);
    static std::size_t onData(char* data, std::size_t size, std::size_t count, void* self);
    static std::size_t onRead(char* buffer, std::size_t size, std::size_t count, void* self);
    static int onReady(void* self, char* serverAddress, char* ownAddress, int serverPort, int ownPort);
    static int onSocket(void* self, curl_socket_t socket, curlsocktype purpose);

    ConnectRequest m_request; ///< its server without the scheme
    bool m_secure;
    CurlTransportOptions m_options;
    std::unique_ptr<CURLM, MultiDeleter> m_multi;
    std::unique_ptr<CURL, EasyDeleter> m_easy;
    std::unique_ptr<curl_slist, ListDeleter> m_quote;

    State m_state = State::Closed;
    bool m_connecting = false;
    bool m_directoryChanged = false;
    std::string m_directory;     ///< to come back to after a cut; empty: the server did not tell it
    std::string m_serverAddress; ///< of the control connection
    int m_ownPort = 0;           ///< of the control connection: another one is another connection

    curl_socket_t m_control = CURL_SOCKET_BAD; ///< while the connection stands and no operation runs

    // The running operation.
    bool m_running = false; ///< the easy handle is in the multi handle
    bool m_done = false;
    bool m_fileOpen = false;
    CURLcode m_result = CURLE_OK;
    ErrorCode m_failure = Success; ///< our own reason to end it
    ReplyReader m_replies;
    Clock::time_point m_deadline;
    Clock::time_point m_lastActivity;
    Sink m_sink;
    Source m_source;
    std::string m_incoming; ///< arrived and not yet read
    std::string m_outgoing; ///< written and not yet sent
    std::size_t m_outgoingSent = 0;
    bool m_outgoingEnd = false;
    bool m_paused = false;
    bool m_uploading = false;
    bool m_downloading = false;
    bool m_normaliseLineEnds = false;
    bool m_heldCarriageReturn = false;
};

} // namespace zul::ftp
