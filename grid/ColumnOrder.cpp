// The order of a column's cells. Each cell has one key, in which it is sorted and by which it is grouped: cells of equal
// keys stand at one place.
#include "grid/Column.h"
#include "grid/RadixSort.h"

#include <algorithm>
#include <cmath>
#include <compare>
#include <limits>
#include <optional>
#include <utility>

namespace zul {

namespace {

// NULL has the key 0 in every kind of column, and comes first.

auto orderKeys(const NullCells& /*cells*/, const QLocale& /*locale*/)
{
    return [](uint32_t /*row*/) { return 0U; };
}

auto orderKeys(const TextCells& cells, const QLocale& locale)
{
    const std::vector<uint32_t>& ranks = cells.texts().ranks(locale);
    return [&cells, &ranks](uint32_t row) {
        const uint32_t id = cells.id(row);
        return id == TextCells::null ? 0U : ranks[id];
    };
}

auto orderKeys(const IntCells& cells, const QLocale& /*locale*/)
{
    return [&cells](uint32_t row) { return static_cast<uint32_t>(cells.word(row)) ^ (1U << 31); };
}

auto orderKeys(const LongCells& cells, const QLocale& /*locale*/)
{
    return [&cells](uint32_t row) { return static_cast<uint64_t>(cells.word(row)) ^ (uint64_t{1} << 63); };
}

template <CellKind Kind>
auto orderKeys(const DoubleCells<Kind>& cells, const QLocale& /*locale*/)
{
    return [&cells](uint32_t row) {
        const uint64_t bits = cells.word(row);
        return bits == cells.null ? 0 : orderedBits(std::bit_cast<double>(bits));
    };
}

auto orderKeys(const BooleanCells& cells, const QLocale& /*locale*/)
{
    return [&cells](uint32_t row) {
        const uint32_t word = cells.word(row);
        return word == BooleanCells::null ? 0U : word + 1;
    };
}

/// Numbers and dates of all kinds stand together by their values, texts behind them.
struct MixedKey
{
    uint32_t group = 0; ///< 0 NULL and the empty text, 1 numbers, 2 texts
    uint64_t value = 0; ///< ordered bits of the double; a text's rank
    int32_t rest = 0;   ///< what a whole number has beyond the double nearest to it

    // The tool takes the comparison with 0 that the compiler makes here for one of ours.
    // NOLINTNEXTLINE(modernize-use-nullptr)
    auto operator<=>(const MixedKey&) const = default;
};

MixedKey numberKey(Cell cell)
{
    const double value = cell.number();
    // Doubles pass over whole numbers beyond 2^53: the difference, a few hundred at most, keeps those apart. The
    // nearest double may lie just beyond all whole numbers, so the difference is one of unsigned words.
    const auto rounded =
        value < 0.0 ? static_cast<uint64_t>(static_cast<int64_t>(value)) : static_cast<uint64_t>(value);
    return {1, orderedBits(value), static_cast<int32_t>(cell.payload - rounded)};
}

auto orderKeys(const MixedCells& cells, const QLocale& locale)
{
    const std::vector<uint32_t>& ranks = cells.texts().ranks(locale);
    return [&cells, &ranks](uint32_t row) -> MixedKey {
        const Cell cell = cells.cell(row);
        if (cell.isNull()) {
            return {};
        }
        if (cell.isText()) {
            const uint32_t rank = ranks[cell.textId()];
            return {rank == 0 ? 0U : 2U, rank, 0};
        }
        return cell.isWhole() ? numberKey(cell) : MixedKey{1, orderedBits(cell.fraction()), 0};
    };
}

// --- Sorting

using Rows = std::vector<uint32_t>;

/// Sorts by keys from 0 (NULL) and `lowest` to `highest`; what lies between the two costs nothing.
template <typename KeyOf, typename Key>
void sortInRange(Rows& rows, Rows& room, bool descending, Key lowest, Key highest, KeyOf keyOf)
{
    if (highest < lowest) {
        return; // nothing but NULL
    }
    const Key largest = highest - lowest + 1;
    const auto sort = [&]<typename Short>(Short /*type*/) {
        sortRowsByKey<Short>(rows, room, static_cast<Short>(largest), descending,
                             [keyOf, below = lowest - 1](uint32_t row) {
                                 const Key key = keyOf(row);
                                 return static_cast<Short>(key == 0 ? 0 : key - below);
                             });
    };
    if (uint64_t{largest} <= std::numeric_limits<uint32_t>::max()) {
        sort(uint32_t{});
    } else {
        sort(Key{});
    }
}

template <typename KeyOf>
void sortByKeys(Rows& rows, Rows& room, bool descending, KeyOf keyOf)
{
    using Key = decltype(keyOf(0));
    Key lowest = std::numeric_limits<Key>::max();
    Key highest = 0;
    for (const uint32_t row : rows) {
        const Key key = keyOf(row);
        lowest = key == 0 ? lowest : std::min(lowest, key);
        highest = std::max(highest, key);
    }
    sortInRange(rows, room, descending, lowest, highest, keyOf);
}

template <typename Array>
void sortCells(const Array& cells, Rows& rows, Rows& room, bool descending, const QLocale& locale)
{
    sortByKeys(rows, room, descending, orderKeys(cells, locale));
}

void sortCells(const TextCells& cells, Rows& rows, Rows& room, bool descending, const QLocale& locale)
{
    // The largest rank is found among the texts, which are fewer than the rows and lie in a row.
    const std::vector<uint32_t>& ranks = cells.texts().ranks(locale);
    const uint32_t highest = ranks.empty() ? 0 : *std::max_element(ranks.begin(), ranks.end());
    sortInRange(rows, room, descending, 1U, highest, orderKeys(cells, locale));
}

/// The lowest and the highest when all are whole and not too large for 32 bits; the other way round when all are NULL.
template <CellKind Kind>
std::optional<std::pair<double, double>> rangeOfWholes(const DoubleCells<Kind>& cells, const Rows& rows)
{
    constexpr double bound = 1e9;
    double lowest = bound;
    double highest = -bound;
    for (const uint32_t row : rows) {
        const uint64_t bits = cells.word(row);
        if (bits == cells.null) {
            continue;
        }
        const auto value = std::bit_cast<double>(bits);
        if (!(std::fabs(value) < bound) || std::trunc(value) != value) {
            return std::nullopt;
        }
        lowest = std::min(lowest, value);
        highest = std::max(highest, value);
    }
    return std::pair(lowest, highest);
}

template <CellKind Kind>
void sortCells(const DoubleCells<Kind>& cells, Rows& rows, Rows& room, bool descending, const QLocale& locale)
{
    // Whole days and whole amounts, the usual case, sort as 32-bit numbers.
    const auto range = rangeOfWholes(cells, rows);
    if (!range) {
        sortInRange(rows, room, descending, uint64_t{1}, ~uint64_t{0}, orderKeys(cells, locale));
        return;
    }
    const auto [lowest, highest] = *range;
    if (highest < lowest) {
        return; // nothing but NULL
    }
    sortInRange(rows, room, descending, 1U, static_cast<uint32_t>(highest - lowest) + 1,
                [&cells, base = lowest](uint32_t row) {
                    const uint64_t bits = cells.word(row);
                    return bits == cells.null ? 0U
                                              : static_cast<uint32_t>(std::bit_cast<double>(bits) - base) + 1;
                });
}

void sortCells(const MixedCells& cells, Rows& rows, Rows& /*room*/, bool descending, const QLocale& locale)
{
    const auto keyOf = orderKeys(cells, locale);
    std::vector<std::pair<MixedKey, uint32_t>> keyed;
    keyed.reserve(rows.size());
    for (const uint32_t row : rows) {
        keyed.emplace_back(keyOf(row), row);
    }
    std::stable_sort(keyed.begin(), keyed.end(), [descending](const auto& a, const auto& b) {
        return descending ? b.first < a.first : a.first < b.first;
    });
    std::transform(keyed.begin(), keyed.end(), rows.begin(), [](const auto& item) { return item.second; });
}

} // namespace

bool Column::sameInOrder(uint32_t left, uint32_t right, const QLocale& locale) const
{
    return std::visit(
        [&](const auto& cells) {
            const auto keyOf = orderKeys(cells, locale);
            return keyOf(left) == keyOf(right);
        },
        m_cells);
}

void Column::markChanges(const Rows& rows, std::vector<uint64_t>& bits, const QLocale& locale) const
{
    std::visit([&](const auto& cells) { markWhereKeysChange(rows, bits, orderKeys(cells, locale)); },
               m_cells);
}

void Column::sortRows(Rows& rows, bool descending, Rows& room, const QLocale& locale) const
{
    std::visit([&](const auto& cells) { sortCells(cells, rows, room, descending, locale); }, m_cells);
}

} // namespace zul
