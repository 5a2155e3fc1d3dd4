#include "automation/TypeInfo.h"

#include <array>
#include <string>

#include <oleauto.h>

#include "automation/ComPtr.h"
#include "automation/ModuleHandle.h"

namespace zul {

namespace {

// The type libraries among the resources are numbered from 1.
constexpr int mostLibraries = 4;

// Never given back: an object of the library may be asked to the last moment.
const std::array<ITypeLib*, mostLibraries>& libraries() noexcept
{
    static const std::array<ITypeLib*, mostLibraries> all = [] {
        std::array<ITypeLib*, mostLibraries> loaded{};
        try {
            const std::wstring file = moduleFile();
            for (int i = 0; i < mostLibraries; ++i) {
                const std::wstring path = file + L"\\" + std::to_wstring(i + 1);
                if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &loaded[static_cast<std::size_t>(i)]))) {
                    break;
                }
            }
        } catch (...) {
            loaded.fill(nullptr);
        }
        return loaded;
    }();
    return all;
}

ComPtr<ITypeInfo> find(REFIID iid) noexcept
{
    ComPtr<ITypeInfo> info;
    for (ITypeLib* const library : libraries()) {
        if (library != nullptr && SUCCEEDED(library->GetTypeInfoOfGuid(iid, info.put()))) {
            break;
        }
    }
    return info;
}

} // namespace

UINT typeInfoCount(REFIID iid) noexcept
{
    return find(iid) ? 1 : 0;
}

HRESULT typeInfo(REFIID iid, UINT index, ITypeInfo** info) noexcept
{
    if (info == nullptr) {
        return E_POINTER;
    }
    *info = index == 0 ? find(iid).detach() : nullptr;
    return *info != nullptr ? S_OK : DISP_E_BADINDEX;
}

} // namespace zul
