#include "automation/runtime/LoadedLibraries.h"

#include <algorithm>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <utility>

#include <dlfcn.h>

#include "automation/ErrorInfo.h"
#include "base/Utf8.h"

namespace zul::runtime {

namespace {

using Clock = std::chrono::steady_clock;
using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, LPVOID*);
using CanUnloadNow = HRESULT(STDAPICALLTYPE*)();

struct Library
{
    std::string path;
    void* handle = nullptr;
    GetClassObject getClassObject = nullptr;
    CanUnloadNow canUnloadNow = nullptr; // null: stays until the process ends

    unsigned calls = 0;                           // of its entry points, running now
    std::uint64_t classesAsked = 0;               // how often it was asked for a class
    std::uint64_t lastRound = 0;                  // the round that asked it last whether it may go
    std::optional<Clock::time_point> unusedSince; // when it first said that it may
};

// Guards the list and everything in it but for what never changes while a library is loaded.
std::mutex librariesMutex;
std::uint64_t rounds = 0;

// Never destroyed: at the end of the process a component may still be called. Entries keep their place.
std::list<Library>& libraries()
{
    static auto* const all = new std::list<Library>;
    return *all;
}

// A call into a library, which stays loaded as long as this lives.
class Call
{
public:
    // The lock is held.
    explicit Call(Library& library) noexcept
        : m_library(&library)
    {
        ++library.calls;
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;
    ~Call()
    {
        if (m_library != nullptr) {
            const std::lock_guard<std::mutex> lock(librariesMutex);
            --m_library->calls;
        }
    }
    // Ends the call; the lock is held.
    void endLocked() noexcept { --std::exchange(m_library, nullptr)->calls; }
    Library* operator->() const noexcept { return m_library; }
    Library& operator*() const noexcept { return *m_library; }

private:
    Library* m_library;
};

std::u16string loaderMessage()
{
    const char* const message = ::dlerror(); // NOLINT(concurrency-mt-unsafe)
    return message == nullptr ? std::u16string() : utf16FromUtf8(message);
}

// Begins a call that asks a loaded library for a class; false when it is not loaded. The lock is held.
bool callLoaded(const std::string& path, std::optional<Call>& call)
{
    const auto found = std::find_if(libraries().begin(), libraries().end(),
                                    [&](const Library& l) { return l.path == path; });
    if (found == libraries().end()) {
        return false;
    }
    ++found->classesAsked;
    found->unusedSince.reset();
    call.emplace(*found);
    return true;
}

HRESULT open(const std::string& path, Library& library)
{
    constexpr std::u16string_view source = u"Zul_Automation";
    library.path = path;
    library.handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library.handle == nullptr) {
        return reportError(CO_E_DLLNOTFOUND, loaderMessage(), source);
    }
    library.getClassObject = reinterpret_cast<GetClassObject>(::dlsym(library.handle, "DllGetClassObject"));
    if (library.getClassObject == nullptr) {
        const std::u16string message = loaderMessage();
        ::dlclose(library.handle);
        return reportError(CO_E_ERRORINDLL, message, source);
    }
    library.canUnloadNow = reinterpret_cast<CanUnloadNow>(::dlsym(library.handle, "DllCanUnloadNow"));
    return S_OK;
}

// Begins a call to a library that this round has not asked yet whether it may go, and that nobody is in; false
// when there is none left.
bool callNext(std::uint64_t round, std::optional<Call>& call, std::uint64_t& classesAsked)
{
    const std::lock_guard<std::mutex> lock(librariesMutex);
    const auto next = std::find_if(libraries().begin(), libraries().end(), [&](const Library& l) {
        return l.calls == 0 && l.canUnloadNow != nullptr && l.lastRound < round;
    });
    if (next == libraries().end()) {
        return false;
    }
    next->lastRound = round;
    classesAsked = next->classesAsked;
    call.emplace(*next);
    return true;
}

// The handle of the library when it is to be closed: it is then no longer in the list.
void* takeOut(Library& library, std::chrono::milliseconds delay)
{
    const Clock::time_point now = Clock::now();
    if (!library.unusedSince) {
        library.unusedSince = now;
    }
    if (now - *library.unusedSince < delay) {
        return nullptr;
    }
    void* const handle = library.handle;
    libraries().remove_if([&](const Library& other) { return &other == &library; });
    return handle;
}

} // namespace

HRESULT classObjectFrom(const std::string& path, REFCLSID clsid, REFIID iid, void** object)
{
    std::optional<Call> call;
    {
        const std::lock_guard<std::mutex> lock(librariesMutex);
        callLoaded(path, call);
    }
    if (!call) {
        Library opened;
        if (const HRESULT result = open(path, opened); FAILED(result)) {
            return result;
        }
        void* surplus = nullptr;
        {
            const std::lock_guard<std::mutex> lock(librariesMutex);
            if (callLoaded(path, call)) {
                surplus = opened.handle; // another thread, or the library's own initialiser, was faster
            } else {
                libraries().push_back(std::move(opened));
                call.emplace(libraries().back());
            }
        }
        if (surplus != nullptr) {
            ::dlclose(surplus);
        }
    }
    return (*call)->getClassObject(clsid, iid, object);
}

void freeUnusedLibraries(const std::function<std::chrono::milliseconds()>& delay)
{
    std::uint64_t round = 0;
    {
        const std::lock_guard<std::mutex> lock(librariesMutex);
        round = ++rounds;
    }
    std::optional<Call> call;
    for (std::uint64_t askedBefore = 0; callNext(round, call, askedBefore);) {
        Library& library = **call;
        const bool mayGo = library.canUnloadNow() == S_OK;
        void* closing = nullptr;
        {
            const std::lock_guard<std::mutex> lock(librariesMutex);
            call->endLocked();
            // Whoever asked for a class meanwhile may have got one after the library's answer.
            if (!mayGo || library.calls > 0 || library.classesAsked != askedBefore) {
                library.unusedSince.reset();
            } else {
                closing = takeOut(library, delay());
            }
        }
        if (closing != nullptr) {
            ::dlclose(closing);
        }
    }
}

} // namespace zul::runtime
