#pragma once
// A SQLite database in memory that is spoken to in Transact-SQL.

#include "host/dialect/Dialect.h"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

struct sqlite3;

namespace zul::dialect::test {

/// The rows of a result as texts; a NULL is "NULL".
using Rows = std::vector<std::vector<std::string>>;

/// A line of a table of cases: an expression and what it is worth.
struct ValueCase
{
    const char* expression;
    const char* value;
};

/// Names the case where it fails.
std::ostream& operator<<(std::ostream& out, const ValueCase& example);

class Engine
{
public:
    Engine();
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// Translates a batch with the types of the database's own columns and runs it; the last result's rows.
    /// Throws std::runtime_error with the engine's message when a statement fails.
    Rows run(std::string_view tsql);
    /// The same without telling the translator any column's type.
    Rows runUntyped(std::string_view tsql);
    /// Runs SQL of the engine as it stands.
    Rows runNative(const std::string& sql);

    /// The only value of "SELECT expression".
    std::string value(const std::string& expression);
    /// The message with which a statement fails while it runs, "" when it does not.
    std::string failure(std::string_view tsql);
    /// Names of the last result's columns.
    const std::vector<std::string>& columns() const { return m_columns; }

    ColumnTypes types() const;

private:
    Rows runWith(std::string_view tsql, const ColumnTypes& types);

    sqlite3* m_connection = nullptr;
    std::vector<std::string> m_columns;
};

} // namespace zul::dialect::test
