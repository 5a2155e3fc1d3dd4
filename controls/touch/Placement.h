// Where a panel opens without covering the field it belongs to, nor anything else that is open.
#pragma once

#include <QList>
#include <QRect>
#include <QSize>

#include <optional>

namespace zul {

/// All in one coordinate system. `room` is what the panel must stay inside, `taken` what it must not cover beside the
/// field.

/// The free place that is nearest to the field: below it, above it, to its right or to its left, the first of these
/// where it fits; else the nearest one anywhere. Nothing when there is none.
[[nodiscard]] std::optional<QRect> freePlace(const QRect& field, QSize panel, const QRect& room,
                                             const QList<QRect>& taken = {});

/// The same. Where no place is free, the panel still keeps off the field if it can, or else stands at the edge
/// farthest from it. It is made no larger than the room.
[[nodiscard]] QRect placeBeside(const QRect& field, QSize panel, const QRect& room,
                                const QList<QRect>& taken = {});

/// At the lower edge, centred; at the upper edge when it would cover something at the lower, or between them when it would
/// at both. Where no place is free, it keeps off the field if it can, also by being up to a quarter lower. It is made no larger
/// than the room.
[[nodiscard]] QRect placeAtBottom(const QRect& field, QSize panel, const QRect& room,
                                  const QList<QRect>& taken = {});

} // namespace zul
