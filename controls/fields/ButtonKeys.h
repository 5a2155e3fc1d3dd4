// Enter as the key of a focused button.
#pragma once

#include <QList>
#include <QObject>

QT_FORWARD_DECLARE_CLASS(QAbstractButton)
QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

/// Enter on a focused push button or tool button presses it, as the space bar does. There is still no default button: Enter
/// elsewhere in the form presses none. A part of a form that makes its buttons itself may have one of its own.
class ButtonKeys : public QObject
{
public:
    /// For every one that the form has now. Owned by the form.
    explicit ButtonKeys(QWidget* form);
    /// For some of them.
    ButtonKeys(QWidget* form, const QList<QAbstractButton*>& buttons);

    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace zul
