// Finding and loading components.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include <oleauto.h>
#include <zulreg.h>

#include "automation/ComPtr.h"
#include "automation/ErrorInfo.h"
#include "automation/runtime/ClassRegistry.h"
#include "automation/runtime/LoadedLibraries.h"
#include "base/CaseFold.h"
#include "base/Utf8.h"

namespace {

using zul::ComPtr;
using zul::reportError;
using namespace zul::runtime;

constexpr std::u16string_view source = u"Zul_Automation";

// How often this thread has initialised itself, and how many threads have. Plain numbers: a thread that is
// started by a library's initialiser must not need the loader for them.
thread_local unsigned initialized = 0;
thread_local DWORD apartmentKind = 0;
std::atomic<unsigned> initializedThreads{0};

constexpr std::chrono::minutes delayBesideOtherThreads{10};

HRESULT findClass(REFCLSID clsid, RegisteredClass& entry)
{
    std::vector<RegisteredClass> classes;
    const HRESULT read = readClasses(classes);
    if (FAILED(read)) {
        return reportError(
            read, u"The registration file cannot be read: " + zul::utf16FromUtf8(registryPath()), source);
    }
    const auto found = std::find_if(classes.begin(), classes.end(),
                                    [&](const RegisteredClass& c) { return c.clsid == clsid; });
    if (found == classes.end()) {
        return reportError(REGDB_E_CLASSNOTREG,
                           u"The class is registered neither in " + zul::utf16FromUtf8(registryPath()) +
                               u" nor in " + zul::utf16FromUtf8(systemRegistryFolder()),
                           source);
    }
    if (found->library.empty() || found->library.front() != '/') {
        return reportError(REGDB_E_INVALIDVALUE,
                           u"The class is registered without the absolute path of a library", source);
    }
    entry = *found;
    return S_OK;
}

bool isClean(std::u16string_view text) noexcept
{
    return std::none_of(text.begin(), text.end(), [](char16_t c) { return c < 0x20 || c == 0x7F; });
}

// A line of the registration file keeps no blanks around a value; the class would be looked for under another name, or in
// another library.
bool hasOuterBlank(std::u16string_view text) noexcept
{
    return !text.empty() && (text.front() == u' ' || text.back() == u' ');
}

std::u16string textOrEmpty(LPCOLESTR text)
{
    return text == nullptr ? std::u16string() : std::u16string(text);
}

} // namespace

HRESULT CoInitialize(LPVOID reserved)
{
    return CoInitializeEx(reserved, COINIT_APARTMENTTHREADED);
}

HRESULT CoInitializeEx(LPVOID reserved, DWORD coInit)
{
    if (reserved != nullptr) {
        return E_INVALIDARG;
    }
    // Threads are kept apart by the components' own rule: one thread, the user interface's. The kind of apartment is
    // kept for callers that ask for another one on the same thread.
    const DWORD kind = coInit & COINIT_APARTMENTTHREADED;
    if (initialized > 0 && kind != apartmentKind) {
        return RPC_E_CHANGED_MODE;
    }
    apartmentKind = kind;
    if (++initialized > 1) {
        return S_FALSE;
    }
    ++initializedThreads;
    return S_OK;
}

void CoUninitialize()
{
    if (initialized > 0 && --initialized == 0) {
        --initializedThreads;
    }
}

HRESULT CoGetClassObject(REFCLSID clsid, DWORD clsContext, LPVOID reserved, REFIID iid, LPVOID* object)
{
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (reserved != nullptr) {
        return E_INVALIDARG;
    }
    if (initialized == 0) {
        return CO_E_NOTINITIALIZED;
    }
    if ((clsContext & CLSCTX_INPROC_SERVER) == 0) {
        return REGDB_E_CLASSNOTREG; // components live in libraries only
    }
    return zul::comGuard(source, [&]() -> HRESULT {
        RegisteredClass entry;
        const HRESULT found = findClass(clsid, entry);
        return FAILED(found) ? found : classObjectFrom(entry.library, clsid, iid, object);
    });
}

HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD clsContext, REFIID iid, LPVOID* object)
{
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    ComPtr<IClassFactory> factory;
    const HRESULT found =
        CoGetClassObject(clsid, clsContext, nullptr, zul::iidOf<IClassFactory>(), factory.putVoid());
    if (FAILED(found)) {
        return found;
    }
    return factory ? factory->CreateInstance(outer, iid, object) : E_UNEXPECTED;
}

void CoFreeUnusedLibraries()
{
    CoFreeUnusedLibrariesEx(INFINITE, 0);
}

void CoFreeUnusedLibrariesEx(DWORD delay, DWORD reserved)
{
    static_cast<void>(reserved);
    freeUnusedLibraries([delay] {
        if (delay != INFINITE) {
            return std::chrono::milliseconds(delay);
        }
        // Another thread may be on its way out of a library whose last object it has just released.
        const bool aloneHere = initializedThreads == (initialized > 0 ? 1U : 0U);
        return aloneHere ? std::chrono::milliseconds(0) : std::chrono::milliseconds(delayBesideOtherThreads);
    });
}

HRESULT CLSIDFromProgID(LPCOLESTR progId, CLSID* clsid)
{
    if (clsid == nullptr) {
        return E_INVALIDARG;
    }
    *clsid = CLSID{};
    if (progId == nullptr) {
        return E_INVALIDARG;
    }
    return zul::comGuard(source, [&]() -> HRESULT {
        std::vector<RegisteredClass> classes;
        const HRESULT read = readClasses(classes);
        if (FAILED(read)) {
            return read;
        }
        for (const RegisteredClass& entry : classes) {
            if (!entry.progId.empty() && zul::equalNames(entry.progId, progId)) {
                *clsid = entry.clsid;
                return S_OK;
            }
        }
        return CO_E_CLASSSTRING;
    });
}

HRESULT ProgIDFromCLSID(REFCLSID clsid, LPOLESTR* progId)
{
    if (progId == nullptr) {
        return E_INVALIDARG;
    }
    *progId = nullptr;
    return zul::comGuard(source, [&]() -> HRESULT {
        RegisteredClass entry;
        const HRESULT found = findClass(clsid, entry);
        if (FAILED(found) || entry.progId.empty()) {
            return FAILED(found) ? found : REGDB_E_CLASSNOTREG;
        }
        const std::size_t bytes = (entry.progId.size() + 1) * sizeof(OLECHAR);
        *progId = static_cast<LPOLESTR>(CoTaskMemAlloc(bytes));
        if (*progId == nullptr) {
            return E_OUTOFMEMORY;
        }
        std::memcpy(*progId, entry.progId.c_str(), bytes);
        return S_OK;
    });
}

HRESULT ZulRegisterClass(REFCLSID clsid, LPCOLESTR progId, LPCOLESTR description, const char* libraryPath)
{
    if (libraryPath == nullptr || libraryPath[0] != '/') {
        return E_INVALIDARG;
    }
    return zul::comGuard(source, [&]() -> HRESULT {
        const RegisteredClass entry{clsid, textOrEmpty(progId), textOrEmpty(description), libraryPath};
        const std::u16string library = zul::utf16FromUtf8(entry.library);
        if (!isClean(entry.progId) || !isClean(entry.description) || !isClean(library) ||
            hasOuterBlank(entry.progId) || hasOuterBlank(library)) {
            return E_INVALIDARG;
        }
        const HRESULT written = writeClass(entry);
        return FAILED(written)
                   ? reportError(written,
                                 u"The class cannot be registered in " + zul::utf16FromUtf8(registryPath()),
                                 source)
                   : S_OK;
    });
}

HRESULT ZulUnregisterClass(REFCLSID clsid)
{
    return zul::comGuard(source, [&] { return removeClass(clsid); });
}
