// The distinct texts of a column: each is kept once, as UTF-8 bytes, and known by a number.
#pragma once

#include "grid/ChunkedArray.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace zul {

/// Ids begin at 0 and have no gaps; they are given in the order in which texts first come. Equal ids have equal
/// bytes, and as a rule equal bytes have equal ids: only where texts hardly repeat is a text kept again rather than
/// looked up; the empty text never is. Up to 4 GiB of text; beyond that `intern` throws std::length_error and
/// changes nothing.
///
/// Kept small on purpose, for columns with a million distinct texts: a text costs its bytes, a length prefix
/// (one byte below 128), a 4-byte offset and, while texts are being added, 5 to 10 bytes of index (a sixteenth of
/// that where they hardly repeat).
class TextPool
{
public:
    using Id = uint32_t;

    TextPool() = default;
    TextPool(TextPool&&) noexcept = default;
    TextPool& operator=(TextPool&&) noexcept = default;

    /// The id of a text, which is added when it is new. `bytes` may be null when `size` is 0.
    Id intern(const char* bytes, size_t size)
    {
        // Lists come with runs: the same commune, the same empty text, row after row.
        if (m_lastId != noId && size == m_lastText.size() && equalBytes(bytes, m_lastText.data(), size)) {
            return m_lastId;
        }
        return internOther(bytes, size);
    }

    std::string_view text(Id id) const { return textAt(m_offsets[id]); }
    size_t size() const { return m_offsets.size(); }
    /// Where a text's bytes begin to be read, for prefetching.
    const char* place(Id id) const
    {
        const uint32_t offset = m_offsets[id];
        return m_pages[offset >> pageBits] + (offset & (pageSize - 1));
    }

    /// Where the reading of a text's place begins, for fetching that before.
    const void* offsetPlace(Id id) const { return m_offsets.place(id); }

    /// Gives back the index that `intern` needs; the next `intern` builds it again.
    void dropIndex();

    /// Bytes of memory used, for reports.
    size_t bytes() const;

private:
    static constexpr Id noId = 0xFFFFFFFF;
    static constexpr uint32_t pageBits = 16;
    static constexpr uint32_t pageSize = 1U << pageBits;

    static bool equalBytes(const char* left, const char* right, size_t size);
    static uint64_t hash(const char* bytes, size_t size);

    std::string_view textAt(uint32_t offset) const
    {
        const char* at = m_pages[offset >> pageBits] + (offset & (pageSize - 1));
        const auto first = static_cast<unsigned char>(*at);
        return first < 0x80 ? std::string_view(at + 1, first) : longTextAt(at);
    }
    static std::string_view longTextAt(const char* at);
    Id internOther(const char* bytes, size_t size);
    Id append(const char* bytes, size_t size);
    char* allocate(size_t size, uint32_t& offset);
    void buildIndex(uint32_t bits);
    void indexText(Id id);
    void reckon(bool known);

    // Offsets run through pages of 64 KiB; a longer text takes several pages in a row, one block of memory.
    std::vector<std::unique_ptr<char[]>> m_blocks;
    std::vector<char*> m_pages;
    uint32_t m_used = pageSize; // of the last page
    size_t m_textBytes = 0;
    ChunkedArray<uint32_t> m_offsets;

    // Open addressing. A slot holds id + 1 in its low bits and, in the bits that the id cannot reach, bits of
    // the hash, which tell nearly every other text apart without a look at its bytes. 0 is an empty slot.
    std::unique_ptr<uint32_t[]> m_slots;
    uint32_t m_slotBits = 0;
    uint32_t m_indexed = 0; // texts in the index

    // Where nearly every text is new, only those are looked up whose hash is 0 in these bits. Whether texts repeat
    // shows in that sample as in the whole: then all are looked up again.
    uint64_t m_sample = 0;
    uint32_t m_lookUps = 0; // since they were last reckoned up
    uint32_t m_hits = 0;

    Id m_emptyId = noId;

    Id m_lastId = noId;
    std::string_view m_lastText;
};

} // namespace zul
