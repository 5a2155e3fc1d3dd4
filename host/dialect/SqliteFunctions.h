#pragma once
// Puts the functions that translated statements call on a SQLite connection.

struct sqlite3;

namespace zul::dialect {

/// Registers every function of Functions.h and the aggregate zul_avg. Call it once for each connection, right
/// after opening; the connection stays the caller's. Returns an SQLite result code, 0 (SQLITE_OK) for success.
/// An error of a function becomes the statement's error (SQLITE_ERROR) with the function's message.
int registerFunctions(sqlite3* connection);

} // namespace zul::dialect
