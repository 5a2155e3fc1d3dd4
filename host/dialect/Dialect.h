#pragma once
// The dialect layer: reads Transact-SQL and writes the SQL of SQLite.
//
// A statement is parsed (lexer, recursive-descent parser, syntax tree, writer), never pattern-replaced. What
// the layer does not know is a DialectError that names the place; nothing is passed through unread. A text
// between quotes is never changed: it comes out as the same literal, unless it is a date that meets a date
// column or a date function, or a number that meets a numeric column (see below).
//
// The language, in the notation [optional] {repeated}, x, … for lists; words in any case, -- and nested /* */
// comments, ';' between statements or nothing:
//
//   statement   SELECT …  |  INSERT …  |  UPDATE …  |  DELETE …, each with WITH name [(column, …)] AS (query), …
//               before it  |  TRUNCATE TABLE table
//               CREATE TABLE table (column type {option} | constraint, …)  |  DROP TABLE [IF EXISTS] table, …
//               ALTER TABLE table ADD [COLUMN] column type {option}, …  |  ALTER TABLE table DROP COLUMN column, …
//               CREATE [UNIQUE] [[NON]CLUSTERED] INDEX name ON table (column [ASC|DESC], …)  |
//               DROP INDEX [IF EXISTS] name ON table
//               CREATE VIEW view [(column, …)] AS query  |  DROP VIEW [IF EXISTS] view, …
//               BEGIN TRAN[SACTION]  |  COMMIT [TRAN[SACTION]]  |  ROLLBACK [TRAN[SACTION]]
//   query       SELECT [DISTINCT] [TOP n | TOP (value)] item, … [FROM source, …] [WHERE condition]
//               [GROUP BY value, …] [HAVING condition]  |  VALUES (value, …), …  |  (query),
//               joined by UNION [ALL], EXCEPT, INTERSECT;
//               [ORDER BY value [ASC|DESC], …] [OFFSET n ROWS [FETCH NEXT n ROWS ONLY]] [OPTION (passed over)]
//   item        *  |  table.*  |  value [[AS] alias]  |  alias = value
//   source      table [[AS] alias] [WITH (passed over)]  |  (query) [AS] alias [(column, …)]  |
//               source [INNER] | LEFT | RIGHT | FULL [OUTER] | CROSS JOIN source [ON condition]  |  (source)
//   INSERT      [INTO] table [(column, …)]  VALUES (value, …), …  |  query  |  DEFAULT VALUES
//   UPDATE      table SET column = | += | -= | *= | /= | %= value, … [FROM source, …] [WHERE condition]
//   DELETE      [FROM] table [FROM source, …] [WHERE condition]
//   option      [NOT] NULL, IDENTITY [(1,1)], PRIMARY KEY [[NON]CLUSTERED], UNIQUE, DEFAULT value, CHECK (condition),
//               COLLATE name (passed over), REFERENCES table [(column, …)] {ON DELETE | UPDATE action}
//   constraint  [CONSTRAINT name] PRIMARY KEY (column, …), UNIQUE (column, …), FOREIGN KEY (column, …) REFERENCES …,
//               CHECK (condition)
//   condition   AND, OR, NOT, = <> != < > <= >=, IS [NOT] NULL, [NOT] BETWEEN, [NOT] IN (value, … | query),
//               [NOT] LIKE pattern [ESCAPE character] with % _ [a-z] [^a-z], EXISTS (query)
//   value       'text', N'text', 1, 1.5, 1e5, 0x0A, NULL, ?, [schema.][table.]column, [name] or "name",
//               + - * / % & |, CASE … END, CAST(value AS type), CONVERT(type, value [, style]), (query),
//               value COLLATE name (_CS and _BIN look at case, others do not), function(value, …)
//   function    COUNT SUM MIN MAX AVG (with DISTINCT); ISNULL COALESCE NULLIF IIF; LEN LEFT RIGHT SUBSTRING LTRIM
//               RTRIM TRIM UPPER LOWER REPLACE CHARINDEX PATINDEX REPLICATE SPACE CONCAT CHAR NCHAR ASCII UNICODE STR;
//               ABS ROUND FLOOR CEILING; GETDATE CURRENT_TIMESTAMP DATEDIFF DATEADD DATEPART YEAR MONTH DAY;
//               ISDATE ISNUMERIC; SCOPE_IDENTITY @@IDENTITY @@ROWCOUNT
//   type        bit tinyint smallint int bigint decimal numeric money smallmoney float real char varchar nchar
//               nvarchar text ntext sysname uniqueidentifier date datetime datetime2 smalldatetime time binary
//               varbinary image, with length, (precision, scale) or (max)
//
// Names may have a server, a database and a schema, which mean nothing here; #names are temporary tables.
//
// Bounds, each with an error that says so: 90 levels of parentheses, sub-selects and the like inside each other; 64
// tables in one join; two thousand operands in a chain of '+' where texts, numbers or dates meet or kinds are not known,
// and twenty of other operators there. A chain that only joins texts, only adds and subtracts numbers or only multiplies
// them, and one of AND or OR, may be as long as the text, and costs what it is long.
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

#include "host/dialect/base/DialectError.h"
#include "host/dialect/writer/Catalogue.h"
#include "host/dialect/writer/Translation.h"

#include <string_view>
#include <vector>

namespace zul::dialect {

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

/// How many statements the text holds, by its syntax alone. Throws DialectError.
std::size_t countStatements(std::string_view tsql);

} // namespace zul::dialect
