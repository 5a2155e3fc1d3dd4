// The rows of the report grid.
#pragma once

#include "controls/report/TypedSearch.h"

#include <QAbstractItemView>

namespace zul {

class ReportGridModel;
class ReportHeader;

/// A list of rows of one height. Nothing is kept or measured per row: a row's place is its number times the
/// height, and only rows on the screen are read.
class ReportGridView : public QAbstractItemView
{
    Q_OBJECT

public:
    ReportGridView(ReportGridModel* grid, QWidget* parent);

    const ReportGridModel& grid() const { return *m_grid; }
    ReportHeader* header() const { return m_header; }
    void setEmptyText(const QString& text);
    void setRowLines(bool lines);
    bool hasRowLines() const { return m_rowLines; }
    void setCellPadding(int pixels);
    void setRowPadding(int pixels);
    void setTouch(bool touch);
    /// Heights and widths anew: after a change of font, padding or columns.
    void layoutChanged();

    // --- Places in the viewport; empty for what is not there

    QRect rowRect(int row) const;
    QRect cellRect(int row, int column) const;
    QRect textRect(int row, int column) const; ///< of a cell, without its padding
    QRect checkRect(int row) const;            ///< also of a group's row, where the list ticks
    QRect expanderRect(int row) const;         ///< of a group's row
    int rowAt(int y) const;                    ///< -1 below the last row
    void scrollToRow(int row);
    void scrollToColumn(int column);
    int fittingWidth(int column) const; ///< for the header and the rows on the screen
    int firstShownColumn() const;

    // --- What mouse and keys do

    void setGroupClosed(int row, bool closed);
    /// A record's tick; on a group's row the ticks of its records: all of them, or none when all are ticked.
    void toggleCheck(int row);
    /// The highlighted rows all get the state that the row with the focus does not have.
    void toggleHighlighted();
    void undoChecks();

    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint& point) const override;
    void keyboardSearch(const QString& search) override;
    QSize sizeHint() const override;

public Q_SLOTS:
    void reset() override;

Q_SIGNALS:
    void recordDoubleClicked(uint32_t record);
    void mouseReleasedOn(int64_t record);
    void keyPressed(int key);
    void checkToggled(int64_t record);
    void highlightChanged();
    void findRequested();
    void menuRequested(int column, const QPoint& globalPosition);

protected Q_SLOTS:
    void updateGeometries() override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QList<int>& roles) override;
    void rowsInserted(const QModelIndex& parent, int start, int end) override;

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override;
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex& index) const override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;
    void scrollContentsBy(int dx, int dy) override;

    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    void measure();
    int searchedColumn() const;
    bool pressesCheck(const QPoint& position, int& row) const;

    ReportGridModel* m_grid;
    ReportHeader* m_header;
    QString m_emptyText;
    int m_rowHeight = 24;
    int m_rowPadding = 4;
    bool m_rowLines = false;
    bool m_touch = false;
    int m_pressedCheck = -1;
    bool m_pressedExpander = false;
    bool m_updatingGeometries = false;
    TypedSearch m_typedSearch;
};

} // namespace zul
