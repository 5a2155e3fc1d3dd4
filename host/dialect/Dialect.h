#pragma once
// The dialect layer: reads Transact-SQL and writes the SQL of SQLite.
//
// A statement is parsed (lexer, recursive-descent parser, syntax tree, emitter), never pattern-replaced. What
// the layer does not know is a DialectError that names the place; nothing is passed through unread. A text
// between quotes is never changed: it comes out as the same literal, unless it is a date that meets a date
// column or a date function, or a number that meets a numeric column (see below).
//
// UTF-8 in and out. Everything here is a pure function of its arguments and may be called on any thread.
//
// What the database files must look like (writers obey, readers rely on it):
// - A date is the 23-character text 'YYYY-MM-DD HH:MM:SS.mmm', a date without a time of day has
//   ' 00:00:00.000'. Two such texts compare as the dates do, which is what makes native comparisons right.
//   A time of day alone is 'HH:MM:SS.mmm'. The functions also read 'YYYY-MM-DD', 'YYYYMMDD' and the ISO form
//   with 'T'. Milliseconds are the finest grain.
// - A text column is declared COLLATE NOCASE (CREATE TABLE through this layer does it): text comparison,
//   ordering, DISTINCT and GROUP BY do not look at case, as on the server; expressions get the collation in
//   the statement. SQLite's NOCASE folds A to Z only; LIKE with a letter outside ASCII, REPLACE, CHARINDEX,
//   PATINDEX, UPPER and LOWER fold the other European letters too.
// - A boolean is 0 or 1.
// - Blanks at the end of a text count in '=' (the server ignores them); LEN does not count them.
//
// Statements may call the application functions of Functions.h; registerFunctions (SqliteFunctions.h) puts
// them on a connection. All names are written as [name], so a misspelt column is an error, never a text.

#include <cstddef>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zul::dialect {

/// What kind of value a column or an expression holds, as far as it is known before the statement runs.
enum class ColumnType
{
    Unknown,
    Bit,      ///< 0 or 1
    Integer,  ///< tinyint to bigint
    Decimal,  ///< decimal, numeric, money
    Real,     ///< float, real
    Text,     ///< char to nvarchar(max), text, ntext, uniqueidentifier
    Date,     ///< date: stored as midnight
    DateTime, ///< datetime, datetime2, smalldatetime
    Time,     ///< time of day
    Binary    ///< varbinary, image
};

/// The column type of a declaration such as "nvarchar(50)", "DATETIME" or "INTEGER"; Unknown when it says
/// nothing. Case, length and what follows the type's name do not matter.
ColumnType columnTypeOf(std::string_view declaration);

/// Answers the type of a table's column; Unknown when there is no such table or column. Names come as written
/// in the statement (any case, without schema and brackets).
using ColumnTypes = std::function<ColumnType(std::string_view table, std::string_view column)>;

/// Answers the columns that an INSERT without a column list fills, in order (an identity column is not among
/// them); nothing when the table is not known. Names come as for ColumnTypes.
using TableColumns = std::function<std::vector<std::string>(std::string_view table)>;

/// Answers the columns of a table's primary key; nothing when it has none or is not known. Names come as for
/// ColumnTypes.
using TableKey = std::function<std::vector<std::string>(std::string_view table)>;

enum class StatementKind
{
    Nothing, ///< SET NOCOUNT ON and the like: sql is empty, there is nothing to run
    Select,
    Insert,
    Update,
    Delete, ///< also TRUNCATE TABLE
    Schema, ///< CREATE, ALTER, DROP, SELECT … INTO
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
    /// One SQLite statement without a final semicolon; empty for StatementKind::Nothing.
    std::string sql;
    StatementKind kind = StatementKind::Nothing;
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

/// Why and where a statement could not be translated. what() holds message and place.
class DialectError : public std::runtime_error
{
public:
    DialectError(const std::string& message, std::size_t offset, std::size_t line, std::size_t column);

    const std::string& message() const { return m_message; } ///< without the place
    std::size_t offset() const { return m_offset; }          ///< in bytes, from 0
    std::size_t line() const { return m_line; }              ///< from 1
    std::size_t column() const { return m_column; }          ///< in characters, from 1

private:
    std::string m_message;
    std::size_t m_offset;
    std::size_t m_line;
    std::size_t m_column;
};

/// Translates exactly one statement (a final ';' is allowed). With column types the output uses more native
/// operators (faster) and normalises date and number literals that meet a column of another type; without,
/// a '+' between columns is decided by the values at run time and a date literal compared with a column stands
/// as written. With table columns the same is done for an INSERT without a column list. With table keys a DISTINCT
/// over rows that a key tells apart already becomes a cheaper statement of the same rows. Throws DialectError.
Translation translate(std::string_view tsql, const ColumnTypes& columnTypes = {},
                      const TableColumns& tableColumns = {}, const TableKey& tableKey = {});

/// Translates a batch: statements one after the other, with or without ';' between them. The columns of a
/// table that the batch itself creates are known to its later statements. An empty batch gives an empty list.
/// Throws DialectError; then nothing of the batch was translated.
std::vector<Translation> translateBatch(std::string_view tsql, const ColumnTypes& columnTypes = {},
                                        const TableColumns& tableColumns = {});

} // namespace zul::dialect
