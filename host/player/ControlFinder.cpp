#include "host/player/ControlFinder.h"

#include "host/player/CommandError.h"

#include <QStackedWidget>
#include <QTabWidget>
#include <QWidget>

namespace zul::host {

using namespace Qt::StringLiterals;

QWidget* findControl(QWidget* window, const QString& name)
{
    if (window == nullptr) {
        throw CommandError{u"no window is open"_s};
    }
    if (window->objectName() == name) {
        return window;
    }
    QWidget* found = nullptr;
    for (QWidget* candidate : window->findChildren<QWidget*>(name)) {
        // Dialogs are children of the window that owns them; their controls are not its controls.
        if (candidate->window() != window) {
            continue;
        }
        if (candidate->isVisible()) {
            return candidate;
        }
        if (found == nullptr) {
            found = candidate;
        }
    }
    if (found == nullptr) {
        throw CommandError{u"no control \"%1\" in %2"_s.arg(
            name, window->objectName().isEmpty() ? u"the topmost window"_s : window->objectName())};
    }
    return found;
}

QWidget* findUsableControl(QWidget* window, const QString& name)
{
    QWidget* control = findControl(window, name);
    if (!control->isVisible()) {
        throw CommandError{u"\"%1\" is hidden"_s.arg(name)};
    }
    if (!control->isEnabled()) {
        throw CommandError{u"\"%1\" is disabled"_s.arg(name)};
    }
    return control;
}

QWidget* keyboardPart(QWidget* control)
{
    while (control->focusProxy() != nullptr) {
        control = control->focusProxy();
    }
    return control;
}

QObject* probeOf(const QWidget* control, const char* member)
{
    auto* probe = control->property("probe").value<QObject*>();
    return probe != nullptr && probe->metaObject()->indexOfMethod(member) >= 0 ? probe : nullptr;
}

bool isShown(const QWidget* control)
{
    for (const QWidget* at = control; !at->isWindow(); at = at->parentWidget()) {
        const auto* pages = qobject_cast<const QStackedWidget*>(at->parentWidget());
        if (pages == nullptr) {
            if (at->isHidden()) {
                return false;
            }
            continue;
        }
        const auto* tabs = qobject_cast<const QTabWidget*>(pages->parentWidget());
        if (tabs != nullptr && !tabs->isTabVisible(tabs->indexOf(const_cast<QWidget*>(at)))) {
            return false;
        }
    }
    return control->window()->isVisible();
}
} // namespace zul::host
