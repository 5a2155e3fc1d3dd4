#include "automation/TypeInfo.h"

namespace zul {

UINT typeInfoCount(REFIID) noexcept
{
    return 0;
}

HRESULT typeInfo(REFIID, UINT, ITypeInfo** info) noexcept
{
    if (info == nullptr) {
        return E_POINTER;
    }
    *info = nullptr;
    return DISP_E_BADINDEX;
}

} // namespace zul
