// Where a panel opens inside its window without covering the field it belongs to.
#pragma once

#include <QRect>
#include <QSize>

namespace zul {

/// All in the window's coordinates. The panel is put beside the field: below it, above it, to its right or to
/// its left, the first of these where it fits; where none fits, at the window's edge farthest from the field.
/// It is made no larger than the window.
[[nodiscard]] QRect placeBeside(const QRect& field, QSize panel, const QRect& window);

/// At the window's lower edge, centred; at the upper edge when it would cover the field there.
[[nodiscard]] QRect placeAtBottom(const QRect& field, QSize panel, const QRect& window);

} // namespace zul
