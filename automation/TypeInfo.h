// What the type libraries say of an interface, where the platform has type information.
#pragma once

#include <oaidl.h>

namespace zul {

// For IDispatch::GetTypeInfoCount and GetTypeInfo of an object that implements the interface: 1, and the description
// that the library (or program) carries among its resources. 0 and DISP_E_BADINDEX where it carries none; who wants
// types there reads the type library that stands beside.
UINT typeInfoCount(REFIID iid) noexcept;
HRESULT typeInfo(REFIID iid, UINT index, ITypeInfo** info) noexcept;

} // namespace zul
