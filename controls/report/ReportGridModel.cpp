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

void ReportGridModel::setFieldContents(const QHash<QString, QString>& contents)
{
    m_contents.clear();
    for (auto content = contents.begin(); content != contents.end(); ++content) {
        m_contents.insert(content.key().toLower(), content.value());
    }
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
    m_grouped.forgetClosed();
    m_checks.clear();
    m_checksBefore.reset();
    m_onlyChecked = false;
    rebuild(true, true);
    endResetModel();
}

void ReportGridModel::deleteRecords()
{
    beginResetModel();
    m_store.clearRows();
    m_checks.clear();
    m_checksBefore.reset();
    m_grouped.forgetSingles();
    m_recordCount = 0;
    m_onlyChecked = false;
    m_room = {};
    rebuild(true, true);
    endResetModel();
}

void ReportGridModel::populate()
{
    if (isOrderGood() && m_store.formats().locale().name() == QLocale().name()) {
        // A filter that was set is shown already: there is nothing to do a second time.
        if (rowCount() > 0) {
            Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
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
           !m_onlyChecked && std::none_of(m_groupColumns.begin(), m_groupColumns.end(), usesChecks);
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
    m_grouped.forgetClosed();
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

void ReportGridModel::setOnlyChecked(bool only)
{
    if (only == m_onlyChecked) {
        return;
    }
    beginResetModel();
    m_onlyChecked = only;
    rebuild(false, true);
    endResetModel();
}

const std::vector<uint64_t>& ReportGridModel::matches(const QString& text) const
{
    if (text == m_matches.text && m_store.changes() == m_matches.changes && m_shown == m_matches.shown &&
        m_matches.records.size() * 64 >= m_recordCount) {
        return m_matches.records;
    }
    std::vector<int> searched;
    for (int column = 0; column < static_cast<int>(m_columns.size()); ++column) {
        if (isColumnShown(column) && column != m_checkColumn) {
            searched.push_back(column);
        }
    }
    m_matches = {text, m_store.changes(), m_shown, m_store.rowsContaining(text, searched)};
    return m_matches.records;
}

int64_t ReportGridModel::findRecord(const QString& text, size_t place, bool forward) const
{
    const std::vector<uint32_t>& order = recordsInOrder();
    if (text.isEmpty() || order.empty()) {
        return -1;
    }
    const std::vector<uint64_t>& found = matches(text);
    const size_t count = order.size();
    for (size_t step = 0; step < count; ++step) {
        const size_t at = forward ? (place + step) % count : (place + 2 * count - 1 - step) % count;
        const uint32_t record = order[at];
        if ((found[record >> 6] >> (record & 63) & 1) != 0) {
            return record;
        }
    }
    return -1;
}

size_t ReportGridModel::matchCount(const QString& text) const
{
    if (text.isEmpty()) {
        return 0;
    }
    const std::vector<uint64_t>& found = matches(text);
    const std::vector<uint32_t>& order = recordsInOrder();
    return static_cast<size_t>(std::count_if(order.begin(), order.end(), [&](uint32_t record) {
        return (found[record >> 6] >> (record & 63) & 1) != 0;
    }));
}

void ReportGridModel::setColumnShown(int column, bool shown)
{
    const auto at = static_cast<size_t>(column);
    if (at >= m_columns.size() || m_shown[at] == shown || column == m_checkColumn) {
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
    if (sort || m_sorted.size() != m_recordCount) {
        m_matches = {}; // there may be other records
        sortRecords();
        filter = true;
    }
    if (filter) {
        filterRecords();
    }
    groupRecords();
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
                     m_recordCount / 16); // it may come to hold the grouped rows, with room for some groups
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
    m_filtered = !m_filter.isEmpty() || m_onlyChecked;
    if (!m_filtered) {
        m_order = {};
        return;
    }
    if (m_filter.isEmpty()) {
        m_order.clear();
        m_order.reserve(checkedCount());
        std::copy_if(m_sorted.begin(), m_sorted.end(), std::back_inserter(m_order),
                     [this](uint32_t record) { return isChecked(record); });
        return;
    }
    const std::vector<uint64_t>& found = matches(m_filter);
    size_t count = 0;
    for (const uint64_t word : found) {
        count += static_cast<size_t>(std::popcount(word));
    }
    m_order.clear();
    m_order.reserve(count);
    for (const uint32_t record : m_sorted) {
        if ((found[record >> 6] >> (record & 63) & 1) != 0 && (!m_onlyChecked || isChecked(record))) {
            m_order.push_back(record);
        }
    }
}

void ReportGridModel::groupRecords()
{
    if (!groups()) {
        m_grouped.clear(m_room);
        m_groupTicks = {};
        return;
    }
    const std::vector<uint32_t>& order = recordsInOrder();
    GroupedRows::Starts starts;
    starts.reserve(m_groupColumns.size());
    for (const ReportSort& group : m_groupColumns) {
        // One of an outer level begins all inner ones.
        starts.push_back(starts.empty() ? std::vector<uint64_t>((order.size() + 63) / 64, 0) : starts.back());
        if (order.empty()) {
            continue;
        }
        starts.back().front() |= 1;
        if (group.column == m_checkColumn) {
            markWhereKeysChange(order, starts.back(), [this](uint32_t record) { return isChecked(record); });
        } else {
            m_store.markChanges(order, group.column, starts.back());
        }
    }
    m_grouped.build(
        order, starts, [this](const GroupedRows::Group& group) { return pathOf(group); }, m_room);
    m_groupTicks.assign(m_grouped.groupCount(), {});
}

// --- Rows on the screen

int ReportGridModel::groupRowsBetween(int first, int last) const
{
    return groups() ? m_grouped.groupRowsBetween(first, last) : 0;
}

bool ReportGridModel::isGroup(int row) const
{
    return groups() && validRow(row) && m_grouped.isGroup(row);
}

int ReportGridModel::record(int row) const
{
    if (!validRow(row) || isGroup(row)) {
        return -1;
    }
    return static_cast<int>(groups() ? m_grouped.record(row) : recordsInOrder()[static_cast<size_t>(row)]);
}

int ReportGridModel::rowOfRecord(uint32_t record) const
{
    if (groups()) {
        return m_grouped.rowOfRecord(record);
    }
    const std::vector<uint32_t>& rows = recordsInOrder();
    const auto place = std::find(rows.begin(), rows.end(), record);
    return place == rows.end() ? -1 : static_cast<int>(place - rows.begin());
}

QString ReportGridModel::shownText(uint32_t record, int column) const
{
    if (column == m_checkColumn) {
        return isChecked(record) ? u"Sì"_s : u"No"_s;
    }
    return m_store.text(record, column);
}

QString ReportGridModel::captionOf(const GroupedRows::Group& group) const
{
    const int column = m_groupColumns[group.level].column;
    const uint32_t record = recordsInOrder()[group.first];
    return m_columns[static_cast<size_t>(column)].caption + u": "_s + shownText(record, column);
}

/// A group's caption after those of the groups around it: what tells it again after a new sort or filter.
QString ReportGridModel::pathOf(const GroupedRows::Group& group) const
{
    QString path;
    GroupedRows::Group around = group;
    for (around.level = 0; around.level <= group.level; ++around.level) {
        path += captionOf(around) + QChar(QChar::ParagraphSeparator);
    }
    return path;
}

QString ReportGridModel::groupCaption(int row) const
{
    return isGroup(row) ? captionOf(m_grouped.group(row)) : QString();
}

int ReportGridModel::groupCount(int row) const
{
    return isGroup(row) ? static_cast<int>(m_grouped.group(row).count) : 0;
}

int ReportGridModel::groupLevel(int row) const
{
    return isGroup(row) ? m_grouped.group(row).level : static_cast<int>(m_groupColumns.size());
}

bool ReportGridModel::isGroupClosed(int row) const
{
    return isGroup(row) && m_grouped.group(row).closed;
}

void ReportGridModel::setGroupClosed(int row, bool closed)
{
    if (!isGroup(row) || isGroupClosed(row) == closed) {
        return;
    }
    const QString path = pathOf(m_grouped.group(row));
    const int rows = m_grouped.rowsBelow(row);
    if (closed) {
        beginRemoveRows({}, row + 1, row + rows);
        m_grouped.setClosed(row, true, path);
        endRemoveRows();
    } else {
        beginInsertRows({}, row + 1, row + rows);
        m_grouped.setClosed(row, false, path);
        endInsertRows();
    }
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

void ReportGridModel::setAllGroupsClosed(bool closed)
{
    if (!groups()) {
        return;
    }
    beginResetModel();
    m_grouped.setAllClosed(closed);
    endResetModel();
}

void ReportGridModel::openGroupsOf(uint32_t record)
{
    const std::vector<uint32_t>& order = recordsInOrder();
    const auto place = static_cast<size_t>(std::find(order.begin(), order.end(), record) - order.begin());
    for (int row = 0; place < order.size() && row < rowCount(); ++row) {
        if (isGroup(row) && isGroupClosed(row)) {
            const GroupedRows::Group& group = m_grouped.group(row);
            if (group.first <= place && place < size_t{group.first} + group.count) {
                setGroupClosed(row, false);
            }
        }
    }
}

int ReportGridModel::groupRowAbove(int row) const
{
    return groups() && validRow(row) ? m_grouped.groupRowAbove(row) : -1;
}

// --- Checks

void ReportGridModel::setChecked(uint32_t record, bool checked)
{
    if (record < m_store.rowCount()) {
        m_checks.set(record, checked);
    }
}

void ReportGridModel::invertChecks()
{
    m_checks.invert(m_store.rowCount());
    checksChanged();
}

void ReportGridModel::undoChecks()
{
    if (m_checksBefore) {
        m_checks.swap(*m_checksBefore);
        checksChanged();
    }
}

Qt::CheckState ReportGridModel::groupTick(const GroupedRows::Group& group) const
{
    const std::vector<uint32_t>& order = recordsInOrder();
    const bool first = isChecked(order[group.first]);
    for (uint32_t place = group.first + 1; place < group.first + group.count; ++place) {
        if (isChecked(order[place]) != first) {
            return Qt::PartiallyChecked;
        }
    }
    return first ? Qt::Checked : Qt::Unchecked;
}

Qt::CheckState ReportGridModel::rowTick(int row) const
{
    if (!isGroup(row)) {
        const int own = record(row);
        return own >= 0 && isChecked(static_cast<uint32_t>(own)) ? Qt::Checked : Qt::Unchecked;
    }
    // A group may hold all records, and is asked at every painting.
    GroupTick& known = m_groupTicks[m_grouped.groupNumber(row)];
    if (known.changes != m_checks.changes()) {
        known = {m_checks.changes(), checkedCount() == 0 ? Qt::Unchecked : groupTick(m_grouped.group(row))};
    }
    return known.tick;
}

void ReportGridModel::setGroupChecked(int row, bool checked)
{
    if (!isGroup(row)) {
        return;
    }
    const GroupedRows::Group& group = m_grouped.group(row);
    const std::vector<uint32_t>& order = recordsInOrder();
    for (uint32_t place = group.first; place < group.first + group.count; ++place) {
        m_checks.set(order[place], checked);
    }
    checksChanged();
}

void ReportGridModel::setAllChecked(bool checked)
{
    m_checks.setAll(m_store.rowCount(), checked);
    checksChanged();
}

void ReportGridModel::setRowsChecked(int first, int last, bool checked)
{
    for (int row = std::max(first, 0); row <= std::min(last, rowCount() - 1); ++row) {
        const int own = record(row);
        if (own >= 0) {
            setChecked(static_cast<uint32_t>(own), checked);
        }
    }
}

void ReportGridModel::checksChanged()
{
    if (m_checkColumn >= 0 && rowCount() > 0) {
        Q_EMIT dataChanged(index(0, m_checkColumn), index(rowCount() - 1, m_checkColumn),
                           {Qt::CheckStateRole});
    }
}

// --- QAbstractItemModel

int ReportGridModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid()) {
        return 0;
    }
    return groups() ? m_grouped.rowCount() : static_cast<int>(recordsInOrder().size());
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
    case Qt::CheckStateRole:
        return column == m_checkColumn ? QVariant(rowTick(row)) : QVariant();
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
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) {
        return {};
    }
    const ReportColumn& own = m_columns[static_cast<size_t>(section)];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return own.caption;
    case Qt::ToolTipRole:
    case Qt::AccessibleDescriptionRole: {
        const QString content = m_contents.value(own.field.toLower());
        return content.isEmpty() ? u"Campo: %1"_s.arg(own.field)
                                 : u"Campo: %1\nContenuto: %2"_s.arg(own.field, content);
    }
    default:
        return {};
    }
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
