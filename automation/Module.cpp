#include "automation/Module.h"

#include <atomic>
#include <cstdlib>
#include <memory>

#include <dlfcn.h>

namespace zul {

namespace {

std::atomic<long> references{0};

} // namespace

void moduleAddRef() noexcept
{
    references.fetch_add(1, std::memory_order_relaxed);
}

void moduleRelease() noexcept
{
    references.fetch_sub(1, std::memory_order_acq_rel);
}

long moduleReferences() noexcept
{
    return references.load(std::memory_order_acquire);
}

std::string modulePath()
{
    // Any address inside the module will do.
    Dl_info info{};
    if (dladdr(static_cast<const void*>(&references), &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    const std::unique_ptr<char, decltype(&std::free)> full(::realpath(info.dli_fname, nullptr), &std::free);
    return full ? std::string(full.get()) : std::string();
}

} // namespace zul
