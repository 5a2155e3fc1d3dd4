// The background colour of a single control.
#pragma once

#include <QColor>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

/// Paints the background of one control (not of its children) and gives its text a colour that can be read on
/// it. A control made of parts (DateField, SelectorField) is painted in its text box.
/// The colour is also kept in the control's dynamic property "background" (a QColor), which is what a program
/// that does not link this code reads.
void setBackground(QWidget* widget, const QColor& color);

/// The colour behind the control's text: what setBackground was given, else what the palette paints, looked
/// for from the control outwards.
[[nodiscard]] QColor effectiveBackground(const QWidget* widget);

/// Near black or near white, whichever can be read on the background.
[[nodiscard]] QColor readableOn(const QColor& background);

} // namespace zul
