#include "automation/UnknownInterface.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <cxxabi.h>

#include "base/Utf8.h"

namespace zul {

namespace {

std::atomic<UnknownInterfaceHook> currentHook{nullptr};

bool isTraced() noexcept
{
    static const bool traced =
        std::getenv("ZUL_AUTOMATION_TRACE") != nullptr; // NOLINT(concurrency-mt-unsafe)
    return traced;
}

bool isNew(const IID& iid)
{
    static std::mutex mutex;
    static auto* const known = new std::vector<IID>; // never destroyed: objects may outlive everything else
    const std::lock_guard<std::mutex> lock(mutex);
    if (std::find(known->begin(), known->end(), iid) != known->end()) {
        return false;
    }
    known->push_back(iid);
    return true;
}

// "zul::SmsCreatorObject", without the template arguments that say how it is put together.
std::string classNameOf(const char* typeName)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(typeName, nullptr, nullptr, &status), &std::free);
    const std::string whole = name ? name.get() : typeName;
    return whole.substr(0, whole.find('<'));
}

std::string textOf(const IID& iid)
{
    OLECHAR text[39] = {};
    StringFromGUID2(iid, text, 39);
    return utf8FromUtf16(reinterpret_cast<const char16_t*>(text));
}

} // namespace

void setUnknownInterfaceHook(UnknownInterfaceHook hook) noexcept
{
    currentHook = hook;
}

void noteUnknownInterface(const IID& iid, const char* typeName) noexcept
{
    const UnknownInterfaceHook hook = currentHook;
    if (hook == nullptr && !isTraced()) {
        return;
    }
    try {
        if (!isNew(iid)) {
            return;
        }
        const std::string className = classNameOf(typeName);
        if (isTraced()) {
            std::fprintf(stderr, "Zul_Automation: %s has no interface %s\n", className.c_str(),
                         textOf(iid).c_str());
        }
        if (hook != nullptr) {
            hook(iid, className.c_str());
        }
    } catch (...) {
        // Nobody may fail because of a note.
        return;
    }
}

} // namespace zul
