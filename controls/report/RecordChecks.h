// The ticks of a grid's check column.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace zul {

/// A tick for every record, at one bit each; how many are set is known at any time. A record that was never set has
/// no tick.
class RecordChecks
{
public:
    bool isSet(uint32_t record) const
    {
        const size_t word = record >> 6;
        return word < m_words.size() && (m_words[word] >> (record & 63) & 1) != 0;
    }

    void set(uint32_t record, bool checked)
    {
        const size_t word = record >> 6;
        if (word >= m_words.size()) {
            m_words.resize(word + 1, 0);
        }
        const uint64_t bit = uint64_t{1} << (record & 63);
        const bool before = (m_words[word] & bit) != 0;
        m_words[word] = checked ? m_words[word] | bit : m_words[word] & ~bit;
        m_count += static_cast<size_t>(checked) - static_cast<size_t>(before);
        ++m_changes;
    }

    /// Sets or takes off the ticks of the records 0 to `records` - 1; others are none any more.
    void setAll(uint32_t records, bool checked)
    {
        m_words.assign((size_t{records} + 63) / 64, checked ? ~uint64_t{0} : 0);
        if (checked && (records & 63) != 0) {
            m_words.back() = (uint64_t{1} << (records & 63)) - 1;
        }
        m_count = checked ? records : 0;
        ++m_changes;
    }

    /// Of the records 0 to `records` - 1, those get a tick that had none, and the others lose theirs.
    void invert(uint32_t records)
    {
        m_words.resize((size_t{records} + 63) / 64, 0);
        for (uint64_t& word : m_words) {
            word = ~word;
        }
        if ((records & 63) != 0) {
            m_words.back() &= (uint64_t{1} << (records & 63)) - 1;
        }
        m_count = records - m_count;
        ++m_changes;
    }

    void clear() { setAll(0, false); }

    size_t count() const { return m_count; }
    /// Grows with every call that sets something: what was reckoned from the ticks is good while it stays.
    uint64_t changes() const { return m_changes; }
    /// Takes the ticks of the other, at a count of changes of its own.
    void swap(RecordChecks& other)
    {
        m_words.swap(other.m_words);
        std::swap(m_count, other.m_count);
        ++m_changes;
        ++other.m_changes;
    }

private:
    std::vector<uint64_t> m_words;
    size_t m_count = 0;
    uint64_t m_changes = 0;
};

} // namespace zul
