#include "session/HostWindows.h"

#include <QApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <optional>
#include <vector>

#include <windows.h>

namespace zul {

namespace {

std::vector<HWND> ownWindows()
{
    std::vector<HWND> result;
    for (const QWindow* window : QGuiApplication::allWindows()) {
        if (window->handle() != nullptr) {
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

HWND handleOf(QWindow& window)
{
    return reinterpret_cast<HWND>(window.winId());
}

/// Keeps a window owned by one of the host's. Qt takes every owner away that is not a window of its own whenever it
/// shows a window; it is set once the window is there.
class OwnerKeeper : public QObject
{
public:
    explicit OwnerKeeper(HWND owner)
        : m_owner(owner)
    {}

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Expose) {
            const HWND window = handleOf(static_cast<QWindow&>(*watched));
            if (GetWindow(window, GW_OWNER) != m_owner) {
                SetWindowLongPtrW(window, GWLP_HWNDPARENT, reinterpret_cast<LONG_PTR>(m_owner));
            }
        }
        return false;
    }

private:
    HWND m_owner;
};

/// What tells the host's message loop to end; only our loop sees it while our window is shown. Our windows close then, as
/// the system's own modal ones do, and the host's loop gets it afterwards.
class QuitKeeper
{
public:
    QuitKeeper()
        : m_outer(innermost)
        , m_hook(SetWindowsHookExW(WH_GETMESSAGE, seeMessage, nullptr, GetCurrentThreadId()))
    {
        innermost = this;
    }
    ~QuitKeeper()
    {
        UnhookWindowsHookEx(m_hook);
        innermost = m_outer;
        if (m_code) {
            PostQuitMessage(*m_code);
        }
    }
    QuitKeeper(const QuitKeeper&) = delete;
    QuitKeeper& operator=(const QuitKeeper&) = delete;

private:
    static LRESULT CALLBACK seeMessage(int code, WPARAM removed, LPARAM parameter)
    {
        const auto& message = *reinterpret_cast<const MSG*>(parameter);
        if (code >= 0 && removed == PM_REMOVE && message.message == WM_QUIT && innermost != nullptr) {
            innermost->m_code = static_cast<int>(message.wParam);
            QMetaObject::invokeMethod(qApp, closeModalWindows, Qt::QueuedConnection);
        }
        return CallNextHookEx(nullptr, code, removed, parameter);
    }

    /// From the topmost down to the first that wants to stay.
    static void closeModalWindows()
    {
        QWidget* window = QApplication::activeModalWidget();
        while (window != nullptr && window->close() && QApplication::activeModalWidget() != window) {
            window = QApplication::activeModalWidget();
        }
    }

    static thread_local QuitKeeper* innermost;

    QuitKeeper* m_outer;
    HHOOK m_hook;
    std::optional<int> m_code;
};

thread_local QuitKeeper* QuitKeeper::innermost = nullptr;

} // namespace

struct HostWindowsHeld::State
{
    QuitKeeper quit;
    QPointer<QWindow> form;
    std::unique_ptr<OwnerKeeper> owner;
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
        m_state->owner = std::make_unique<OwnerKeeper>(m_state->active);
        m_state->form->installEventFilter(m_state->owner.get());
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
    if (m_state->active == nullptr || !IsWindow(m_state->active)) {
        return;
    }
    if (m_state->form != nullptr) {
        m_state->form->removeEventFilter(m_state->owner.get());
        SetWindowLongPtrW(handleOf(*m_state->form), GWLP_HWNDPARENT, 0);
    }
    // Hidden with its owner disabled, our window has handed the focus to any other program.
    SetForegroundWindow(m_state->active);
    SetActiveWindow(m_state->active);
    if (m_state->focus != nullptr && IsWindow(m_state->focus)) {
        SetFocus(m_state->focus);
    }
}

} // namespace zul
