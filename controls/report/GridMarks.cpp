#include "controls/report/GridMarks.h"

#include <QPainter>

namespace zul {

void paintSortMark(QPainter& painter, const QPointF& middle, const QSizeF& size, bool descending,
                   const QColor& color)
{
    const double half = size.width() / 2;
    const double tip = descending ? size.height() / 2 : -size.height() / 2;
    const QPolygonF arrow{middle + QPointF(-half, -tip), middle + QPointF(half, -tip),
                          middle + QPointF(0, tip)};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(arrow);
    painter.restore();
}

void paintExpander(QPainter& painter, const QPointF& middle, bool closed, const QColor& color)
{
    const QPolygonF arrow =
        closed ? QPolygonF{middle + QPointF(-2, -4), middle + QPointF(2.5, 0), middle + QPointF(-2, 4)}
               : QPolygonF{middle + QPointF(-4, -2), middle + QPointF(0, 2.5), middle + QPointF(4, -2)};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.6));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(arrow);
    painter.restore();
}

void paintCross(QPainter& painter, const QPointF& middle, const QColor& color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.4));
    painter.drawLine(middle + QPointF(-3, -3), middle + QPointF(3, 3));
    painter.drawLine(middle + QPointF(-3, 3), middle + QPointF(3, -3));
    painter.restore();
}

void paintCheckBox(QPainter& painter, const QRect& box, Qt::CheckState tick, const QColor& frame,
                   const QColor& base)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF shape = QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(frame);
    painter.setBrush(tick != Qt::Unchecked ? frame : base);
    painter.drawRoundedRect(shape, 2, 2);
    if (tick == Qt::PartiallyChecked) {
        const double side = shape.width();
        painter.setPen(QPen(Qt::white, side / 7.5));
        painter.drawLine(QPointF(shape.left() + side * 0.25, shape.center().y()),
                         QPointF(shape.right() - side * 0.25, shape.center().y()));
    }
    if (tick == Qt::Checked) {
        const double side = shape.width();
        const QPointF corner = shape.topLeft();
        const QPolygonF mark{corner + QPointF(side * 0.22, side * 0.52),
                             corner + QPointF(side * 0.42, side * 0.72),
                             corner + QPointF(side * 0.78, side * 0.28)};
        painter.setPen(QPen(Qt::white, side / 7.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(mark);
    }
    painter.restore();
}

} // namespace zul
