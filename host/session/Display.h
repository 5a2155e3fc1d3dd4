// Whether windows can be shown.
#pragma once

namespace zul::host {
// Where there is no display, the windows live in memory.
bool hasDisplay();
} // namespace zul::host
