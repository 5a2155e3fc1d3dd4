// The entries of a remote directory, in the order of the server's listing.
#pragma once

#include "ftp/KeyedCollection.h"
#include "ftp/cDirItem.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace zul {

/// A keyed collection of entries. Positions count from 1; the key of an entry is its file name, compared
/// without regard to case. Entries are shared: one that was handed out outlives its list.
class cDirList
{
    using Entries = ftp::KeyedCollection<std::shared_ptr<cDirItem>>;

public:
    using Enumerator = Entries::Iterator;

    /// Makes an entry and adds it at the end.
    /// Throws ftp::RunTimeError 457 when there is an entry of that name; the list is then unchanged.
    std::shared_ptr<cDirItem> Add(std::int32_t lAttrib, double dtCreationTime, double dtLastAccessTime,
                                  double dtLastWriteTime, std::int32_t lFileSize,
                                  const std::string& sFilename);

    /// Removes, for i from 1 to Count - 1, the entry that stands at position i at that moment. It is meant so,
    /// though it does not empty the list: one entry stays, of two or three one stays, and from four on the
    /// removal reaches a position that is no longer there and throws ftp::RunTimeError 9 on the way.
    void Clear();

    /// Throws ftp::RunTimeError 9 when there is no such position.
    std::shared_ptr<cDirItem> Item(std::int32_t Index) const;
    /// Throws ftp::RunTimeError 5 when there is no entry of that name.
    std::shared_ptr<cDirItem> Item(const std::string& Index) const;

    std::int32_t Count() const;

    /// The start of an iteration; end() is its end, so that `for (const auto& item : list)` reads the entries.
    /// The list must not change meanwhile.
    Enumerator NewEnum() const { return begin(); }
    Enumerator begin() const { return entries().begin(); }
    Enumerator end() const { return entries().end(); }

private:
    Entries& entries() const;

    mutable std::optional<Entries> m_entries; ///< made on first use
};

} // namespace zul
