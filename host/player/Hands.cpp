#include "host/player/Hands.h"

#include "host/player/CommandError.h"

#include <QApplication>
#include <QCheckBox>
#include <QPointer>
#include <QRadioButton>
#include <QScrollArea>
#include <QStyle>
#include <QStyleHints>
#include <QStyleOptionButton>
#include <QTextBoundaryFinder>
#include <QWheelEvent>
#include <QWindow>

#include <cstdlib>

/// The doors by which Qt's test library delivers input past the platform plug-in.
QT_BEGIN_NAMESPACE
Q_GUI_EXPORT void qt_handleMouseEvent(QWindow* window, const QPointF& local, const QPointF& global,
                                      Qt::MouseButtons state, Qt::MouseButton button, QEvent::Type type,
                                      Qt::KeyboardModifiers mods, int timestamp);
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow* window, QEvent::Type type, int key, Qt::KeyboardModifiers mods,
                                    const QString& text, bool autorep, ushort count);
QT_END_NAMESPACE

namespace zul::host::hands {

using namespace Qt::StringLiterals;

namespace {
/// The clock of the mouse, in milliseconds. It is not the wall's: two clicks in a row are never a double click,
/// however fast they are played, and a double click always is one.
int& mouseClock()
{
    static int clock = 0;
    return clock;
}

void pause()
{
    mouseClock() += 2 * QGuiApplication::styleHints()->mouseDoubleClickInterval();
}

/// A point of a window; the window may be gone when it is used.
struct Place
{
    QPointer<QWindow> window;
    QPoint point;
};

Place place(QWidget* widget, const QPoint& point)
{
    QWidget* top = widget->window();
    return {top->windowHandle(), widget->mapTo(top, point)};
}

void send(const Place& at, QEvent::Type type, Qt::MouseButtons held, Qt::MouseButton button,
          Qt::KeyboardModifiers modifiers)
{
    if (!at.window) {
        return;
    }
    qt_handleMouseEvent(at.window, at.point, at.window->mapToGlobal(at.point), held, button, type, modifiers,
                        ++mouseClock());
}

void press(const Place& at, Qt::KeyboardModifiers modifiers = {})
{
    send(at, QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton, modifiers);
}

void release(const Place& at, Qt::KeyboardModifiers modifiers = {})
{
    send(at, QEvent::MouseButtonRelease, Qt::NoButton, Qt::LeftButton, modifiers);
}

void move(const Place& at, Qt::MouseButtons held, Qt::KeyboardModifiers modifiers = {})
{
    send(at, QEvent::MouseMove, held, Qt::NoButton, modifiers);
}

QScrollArea* scrollAreaAround(const QWidget* widget)
{
    for (QWidget* at = widget->parentWidget(); at != nullptr; at = at->parentWidget()) {
        if (auto* area = qobject_cast<QScrollArea*>(at)) {
            return area;
        }
    }
    return nullptr;
}

void scrollTo(QWidget* widget, const QPoint& point)
{
    for (QScrollArea* area = scrollAreaAround(widget); area != nullptr; area = scrollAreaAround(area)) {
        if (area->widget() == nullptr || !area->widget()->isAncestorOf(widget)) {
            continue;
        }
        const QPoint inside = widget->mapTo(area->widget(), point);
        area->ensureVisible(inside.x(), inside.y());
    }
}

/// The key that makes a character; only Latin letters and digits have one of their own here.
int keyOf(char32_t c)
{
    if ((c >= U'a' && c <= U'z')) {
        return static_cast<int>(c) - 'a' + 'A';
    }
    return c >= 0x20 && c <= 0xff ? static_cast<int>(c) : 0;
}

void keyTo(QWindow* window, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    qt_handleKeyEvent(window, type, key, modifiers, text, false, 1);
}
} // namespace

void reach(QWidget* widget, const QPoint& point)
{
    scrollTo(widget, point);
    QWidget* top = widget->window();
    const QPoint inside = widget->mapTo(top, point);
    QWidget* there = top->childAt(inside);
    if (there == nullptr && top->rect().contains(inside)) {
        there = top;
    }
    const bool letsThrough = widget->testAttribute(Qt::WA_TransparentForMouseEvents);
    if (there == nullptr ||
        (there != widget && !widget->isAncestorOf(there) && !(letsThrough && there->isAncestorOf(widget)))) {
        const QString by = there == nullptr || there->objectName().isEmpty()
                               ? QString()
                               : u" (there is \"%1\")"_s.arg(there->objectName());
        throw CommandError{u"\"%1\" cannot be reached by the mouse%2"_s.arg(widget->objectName(), by)};
    }
}

void click(QWidget* widget, const QPoint& point, Qt::KeyboardModifiers modifiers)
{
    const Place at = place(widget, point);
    pause();
    move(at, Qt::NoButton, modifiers);
    press(at, modifiers);
    release(at, modifiers);
}

void doubleClick(QWidget* widget, const QPoint& point)
{
    const Place at = place(widget, point);
    click(widget, point);
    press(at);
    release(at);
    pause();
}

void rightClick(QWidget* widget, const QPoint& point)
{
    const Place at = place(widget, point);
    pause();
    move(at, Qt::NoButton);
    send(at, QEvent::MouseButtonPress, Qt::RightButton, Qt::RightButton, {});
    send(at, QEvent::MouseButtonRelease, Qt::NoButton, Qt::RightButton, {});
}

void wheel(QWidget* widget, const QPoint& point, int steps)
{
    const Place at = place(widget, point);
    pause();
    move(at, Qt::NoButton);
    constexpr int eighthsOfAStep = 120;
    for (int i = 0; i < std::abs(steps) && at.window; ++i) {
        QWheelEvent event(at.point, at.window->mapToGlobal(at.point), QPoint(),
                          QPoint(0, steps > 0 ? eighthsOfAStep : -eighthsOfAStep), Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(at.window, &event);
    }
}

void drag(QWidget* from, const QPoint& start, QWidget* to, const QPoint& end)
{
    const Place first = place(from, start);
    const Place last = place(to, end);
    pause();
    move(first, Qt::NoButton);
    press(first);
    constexpr int steps = 8;
    for (int i = 1; i <= steps; ++i) {
        move({first.window, first.point + (last.point - first.point) * i / steps}, Qt::LeftButton);
    }
    release(last);
}

void key(QWidget* window, int key, Qt::KeyboardModifiers modifiers, const QString& text)
{
    const QPointer<QWindow> to = window->windowHandle();
    if (to) {
        keyTo(to, QEvent::KeyPress, key, modifiers, text);
    }
    if (to) {
        keyTo(to, QEvent::KeyRelease, key, modifiers, text);
    }
}

void type(QWidget* window, const QString& text)
{
    const QPointer<QWidget> to = window;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype from = 0;
    while (to && to->isVisible() && from < text.size()) {
        finder.setPosition(from);
        qsizetype end = finder.toNextBoundary();
        if (end < 0) {
            end = text.size();
        }
        const QString one = text.mid(from, end - from);
        from = end;
        if (one == u"\n"_s || one == u"\r"_s || one == u"\r\n"_s) {
            key(to, Qt::Key_Return, {}, u"\r"_s);
        } else if (one == u"\t"_s) {
            key(to, Qt::Key_Tab, {}, one);
        } else {
            const bool single = one.size() == 1;
            const int code = single ? keyOf(one[0].unicode()) : 0;
            const bool shift = single && one[0].isUpper();
            key(to, code, shift ? Qt::ShiftModifier : Qt::NoModifier, one);
        }
    }
}

QPoint clickPoint(const QWidget* widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    const bool check = qobject_cast<const QCheckBox*>(widget) != nullptr;
    const bool radio = qobject_cast<const QRadioButton*>(widget) != nullptr;
    if (button != nullptr && (check || radio)) {
        QStyleOptionButton option;
        option.initFrom(button);
        option.text = button->text();
        return widget->style()
            ->subElementRect(check ? QStyle::SE_CheckBoxIndicator : QStyle::SE_RadioButtonIndicator, &option,
                             widget)
            .center();
    }
    return widget->rect().center();
}
} // namespace zul::host::hands
