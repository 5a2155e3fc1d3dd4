// Directory listings, as servers write them for people to read.
//
// Two forms are known: that of `ls -l` (with the time or the year, or an ISO date) and that of MS-DOS. What the
// parser cannot read it passes over, line by line: "total" lines, greetings, nonsense.
//
//  * Attributes: a directory has 0x10; a name that starts with a dot (other than "." and "..") is hidden, 0x2;
//    an entry that nobody may write is read-only, 0x1; an entry with none of these is normal, 0x80.
//  * A symbolic link is an entry of its own name ("name -> target" is cut before the arrow) and no directory:
//    the listing does not tell what it leads to.
//  * Times are taken as UTC, the listing's own zone being unknown; only the time of the last write is told, the
//    other two stay 0. Without a year, the last such day is meant that is not more than a day ahead of now.
//  * Names are what stands after the one blank behind the date or the size, blanks in front and at the end
//    included. They are data: "." and "..", slashes and control characters come through as the server sent
//    them.
#pragma once

#include "ftp/FindRecord.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace zul::ftp {

/// One line without its line end; nothing when it is no entry.
std::optional<FindRecord> parseListingLine(std::string_view line, std::chrono::sys_seconds now);

struct Listing
{
    std::vector<FindRecord> entries;
    bool tooMany = false; ///< there were more than @c maxEntries; the rest was not read
};

/// A whole listing with LF or CR LF line ends.
Listing parseListing(std::string_view text, std::chrono::sys_seconds now, std::size_t maxEntries);

} // namespace zul::ftp
