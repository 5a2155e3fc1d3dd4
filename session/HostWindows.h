// The windows of a host that is no Qt program: a modal window of ours is modal to them too.
#pragma once

#include <QtGlobal>

#include <memory>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

/// While it lives, the host's windows on this thread take no input, and the host's active one owns @p form, which is
/// not on the screen yet. Afterwards, also when an exception ends it, each is as it was and the host's active window
/// has the focus again. Nothing to do where the host's windows are Qt's, or the platform has no such owners.
class HostWindowsHeld
{
public:
    explicit HostWindowsHeld(QWidget& form);
    HostWindowsHeld(const HostWindowsHeld&) = delete;
    HostWindowsHeld& operator=(const HostWindowsHeld&) = delete;
    ~HostWindowsHeld();

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace zul
