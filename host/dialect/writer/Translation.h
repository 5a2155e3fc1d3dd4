#pragma once
// What a statement has become.

#include "host/dialect/base/ColumnType.h"

#include <optional>
#include <string>
#include <vector>

namespace zul::dialect {

enum class StatementKind
{
    Select,
    Insert,
    Update,
    Delete, ///< also TRUNCATE TABLE
    Schema, ///< CREATE, ALTER, DROP
    Begin,
    Commit,
    Rollback
};

/// One column of a result: its name as the statement gives it (empty for an expression without alias) and its
/// type as far as known.
struct OutputColumn
{
    std::string name;
    ColumnType type = ColumnType::Unknown;
};

/// What SELECT … FROM table WHERE column LIKE '%text%', and nothing more, looks for: the rows of one table whose
/// text column contains a text that has no letters and none of LIKE's signs. Who knows a few rows among which all of
/// them are may append " AND [rows].rowid IN (…)" to the translation and gets the same rows for less.
struct TextSearch
{
    std::string table; ///< without schema
    std::string rows;  ///< the table's name or alias in the statement
    std::string column;
    std::string text;
};

/// A statement in the SQL of SQLite.
struct Translation
{
    /// One SQLite statement without a final semicolon.
    std::string sql;
    StatementKind kind = StatementKind::Select;
    /// The table written to (INSERT, UPDATE, DELETE, CREATE TABLE, …), without schema; empty otherwise.
    std::string target;
    /// The tables read, without schema, each once, in the order of their first appearance.
    std::vector<std::string> tables;
    /// SELECT: the result's columns; empty when the list holds a '*' over a table.
    std::vector<OutputColumn> columns;
    /// How many '?' parameters the statement has. They come out as ?1, ?2, …
    int parameters = 0;
    /// When the statement is such a search, and column types were given.
    std::optional<TextSearch> search;
};

} // namespace zul::dialect
