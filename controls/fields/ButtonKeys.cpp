#include "controls/fields/ButtonKeys.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QToolButton>

namespace zul {

namespace {

bool isEnter(const QKeyEvent& key)
{
    return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) &&
           (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

/// Check boxes and option buttons are ticked, not pressed.
QList<QAbstractButton*> pressedButtons(const QWidget& form)
{
    QList<QAbstractButton*> pressed;
    const auto buttons = form.findChildren<QAbstractButton*>();
    for (QAbstractButton* button : buttons) {
        if (qobject_cast<QPushButton*>(button) != nullptr || qobject_cast<QToolButton*>(button) != nullptr) {
            pressed.append(button);
        }
    }
    return pressed;
}

} // namespace

ButtonKeys::ButtonKeys(QWidget* form)
    : ButtonKeys(form, pressedButtons(*form))
{}

ButtonKeys::ButtonKeys(QWidget* form, const QList<QAbstractButton*>& buttons)
    : QObject(form)
{
    for (QAbstractButton* button : buttons) {
        button->installEventFilter(this);
    }
}

bool ButtonKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    const auto* key = static_cast<QKeyEvent*>(event);
    if (!isEnter(*key)) {
        return false;
    }
    // A key that is held down presses once.
    if (!key->isAutoRepeat()) {
        static_cast<QAbstractButton*>(watched)->click();
    }
    return true;
}

} // namespace zul
