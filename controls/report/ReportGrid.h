// The report grid: the list that every window of the system shows its rows in.
#pragma once

#include "controls/report/GridClipboard.h"
#include "grid/ColumnStore.h"
#include "grid/GridCounts.h"
#include "grid/GridLayoutFile.h"
#include "grid/ReportColumn.h"

#include <QHash>
#include <QWidget>

#include <cstdint>
#include <memory>
#include <vector>

namespace zul {

/// A list of records with sortable, movable and sizable columns, a box to group by columns, an optional column
/// of check boxes, a text filter, and selection of many rows. Made for a million records.
///
/// The actions of the widget stand in the menu of its rows.
///
/// Filling: `deleteRecords`, `deleteColumns`, `addColumn` for every column; rows into `store()`; `populate`.
/// What is in the store is shown after `populate`, and nothing that was shown is touched before.
///
/// A *record* is known by its index in the order in which it was added, from 0; a *column* by its index in the
/// order in which it was added, hidden ones counted. Functions that get a record or column out of range return
/// an empty value or do nothing. GUI thread only.
class ReportGrid : public QWidget
{
    Q_OBJECT
    /// A program that drives the window without linking it asks here, see ReportGridProbe.
    Q_PROPERTY(QObject* probe READ probe)

public:
    /// What a columnLayoutChanged is about. The numbers are the grid's event numbering: an owner saves the
    /// layout at every kind but 2.
    enum LayoutChange
    {
        ColumnResized = 0,
        ColumnMoved = 1,
        SortChanged = 2, ///< order, groups: nothing that a layout file keeps
        ColumnShown = 3  ///< shown or hidden by the operator, or all columns reset
    };
    Q_ENUM(LayoutChange)

    explicit ReportGrid(QWidget* parent = nullptr);
    ~ReportGrid() override;

    // --- Filling

    /// Takes all records away, with their checks. Text filter, order and groups stay.
    void deleteRecords();
    /// Takes all columns away, with order, groups and widths, and the records too.
    void deleteColumns();
    void addColumn(const ReportColumn& column);
    /// The same for several columns at once, which takes no longer than one does.
    void addColumns(const std::vector<ReportColumn>& columns);
    /// What fields hold, by name in any case: the header's tooltip tells it beside the field's name. Stays when columns go.
    void setFieldContents(const QHash<QString, QString>& contents);
    ColumnStore& store();
    const ColumnStore& store() const;
    /// Sorts, filters and groups anew, and shows the result. Highlighted records stay highlighted when they
    /// are not very many.
    void populate();

    // --- Reading

    uint32_t recordCount() const;
    int columnCount() const;
    QString columnField(int column) const;
    QString columnCaption(int column) const;
    /// Whether the operator may show and hide the column: not the check column, nor one that is to stay hidden.
    bool isColumnOffered(int column) const;
    /// The cell as shown, in the user's locale; NULL is the empty text.
    QString cellText(uint32_t record, int column) const;
    bool cellIsNumeric(uint32_t record, int column) const;
    /// All records that the text filter passes, in the order on the screen, those of closed groups included.
    const std::vector<uint32_t>& recordsInScreenOrder() const;
    /// The same with those that filters hide.
    const std::vector<uint32_t>& allRecordsInScreenOrder() const;
    /// The columns shown in the header, in their order on the screen.
    std::vector<int> columnsInScreenOrder() const;
    /// In constant time, but for highlighted rows while columns group.
    GridCounts counts() const;

    // --- Checks

    /// The check column's index, -1 when there is none.
    int checkColumn() const;
    bool isChecked(uint32_t record) const;
    void setChecked(uint32_t record, bool checked);
    /// Every record, those that the filter hides included. Nothing when there are no records.
    void setAllChecked(bool checked);
    /// The highlighted records. Nothing when none is highlighted.
    void setSelectedChecked(bool checked);
    size_t checkedCount() const;
    /// Every record, those that the filter hides included, gets the other state.
    void invertChecked();
    /// Takes back the last ticking of the operator, or of a function for many records; once more, it is there again.
    /// A new fill, and setChecked, leave nothing to take back.
    void undoChecked();
    bool canUndoChecked() const;

    // --- Highlighted records

    /// In the order on the screen.
    std::vector<uint32_t> selectedRecords() const;
    bool hasSelection() const;
    /// The record with the focus, -1 when there is none or a group row has it.
    int64_t currentRecord() const;
    /// Gives a record the focus, highlights it alone and scrolls to it.
    void setCurrentRecord(uint32_t record);
    void clearSelection();
    /// The highlighted records go to the clipboard: visible columns in their order, separated by tabs, under a line of
    /// captions when asked for. Nothing when none is highlighted.
    void copySelection(CopyHeaders headers) const;

    // --- Order, groups, filter

    int sortColumn() const;
    bool isSortDescending() const;
    void sortBy(int column, bool descending); ///< -1: the order in which the records were added
    std::vector<int> groupColumns() const;
    void groupBy(int column); ///< behind the columns that group already
    void ungroup(int column);
    void ungroupAll(); ///< as the operator's own command does, which tells the change
    void setAllGroupsClosed(bool closed);
    /// Only records of which a shown column contains the text, case disregarded; the empty text shows all.
    void setTextFilter(const QString& text);
    QString textFilter() const;
    /// Only records with a tick, as they were when this was set or the rows were populated last. A new fill begins without.
    void setOnlyChecked(bool only);
    bool showsOnlyChecked() const;
    bool isFiltered() const; ///< by text or ticks
    /// Where to look from: the record with the focus, or the one behind or before it.
    enum class Find
    {
        Here,
        Next,
        Previous
    };
    /// Gives the focus to the next record of which a shown column contains the text, on from the other end where there
    /// is none; closed groups around it are opened. False when no record that is shown does.
    bool findText(const QString& text, Find from);
    /// How many of the records that are shown contain the text.
    size_t matchCount(const QString& text) const;
    /// Ctrl+F in the rows opens a bar that finds and filters, see GridFindBar. Off at first.
    void setFindEnabled(bool enabled);
    void openFindBar(); ///< if it is enabled

    // --- Layout: widths, order and visibility of the columns, by field name

    /// Writes the layout into a section of an INI file; other sections stay as they are. The file is replaced
    /// as a whole or not at all. The result says why when it cannot be written. The path is in the platform's form.
    LayoutSaved saveLayout(const QString& path, const QString& section) const;
    /// Applies a saved layout. False, and nothing changes, when the file or the section is missing or not one
    /// of ours. Columns that the file does not know keep their place and width, and the check column stays to be
    /// seen, whatever the file says.
    bool loadLayout(const QString& path, const QString& section);
    /// Whether the operator has the column shown, in the header or as a group.
    bool isColumnShown(int column) const;
    void setColumnShown(int column, bool shown); ///< only for columns that are offered
    /// Widths, order and visibility as the columns were described. Order of the rows and groups stay.
    void resetColumns();

    // --- Look

    void setEmptyText(const QString& text); ///< in the middle of a list without rows
    void setGroupHint(const QString& text); ///< in the group box when no column groups
    void
    setSortCaptionPrefix(const QString& text); ///< before the sort column's caption, beside the group box
    void setGridFont(const QFont& font);
    void setFlatHeader(bool flat);   ///< a header without bevels
    void setRowLines(bool lines);    ///< a quiet line under each row
    void setCellPadding(int pixels); ///< left and right of a cell's text, 0 to 32
    void setRowPadding(int pixels);  ///< above and below a row's text, 0 to 32
    void setGroupBoxVisible(bool visible);
    void setTouchMode(bool touch); ///< rows and headers of 44 pixels, scrolling with the finger

    QObject* probe(); ///< made at the first call and owned by the grid

Q_SIGNALS:
    void columnLayoutChanged(int kind);
    void recordDoubleClicked(uint32_t record);
    /// The left button was let go over the rows; -1 on a group row and below the last row.
    void mouseReleasedOn(int64_t record);
    /// Before the grid acts on the key; a key that the grid has no use for goes on to the window.
    void gridKeyPressed(int key);
    /// -1 when many checks changed at once.
    void checkChanged(int64_t record);
    void selectionChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Parts;

    void showMenu(int column, const QPoint& globalPosition);
    void setGroups(const std::vector<int>& columns);
    void columnsChanged();
    void updateShownColumns();
    template <typename Change>
    void keepingHighlights(Change change);

    std::unique_ptr<Parts> m;
};

} // namespace zul
