#pragma once
// Values on their way to a driver.
#include "host/database/Value.h"
#include "host/database/odbc/OdbcApi.h"

#include <optional>

namespace zul::host {

/// Storage of one bound parameter for the time of a run.
struct BoundParameter
{
    SQLBIGINT whole = 0;
    SQLDOUBLE number = 0;
    unsigned char flag = 0;
    SQL_TIMESTAMP_STRUCT moment{};
    SQLLEN length = 0;
};

/// Binds a value to a statement's parameter, from 1. Value and storage have to stay where they are until the statement
/// has run. `textSize` is the product's announced size of texts.
SQLRETURN bindParameter(SQLHSTMT statement, SQLUSMALLINT index, const Value& value, BoundParameter& storage,
                        std::optional<SQLULEN> textSize);

} // namespace zul::host
