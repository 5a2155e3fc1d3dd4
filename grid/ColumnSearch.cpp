// The search of a column: which rows show a text.
#include "grid/CellText.h"
#include "grid/Column.h"

#include <array>
#include <charconv>
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
            return (*this)(QString::fromUtf8(utf8));
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

bool testBit(const std::vector<uint64_t>& bits, std::size_t index)
{
    return (bits[index >> 6] >> (index & 63) & 1) != 0;
}

/// What is looked for, and where.
struct Search
{
    const Column& column;
    const CellText& formats;
    Contains contains;
    uint32_t rows;
    std::vector<uint64_t>& matches; // a bit a row; set ones need not be looked at
};

/// The texts that match, a bit for each; nothing when none does.
std::vector<uint64_t> matchingTexts(const TextPool& pool, const Contains& contains)
{
    const auto count = static_cast<uint32_t>(pool.size());
    std::vector<uint64_t> texts((size_t{count} + 63) / 64, 0);
    bool any = false;
    for (uint32_t id = 0; id < count; ++id) {
        if (contains(pool.text(id))) {
            setBit(texts, id);
            any = true;
        }
    }
    return any ? texts : std::vector<uint64_t>();
}

/// Whether the values of cells match: each value is written out once, for dates and amounts come again.
class ValueMatches
{
public:
    explicit ValueMatches(const Search& search)
        : m_search(search)
    {}

    bool operator()(Cell cell)
    {
        if (cell.kind != m_last.kind || cell.payload != m_last.payload) {
            const auto [entry, isNew] = m_known[static_cast<size_t>(cell.kind)].try_emplace(cell.payload);
            if (isNew) {
                entry->second = m_search.contains(m_search.column.shown(cell, m_search.formats));
            }
            m_last = cell;
            m_lastMatches = entry->second;
        }
        return m_lastMatches;
    }

private:
    const Search& m_search;
    std::array<std::unordered_map<uint64_t, bool>, 6> m_known; // for each kind
    Cell m_last;
    bool m_lastMatches = false; // NULL shows nothing that could match
};

template <typename Shows>
void markRows(const Search& search, Shows shows)
{
    for (uint32_t row = 0; row < search.rows; ++row) {
        if (!testBit(search.matches, row) && shows(row)) {
            setBit(search.matches, row);
        }
    }
}

void addMatches(const NullCells& /*cells*/, const Search& /*search*/)
{}

void addMatches(const TextCells& cells, const Search& search)
{
    const std::vector<uint64_t> texts = matchingTexts(cells.texts().pool, search.contains);
    if (!texts.empty()) {
        markRows(search, [&](uint32_t row) {
            const uint32_t id = cells.id(row);
            return id != TextCells::null && testBit(texts, id);
        });
    }
}

template <typename Values>
void addMatches(const ValueCells<Values>& cells, const Search& search)
{
    ValueMatches matches(search);
    markRows(search, [&](uint32_t row) { return matches(cells.cell(row)); });
}

void addMatches(const IntCells& cells, const Search& search)
{
    if (!search.formats.asciiIntegers()) {
        addMatches<WholeNumbers<int32_t>>(cells, search);
        return;
    }
    std::array<char, 16> digits;
    markRows(search, [&](uint32_t row) {
        const int32_t value = cells.word(row);
        const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
        return value != IntCells::null &&
               search.contains(std::string_view(digits.data(), static_cast<size_t>(end - digits.data())));
    });
}

void addMatches(const MixedCells& cells, const Search& search)
{
    const std::vector<uint64_t> texts = matchingTexts(cells.texts().pool, search.contains);
    ValueMatches matches(search);
    markRows(search, [&](uint32_t row) {
        const Cell cell = cells.cell(row);
        return cell.isText() ? !texts.empty() && testBit(texts, cell.textId()) : matches(cell);
    });
}

} // namespace

void Column::addMatches(const QString& needle, const CellText& formats, uint32_t rows,
                        std::vector<uint64_t>& matches) const
{
    const Search search{*this, formats, Contains(needle), rows, matches};
    std::visit([&search](const auto& cells) { zul::addMatches(cells, search); }, m_cells);
}

} // namespace zul
