// The interface id of an interface type, on every platform.
#pragma once

#include <unknwn.h>

namespace zul {

// The id that the contract gives the interface T.
template <typename T>
const IID& iidOf() noexcept
{
#ifdef _WIN32
    return __uuidof(T);
#else
    return ZulUuid<T>::value;
#endif
}

} // namespace zul
