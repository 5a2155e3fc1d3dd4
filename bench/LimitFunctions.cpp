#include "bench/limit.h"

#include "host/dialect/SqliteFunctions.h"

int limitRegisterFunctions(sqlite3* connection)
{
    return zul::dialect::registerFunctions(connection);
}
