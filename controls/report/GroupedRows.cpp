#include "controls/report/GroupedRows.h"

#include <algorithm>
#include <bit>

namespace zul {

void GroupedRows::build(const std::vector<uint32_t>& order, const Starts& starts, const PathOf& pathOf,
                        std::vector<uint32_t>& room)
{
    m_order = &order;
    m_levels = static_cast<int>(starts.size());
    findGroups(starts);
    if (!m_otherwise.isEmpty()) {
        for (Group& group : m_groups) {
            group.closed = m_otherwise.contains(pathOf(group)) != m_closedFromTheStart;
        }
    }
    if (m_rows.capacity() < room.capacity()) {
        m_rows.swap(room);
    }
    makeRows();
}

void GroupedRows::clear(std::vector<uint32_t>& room)
{
    if (m_rows.capacity() > room.capacity()) {
        room.swap(m_rows);
    }
    m_rows = {};
    m_groupRows.reset();
    m_groups.clear();
    m_levels = 0;
}

void GroupedRows::findGroups(const Starts& starts)
{
    m_groups.clear();
    const size_t levels = starts.size();
    if (levels == 0 || m_order->empty()) {
        return;
    }
    size_t count = 0;
    for (const std::vector<uint64_t>& bits : starts) {
        for (const uint64_t word : bits) {
            count += static_cast<size_t>(std::popcount(word));
        }
    }
    m_groups.reserve(count);
    std::vector<size_t> open(levels); // the group at hand of each level
    const auto close = [&](size_t level, uint32_t end) {
        Group& group = m_groups[open[level]];
        group.count = end - group.first;
    };
    for (size_t word = 0; word < starts.back().size(); ++word) {
        for (uint64_t bits = starts.back()[word]; bits != 0; bits &= bits - 1) {
            const auto place = static_cast<uint32_t>(word * 64 + static_cast<size_t>(std::countr_zero(bits)));
            for (size_t level = 0; level < levels; ++level) {
                if ((starts[level][word] & bits & (~bits + 1)) == 0) {
                    continue;
                }
                if (place > 0) {
                    close(level, place);
                }
                open[level] = m_groups.size();
                m_groups.push_back({place, 0, static_cast<uint16_t>(level), m_closedFromTheStart});
            }
        }
    }
    for (size_t level = 0; level < levels; ++level) {
        close(level, static_cast<uint32_t>(m_order->size()));
    }
}

void GroupedRows::makeRows()
{
    m_rows.clear();
    m_rows.reserve(m_groups.size() + m_order->size());
    for (size_t group = 0; group < m_groups.size();) {
        m_rows.push_back(static_cast<uint32_t>(group) | groupMark);
        if (!m_groups[group].closed) {
            appendBelow(group, m_rows);
        }
        do {
            ++group;
        } while (group < m_groups.size() && m_groups[group].level > 0);
    }
    m_groupRows.reset();
}

const std::vector<int>& GroupedRows::groupRows() const
{
    if (!m_groupRows) {
        m_groupRows.emplace();
        for (int row = 0; row < rowCount(); ++row) {
            if (isGroup(row)) {
                m_groupRows->push_back(row);
            }
        }
    }
    return *m_groupRows;
}

int GroupedRows::groupRowsBetween(int first, int last) const
{
    const std::vector<int>& rows = groupRows();
    const auto begin = std::lower_bound(rows.begin(), rows.end(), first);
    return static_cast<int>(std::upper_bound(begin, rows.end(), last) - begin);
}

/// The rows below a group's own as if it were open.
void GroupedRows::appendBelow(size_t group, std::vector<uint32_t>& rows) const
{
    const Group& top = m_groups[group];
    if (top.level + 1 == m_levels) {
        const auto first = m_order->begin() + static_cast<std::ptrdiff_t>(top.first);
        rows.insert(rows.end(), first, first + static_cast<std::ptrdiff_t>(top.count));
        return;
    }
    for (size_t inner = group + 1; inner < m_groups.size() && m_groups[inner].level > top.level; ++inner) {
        if (m_groups[inner].level == top.level + 1) {
            rows.push_back(static_cast<uint32_t>(inner) | groupMark);
            if (!m_groups[inner].closed) {
                appendBelow(inner, rows);
            }
        }
    }
}

int GroupedRows::rowOfRecord(uint32_t record) const
{
    const auto place = std::find(m_rows.begin(), m_rows.end(), record);
    return place == m_rows.end() ? -1 : static_cast<int>(place - m_rows.begin());
}

int GroupedRows::groupRowAbove(int row) const
{
    const int level = levelOf(row);
    for (--row; row >= 0; --row) {
        if (isGroup(row) && levelOf(row) < level) {
            return row;
        }
    }
    return -1;
}

int GroupedRows::rowsBelow(int row) const
{
    const size_t number = at(row) & ~groupMark;
    const Group& own = m_groups[number];
    if (own.closed) {
        std::vector<uint32_t> rows;
        appendBelow(number, rows);
        return static_cast<int>(rows.size());
    }
    int end = row + 1;
    while (end < rowCount() && (!isGroup(end) || group(end).level > own.level)) {
        ++end;
    }
    return end - row - 1;
}

void GroupedRows::setClosed(int row, bool closed, const QString& path)
{
    const size_t number = at(row) & ~groupMark;
    if (closed == m_closedFromTheStart) {
        m_otherwise.remove(path);
    } else {
        m_otherwise.insert(path);
    }
    const auto begin = m_rows.begin() + row + 1;
    if (closed) {
        m_rows.erase(begin, begin + rowsBelow(row));
    } else {
        std::vector<uint32_t> rows;
        appendBelow(number, rows);
        m_rows.insert(begin, rows.begin(), rows.end());
    }
    m_groups[number].closed = closed;
    m_groupRows.reset();
}

void GroupedRows::setAllClosed(bool closed)
{
    m_closedFromTheStart = closed;
    m_otherwise.clear();
    for (Group& group : m_groups) {
        group.closed = closed;
    }
    if (m_levels > 0) {
        makeRows();
    }
}

} // namespace zul
