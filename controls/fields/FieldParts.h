// What the fields that are made of a text box and buttons have in common.
#pragma once

#include <QtGlobal>

QT_FORWARD_DECLARE_CLASS(QLineEdit)
QT_FORWARD_DECLARE_CLASS(QToolButton)
QT_FORWARD_DECLARE_CLASS(QWidget)
QT_FORWARD_DECLARE_CLASS(QString)

namespace zul {

enum class IconId;

/// A small button at a field's right end. It never takes the keyboard focus: the field's keys do its work.
[[nodiscard]] QToolButton* makeFieldButton(QWidget* field, IconId icon, const QString& objectName,
                                           const QString& toolTip);

/// Lets the text box be announced under the name of its field: the field's accessible name, else the text of
/// the label whose buddy it is.
void lendAccessibleName(const QWidget* field, QLineEdit* textBox);

} // namespace zul
