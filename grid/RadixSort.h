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

/// Sorts items, which have a number `key`, by it, stable. Digits that are equal in all items cost no pass.
/// With `mostPasses` only so many of the digits that tell items apart are looked at, the highest ones; gives the bits of
/// the key that lie below them, which do not count for the order yet.
template <typename Item>
unsigned radixSort(std::vector<Item>& items, unsigned mostPasses = 64)
{
    using Key = decltype(Item::key);
    constexpr unsigned digitBits = 11;
    constexpr size_t buckets = size_t{1} << digitBits;
    constexpr unsigned digits = (sizeof(Key) * 8 + digitBits - 1) / digitBits;
    constexpr size_t fewItems = 1024;
    if (items.size() < fewItems) {
        std::stable_sort(items.begin(), items.end(),
                         [](const Item& a, const Item& b) { return a.key < b.key; });
        return 0;
    }
    const auto digitOf = [](const Item& item, unsigned digit) {
        return static_cast<size_t>(item.key >> (digit * digitBits)) & (buckets - 1);
    };
    std::vector<std::array<uint32_t, buckets>> counts(digits);
    for (auto& count : counts) {
        count.fill(0);
    }
    for (const Item& item : items) {
        for (unsigned digit = 0; digit < digits; ++digit) {
            ++counts[digit][digitOf(item, digit)];
        }
    }
    unsigned first = digits; // the lowest digit that counts
    for (unsigned passes = 0; first > 0 && passes < mostPasses;) {
        --first;
        // A digit that tells hardly any items apart does not count as one.
        const uint32_t most = *std::max_element(counts[first].begin(), counts[first].end());
        passes += most > items.size() / 8 * 7 ? 0U : 1U;
    }
    std::vector<Item> other;
    for (unsigned digit = first; digit < digits; ++digit) {
        std::array<uint32_t, buckets>& count = counts[digit];
        if (count[digitOf(items.front(), digit)] == items.size()) {
            continue;
        }
        uint32_t place = 0;
        for (uint32_t& bucket : count) {
            const uint32_t size = bucket;
            bucket = place;
            place += size;
        }
        other.resize(items.size());
        for (const Item& item : items) {
            other[count[digitOf(item, digit)]++] = item;
        }
        items.swap(other);
    }
    return first * digitBits;
}

/// Sorts `rows` by `keyOf(row)`, stable; descending keeps equal rows in their order too. `largest` is the
/// largest key that comes. `room` is memory to sort in.
template <typename Key, typename KeyOf>
void sortRowsByKey(std::vector<uint32_t>& rows, std::vector<uint32_t>& room, Key largest, bool descending,
                   KeyOf keyOf)
{
    // Counting each key is the faster way as long as the counts are not more than the rows.
    constexpr size_t fewRows = 4096;
    constexpr size_t fewKeys = 65536;
    if (rows.size() >= fewRows && largest < std::max(fewKeys, rows.size())) {
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
        room.resize(rows.size());
        for (const uint32_t row : rows) {
            room[count[keyFor(row)]++] = row;
        }
        rows.swap(room);
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

/// Sets the bit of every place of `rows` whose row has another key than the row before it.
template <typename KeyOf>
void markWhereKeysChange(const std::vector<uint32_t>& rows, std::vector<uint64_t>& bits, KeyOf keyOf)
{
    if (rows.empty()) {
        return;
    }
    auto before = keyOf(rows.front());
    for (size_t place = 1; place < rows.size(); ++place) {
        const auto key = keyOf(rows[place]);
        bits[place >> 6] |= static_cast<uint64_t>(key != before) << (place & 63);
        before = key;
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
