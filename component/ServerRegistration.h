// What the component's library writes into the registry, and takes out of it again. Windows alone.
#pragma once

#include "automation/ClassesKey.h"

namespace zul {

/// The class with both its names, and the four type libraries that the library carries with the interfaces that they
/// describe. After a failure nothing of it is left. SELFREG_E_CLASS, SELFREG_E_TYPELIB, or the system's reason.
HRESULT registerServer(RegistryScope scope) noexcept;

/// Takes away what registerServer wrote, as far as it still is this library's; S_OK also when there was nothing.
HRESULT unregisterServer(RegistryScope scope) noexcept;

} // namespace zul
