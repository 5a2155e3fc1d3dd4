// Loads the result grid from the database.
#pragma once

#include <QDate>

namespace zul {

namespace ado {
class Connection;
}
class ReportGrid;

/// Replaces the grid's content by the customers in the scratch table: one column per field, one record per
/// row, every check unticked. An error before the rows are there leaves the grid as it was.
void loadResultGrid(const ado::Connection& connection, ReportGrid& grid, QDate today);

} // namespace zul
