#include "controls/touch/Placement.h"

#include <algorithm>

namespace zul {

namespace {

constexpr int gap = 4;

int clamped(int wanted, int size, int from, int to)
{
    return qMax(from, qMin(wanted, to - size));
}

bool coversAny(const QRect& place, const QList<QRect>& taken)
{
    return std::any_of(taken.begin(), taken.end(), [&](const QRect& one) { return place.intersects(one); });
}

/// How far a place is from the field, edge to edge, in both directions together.
int distance(const QRect& place, const QRect& field)
{
    const int across = qMax(0, qMax(field.left() - place.right(), place.left() - field.right()));
    const int down = qMax(0, qMax(field.top() - place.bottom(), place.top() - field.bottom()));
    return across + down;
}

/// The panel at the bottom or the top with no more height than the field leaves it; as it is where that would be too little
/// for its keys.
QRect lowered(const QRect& field, const QRect& panel, const QRect& room)
{
    constexpr int leastPercent = 75;
    const int bottom = room.y() + room.height();
    const int below = bottom - field.y() - field.height() - gap;
    const int above = field.y() - gap - room.y();
    const int height = qMax(below, above);
    if (height < panel.height() * leastPercent / 100) {
        return panel;
    }
    return {panel.x(), below >= above ? bottom - height : room.y(), panel.width(), height};
}

} // namespace

std::optional<QRect> freePlace(const QRect& field, QSize panel, const QRect& room, const QList<QRect>& taken)
{
    const int right = room.x() + room.width();
    const int bottom = room.y() + room.height();
    const int x = clamped(field.x(), panel.width(), room.x(), right);
    const int y = clamped(field.y(), panel.height(), room.y(), bottom);
    const int below = field.y() + field.height() + gap;
    const int above = field.y() - gap - panel.height();
    const int toRight = field.x() + field.width() + gap;
    const int toLeft = field.x() - gap - panel.width();
    const auto isFree = [&](const QRect& place) {
        return room.contains(place) && !place.intersects(field) && !coversAny(place, taken);
    };
    for (const QPoint& corner : {QPoint(x, below), QPoint(x, above), QPoint(toRight, y), QPoint(toLeft, y)}) {
        if (isFree({corner, panel})) {
            return QRect(corner, panel);
        }
    }
    // A place that is free can be slid up and left until it meets an edge or something taken: so these are all that
    // have to be tried, and those on the other sides for the ones that are nearer.
    QList<int> columns{x, right - panel.width(), room.x(), toRight, toLeft};
    QList<int> rows{y, bottom - panel.height(), room.y(), below, above};
    for (const QRect& one : taken) {
        columns << one.x() + one.width() + gap << one.x() - gap - panel.width();
        rows << one.y() + one.height() + gap << one.y() - gap - panel.height();
    }
    std::optional<QRect> nearest;
    for (const int row : rows) {
        for (const int column : columns) {
            const QRect place(QPoint(column, row), panel);
            if (isFree(place) && (!nearest || distance(place, field) < distance(*nearest, field))) {
                nearest = place;
            }
        }
    }
    return nearest;
}

QRect placeBeside(const QRect& field, QSize panel, const QRect& room, const QList<QRect>& taken)
{
    panel = panel.boundedTo(room.size());
    if (const std::optional<QRect> place = freePlace(field, panel, room, taken)) {
        return *place;
    }
    if (const std::optional<QRect> place = freePlace(field, panel, room)) {
        return *place;
    }
    const int x = clamped(field.x(), panel.width(), room.x(), room.x() + room.width());
    const bool fieldAbove = field.center().y() <= room.center().y();
    return {QPoint(x, fieldAbove ? room.y() + room.height() - panel.height() : room.y()), panel};
}

QRect placeAtBottom(const QRect& field, QSize panel, const QRect& room, const QList<QRect>& taken)
{
    panel = panel.boundedTo(room.size());
    const int x = room.x() + (room.width() - panel.width()) / 2;
    const QRect low(QPoint(x, room.y() + room.height() - panel.height()), panel);
    const QRect high(QPoint(x, room.y()), panel);
    const auto isFree = [&](const QRect& place) {
        return !place.intersects(field) && !coversAny(place, taken);
    };
    if (isFree(low) || isFree(high)) {
        return isFree(low) ? low : high;
    }
    if (const std::optional<QRect> place = freePlace(field, panel, room, taken)) {
        return *place;
    }
    if (!low.intersects(field)) {
        return low;
    }
    return high.intersects(field) ? lowered(field, low, room) : high;
}

} // namespace zul
