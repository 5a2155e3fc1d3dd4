// The rows of a list while columns group it.
#pragma once

#include <QSet>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace zul {

/// A list of rows in which a row of its own stands before each group, and the records of closed groups are left out.
/// Groups may stand within groups: level 0 is the outermost. Nothing is known here of cells: bits tell where groups
/// begin, and a group is told again after another sort or filter by its path, a text that its owner makes.
///
/// Rows and places are counted from 0. Rows must be in range.
class GroupedRows
{
public:
    struct Group
    {
        uint32_t first = 0; ///< its first record's place in the order
        uint32_t count = 0; ///< records
        uint16_t level = 0;
        bool closed = false;
    };

    /// For each level a bit for every place of the order, set where a group of that level begins. A group begins at the
    /// first place, and where one of an outer level does.
    using Starts = std::vector<std::vector<uint64_t>>;
    using PathOf = std::function<QString(const Group&)>;

    /// Groups the records of `order`, which must stay as it is until the next call. Groups that were closed or opened by
    /// setClosed are so again. `room` is memory that its owner has no use for at the time; what it holds afterwards
    /// has no meaning.
    void build(const std::vector<uint32_t>& order, const Starts& starts, const PathOf& pathOf,
               std::vector<uint32_t>& room);
    /// Takes all rows away. Which groups are closed is kept.
    void clear(std::vector<uint32_t>& room);

    int rowCount() const { return static_cast<int>(m_rows.size()); }
    bool isGroup(int row) const { return (at(row) & groupMark) != 0; }
    /// The record of a row that is no group.
    uint32_t record(int row) const { return at(row); }
    /// The group whose own row this is.
    const Group& group(int row) const { return m_groups[at(row) & ~groupMark]; }
    /// The number of the group whose own row this is: from 0, in the order of the rows as if all groups were open.
    uint32_t groupNumber(int row) const { return at(row) & ~groupMark; }
    size_t groupCount() const { return m_groups.size(); }
    /// How many of the rows from first to last, both included, are groups' own; looks through the rows at the
    /// first time only.
    int groupRowsBetween(int first, int last) const;
    /// -1 when the record is in no open group; looks through all rows.
    int rowOfRecord(uint32_t record) const;
    /// The nearest row above of a group around the row; -1 when there is none.
    int groupRowAbove(int row) const;

    /// How many rows stand below a group's own row, or would if it were open.
    int rowsBelow(int row) const;
    /// Opens or closes a group that is not so yet: rowsBelow(row) rows come or go behind its own.
    void setClosed(int row, bool closed, const QString& path);
    /// Also groups that come with another sort or filter.
    void setAllClosed(bool closed);
    /// From the next build on all groups are as the last setAllClosed had them.
    void forgetSingles() { m_otherwise.clear(); }
    /// From the next build on all groups are open.
    void forgetClosed()
    {
        m_otherwise.clear();
        m_closedFromTheStart = false;
    }

private:
    static constexpr uint32_t groupMark = 0x80000000; // marks a group's number among the rows

    uint32_t at(int row) const { return m_rows[static_cast<size_t>(row)]; }
    int levelOf(int row) const { return isGroup(row) ? group(row).level : m_levels; }
    void findGroups(const Starts& starts);
    void makeRows();
    const std::vector<int>& groupRows() const;
    void appendBelow(size_t group, std::vector<uint32_t>& rows) const;

    const std::vector<uint32_t>* m_order = nullptr;
    int m_levels = 0;
    std::vector<Group> m_groups; // outer before inner
    std::vector<uint32_t> m_rows;
    // The rows of m_rows that are groups' own; made when they are first asked for, nothing before.
    mutable std::optional<std::vector<int>> m_groupRows;
    bool m_closedFromTheStart = false;
    QSet<QString> m_otherwise; // paths of groups that are not as m_closedFromTheStart says
};

} // namespace zul
