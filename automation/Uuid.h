// The interface id of an interface type, on every platform.
#pragma once

#include <unknwn.h>

namespace zul {

// The id that the contract gives the interface T.
template <typename T>
const IID& iidOf() noexcept
{
    return __uuidof(T);
}

} // namespace zul
