# Copies a header that widl made and puts a few lines before it: its first declarations need the automation
# types, which it includes only further down where <windows.h> is not there to bring them.
file(READ "${IN}" text)
file(WRITE "${OUT}" "#pragma GCC system_header
#ifndef _WIN32
#ifndef COM_NO_WINDOWS_H
#define COM_NO_WINDOWS_H
#endif
#include <oaidl.h>
#endif
${text}")
