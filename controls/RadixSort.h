// Sorting row numbers by number keys, in a few passes over the rows instead of comparisons.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zul {

template <typename Key>
struct KeyedRow
{
    Key key;
    uint32_t row;
};

/// Sorts by key, stable. Digits that are equal in all rows cost no pass.
template <typename Key>
void radixSort(std::vector<KeyedRow<Key>>& items)
{
    constexpr unsigned digitBits = 11;
    constexpr size_t buckets = size_t{1} << digitBits;
    constexpr unsigned passes = (sizeof(Key) * 8 + digitBits - 1) / digitBits;
    constexpr size_t fewItems = 1024;
    if (items.size() < fewItems) {
        std::stable_sort(items.begin(), items.end(),
                         [](const KeyedRow<Key>& a, const KeyedRow<Key>& b) { return a.key < b.key; });
        return;
    }
    std::vector<std::array<uint32_t, buckets>> counts(passes);
    for (auto& count : counts) {
        count.fill(0);
    }
    for (const KeyedRow<Key>& item : items) {
        for (unsigned pass = 0; pass < passes; ++pass) {
            ++counts[pass][(item.key >> (pass * digitBits)) & (buckets - 1)];
        }
    }
    std::vector<KeyedRow<Key>> other;
    for (unsigned pass = 0; pass < passes; ++pass) {
        std::array<uint32_t, buckets>& count = counts[pass];
        const unsigned shift = pass * digitBits;
        if (count[(items.front().key >> shift) & (buckets - 1)] == items.size()) {
            continue;
        }
        uint32_t place = 0;
        for (uint32_t& bucket : count) {
            const uint32_t size = bucket;
            bucket = place;
            place += size;
        }
        other.resize(items.size());
        for (const KeyedRow<Key>& item : items) {
            other[count[(item.key >> shift) & (buckets - 1)]++] = item;
        }
        items.swap(other);
    }
}

/// Sorts `rows` by `keyOf(row)`, stable; descending keeps equal rows in their order too. `largest` is the
/// largest key that comes.
template <typename Key, typename KeyOf>
void sortRowsByKey(std::vector<uint32_t>& rows, Key largest, bool descending, KeyOf keyOf)
{
    constexpr Key fewKeys = 4096;
    if (largest < fewKeys && rows.size() >= fewKeys) {
        std::vector<uint32_t> count(static_cast<size_t>(largest) + 2, 0);
        const auto keyFor = [&](uint32_t row) {
            const Key key = keyOf(row);
            return static_cast<size_t>(descending ? largest - key : key);
        };
        for (const uint32_t row : rows) {
            ++count[keyFor(row) + 1];
        }
        for (size_t key = 1; key < count.size(); ++key) {
            count[key] += count[key - 1];
        }
        std::vector<uint32_t> sorted(rows.size());
        for (const uint32_t row : rows) {
            sorted[count[keyFor(row)]++] = row;
        }
        rows.swap(sorted);
        return;
    }
    std::vector<KeyedRow<Key>> items;
    items.reserve(rows.size());
    for (const uint32_t row : rows) {
        const Key key = keyOf(row);
        items.push_back({static_cast<Key>(descending ? largest - key : key), row});
    }
    radixSort(items);
    for (size_t i = 0; i < rows.size(); ++i) {
        rows[i] = items[i].row;
    }
}

/// The bits of a double as a number that orders as the doubles do; every NaN above all.
inline uint64_t orderedBits(double value)
{
    if (value != value) {
        return ~uint64_t{0} - 1;
    }
    const auto bits = std::bit_cast<uint64_t>(value == 0.0 ? 0.0 : value);
    constexpr uint64_t sign = uint64_t{1} << 63;
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

} // namespace zul
