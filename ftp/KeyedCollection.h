// The classic keyed collection: items in the order of their addition, reached by a position from 1 or by a key
// that is compared without regard to case.
#pragma once

#include "base/CaseFold.h"
#include "ftp/FtpErrors.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zul::ftp {

/// Item is a copyable value, usually a shared pointer.
template <typename Item>
class KeyedCollection
{
    struct Entry
    {
        std::string key; ///< folded
        Item item;
    };

public:
    class Iterator
    {
    public:
        using difference_type = std::ptrdiff_t;
        using value_type = Item;

        explicit Iterator(typename std::vector<Entry>::const_iterator at)
            : m_at(at)
        {}
        const Item& operator*() const { return m_at->item; }
        Iterator& operator++()
        {
            ++m_at;
            return *this;
        }
        bool operator==(const Iterator& other) const = default;

    private:
        typename std::vector<Entry>::const_iterator m_at;
    };

    /// Throws RunTimeError 457 when the key is in use; the collection is then unchanged.
    void add(Item item, std::string_view key)
    {
        std::string folded = foldCase(key);
        if (!m_byKey.emplace(folded, item).second) {
            throw RunTimeError(DuplicateKey);
        }
        m_entries.push_back(Entry{std::move(folded), std::move(item)});
    }

    /// Throws RunTimeError 9 when there is no such position.
    const Item& item(std::int32_t position) const { return m_entries[index(position)].item; }

    /// Throws RunTimeError 5 when there is no such key.
    const Item& item(std::string_view key) const
    {
        const auto found = m_byKey.find(foldCase(key));
        if (found == m_byKey.end()) {
            throw RunTimeError(InvalidProcedureCall);
        }
        return found->second;
    }

    /// Throws RunTimeError 9 when there is no such position.
    void remove(std::int32_t position)
    {
        const auto at = m_entries.begin() + static_cast<std::ptrdiff_t>(index(position));
        m_byKey.erase(at->key);
        m_entries.erase(at);
    }

    std::int32_t count() const { return static_cast<std::int32_t>(m_entries.size()); }
    Iterator begin() const { return Iterator(m_entries.begin()); }
    Iterator end() const { return Iterator(m_entries.end()); }

private:
    std::size_t index(std::int32_t position) const
    {
        if (position < 1 || position > count()) {
            throw RunTimeError(SubscriptOutOfRange);
        }
        return static_cast<std::size_t>(position - 1);
    }

    std::vector<Entry> m_entries;
    std::unordered_map<std::string, Item> m_byKey;
};

} // namespace zul::ftp
