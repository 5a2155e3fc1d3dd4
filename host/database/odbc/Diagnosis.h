#pragma once
// What a driver says of a call that failed.
#include "host/database/EngineError.h"
#include "host/database/odbc/OdbcApi.h"

#include <string>

namespace zul::host {

class Product;

struct Diagnosis
{
    std::string state;     ///< five characters of SQLSTATE
    SQLINTEGER native = 0; ///< the server's own number
    std::string text;      ///< of all records, joined by "; "; never empty
};

Diagnosis diagnose(SQLSMALLINT kind, SQLHANDLE handle);

/// What the product makes of it, else what the state says.
ErrorCode codeOf(const Diagnosis& diagnosis, const Product& product);

} // namespace zul::host
