#include "bench/LoadedGrid.h"

#include "mainwindow/GridLoad.h"
#include "selection/TargetQuery.h"
#include "session/ControlSetup.h"

namespace zul::bench {

namespace {

host::HostDatabaseOptions optionsFor(const std::string& database)
{
    host::HostDatabaseOptions options;
    options.database = database;
    return options;
}

} // namespace

LoadedGrid::LoadedGrid(const std::string& database)
    : m_database(optionsFor(database))
    , m_connection(ComPtr<_SqlConnection>(m_database.connection()))
{
    m_grid.resize(1000, 600);
    setupReportControl(&m_grid);
}

void LoadedGrid::search()
{
    const QDate today = QDate::currentDate();
    hostlib::CustomerFilterSql filters(m_connection);
    fillScratchTable(m_connection.connection(), filters, {}, today);
    loadResultGrid(m_connection.connection(), m_grid, today);
}

} // namespace zul::bench
