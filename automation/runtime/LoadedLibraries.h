// The libraries of components that the process has loaded, and when they may go.
//
// Every entry into a library is counted, and no lock is held meanwhile: its initialiser, its entry points and
// its endings may call the runtime and wait for other threads that do.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include <objbase.h>

namespace zul::runtime {

// Asks the library of this path, loaded now if it is not yet, for a class object. CO_E_DLLNOTFOUND,
// CO_E_ERRORINDLL (no component), or what its DllGetClassObject answers.
HRESULT classObjectFrom(const std::string& path, REFCLSID clsid, REFIID iid, void** object);

// Closes every library that has answered for as long as the delay, each time it was asked, that it may go, while
// nobody asked it for a class; with a delay of zero at its first such answer. The delay is asked for behind each
// answer.
void freeUnusedLibraries(const std::function<std::chrono::milliseconds()>& delay);

} // namespace zul::runtime
