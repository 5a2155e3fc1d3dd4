// Listings: whatever a server sends, what comes out are names, sizes and times within their bounds.
#include "base/Utf8.h"
#include "ftp/FileTime.h"
#include "ftp/ListingParser.h"
#include "ftp/NamePattern.h"

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
    using namespace std::chrono_literals;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    constexpr std::size_t maxEntries = 50;
    const std::chrono::sys_seconds now = std::chrono::sys_days{2024y / 11 / 21} + 3h;

    const Listing listing = parseListing(text, now, maxEntries);
    require(listing.entries.size() <= maxEntries);
    std::size_t bytes = 0;
    for (const FindRecord& entry : listing.entries) {
        bytes += entry.name.size();
        require(!entry.name.empty());
        require(entry.name.find('\n') == std::string::npos);
        require(text.find(entry.name) != std::string_view::npos);
        require(entry.attributes != 0);
        require(entry.lastWriteTime < (std::uint64_t{1} << 63U));
        require(fileTimeToLocalDate(entry.lastWriteTime) > -110'000);
        require(matchesPattern(entry.name, "*"));
        require(zul::leftCharacters(entry.name, 259).size() <= entry.name.size());
    }
    require(bytes <= size);

    // The first line as a pattern for the rest: it ends, and a name without wildcards matches itself.
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view pattern = text.substr(0, std::min<std::size_t>(end, 64));
    const std::string_view name = text.substr(end, 512);
    const bool matches = matchesPattern(name, pattern);
    require(hasWildcards(pattern) || matches == (name == pattern));
    return 0;
}
