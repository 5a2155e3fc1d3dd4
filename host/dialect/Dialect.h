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

} // namespace zul::dialect
