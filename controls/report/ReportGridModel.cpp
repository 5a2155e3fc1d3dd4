#include "controls/report/ReportGridModel.h"

#include "grid/RadixSort.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace zul {

using namespace Qt::StringLiterals;

ReportGridModel::ReportGridModel(QObject* parent)
    : QAbstractTableModel(parent)
{}

// --- Columns and records

void ReportGridModel::addColumns(const std::vector<ReportColumn>& columns)
{
    beginResetModel();
    for (const ReportColumn& column : columns) {
        m_store.addColumn();
        m_columns.push_back(column);
        if (column.check) {
            if (m_checkColumn < 0) {
                m_checkColumn = static_cast<int>(m_columns.size()) - 1;
            } else {
                m_columns.back().check = false;
            }
        }
        m_shown.push_back(column.visible);
    }
    endResetModel();
}

void ReportGridModel::deleteColumns()
{
    beginResetModel();
    m_store.clear();
    m_columns.clear();
    m_shown.clear();
    m_checkColumn = -1;
    m_sort = {};
    m_groupColumns.clear();
    m_otherwise.clear();
    m_closedFromTheStart = false;
    m_checks.clear();
    rebuild(true, true);
    endResetModel();
}

void ReportGridModel::deleteRecords()
{
    beginResetModel();
    m_store.clearRows();
    m_checks.clear();
    m_otherwise.clear();
    m_recordCount = 0;
    m_room = {};
    rebuild(true, true);
    endResetModel();
}

void ReportGridModel::populate()
{
    if (isOrderGood() && m_store.formats().locale().name() == QLocale().name()) {
        // A filter that was set is shown already: there is nothing to do a second time.
        if (m_rowCount > 0) {
            Q_EMIT dataChanged(index(0, 0), index(m_rowCount - 1, columnCount() - 1));
        }
        return;
    }
    beginResetModel();
    m_store.settle();
    m_store.setLocale(QLocale());
    rebuild(true, true);
    endResetModel();
}

// --- Order, groups, filter

/// Whether the order at hand is what a new sort would give.
bool ReportGridModel::isOrderGood() const
{
    const auto usesChecks = [this](ReportSort sort) {
        return m_checkColumn >= 0 && sort.column == m_checkColumn;
    };
    return m_store.changes() == m_changesSeen && m_store.rowCount() == m_recordCount && !usesChecks(m_sort) &&
           std::none_of(m_groupColumns.begin(), m_groupColumns.end(), usesChecks);
}

void ReportGridModel::setSorting(ReportSort sort)
{
    beginResetModel();
    m_sort = sort;
    rebuild(true, true);
    endResetModel();
}

void ReportGridModel::setGroupColumns(const std::vector<ReportSort>& columns)
{
    // Records that stand together in all new groups stood together in the old ones when those are among the new: so
    // they are in the order of the sort column already.
    const bool sorted =
        isOrderGood() && std::all_of(m_groupColumns.begin(), m_groupColumns.end(), [&](ReportSort old) {
            return std::any_of(columns.begin(), columns.end(),
                               [old](ReportSort added) { return added.column == old.column; });
        });
    beginResetModel();
    m_groupColumns = columns;
    m_otherwise.clear();
    m_closedFromTheStart = false;
    if (sorted) {
        sortByGroups();
    }
    rebuild(!sorted, true);
    endResetModel();
}

void ReportGridModel::setTextFilter(const QString& text)
{
    if (text == m_filter) {
        return;
    }
    beginResetModel();
    m_filter = text;
    rebuild(false, true);
    endResetModel();
}

void ReportGridModel::setColumnShown(int column, bool shown)
{
    const auto at = static_cast<size_t>(column);
    if (at >= m_columns.size() || m_shown[at] == shown) {
        return;
    }
    if (m_filter.isEmpty()) {
        m_shown[at] = shown;
        return;
    }
    beginResetModel();
    m_shown[at] = shown;
    rebuild(false, true);
    endResetModel();
}

bool ReportGridModel::isColumnShown(int column) const
{
    return static_cast<size_t>(column) < m_columns.size() && m_shown[static_cast<size_t>(column)];
}

void ReportGridModel::rebuild(bool sort, bool filter)
{
    m_recordCount = m_store.rowCount();
    m_changesSeen = m_store.changes();
    m_checks.resize((size_t{m_recordCount} + 63) / 64, 0);
    if (sort || m_sorted.size() != m_recordCount) {
        sortRecords();
        filter = true;
    }
    if (filter) {
        filterRecords();
    }
    makeGroups();
    makeScreen();
}

void ReportGridModel::sortBy(std::vector<uint32_t>& rows, ReportSort sort)
{
    if (static_cast<size_t>(sort.column) >= m_columns.size()) {
        return;
    }
    m_room.reserve(rows.capacity());
    if (sort.column == m_checkColumn) {
        sortRowsByKey<uint32_t>(rows, m_room, 1, sort.descending,
                                [this](uint32_t record) { return isChecked(record) ? 1U : 0U; });
        return;
    }
    m_store.sortRows(rows, sort.column, sort.descending, m_room);
}

void ReportGridModel::sortRecords()
{
    m_sorted.reserve(m_recordCount +
                     m_recordCount / 16); // it may come to be m_screen, with room for some groups
    m_sorted.resize(m_recordCount);
    std::iota(m_sorted.begin(), m_sorted.end(), 0U);
    // The sorts keep the order of equal rows: so the least important comes first.
    sortBy(m_sorted, m_sort);
    sortByGroups();
}

void ReportGridModel::sortByGroups()
{
    for (auto column = m_groupColumns.rbegin(); column != m_groupColumns.rend(); ++column) {
        sortBy(m_sorted, *column);
    }
}

void ReportGridModel::filterRecords()
{
    m_filtered = !m_filter.isEmpty();
    if (!m_filtered) {
        m_order = {};
        return;
    }
    std::vector<int> searched;
    for (int column = 0; column < static_cast<int>(m_columns.size()); ++column) {
        if (isColumnShown(column) && column != m_checkColumn) {
            searched.push_back(column);
        }
    }
    const std::vector<uint64_t> matches = m_store.rowsContaining(m_filter, searched);
    size_t count = 0;
    for (const uint64_t word : matches) {
        count += static_cast<size_t>(std::popcount(word));
    }
    m_order.clear();
    m_order.reserve(count);
    for (const uint32_t record : m_sorted) {
        if ((matches[record >> 6] >> (record & 63) & 1) != 0) {
            m_order.push_back(record);
        }
    }
}

void ReportGridModel::makeGroups()
{
    m_groups.clear();
    const std::vector<uint32_t>& order = recordsInOrder();
    const size_t levels = m_groupColumns.size();
    if (levels == 0 || order.empty()) {
        return;
    }
    // A bit for each place where a group of the level begins; one of an outer level begins all inner ones.
    std::vector<std::vector<uint64_t>> starts(levels);
    for (size_t level = 0; level < levels; ++level) {
        starts[level] = level == 0 ? std::vector<uint64_t>((order.size() + 63) / 64, 0) : starts[level - 1];
        starts[level].front() |= 1;
        const int column = m_groupColumns[level].column;
        if (column == m_checkColumn) {
            markWhereKeysChange(order, starts[level], [this](uint32_t record) { return isChecked(record); });
        } else {
            m_store.markChanges(order, column, starts[level]);
        }
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
        close(level, static_cast<uint32_t>(order.size()));
    }
    if (!m_otherwise.isEmpty()) {
        for (size_t group = 0; group < m_groups.size(); ++group) {
            if (m_otherwise.contains(pathOf(group))) {
                m_groups[group].closed = !m_closedFromTheStart;
            }
        }
    }
}

void ReportGridModel::makeScreen()
{
    if (m_groupColumns.empty()) {
        if (m_screen.capacity() > m_room.capacity()) {
            m_room.swap(m_screen);
        }
        m_screen = {};
        m_rowCount = static_cast<int>(recordsInOrder().size());
        return;
    }
    m_screen.clear();
    if (m_screen.capacity() < m_room.capacity()) {
        m_screen.swap(m_room);
        m_screen.clear();
    }
    m_screen.reserve(m_groups.size() + recordsInOrder().size());
    for (size_t group = 0; group < m_groups.size();) {
        m_screen.push_back(static_cast<uint32_t>(group) | groupMark);
        appendGroupRows(group, m_screen);
        const uint16_t level = m_groups[group].level;
        do {
            ++group;
        } while (group < m_groups.size() && m_groups[group].level > level);
    }
    m_rowCount = static_cast<int>(m_screen.size());
}

/// The rows under a group's own row: nothing when it is closed.
void ReportGridModel::appendGroupRows(size_t group, std::vector<uint32_t>& rows) const
{
    const Group& top = m_groups[group];
    if (top.closed) {
        return;
    }
    const std::vector<uint32_t>& order = recordsInOrder();
    const auto innermost = static_cast<uint16_t>(m_groupColumns.size() - 1);
    if (top.level == innermost) {
        const auto first = order.begin() + top.first;
        rows.insert(rows.end(), first, first + top.count);
        return;
    }
    for (size_t inner = group + 1; inner < m_groups.size() && m_groups[inner].level > top.level; ++inner) {
        if (m_groups[inner].level == top.level + 1) {
            rows.push_back(static_cast<uint32_t>(inner) | groupMark);
            appendGroupRows(inner, rows);
        }
    }
}

// --- Rows on the screen

bool ReportGridModel::isGroup(int row) const
{
    return validRow(row) && !m_screen.empty() && (m_screen[static_cast<size_t>(row)] & groupMark) != 0;
}

int ReportGridModel::record(int row) const
{
    if (!validRow(row) || isGroup(row)) {
        return -1;
    }
    const auto at = static_cast<size_t>(row);
    return static_cast<int>(m_screen.empty() ? recordsInOrder()[at] : m_screen[at]);
}

int ReportGridModel::rowOfRecord(uint32_t record) const
{
    const std::vector<uint32_t>& rows = m_groupColumns.empty() ? recordsInOrder() : m_screen;
    const auto place = std::find(rows.begin(), rows.end(), record);
    return place == rows.end() ? -1 : static_cast<int>(place - rows.begin());
}

QString ReportGridModel::captionOf(const Group& group) const
{
    const int column = m_groupColumns[group.level].column;
    const uint32_t record = recordsInOrder()[group.first];
    const QString value =
        column == m_checkColumn ? (isChecked(record) ? u"Sì"_s : u"No"_s) : m_store.text(record, column);
    return m_columns[static_cast<size_t>(column)].caption + u": "_s + value;
}

/// A group's caption after those of the groups around it: what tells it again after a new sort or filter.
QString ReportGridModel::pathOf(size_t group) const
{
    const Group& own = m_groups[group];
    QString path;
    for (uint16_t level = 0; level <= own.level; ++level) {
        const Group around{own.first, 0, level, false};
        path += captionOf(around) + QChar(QChar::ParagraphSeparator);
    }
    return path;
}

QString ReportGridModel::groupCaption(int row) const
{
    return isGroup(row) ? captionOf(m_groups[m_screen[static_cast<size_t>(row)] & ~groupMark]) : QString();
}

int ReportGridModel::groupCount(int row) const
{
    return isGroup(row) ? static_cast<int>(m_groups[m_screen[static_cast<size_t>(row)] & ~groupMark].count)
                        : 0;
}

int ReportGridModel::groupLevel(int row) const
{
    return isGroup(row) ? m_groups[m_screen[static_cast<size_t>(row)] & ~groupMark].level
                        : static_cast<int>(m_groupColumns.size());
}

bool ReportGridModel::isGroupClosed(int row) const
{
    return isGroup(row) && m_groups[m_screen[static_cast<size_t>(row)] & ~groupMark].closed;
}

void ReportGridModel::setGroupClosed(int row, bool closed)
{
    if (!isGroup(row) || isGroupClosed(row) == closed) {
        return;
    }
    const size_t number = m_screen[static_cast<size_t>(row)] & ~groupMark;
    Group& group = m_groups[number];
    const QString path = pathOf(number);
    if (closed == m_closedFromTheStart) {
        m_otherwise.remove(path);
    } else {
        m_otherwise.insert(path);
    }
    const auto begin = m_screen.begin() + row + 1;
    if (closed) {
        auto end = begin;
        while (end != m_screen.end() &&
               ((*end & groupMark) == 0 || m_groups[*end & ~groupMark].level > group.level)) {
            ++end;
        }
        const auto rows = static_cast<int>(end - begin);
        if (rows > 0) {
            beginRemoveRows({}, row + 1, row + rows);
        }
        group.closed = true;
        m_screen.erase(begin, end);
        m_rowCount = static_cast<int>(m_screen.size());
        if (rows > 0) {
            endRemoveRows();
        }
    } else {
        group.closed = false;
        std::vector<uint32_t> rows;
        appendGroupRows(number, rows);
        if (!rows.empty()) {
            beginInsertRows({}, row + 1, row + static_cast<int>(rows.size()));
            m_screen.insert(begin, rows.begin(), rows.end());
            m_rowCount = static_cast<int>(m_screen.size());
            endInsertRows();
        }
    }
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

void ReportGridModel::setAllGroupsClosed(bool closed)
{
    if (m_groupColumns.empty()) {
        return;
    }
    beginResetModel();
    m_closedFromTheStart = closed;
    m_otherwise.clear();
    makeGroups();
    makeScreen();
    endResetModel();
}

int ReportGridModel::groupRowAbove(int row) const
{
    const int level = groupLevel(row);
    for (--row; row >= 0; --row) {
        if (isGroup(row) && groupLevel(row) < level) {
            return row;
        }
    }
    return -1;
}

// --- Checks

bool ReportGridModel::isChecked(uint32_t record) const
{
    const size_t word = record >> 6;
    return word < m_checks.size() && (m_checks[word] >> (record & 63) & 1) != 0;
}

void ReportGridModel::setChecked(uint32_t record, bool checked)
{
    if (record >= m_store.rowCount()) {
        return;
    }
    const size_t word = record >> 6;
    if (word >= m_checks.size()) {
        m_checks.resize(word + 1, 0);
    }
    const uint64_t bit = uint64_t{1} << (record & 63);
    m_checks[word] = checked ? m_checks[word] | bit : m_checks[word] & ~bit;
}

void ReportGridModel::setAllChecked(bool checked)
{
    const uint32_t records = m_store.rowCount();
    m_checks.assign((size_t{records} + 63) / 64, checked ? ~uint64_t{0} : 0);
    if (checked && (records & 63) != 0) {
        m_checks.back() = (uint64_t{1} << (records & 63)) - 1;
    }
    checksChanged();
}

void ReportGridModel::setRowsChecked(int first, int last, bool checked)
{
    first = std::max(first, 0);
    last = std::min(last, m_rowCount - 1);
    const std::vector<uint32_t>& rows = m_groupColumns.empty() ? recordsInOrder() : m_screen;
    for (int row = first; row <= last; ++row) {
        const uint32_t record = rows[static_cast<size_t>(row)];
        if ((record & groupMark) == 0) {
            setChecked(record, checked);
        }
    }
}

void ReportGridModel::checksChanged()
{
    if (m_checkColumn >= 0 && m_rowCount > 0) {
        Q_EMIT dataChanged(index(0, m_checkColumn), index(m_rowCount - 1, m_checkColumn),
                           {Qt::CheckStateRole});
    }
}

size_t ReportGridModel::checkedCount() const
{
    size_t count = 0;
    for (const uint64_t word : m_checks) {
        count += static_cast<size_t>(std::popcount(word));
    }
    return count;
}

// --- QAbstractItemModel

int ReportGridModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rowCount;
}

int ReportGridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant ReportGridModel::groupData(int row, int column, int role) const
{
    switch (role) {
    case IsGroupRole:
        return true;
    case RecordRole:
        return -1;
    case GroupCaptionRole:
        return groupCaption(row);
    case GroupCountRole:
        return groupCount(row);
    case GroupLevelRole:
        return groupLevel(row);
    case GroupClosedRole:
        return isGroupClosed(row);
    case Qt::DisplayRole:
        return column == 0 ? u"%1 (%2)"_s.arg(groupCaption(row)).arg(groupCount(row)) : QVariant();
    case Qt::AccessibleTextRole:
        return u"%1 (%2), %3"_s.arg(groupCaption(row))
            .arg(groupCount(row))
            .arg(isGroupClosed(row) ? u"chiuso"_s : u"aperto"_s);
    default:
        return {};
    }
}

QVariant ReportGridModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || !validRow(index.row()) || index.column() >= columnCount()) {
        return {};
    }
    if (isGroup(index.row())) {
        return groupData(index.row(), index.column(), role);
    }
    const auto own = static_cast<uint32_t>(record(index.row()));
    const bool check = index.column() == m_checkColumn;
    switch (role) {
    case Qt::DisplayRole:
        return check ? QVariant() : m_store.text(own, index.column());
    case Qt::CheckStateRole:
        return check ? QVariant(isChecked(own) ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant(Qt::AlignVCenter |
                        (m_store.holdsNumbers(index.column()) ? Qt::AlignRight : Qt::AlignLeft));
    case Qt::AccessibleTextRole: {
        // Screen readers read cell by cell: each says what it is.
        const QString caption = m_columns[static_cast<size_t>(index.column())].caption;
        if (check) {
            return isChecked(own) ? caption + u": sì"_s : caption + u": no"_s;
        }
        return caption + u": "_s + m_store.text(own, index.column());
    }
    case IsGroupRole:
        return false;
    case RecordRole:
        return static_cast<int>(own);
    default:
        return {};
    }
}

bool ReportGridModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const int own = record(index.row());
    if (!index.isValid() || role != Qt::CheckStateRole || index.column() != m_checkColumn || own < 0) {
        return false;
    }
    setChecked(static_cast<uint32_t>(own), value.toInt() == Qt::Checked);
    Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

QVariant ReportGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && section >= 0 && section < columnCount() &&
        (role == Qt::DisplayRole || role == Qt::AccessibleTextRole)) {
        return m_columns[static_cast<size_t>(section)].caption;
    }
    return {};
}

Qt::ItemFlags ReportGridModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    const Qt::ItemFlags base = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return index.column() == m_checkColumn && !isGroup(index.row()) ? base | Qt::ItemIsUserCheckable : base;
}

} // namespace zul
