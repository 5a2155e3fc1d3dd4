// What a script host asks an object to find its events by name, where the platform has type information.
#pragma once

#include <unknwn.h>

namespace zul {

/// Answers IProvideClassInfo and IProvideClassInfo2 for the object of the class SmsCreator; E_NOINTERFACE for every
/// other id, and where the library carries no type library.
HRESULT provideClassInfo(IUnknown& object, REFIID riid, void** answer) noexcept;

} // namespace zul
