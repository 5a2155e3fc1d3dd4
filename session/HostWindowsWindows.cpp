#include "session/HostWindows.h"

#include <QGuiApplication>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <vector>

#include <windows.h>

namespace zul {

namespace {

std::vector<HWND> ownWindows()
{
    std::vector<HWND> result;
    for (const QWindow* window : QGuiApplication::allWindows()) {
        if (window->handle() != nullptr && window->type() != Qt::ForeignWindow) {
            result.push_back(reinterpret_cast<HWND>(window->winId()));
        }
    }
    return result;
}

struct Search
{
    std::vector<HWND> own;
    std::vector<HWND> found;
};

BOOL CALLBACK noteForeign(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<Search*>(parameter);
    const bool foreign = std::find(search.own.begin(), search.own.end(), window) == search.own.end();
    if (foreign && IsWindowVisible(window) && IsWindowEnabled(window)) {
        search.found.push_back(window);
    }
    return TRUE;
}

} // namespace

struct HostWindowsHeld::State
{
    QPointer<QWindow> form;
    std::unique_ptr<QWindow>
        owner; // the active window as Qt's transient parent: Qt sets the owner when it shows a window
    HWND active = nullptr; // the host's, null where it has none
    HWND focus = nullptr;
    std::vector<HWND> disabled;
};

HostWindowsHeld::HostWindowsHeld(QWidget& form)
    : m_state(std::make_unique<State>())
{
    form.winId(); // makes the window
    m_state->form = form.windowHandle();
    Search search{ownWindows(), {}};
    EnumThreadWindows(GetCurrentThreadId(), noteForeign, reinterpret_cast<LPARAM>(&search));
    const HWND active = GetActiveWindow();
    const bool isHosts = std::find(search.found.begin(), search.found.end(), active) != search.found.end();
    m_state->active = isHosts ? active : search.found.empty() ? nullptr : search.found.front();
    m_state->focus = isHosts ? GetFocus() : nullptr;
    if (m_state->active != nullptr) {
        m_state->owner.reset(QWindow::fromWinId(reinterpret_cast<WId>(m_state->active)));
        m_state->form->setTransientParent(m_state->owner.get());
    }
    for (const HWND window : search.found) {
        EnableWindow(window, FALSE);
        m_state->disabled.push_back(window);
    }
}

HostWindowsHeld::~HostWindowsHeld()
{
    for (const HWND window : m_state->disabled) {
        if (IsWindow(window)) {
            EnableWindow(window, TRUE);
        }
    }
    if (m_state->form != nullptr && m_state->owner != nullptr) {
        m_state->form->setTransientParent(nullptr);
    }
    if (m_state->active == nullptr || !IsWindow(m_state->active)) {
        return;
    }
    // Hidden with its owner disabled, our window has handed the focus to any other program.
    SetForegroundWindow(m_state->active);
    SetActiveWindow(m_state->active);
    if (m_state->focus != nullptr && IsWindow(m_state->focus)) {
        SetFocus(m_state->focus);
    }
}

} // namespace zul
