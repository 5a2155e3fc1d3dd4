// The rows of the report grid as they stand on the screen.
#pragma once

#include "controls/report/GroupedRows.h"
#include "controls/report/RecordChecks.h"
#include "grid/ColumnStore.h"
#include "grid/ReportColumn.h"

#include <QAbstractTableModel>
#include <QHash>

#include <cstdint>
#include <optional>
#include <vector>

namespace zul {

struct ReportSort
{
    int column = -1; ///< -1: in the order in which the records were added
    bool descending = false;
};

/// The model's rows are what the operator sees: the records as sorted and filtered, with a row before each
/// group while columns group, and without the records of closed groups. So a screen of a million rows is one
/// list of row numbers, a selection is a few ranges, and no tree of items is needed.
///
/// A change of order, filter or groups makes a new list and resets the model once; opening and closing a group
/// inserts and removes rows. What was added to the store is shown after `populate`.
class ReportGridModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Role
    {
        IsGroupRole = Qt::UserRole, ///< bool
        RecordRole,                 ///< int, -1 for a group row
        GroupCaptionRole,           ///< "Paese: Roma"
        GroupCountRole,             ///< int, records in the group
        GroupLevelRole,             ///< int, 0 for the outermost
        GroupClosedRole             ///< bool
    };

    explicit ReportGridModel(QObject* parent = nullptr);

    // --- Columns and records
    ColumnStore& store() { return m_store; }
    const ColumnStore& store() const { return m_store; }
    const std::vector<ReportColumn>& columns() const { return m_columns; }
    void addColumn(const ReportColumn& column) { addColumns({column}); }
    void addColumns(const std::vector<ReportColumn>& columns);
    /// What fields hold, by name in any case; for the tooltips of their headers, whatever the captions say.
    void setFieldContents(const QHash<QString, QString>& contents);
    void deleteColumns(); ///< and all records
    void deleteRecords();
    /// Shows what was added, in the order, groups and filter that are set.
    void populate();
    uint32_t recordCount() const { return m_recordCount; }

    // --- Order, groups, filter
    ReportSort sorting() const { return m_sort; }
    void setSorting(ReportSort sort);
    const std::vector<ReportSort>& groupColumns() const { return m_groupColumns; }
    void setGroupColumns(const std::vector<ReportSort>& columns);
    void setTextFilter(const QString& text);
    QString textFilter() const { return m_filter; }
    /// Only records with a tick, as they were when this was set or the rows were populated last: a row stays when its
    /// tick is taken off. New records begin without it.
    void setOnlyChecked(bool only);
    bool showsOnlyChecked() const { return m_onlyChecked; }
    bool isFiltered() const { return m_filtered; }
    /// A bit for each record: whether a shown column of it contains the text, case disregarded. Kept until the text or
    /// what is in the columns changes.
    const std::vector<uint64_t>& matches(const QString& text) const;
    /// The record that contains the text, at or after a place in the order (before it: not forward), on from the other end
    /// where there is none; -1 when none does.
    int64_t findRecord(const QString& text, size_t place, bool forward) const;
    /// Of the records that the filters pass.
    size_t matchCount(const QString& text) const;
    /// All records, those that filters hide included, in the order of the screen.
    const std::vector<uint32_t>& allRecordsInOrder() const { return m_sorted; }
    /// Columns that are hidden are not searched either. The check column stays as it was described: without it there
    /// would be no way to tick.
    void setColumnShown(int column, bool shown);
    bool isColumnShown(int column) const;
    /// Sorted and filtered, records of closed groups included.
    const std::vector<uint32_t>& recordsInOrder() const { return m_filtered ? m_order : m_sorted; }

    // --- Rows on the screen
    bool isGroup(int row) const;
    /// How many of the rows from first to last, both included, are group rows; takes no longer for many.
    int groupRowsBetween(int first, int last) const;
    int record(int row) const;              ///< -1 for a group row and out of range
    int rowOfRecord(uint32_t record) const; ///< -1 when not on the screen; looks through all rows
    /// The cell as it is shown; a tick is "Sì" or "No".
    QString shownText(uint32_t record, int column) const;
    QString groupCaption(int row) const;
    int groupCount(int row) const;
    int groupLevel(int row) const;
    bool isGroupClosed(int row) const;
    void setGroupClosed(int row, bool closed);
    void setAllGroupsClosed(bool closed);
    void openGroupsOf(uint32_t record); ///< so that its row is there
    int groupRowAbove(int row) const;   ///< the nearest group row above, -1 when there is none

    // --- Checks
    int checkColumn() const { return m_checkColumn; }
    bool isChecked(uint32_t record) const { return m_checks.isSet(record); }
    void setChecked(uint32_t record, bool checked);
    void setAllChecked(bool checked);
    /// Records of the screen rows `first` to `last`; group rows are passed over. No signal: see checksChanged.
    void setRowsChecked(int first, int last, bool checked);
    void checksChanged(); ///< tells views, once, after setRowsChecked
    size_t checkedCount() const { return m_checks.count(); }
    void invertChecks(); ///< of all records
    /// The tick of a record's row; of a group's row what those of all its records have in common.
    Qt::CheckState rowTick(int row) const;
    /// All records of a group, those of closed groups within it included, but none that the filter hides.
    void setGroupChecked(int row, bool checked);
    /// Remembers the ticks as they are, for the operator's undo. Whoever ticks for the operator calls it before.
    void rememberChecks() { m_checksBefore = m_checks; }
    void forgetCheckUndo() { m_checksBefore.reset(); }
    bool canUndoChecks() const { return m_checksBefore.has_value(); }
    /// The ticks are as they were remembered; undone once more, they are again as they are now.
    void undoChecks();

    // --- QAbstractItemModel
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    bool isOrderGood() const;
    void sortRecords();
    void sortByGroups();
    void sortBy(std::vector<uint32_t>& rows, ReportSort sort);
    void filterRecords();
    void groupRecords();
    void rebuild(bool sort, bool filter);
    QString captionOf(const GroupedRows::Group& group) const;
    QString pathOf(const GroupedRows::Group& group) const;
    Qt::CheckState groupTick(const GroupedRows::Group& group) const;
    QVariant groupData(int row, int column, int role) const;
    bool groups() const { return !m_groupColumns.empty(); }
    bool validRow(int row) const { return row >= 0 && row < rowCount(); }

    ColumnStore m_store;
    std::vector<ReportColumn> m_columns;
    std::vector<bool> m_shown;
    QHash<QString, QString> m_contents;
    uint32_t m_recordCount = 0; // of the last populate; the store may hold more
    uint64_t m_changesSeen = 0; // of the store, by the order at hand
    int m_checkColumn = -1;
    RecordChecks m_checks;
    std::optional<RecordChecks> m_checksBefore; // the operator's last ticking
    /// For each group its tick, and when it was reckoned.
    struct GroupTick
    {
        uint64_t changes = ~uint64_t{0};
        Qt::CheckState tick = Qt::Unchecked;
    };
    mutable std::vector<GroupTick> m_groupTicks;

    ReportSort m_sort;
    std::vector<ReportSort> m_groupColumns;
    QString m_filter;
    bool m_onlyChecked = false;
    bool m_filtered = false;
    /// The last text that was looked for.
    struct Matches
    {
        QString text;
        uint64_t changes = ~uint64_t{0}; // of the store
        std::vector<bool> shown;         // the columns that were searched
        std::vector<uint64_t> records;
    };
    mutable Matches m_matches;
    std::vector<uint32_t> m_sorted; // all records, by group columns and sort column
    std::vector<uint32_t> m_order;  // those of m_sorted that the filter passes
    GroupedRows m_grouped;          // while columns group
    std::vector<uint32_t> m_room;   // memory that sorts and m_grouped take turns with
};

} // namespace zul
