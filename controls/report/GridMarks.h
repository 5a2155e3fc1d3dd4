// The small drawings of the report grid.
#pragma once

#include <QColor>
#include <QRect>

QT_FORWARD_DECLARE_CLASS(QPainter)

namespace zul {

/// The arrow of an order: it points up when ascending. `size` is its width and height.
void paintSortMark(QPainter& painter, const QPointF& middle, const QSizeF& size, bool descending,
                   const QColor& color);

/// The arrow before a group: to the right when closed, down when open.
void paintExpander(QPainter& painter, const QPointF& middle, bool closed, const QColor& color);

void paintCross(QPainter& painter, const QPointF& middle, const QColor& color);

/// A check box; with a tick, or the dash of some, it is filled with the frame's colour.
void paintCheckBox(QPainter& painter, const QRect& box, Qt::CheckState tick, const QColor& frame,
                   const QColor& base);

} // namespace zul
