// Input that a person gives while the program does not listen: it waits in the queue of the window.
#pragma once

#include <QMetaObject>
#include <QTest>
#include <QWidget>
#include <QWindow>

namespace zul::test {

/// A click in the middle of a widget, as it stands now.
inline void queueClick(QWidget* widget)
{
    QWindow* window = widget->window()->windowHandle();
    const QPoint place = widget->mapTo(widget->window(), widget->rect().center());
    QMetaObject::invokeMethod(
        window, [window, place] { QTest::mouseClick(window, Qt::LeftButton, {}, place); },
        Qt::QueuedConnection);
}

/// A key at the window; whoever has the focus gets it.
inline void queueKey(QWidget* form, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
{
    QWindow* window = form->windowHandle();
    QMetaObject::invokeMethod(
        window, [window, key, modifiers] { QTest::keyClick(window, key, modifiers); }, Qt::QueuedConnection);
}

} // namespace zul::test
