// Makes a class known to CoCreateInstance; what DllRegisterServer and DllUnregisterServer do.
#pragma once

#include <string>
#include <string_view>

#include <objbase.h>

namespace zul {

// Registers the class for this user: CLSID to library, ProgID to CLSID. The library is the one that this code
// is linked into unless a path (absolute, UTF-8) is given. Doing it again replaces the entry.
// REGDB_E_WRITEREGDB, SELFREG_E_CLASS (the library does not know its own path) or E_INVALIDARG.
HRESULT registerClass(const CLSID& clsid, std::u16string_view progId, std::u16string_view description,
                      std::string_view libraryPath = {}) noexcept;

// S_OK also when the class was not registered.
HRESULT unregisterClass(const CLSID& clsid) noexcept;

} // namespace zul
