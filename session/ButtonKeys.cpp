#include "session/ButtonKeys.h"

#include <QKeyEvent>
#include <QPushButton>

namespace zul {

namespace {

bool isEnter(const QKeyEvent& key)
{
    return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) &&
           (key.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace

ButtonKeys::ButtonKeys(QWidget* form)
    : ButtonKeys(form, form->findChildren<QPushButton*>())
{}

ButtonKeys::ButtonKeys(QWidget* form, const QList<QPushButton*>& buttons)
    : QObject(form)
{
    for (QPushButton* button : buttons) {
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
        static_cast<QPushButton*>(watched)->click();
    }
    return true;
}

} // namespace zul
