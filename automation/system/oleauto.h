// The system's header, which wants <windows.h> to come first. No guard: the system's headers include one another, and
// each of them has its own.
#pragma GCC system_header
#include_next <oleauto.h>
#include <windows.h>
