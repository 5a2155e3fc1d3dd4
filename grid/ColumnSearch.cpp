// The search of a column store: which rows show a text.
#include "grid/ColumnStore.h"

#include <bit>
#include <charconv>
#include <cstring>
#include <functional>
#include <unordered_map>

namespace zul {

namespace {

/// Whether texts contain a given one, case disregarded. A search for ASCII characters, the usual one, reads
/// the bytes as they lie.
class Contains
{
public:
    explicit Contains(const QString& needle)
        : m_needle(needle)
    {
        for (const QChar unit : needle) {
            if (unit.unicode() >= 0x80) {
                m_ascii = false;
                return;
            }
        }
        m_lower = needle.toLower().toLatin1();
        m_first = End(m_lower.front());
        m_last = End(m_lower.back());
    }

    bool operator()(std::string_view utf8) const
    {
        if (!m_ascii) {
            return (*this)(QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())));
        }
        const auto size = static_cast<size_t>(m_lower.size());
        if (utf8.size() < size) {
            return false;
        }
        const char* at = utf8.data();
        const char* const end = at + (utf8.size() - size) + 1; // of the places where it may begin
        // Most texts do not contain it, nor anything like it: whole blocks are passed over by its first and last byte.
        constexpr std::ptrdiff_t block = 32;
        for (; end - at >= block; at += block) {
            if (mayBegin(at, block, size) && beginsAmong(at, at + block, size)) {
                return true;
            }
        }
        return beginsAmong(at, end, size);
    }

    bool operator()(const QString& text) const { return text.contains(m_needle, Qt::CaseInsensitive); }

private:
    /// A byte of the needle as a text's byte is compared with it: with the bit set that tells small letters.
    struct End
    {
        End() = default;
        explicit End(char lower)
            : byte(lower)
            , small(lower >= 'a' && lower <= 'z' ? 0x20 : 0)
        {}
        bool is(char other) const { return static_cast<char>(other | small) == byte; }

        char byte = 0;
        char small = 0;
    };

    bool mayBegin(const char* at, std::ptrdiff_t places, size_t size) const
    {
        const End first = m_first;
        const End last = m_last;
        unsigned char any = 0;
        for (std::ptrdiff_t i = 0; i < places; ++i) {
            any = static_cast<unsigned char>(
                any | (static_cast<unsigned char>(first.is(at[i])) &
                       static_cast<unsigned char>(last.is(at[i + static_cast<std::ptrdiff_t>(size) - 1]))));
        }
        return any != 0;
    }

    bool beginsAmong(const char* at, const char* end, size_t size) const
    {
        for (; at < end; ++at) {
            if (m_first.is(*at) && matches(at, size)) {
                return true;
            }
        }
        return false;
    }

    bool matches(const char* at, size_t size) const
    {
        for (size_t i = 1; i < size; ++i) {
            char byte = at[i];
            if (byte >= 'A' && byte <= 'Z') {
                byte = static_cast<char>(byte + ('a' - 'A'));
            }
            if (byte != m_lower.at(static_cast<qsizetype>(i))) {
                return false;
            }
        }
        return true;
    }

    QString m_needle;
    QByteArray m_lower;
    End m_first;
    End m_last;
    bool m_ascii = true;
};

void setBit(std::vector<uint64_t>& bits, uint32_t index)
{
    bits[index >> 6] |= uint64_t{1} << (index & 63);
}

bool testBit(const std::vector<uint64_t>& bits, uint64_t index)
{
    return (bits[index >> 6] >> (index & 63) & 1) != 0;
}

} // namespace

std::vector<uint64_t> ColumnStore::rowsContaining(const QString& needle,
                                                  const std::vector<int>& columns) const
{
    std::vector<uint64_t> matches((size_t{m_rows} + 63) / 64, needle.isEmpty() ? ~uint64_t{0} : 0);
    if (needle.isEmpty()) {
        return matches;
    }
    for (const int column : columns) {
        if (static_cast<size_t>(column) >= m_columns.size()) {
            throwColumn();
        }
        addMatches(m_columns[static_cast<size_t>(column)], needle, matches);
    }
    return matches;
}

void ColumnStore::addMatches(const Column& column, const QString& needle,
                             std::vector<uint64_t>& matches) const
{
    const Contains contains(needle);
    if (column.storage == Storage::Nulls) {
        return;
    }
    std::vector<uint64_t> texts;
    bool anyText = false;
    if (column.storage == Storage::Text || column.storage == Storage::Mixed) {
        const auto count = static_cast<uint32_t>(column.pool.size());
        texts.assign((size_t{count} + 63) / 64, 0);
        for (uint32_t id = 0; id < count; ++id) {
            if (contains(column.pool.text(id))) {
                setBit(texts, id);
                anyText = true;
            }
        }
    }
    if (column.storage == Storage::Text) {
        for (uint32_t row = 0; anyText && row < m_rows; ++row) {
            const uint32_t id = column.words[row];
            if (id != nullText && testBit(texts, id)) {
                setBit(matches, row);
            }
        }
        return;
    }
    if (column.storage == Storage::Int32 && m_formats.asciiIntegers()) {
        char digits[16];
        for (uint32_t row = 0; row < m_rows; ++row) {
            const auto value = static_cast<int32_t>(column.words[row]);
            if (value != null32 && !testBit(matches, row)) {
                const char* end = std::to_chars(digits, digits + sizeof digits, value).ptr;
                if (contains(std::string_view(digits, static_cast<size_t>(end - digits)))) {
                    setBit(matches, row);
                }
            }
        }
        return;
    }
    // Values of all other kinds are written out once for each distinct value: dates and amounts come again.
    std::unordered_map<uint64_t, bool> known[6];
    uint64_t lastPayload = 0;
    CellKind lastKind = CellKind::Null;
    bool lastMatches = false;
    for (uint32_t row = 0; row < m_rows; ++row) {
        const Cell cell = column.cell(row);
        if (cell.kind == CellKind::Null || testBit(matches, row)) {
            continue;
        }
        if (cell.kind != lastKind || cell.payload != lastPayload) {
            lastKind = cell.kind;
            lastPayload = cell.payload;
            if (cell.kind == CellKind::Text) {
                lastMatches = testBit(texts, cell.payload);
            } else {
                const auto [entry, isNew] = known[static_cast<size_t>(cell.kind)].try_emplace(cell.payload);
                if (isNew) {
                    entry->second = contains(cellText(column, cell));
                }
                lastMatches = entry->second;
            }
        }
        if (lastMatches) {
            setBit(matches, row);
        }
    }
}

} // namespace zul
