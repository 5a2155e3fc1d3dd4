// What the fields that are made of a text box and buttons have in common.
#pragma once

#include <QtGlobal>

QT_FORWARD_DECLARE_CLASS(QLineEdit)
QT_FORWARD_DECLARE_CLASS(QToolButton)
QT_FORWARD_DECLARE_CLASS(QWidget)
QT_FORWARD_DECLARE_CLASS(QString)

namespace zul {

enum class IconId;

/// A small button at a field's right end. It never takes the keyboard focus: the field's keys, which its tooltip tells,
/// do its work.
[[nodiscard]] QToolButton* makeFieldButton(QWidget* field, IconId icon, const QString& objectName,
                                           const QString& name, const QString& keys);

/// Lets the text box be announced under the name of its field: the field's accessible name, else the text of
/// the label whose buddy it is. The buttons' names are followed by it. `keys`, what the field's keys do, is the text
/// box's description, under the field's tooltip if it has one.
void lendAccessibleName(const QWidget* field, QLineEdit* textBox, const QString& keys);

} // namespace zul
