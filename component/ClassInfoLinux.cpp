#include "component/ClassInfo.h"

namespace zul {

HRESULT provideClassInfo(IUnknown&, REFIID, void**) noexcept
{
    return E_NOINTERFACE;
}

} // namespace zul
