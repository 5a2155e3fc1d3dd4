#include "automation/Registration.h"

#include <olectl.h>

#include "automation/ClassesKey.h"
#include "automation/ErrorInfo.h"
#include "automation/Module.h"
#include "base/Utf8.h"

namespace zul {

namespace {

std::wstring wide(std::u16string_view text)
{
    return {reinterpret_cast<const wchar_t*>(text.data()), text.size()};
}

} // namespace

HRESULT registerClass(const CLSID& clsid, std::u16string_view progId, std::u16string_view description,
                      std::string_view libraryPath) noexcept
{
    return comGuard(u"Zul_Automation", [&]() -> HRESULT {
        const std::string path = libraryPath.empty() ? modulePath() : std::string(libraryPath);
        if (path.empty()) {
            return SELFREG_E_CLASS;
        }
        const std::wstring id = guidText(clsid);
        ClassesKey classes(RegistryScope::User);
        classes.set(L"CLSID\\" + id, L"", wide(description));
        classes.set(L"CLSID\\" + id + L"\\InprocServer32", L"", wide(utf16FromUtf8(path)));
        classes.set(L"CLSID\\" + id + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
        classes.set(L"CLSID\\" + id + L"\\ProgID", L"", wide(progId));
        classes.set(wide(progId), L"", wide(description));
        classes.set(wide(progId) + L"\\CLSID", L"", id);
        return classes.result();
    });
}

HRESULT unregisterClass(const CLSID& clsid) noexcept
{
    return comGuard(u"Zul_Automation", [&]() -> HRESULT {
        const std::wstring key = L"CLSID\\" + guidText(clsid);
        ClassesKey classes(RegistryScope::User);
        const std::wstring progId = classes.read(key + L"\\ProgID");
        if (!progId.empty()) {
            classes.removeTree(progId);
        }
        classes.removeTree(key);
        return classes.result();
    });
}

} // namespace zul
