// The generated headers ask for it; what they need of it stands in wtypes.h.
#pragma once
#pragma GCC system_header
#include <wtypes.h>
