// Whether windows can be shown.
#pragma once

namespace zul::sender {
/// Where there is no display, nobody could see or close one.
bool hasDisplay();
} // namespace zul::sender
