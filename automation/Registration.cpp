#include "automation/Registration.h"

#include <olectl.h>
#include <zulreg.h>

#include "automation/ErrorInfo.h"
#include "automation/Module.h"

namespace zul {

HRESULT registerClass(const CLSID& clsid, std::u16string_view progId, std::u16string_view description,
                      std::string_view libraryPath) noexcept
{
    return comGuard(u"Zul_Automation", [&]() -> HRESULT {
        const std::string path = libraryPath.empty() ? modulePath() : std::string(libraryPath);
        if (path.empty()) {
            return SELFREG_E_CLASS;
        }
        return ZulRegisterClass(clsid, std::u16string(progId).c_str(), std::u16string(description).c_str(),
                                path.c_str());
    });
}

HRESULT unregisterClass(const CLSID& clsid) noexcept
{
    return ZulUnregisterClass(clsid);
}

} // namespace zul
