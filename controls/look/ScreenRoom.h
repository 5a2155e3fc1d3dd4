// How large a window may be.
#pragma once

#include <QSize>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

/// What a window may measure at most, without its frame: the free area of its screen (what task bars leave), less
/// its frame. Before the window manager has framed it the frame is estimated.
[[nodiscard]] QSize roomFor(const QWidget* window);

} // namespace zul
