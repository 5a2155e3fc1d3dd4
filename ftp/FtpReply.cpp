#include "ftp/FtpReply.h"

#include <utility>

namespace zul::ftp {

namespace {

/// The code of a line that ends a reply, or 0.
int finalCode(std::string_view line)
{
    if (line.size() < 4 || line[3] != ' ') {
        return 0;
    }
    int code = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        if (line[i] < '0' || line[i] > '9') {
            return 0;
        }
        code = code * 10 + (line[i] - '0');
    }
    return code;
}

} // namespace

bool ReplyReader::addLine(std::string_view line)
{
    if (line.size() > m_limit - m_taken) {
        return false;
    }
    m_taken += line.size();
    m_open += line;
    if (const int code = finalCode(line); code != 0) {
        m_last = FtpReply{code, std::exchange(m_open, {})};
        m_codes.push_back(code);
    }
    return true;
}

std::optional<std::string> quotedDirectory(std::string_view replyText)
{
    const std::size_t start = replyText.find('"');
    if (start == std::string_view::npos) {
        return std::nullopt;
    }
    std::string directory;
    for (std::size_t i = start + 1; i < replyText.size(); ++i) {
        if (replyText[i] != '"') {
            directory += replyText[i];
        } else if (i + 1 < replyText.size() && replyText[i + 1] == '"') {
            directory += '"';
            ++i;
        } else {
            return directory;
        }
    }
    return std::nullopt;
}

bool isSendable(std::string_view text)
{
    constexpr std::string_view refused("\r\n\0", 3);
    return text.find_first_of(refused) == std::string_view::npos;
}

} // namespace zul::ftp
