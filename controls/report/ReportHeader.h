// The header of the report grid.
#pragma once

#include "controls/report/HeaderDrag.h"

#include <QHeaderView>

#include <vector>

namespace zul {

class ReportGridModel;
class ReportHeaderModel;

/// Sorts by a click, sizes by dragging an edge, moves a column by dropping its header on another, and groups by
/// dropping it on the group box.
class ReportHeader : public QHeaderView
{
    Q_OBJECT

public:
    ReportHeader(ReportGridModel* grid, QWidget* parent);

    /// Where a header can be dropped to group by its column.
    void setGroupBox(ReportGroupBox* box) { m_drag.setGroupBox(box); }
    void setFlat(bool flat);
    void setPadding(int pixels);
    int padding() const { return m_padding; }
    void setTouch(bool touch);
    /// Shows columns from the model anew; widths and order begin again.
    void columnsChanged();
    /// The list's widths are to be shared anew afterwards.
    void setColumnShown(int column, bool shown);
    void setSortMark(int column, bool descending);

    /// Columns with width 0 share what the others leave; `free` is the width of the list.
    void shareWidths(int free);
    /// Once the operator has sized a column, or a layout was loaded, widths stay as they are.
    void stopSharing() { m_sharesWidths = false; }
    /// Whether a column's width is its share of what the others leave.
    bool isShared(int column) const;
    /// The width a column has, or will have again when it is shown.
    int widthOf(int column) const;
    void setWidthOf(int column, int width);
    int headerHeight() const;
    /// In the order on the screen.
    std::vector<int> shownColumns() const;
    /// Among the columns shown, from 0; -1 when hidden.
    int visiblePosition(int column) const;

    QSize sizeHint() const override;

Q_SIGNALS:
    void sortRequested(int column);
    void groupRequested(int column);
    void columnResized();
    void columnMoved();
    void fitRequested(int column);
    void menuRequested(int column, const QPoint& globalPosition);

protected:
    void paintSection(QPainter* painter, const QRect& rect, int column) const override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    enum class Press
    {
        None,
        Click,
        Drag,
        Resize
    };

    int sizedColumnAt(int x) const;
    int shareOf(int column) const;

    ReportGridModel* m_grid;
    ReportHeaderModel* m_columns;
    HeaderDrag m_drag{*this};
    Press m_press = Press::None;
    int m_pressed = -1;
    int m_hovered = -1;
    QPoint m_pressedAt;
    int m_sortColumn = -1;
    bool m_sortDescending = false;
    bool m_flat = false;
    bool m_touch = false;
    bool m_sharesWidths = true;
    bool m_showing = false; // a column is being shown or hidden
    int m_padding = 4;
    std::vector<int> m_widths; // hidden columns' too, which the base class does not tell
};

} // namespace zul
