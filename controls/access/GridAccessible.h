// The rows of a report grid for screen readers and other assistive tools.
#pragma once

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>

#include <array>

QT_FORWARD_DECLARE_CLASS(QModelIndex)

namespace zul {

class ReportGridView;

/// Answers for the lists of report grids from now on, as far as anybody asks; calling it again does nothing.
void installGridAccessibility();

/// A table of what the operator sees: the rows on the screen in their order, those of groups among them, and the columns
/// shown, in theirs. Its children are the headers and then the cells, row by row; a group's row is one cell as wide as the
/// table. Nothing is kept but the cells that were asked for, and nothing at all before somebody asks.
///
/// Its description tells how many rows there are, ticked and highlighted.
class GridAccessible : public QAccessibleWidget, public QAccessibleTableInterface
{
public:
    explicit GridAccessible(ReportGridView* view);
    ~GridAccessible() override;
    GridAccessible(const GridAccessible&) = delete;
    GridAccessible& operator=(const GridAccessible&) = delete;

    // --- QAccessibleInterface
    void* interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text kind) const override;
    QAccessible::State state() const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;

    // --- QAccessibleTableInterface; columns are counted among those shown
    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int column) const override;
    int rowCount() const override;
    int columnCount() const override;
    QString columnDescription(int column) const override;
    QString rowDescription(int row) const override;
    int selectedCellCount() const override;
    QList<QAccessibleInterface*> selectedCells() const override;
    int selectedColumnCount() const override { return 0; }
    QList<int> selectedColumns() const override { return {}; }
    bool isColumnSelected(int) const override { return false; }
    bool selectColumn(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    int selectedRowCount() const override;
    QList<int> selectedRows() const override;
    bool isRowSelected(int row) const override;
    bool selectRow(int row) override;
    bool unselectRow(int row) override;
    void modelChange(QAccessibleTableModelChangeEvent*) override {} // it listens to the rows itself

    /// The header of a column shown.
    QAccessibleInterface* header(int column) const;
    /// How many cells are kept.
    qsizetype cellsKept() const { return m_cells.size(); }

private:
    using Key = std::pair<int, int>; // row, and the column as the store counts; a group's row has -1

    ReportGridView& view() const;
    QAccessibleInterface* cell(int row, int column) const;
    void forget(QHash<Key, QAccessible::Id>& kept);
    void moveRows(int first, int count);

    mutable QHash<Key, QAccessible::Id> m_cells;
    mutable QHash<Key, QAccessible::Id> m_headers; // in row 0
    std::array<QMetaObject::Connection, 4> m_connections;
};

// --- What the list tells when something changed; nothing while nobody listens

using AccessibilityListener = void (*)(QAccessibleEvent&);
/// Listens in the platform's place, also where the platform has no accessibility; null: the platform listens again.
void setAccessibilityListener(AccessibilityListener listener);

void tellCurrentCell(ReportGridView& view);
/// Cells changed, such as the tick of one, or many; or a group was opened or closed.
void tellCells(ReportGridView& view, const QModelIndex& topLeft, const QModelIndex& bottomRight);
void tellHighlights(ReportGridView& view);
/// All rows are others, or stand otherwise.
void tellRowsAnew(ReportGridView& view);

} // namespace zul
