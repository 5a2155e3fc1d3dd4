// The library (or program) that this code is linked into, as Windows knows it.
#pragma once

#include <string>

#include <windows.h>

namespace zul {

HMODULE moduleHandle() noexcept;

/// Its file, with its whole path.
std::wstring moduleFile();

} // namespace zul
