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

/// Applies palette, font and style sheet to a form and everything in it, now and later. The look is white whatever
/// the system's palette is, because the windows paint parts of themselves white by rule. May be applied again at any
/// time (other touch mode). Buttons with the dynamic property "primary" = true are filled with the accent.
/// Backgrounds set with setBackground stay. The form's dynamic property "touch" tells its mode.
void applyCommonLook(QWidget* form, bool touch);

/// Marks a button as the main action of its page.
void setPrimary(QWidget* button, bool primary = true);

/// The palette of the look: every role of every group is set.
[[nodiscard]] const QPalette& commonPalette();

/// A size of the look, in points, as large as the system's font asks for: the system's font is one of 9 points, or
/// smaller, on most desktops, and then the look has its own sizes; a larger one enlarges them in proportion.
[[nodiscard]] qreal systemSized(qreal points);

/// Tahoma 8 pt, or the installed face that comes nearest to it; larger where the system's font is.
[[nodiscard]] QFont commonFont();

/// Courier New 10 pt, or a face of the same metrics; larger where the system's font is.
[[nodiscard]] QFont fixedFont();

/// The calm blue, and the grey of frames.
[[nodiscard]] QColor accentColor();
[[nodiscard]] QColor frameColor();
/// The border of a check box: three times as dark as what it stands on.
[[nodiscard]] QColor boxColor();

} // namespace zul
