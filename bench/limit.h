// What the limit program takes from the house: the functions that the host's statements may call.
#pragma once

#include <sqlite3.h>

#ifdef __cplusplus
extern "C"
#endif
    int
    limitRegisterFunctions(sqlite3* connection);
