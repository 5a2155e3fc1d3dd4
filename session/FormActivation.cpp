#include "session/FormActivation.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>
#include <QWindow>
#include <utility>

namespace zul {

namespace {

bool isOfTheForm(const QWindow* window)
{
    return window->type() == Qt::Popup || window->type() == Qt::ToolTip;
}

} // namespace

FormActivation::FormActivation(QWidget* form, std::function<void()> activate)
    : QObject(form)
    , m_form(form)
    , m_activate(std::move(activate))
{
    form->installEventFilter(this);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow* window) {
        if (window != nullptr && window != m_form->windowHandle() && !isOfTheForm(window)) {
            m_wasElsewhere = true;
        }
    });
}

bool FormActivation::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_form && event->type() == QEvent::Hide) {
        m_wasElsewhere = true;
    }
    if (watched == m_form && event->type() == QEvent::WindowActivate &&
        std::exchange(m_wasElsewhere, false)) {
        m_activate();
    }
    return false;
}

} // namespace zul
