// Dragging a column's header.
#pragma once

#include "controls/report/ReportGroupBox.h"

#include <QPointer>

QT_FORWARD_DECLARE_CLASS(QHeaderView)

namespace zul {

/// The drag of one column's header to another column or into the group box: the caption that follows the pointer, and
/// where the drag would end. Points are in the coordinates of the header's viewport.
class HeaderDrag
{
public:
    /// The header owns the drag.
    explicit HeaderDrag(QHeaderView& header)
        : m_header(header)
    {}

    void setGroupBox(ReportGroupBox* box) { m_groupBox = box; }

    void begin(int column, const QString& caption, const QPoint& position);
    void follow(const QPoint& position);
    /// Takes everything away that the drag shows. Nothing when there is none.
    void end();

    bool overGroupBox(const QPoint& position) const;
    /// The column on which a drop at a position lands; behind the last one it is the last. -1 off the header.
    int dropColumnAt(const QPoint& position) const;
    /// The column at which the dragged one would stand now; -1 when there is none.
    int markedColumn() const { return m_marked; }

private:
    QHeaderView& m_header;
    QPointer<ReportGroupBox> m_groupBox;
    QPointer<QWidget> m_ghost; // the caption that follows the pointer
    int m_column = -1;
    int m_marked = -1;
};

} // namespace zul
