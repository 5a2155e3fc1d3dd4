#pragma once
// A DISTINCT that a key makes needless: recognised in the tree and taken out.

#include "host/dialect/syntax/Ast.h"
#include "host/dialect/writer/Catalogue.h"

namespace zul::dialect {

/// SELECT DISTINCT t.k, … FROM s INNER JOIN t ON s.x = t.k, where k is t's key and all that is selected and asked
/// comes from t, gives each row of t at most once: it is SELECT t.k, … FROM t WHERE t.k IN (SELECT s.x FROM s).
/// The engine would keep a copy of all the rows to find the equal ones; this way it keeps the keys only, and
/// reads t in the order of its key. The tree is changed so; every other one stays as it is.
void useKeyForDistinct(Query& query, const ColumnTypes& columnTypes, const TableKey& tableKey);

} // namespace zul::dialect
