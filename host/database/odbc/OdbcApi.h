#pragma once
// ODBC's own headers, as they get on with the automation types.
#include "host/database/EngineError.h"

// The automation types stand already. Away from Windows, ODBC's headers bring stand-ins of their own, of which
// one is of another size; it gets another name here.
#include <Zul_SQL.h>

#ifdef _WIN32
#include <windows.h>
#else
#define ULONG ODBC_ULONG
#endif
#include <sql.h>
#include <sqlext.h>
#ifndef _WIN32
#undef ULONG
#endif

#include <string_view>

namespace zul::host {

/// A number as ODBC takes the values of attributes: in the place of a pointer.
inline SQLPOINTER attributeValue(SQLULEN value)
{
    return reinterpret_cast<SQLPOINTER>(value); // NOLINT(performance-no-int-to-ptr)
}

/// A text as ODBC takes it, to read.
inline SQLCHAR* characters(std::string_view text)
{
    return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.data()));
}

} // namespace zul::host
