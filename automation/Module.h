// The library or program that this code is linked into: what it keeps alive, and where its file is.
#pragma once

#include <string>

namespace zul {

// Counts an object (or a LockServer) that keeps the library loaded. Any thread.
void moduleAddRef() noexcept;
void moduleRelease() noexcept;

// Objects and locks now; DllCanUnloadNow may answer S_OK when it is 0.
long moduleReferences() noexcept;

// Full path of the library's own file, in UTF-8; empty when the system does not tell.
std::string modulePath();

} // namespace zul
