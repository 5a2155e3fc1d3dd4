// The shades of the grid, mixed from the palette so that they pale with it where the grid is disabled. Accent and
// frames have the colours of the common look.
#pragma once

#include "controls/look/CommonLook.h"

#include <QColor>
#include <QPalette>

#include <cmath>

namespace zul::gridcolors {

inline QColor blend(const QColor& under, const QColor& over, double share)
{
    const auto part = [share](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * share)); };
    return {part(under.red(), over.red()), part(under.green(), over.green()),
            part(under.blue(), over.blue())};
}

inline QColor shade(const QPalette& palette, double share)
{
    return blend(palette.color(QPalette::Base), palette.color(QPalette::Text), share);
}

inline QColor rowLine(const QPalette& palette)
{
    return shade(palette, 0.06);
}

inline QColor header(const QPalette& palette)
{
    return shade(palette, 0.03);
}

inline QColor hovered(const QPalette& palette)
{
    return shade(palette, 0.07);
}

inline QColor groupRow(const QPalette& palette)
{
    return shade(palette, 0.04);
}

/// Text that is not the data itself: hints, counts. Still of readable contrast.
inline QColor quietText(const QPalette& palette)
{
    return shade(palette, 0.65);
}

} // namespace zul::gridcolors
