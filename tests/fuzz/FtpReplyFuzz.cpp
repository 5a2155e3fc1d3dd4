// Replies: whatever a server says on the control connection, memory stays bounded and codes are codes.
#include "ftp/FtpReply.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace zul::ftp;
    std::string_view text(reinterpret_cast<const char*>(data), size);
    constexpr std::size_t limit = 1024;

    ReplyReader reader(limit);
    std::size_t taken = 0;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
        const std::string_view line = text.substr(0, length);
        text.remove_prefix(length);
        const bool accepted = reader.addLine(line);
        require(accepted == (taken + line.size() <= limit));
        if (!accepted) {
            break;
        }
        taken += line.size();
        require(reader.last().text.size() <= taken);
        require(reader.last().code >= 0 && reader.last().code <= 999);
        require(reader.codes().empty() || reader.codes().back() == reader.last().code);
        const auto directory = quotedDirectory(reader.last().text);
        require(!directory || directory->size() <= reader.last().text.size());
    }
    quotedDirectory({reinterpret_cast<const char*>(data), size});
    isSendable({reinterpret_cast<const char*>(data), size});
    return 0;
}
