// Turns the ticked criteria into statements that leave the ids of the chosen customers in the scratch table
// tabSpoolReportStat2.
#pragma once

#include "selection/Criteria.h"

#include <QDate>
#include <QString>

namespace zul {

namespace ado {
class Connection;
}
namespace hostlib {
class CustomerFilterSql;
}

/// Empties the scratch table; every search begins with it.
inline constexpr const char* EmptyScratchTable = "Delete from tabSpoolReportStat2";

/// The sub-select that the restricted sales-figure statements work among.
inline constexpr const char* ScratchTableIds = "Select intero1 as IdCliente from tabSpoolReportStat2";

/// The age in years as an expression: calendar-year boundaries between birth and today, so that somebody
/// born on 31 December is one year old on 1 January. That is how the system counts.
QString ageExpression(QDate today);

/// INSERT … SELECT of the personal-data, place and advanced criteria.
QString selectionStatement(const Criteria& criteria, QDate today);

/// Runs a whole search. An error ends it where it stands; the scratch table keeps what the statements so far
/// left in it.
void fillScratchTable(const ado::Connection& connection, hostlib::CustomerFilterSql& filters,
                      const Criteria& criteria, QDate today);

} // namespace zul
