#include "automation/Module.h"

#include <atomic>

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

} // namespace zul
