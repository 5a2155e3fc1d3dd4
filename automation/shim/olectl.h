// The result codes of controls and connection points stand with the others.
#pragma once
#pragma GCC system_header
#include <ocidl.h>
