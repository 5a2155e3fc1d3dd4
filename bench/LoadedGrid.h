// A result grid over a database, filled as the main window fills its own.
#pragma once

#include "controls/report/ReportGrid.h"
#include "host/session/HostDatabase.h"
#include "hostlib/Host.h"

#include <string>

namespace zul::bench {

class LoadedGrid
{
public:
    explicit LoadedGrid(const std::string& database);

    /// A search without criteria, and the load of its result.
    void search();

    ReportGrid& grid() { return m_grid; }
    const hostlib::SqlConnection& connection() const { return m_connection; }
    host::HostDatabase& database() { return m_database; }

private:
    host::HostDatabase m_database;
    hostlib::SqlConnection m_connection;
    ReportGrid m_grid;
};

} // namespace zul::bench
