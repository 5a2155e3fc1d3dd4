#include "automation/Module.h"

#include <cstdlib>
#include <memory>

#include <dlfcn.h>

namespace zul {

std::string modulePath()
{
    // Any address inside the module will do.
    static const char inside = 0;
    Dl_info info{};
    if (dladdr(&inside, &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    const std::unique_ptr<char, decltype(&std::free)> full(::realpath(info.dli_fname, nullptr), &std::free);
    return full ? std::string(full.get()) : std::string();
}

} // namespace zul
