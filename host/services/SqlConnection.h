#pragma once
// The host's connection object: the connection, the user's name, the single-value lookup, and the way to the
// host's other objects.
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/database/Session.h"

#include <Zul_SQL.h>

#include <servprov.h>

namespace zul::host {

class SqlConnection final : public ComObject<Dispatching<_SqlConnection>, IServiceProvider>
{
public:
    explicit SqlConnection(SessionPtr session);

    HRESULT STDMETHODCALLTYPE get_Connection(IConnection** value) override;
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE LookupValue(BSTR field, BSTR table, BSTR condition, VARIANT* value) override;

    /// The service's id is its interface's id (Zul_Host.idl). Every call gives a new object, whose life does
    /// not depend on this one's.
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID riid, void** object) override;

private:
    const DispTable<_SqlConnection>& dispTable() const override;

    SessionPtr m_session;
    ComPtr<IConnection> m_connection;
};

} // namespace zul::host
