// Finding and loading components.
#include <algorithm>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <dlfcn.h>

#include <oleauto.h>
#include <zulreg.h>

#include "automation/ComPtr.h"
#include "automation/ErrorInfo.h"
#include "automation/Text.h"
#include "automation/runtime/ClassRegistry.h"

namespace {

using zul::ComPtr;
using zul::reportError;
using namespace zul::runtime;

constexpr std::u16string_view source = u"Zul_Automation";

using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, LPVOID*);
using CanUnloadNow = HRESULT(STDAPICALLTYPE*)();

struct Library
{
    std::string path;
    void* handle = nullptr;
    GetClassObject getClassObject = nullptr;
    CanUnloadNow canUnloadNow = nullptr;
};

std::mutex librariesMutex;
// Never destroyed: at the end of the process a component may still be called.
std::vector<Library>& libraries()
{
    static auto* const all = new std::vector<Library>;
    return *all;
}

thread_local unsigned initialized = 0;
thread_local DWORD apartmentKind = 0;

std::u16string loaderMessage()
{
    const char* const message = ::dlerror(); // NOLINT(concurrency-mt-unsafe)
    return message == nullptr ? std::u16string() : zul::utf16FromUtf8(message);
}

HRESULT loadLibrary(const std::string& path, Library& library)
{
    const std::lock_guard<std::mutex> lock(librariesMutex);
    const auto found = std::find_if(libraries().begin(), libraries().end(),
                                    [&](const Library& l) { return l.path == path; });
    if (found != libraries().end()) {
        library = *found;
        return S_OK;
    }
    library = Library{};
    library.path = path;
    library.handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library.handle == nullptr) {
        return reportError(CO_E_DLLNOTFOUND, loaderMessage(), source);
    }
    library.getClassObject = reinterpret_cast<GetClassObject>(::dlsym(library.handle, "DllGetClassObject"));
    library.canUnloadNow = reinterpret_cast<CanUnloadNow>(::dlsym(library.handle, "DllCanUnloadNow"));
    if (library.getClassObject == nullptr) {
        const std::u16string message = loaderMessage();
        ::dlclose(library.handle);
        return reportError(CO_E_ERRORINDLL, message, source);
    }
    libraries().push_back(library);
    return S_OK;
}

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
                           u"The class is not registered in " + zul::utf16FromUtf8(registryPath()), source);
    }
    if (found->library.empty() || found->library.front() != '/') {
        return reportError(REGDB_E_INVALIDVALUE,
                           u"The class has no library in " + zul::utf16FromUtf8(registryPath()), source);
    }
    entry = *found;
    return S_OK;
}

bool isClean(std::u16string_view text) noexcept
{
    return std::none_of(text.begin(), text.end(), [](char16_t c) { return c < 0x20 || c == 0x7F; });
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
    return ++initialized == 1 ? S_OK : S_FALSE;
}

void CoUninitialize()
{
    if (initialized > 0) {
        --initialized;
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
        HRESULT result = findClass(clsid, entry);
        Library library;
        if (SUCCEEDED(result)) {
            result = loadLibrary(entry.library, library);
        }
        return FAILED(result) ? result : library.getClassObject(clsid, iid, object);
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
    std::vector<Library> unused;
    {
        const std::lock_guard<std::mutex> lock(librariesMutex);
        const auto isUsed = [](const Library& l) {
            return l.canUnloadNow == nullptr || l.canUnloadNow() != S_OK;
        };
        const auto firstUnused = std::stable_partition(libraries().begin(), libraries().end(), isUsed);
        unused.assign(firstUnused, libraries().end());
        libraries().erase(firstUnused, libraries().end());
    }
    // The libraries' own endings run outside the lock.
    for (const Library& library : unused) {
        ::dlclose(library.handle);
    }
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
        if (!isClean(entry.progId) || !isClean(entry.description) ||
            !isClean(zul::utf16FromUtf8(entry.library))) {
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
