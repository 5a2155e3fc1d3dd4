#include "automation/Module.h"

#include "automation/ModuleHandle.h"
#include "base/Utf8.h"

namespace zul {

HMODULE moduleHandle() noexcept
{
    // Any address inside the module will do.
    static const char inside = 0;
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<const wchar_t*>(&inside), &module);
    return module;
}

std::wstring moduleFile()
{
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const auto room = static_cast<DWORD>(path.size());
        const DWORD length = GetModuleFileNameW(moduleHandle(), path.data(), room);
        if (length < room) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2); // cut: the path is longer
    }
}

std::string modulePath()
{
    const std::wstring path = moduleFile();
    return utf8FromUtf16({reinterpret_cast<const char16_t*>(path.data()), path.size()});
}

} // namespace zul
