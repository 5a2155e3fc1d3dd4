#include "session/Session.h"

#include "hostlib/Error.h"

#include <utility>

namespace zul {

void Session::setConnessione(hostlib::SqlConnection connection)
{
    if (connection.object() != m_connection.object()) {
        m_customerFilterSql.reset();
    }
    m_connection = std::move(connection);
}

const hostlib::SqlConnection& Session::connection() const
{
    if (!m_connection) {
        throw Error(RunTime::ObjectNotSet);
    }
    return m_connection;
}

std::shared_ptr<hostlib::CustomerFilterSql> Session::customerFilterSql()
{
    if (!m_customerFilterSql) {
        m_customerFilterSql = std::make_shared<hostlib::CustomerFilterSql>(connection());
    }
    return m_customerFilterSql;
}

Session& session()
{
    // Never destroyed: at the end of the process the host's connection object may already be gone.
    static Session* const instance = new Session;
    return *instance;
}

} // namespace zul
