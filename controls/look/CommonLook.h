// The look that all windows share: flat, white, quiet, one accent colour.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

// Sizes in pixels at 96 dpi.
namespace look {
inline constexpr int grid = 8;
inline constexpr int groupGap = 4;
inline constexpr int buttonHeight = 28;
inline constexpr int touchButtonHeight = 44;
} // namespace look

// Applies palette, font and style sheet to a form and everything in it, now and later. Follows the
// application's palette: where that is dark, the look is dark. May be applied again at any time (other touch
// mode, other palette). Buttons with the dynamic property "primary" = true are filled with the accent.
// Backgrounds set with setBackground stay. The form's dynamic property "touch" tells its mode.
void applyCommonLook(QWidget* form, bool touch);

// Marks a button as the main action of its page.
void setPrimary(QWidget* button, bool primary = true);

[[nodiscard]] bool isDark(const QPalette& palette);

// The palette of the look, dark or light as the application's is.
[[nodiscard]] QPalette commonPalette();

// Tahoma 8 pt, or the installed face that comes nearest to it.
[[nodiscard]] QFont commonFont();

// Courier New 10 pt, or a face of the same metrics.
[[nodiscard]] QFont fixedFont();

// The calm blue, and the grey of frames, in the palette's brightness.
[[nodiscard]] QColor accentColor();
[[nodiscard]] QColor frameColor();

} // namespace zul
