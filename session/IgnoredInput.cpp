#include "session/IgnoredInput.h"

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QWindow>

namespace zul {

namespace {

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
        return true;
    default:
        return false;
    }
}

/// The widget, or the shortcut of a widget, stands in the form's window.
bool standsIn(const QObject* object, const QWidget* form)
{
    for (const QObject* at = object; at != nullptr; at = at->parent()) {
        if (const auto* widget = qobject_cast<const QWidget*>(at)) {
            return widget->window() == form;
        }
    }
    return false;
}

} // namespace

IgnoredInput::IgnoredInput(QWidget* form)
    : m_form(form)
{
    qApp->installEventFilter(this);
}

bool IgnoredInput::isEscapePressed()
{
    constexpr qint64 LookEveryMilliseconds = 50;
    if (!m_escape && (!m_sinceLooked.isValid() || m_sinceLooked.elapsed() >= LookEveryMilliseconds)) {
        m_looks = true;
        QCoreApplication::processEvents();
        m_looks = false;
        m_sinceLooked.start();
    }
    return m_escape;
}

IgnoredInput::~IgnoredInput()
{
    if (m_close && m_form) {
        QMetaObject::invokeMethod(
            m_form, [form = m_form.data()] { form->close(); }, Qt::QueuedConnection);
    }
    if (!m_form || !m_form->isVisible()) {
        return;
    }
    // What waits is taken from the queue now. The form is not drawn meanwhile: it may be disabled, and would only
    // flash.
    constexpr int AtMostMilliseconds = 100;
    m_form->setUpdatesEnabled(false);
    QCoreApplication::processEvents(QEventLoop::AllEvents, AtMostMilliseconds);
    if (m_form) {
        m_form->setUpdatesEnabled(true);
        // A request to draw that came meanwhile was answered by nothing, and counts as still on its way: no other is
        // made while something waits to be drawn.
        QMetaObject::invokeMethod(
            m_form,
            [form = m_form.data()] {
                QEvent request(QEvent::UpdateRequest);
                QCoreApplication::sendEvent(form, &request);
            },
            Qt::QueuedConnection);
    }
}

bool IgnoredInput::eventFilter(QObject* watched, QEvent* event)
{
    if (m_looks && event->type() == QEvent::Close && watched == m_form) {
        m_close = true;
        event->ignore();
        return true;
    }
    if (!m_form || !isInput(event->type())) {
        return false;
    }
    const bool isKey = event->type() == QEvent::KeyPress;
    if (isKey && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape &&
        (watched == m_form->windowHandle() || standsIn(watched, m_form))) {
        m_escape = true;
    }
    return watched == m_form->windowHandle() || standsIn(watched, m_form);
}

} // namespace zul
