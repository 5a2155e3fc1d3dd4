#pragma once
// The connection that runs the component's statements, over any engine; what it does goes into the journal.
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/database/Session.h"

#include <Zul_SQL.h>

namespace zul::host {

class Connection final : public ComObject<Dispatching<IConnection>>
{
public:
    explicit Connection(SessionPtr session)
        : m_session(std::move(session))
    {}

    HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR* value) override;
    HRESULT STDMETHODCALLTYPE Execute(BSTR sql, LONG* affected) override;
    HRESULT STDMETHODCALLTYPE OpenRecordset(BSTR source, CursorKind cursor, LockKind lock,
                                            IRecordset** recordset) override;
    HRESULT STDMETHODCALLTYPE BeginTrans() override;
    HRESULT STDMETHODCALLTYPE CommitTrans() override;
    HRESULT STDMETHODCALLTYPE RollbackTrans() override;

private:
    const DispTable<IConnection>& dispTable() const override;
    HRESULT transact(std::string_view operation, void (Engine::*step)());

    SessionPtr m_session;
};

} // namespace zul::host
