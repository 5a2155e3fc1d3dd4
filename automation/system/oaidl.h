// The system's header, which wants <windows.h> to come first; the blank line between them keeps clang-format from
// sorting them. No guard: the system's headers include one another, and each of them has its own.
#pragma GCC system_header
#include <windows.h>

#include_next <oaidl.h>
