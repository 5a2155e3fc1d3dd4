// What a server says on the control connection.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zul::ftp {

/// One complete reply: three digits, and every line of it as it was sent, line ends included.
struct FtpReply
{
    int code = 0; ///< 0: no reply yet
    std::string text;

    bool isPreliminary() const { return code >= 100 && code < 200; }
    bool isCompletion() const { return code >= 200 && code < 300; }
    bool isIntermediate() const { return code >= 300 && code < 400; }
    bool isRefusal() const { return code >= 400 && code < 1000; }
};

/// Puts lines together to replies. A reply ends with the first line that starts with three digits and a blank;
/// what comes before belongs to it. Memory is bounded: a server that talks without end is cut off.
class ReplyReader
{
public:
    /// @p limit: bytes that one operation's replies may have together.
    explicit ReplyReader(std::size_t limit = 65'536)
        : m_limit(limit)
    {}

    /// Takes the next line. False when the limit is passed; the line is then not kept.
    bool addLine(std::string_view line);

    /// The last complete reply; code 0 when there is none.
    const FtpReply& last() const { return m_last; }
    /// The codes of all replies of the operation, in their order.
    const std::vector<int>& codes() const { return m_codes; }

private:
    std::size_t m_limit;
    std::size_t m_taken = 0;
    std::string m_open; ///< the lines of a reply that is not complete
    FtpReply m_last;
    std::vector<int> m_codes;
};

/// The directory of a 257 reply: the text between the first pair of quotation marks, in which a doubled mark
/// stands for one. Nothing when the reply has none.
std::optional<std::string> quotedDirectory(std::string_view replyText);

/// Whether @p text may be sent as part of a command: CR, LF and NUL would end the command and start another.
bool isSendable(std::string_view text);

} // namespace zul::ftp
