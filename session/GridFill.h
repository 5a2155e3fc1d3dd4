// Moves the rows of a row set into the store of a report grid.
#pragma once

namespace zul {

namespace ado {
class Recordset;
}
class ColumnStore;

/// Adds one row per remaining row of the row set, fields in order; fields past the store's last column are
/// left out.
void appendRows(ColumnStore& store, ado::Recordset& rows);

} // namespace zul
