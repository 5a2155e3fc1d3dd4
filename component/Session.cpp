#include "component/Session.h"

#include "hostlib/Error.h"

#include <utility>

namespace zul {

void Session::setConnessione(host::SqlConnection connection)
{
    m_connection = std::move(connection);
}

const host::SqlConnection& Session::connection() const
{
    if (!m_connection)
        throw Error(RunTime::ObjectNotSet);
    return m_connection;
}

Session& session()
{
    // Never destroyed: at the end of the process the host's connection object may already be gone.
    static Session* const instance = new Session;
    return *instance;
}

} // namespace zul
