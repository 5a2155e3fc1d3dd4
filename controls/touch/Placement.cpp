#include "controls/touch/Placement.h"

namespace zul {

namespace {

constexpr int gap = 4;

int clamped(int wanted, int size, int from, int to)
{
    return qMax(from, qMin(wanted, to - size));
}

} // namespace

QRect placeBeside(const QRect& field, QSize panel, const QRect& window)
{
    panel = panel.boundedTo(window.size());
    const int right = window.x() + window.width();
    const int bottom = window.y() + window.height();
    const int x = clamped(field.x(), panel.width(), window.x(), right);
    const int y = clamped(field.y(), panel.height(), window.y(), bottom);
    const int below = field.y() + field.height() + gap;
    const int above = field.y() - gap - panel.height();
    const int toRight = field.x() + field.width() + gap;
    const int toLeft = field.x() - gap - panel.width();

    if (below + panel.height() <= bottom) {
        return {QPoint(x, below), panel};
    }
    if (above >= window.y()) {
        return {QPoint(x, above), panel};
    }
    if (toRight + panel.width() <= right) {
        return {QPoint(toRight, y), panel};
    }
    if (toLeft >= window.x()) {
        return {QPoint(toLeft, y), panel};
    }
    const bool fieldAbove = field.center().y() <= window.center().y();
    return {QPoint(x, fieldAbove ? bottom - panel.height() : window.y()), panel};
}

QRect placeAtBottom(const QRect& field, QSize panel, const QRect& window)
{
    panel = panel.boundedTo(window.size());
    const int x = window.x() + (window.width() - panel.width()) / 2;
    const QRect low(QPoint(x, window.y() + window.height() - panel.height()), panel);
    const QRect high(QPoint(x, window.y()), panel);
    return low.intersects(field) && !high.intersects(field) ? high : low;
}

} // namespace zul
