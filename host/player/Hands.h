// A person's hands: mouse and keyboard.
#pragma once

#include <QPoint>
#include <QString>
#include <Qt>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul::host {
// Everything goes to the window as the window system would deliver it, so that grabs, popups, focus, hover and
// shortcuts act as they do for a person. Each function returns when the handlers have returned. Points are in the
// widget's own coordinates; a widget may close or die under the hands.
namespace hands {
/// Brings a point of the widget into view (scroll areas around it scroll) and checks that the widget, and no other
/// one, is there. Throws CommandError when it cannot be reached.
void reach(QWidget* widget, const QPoint& point);

void click(QWidget* widget, const QPoint& point, Qt::KeyboardModifiers modifiers = {});
void doubleClick(QWidget* widget, const QPoint& point);
/// The second button, which opens a menu.
void rightClick(QWidget* widget, const QPoint& point);
/// The wheel, in the usual steps of 15 degrees; above 0 away from the person.
void wheel(QWidget* widget, const QPoint& point, int steps);
/// Presses at one point, moves in small steps to the other, and lets go. The points are in the coordinates of
/// their widgets, which share a window.
void drag(QWidget* from, const QPoint& start, QWidget* to, const QPoint& end);

/// One key, with the text that it makes on a keyboard.
void key(QWidget* window, int key, Qt::KeyboardModifiers modifiers, const QString& text);
/// The keys for a text; a line break is Return, a tab Tab. Stops when the window is no longer there.
void type(QWidget* window, const QString& text);

/// Where a person clicks a control: on a check mark, else in the middle.
QPoint clickPoint(const QWidget* widget);
} // namespace hands
} // namespace zul::host
