// What the answer to IServiceProvider::QueryService means.
#pragma once

#include <unknwn.h>

namespace zul {

/// Whether who was asked for a service, or for IServiceProvider itself, has none. Every other failure says that it could
/// not be had: who goes on as if there were none does something else than what was asked for.
constexpr bool meansNoService(HRESULT answer) noexcept
{
    return answer == E_NOINTERFACE || answer == E_NOTIMPL;
}

} // namespace zul
