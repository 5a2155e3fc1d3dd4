#include "session/HostWindows.h"

namespace zul {

// A host here is a Qt program, whose windows Qt keeps, or has no window.
struct HostWindowsHeld::State
{};

HostWindowsHeld::HostWindowsHeld(QWidget&)
{}

HostWindowsHeld::~HostWindowsHeld() = default;

} // namespace zul
