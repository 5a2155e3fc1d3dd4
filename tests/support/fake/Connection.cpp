#include "tests/support/fake/Connection.h"

#include "automation/ComObject.h"
#include "tests/support/fake/EarlyBound.h"
#include "tests/support/fake/Recordset.h"
#include "tests/support/fake/Services.h"

#include <array>
#include <servprov.h>

namespace zul::test {

namespace {

class FakeConnection final : public ComObject<EarlyBound<IConnection>>
{
public:
    explicit FakeConnection(StatePtr state)
        : m_state(std::move(state))
    {}

    HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR* value) override
    {
        *value = nullptr;
        if (const HRESULT result = m_state->perform("connectionstring", std::nullopt); FAILED(result)) {
            return result;
        }
        *value = Bstr::fromUtf8(m_state->connectionString).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Execute(BSTR sql, LONG* affected) override
    {
        *affected = 0;
        return m_state->perform("execute", utf8(sql));
    }

    HRESULT STDMETHODCALLTYPE OpenRecordset(BSTR source, CursorKind cursor, LockKind lock,
                                            IRecordset** recordset) override
    {
        *recordset = nullptr;
        static const std::array<const char*, 4> cursors{"forward-only", "keyset", "dynamic", "static"};
        static const std::array<const char*, 4> locks{"?", "read-only", "pessimistic", "optimistic"};
        const std::string sql = utf8(source);
        const HRESULT result =
            m_state->perform("open", sql + " " + cursors.at(static_cast<std::size_t>(cursor)) + " " +
                                         locks.at(static_cast<std::size_t>(lock)));
        if (FAILED(result)) {
            return result;
        }
        *recordset = makeRecordset(m_state, sql, rowsOf(sql)).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE BeginTrans() override { return m_state->perform("begin"); }
    HRESULT STDMETHODCALLTYPE CommitTrans() override { return m_state->perform("commit"); }
    HRESULT STDMETHODCALLTYPE RollbackTrans() override { return m_state->perform("rollback"); }

private:
    Rows rowsOf(const std::string& sql) const
    {
        for (auto script = m_state->answers.rbegin(); script != m_state->answers.rend(); ++script) {
            if (contains(sql, script->first)) {
                return script->second;
            }
        }
        const std::optional<std::string> key = settingsKey(sql);
        if (!key) {
            return {};
        }
        Rows rows{{"idImpostazione", "Descrizione", "Valore"}, {}};
        const auto found = m_state->settings.find(*key);
        if (found != m_state->settings.end()) {
            rows.rows.push_back({number(1), text(*key), found->second ? text(*found->second) : null()});
        }
        return rows;
    }

    StatePtr m_state;
};

class FakeSqlConnection final : public ComObject<EarlyBound<_SqlConnection>, IServiceProvider>
{
public:
    explicit FakeSqlConnection(StatePtr state)
        : m_state(std::move(state))
    {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (iid == iidOf<IServiceProvider>() && m_state->services.empty()) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        return ComObject::QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE get_Connection(IConnection** value) override
    {
        *value = nullptr;
        if (const HRESULT result = m_state->perform("connection", std::nullopt); FAILED(result)) {
            return result;
        }
        *value = makeCom<FakeConnection>(m_state).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override
    {
        *value = nullptr;
        if (const HRESULT result = m_state->perform("user", std::nullopt); FAILED(result)) {
            return result;
        }
        *value = Bstr::fromUtf8(m_state->userName).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE LookupValue(BSTR field, BSTR table, BSTR condition, VARIANT* value) override
    {
        VariantInit(value);
        const HRESULT result =
            m_state->perform("lookup", utf8(field) + "|" + utf8(table) + "|" + utf8(condition));
        if (FAILED(result)) {
            return result;
        }
        const auto found = m_state->lookups.find(utf8(condition));
        if (found != m_state->lookups.end()) {
            Variant(found->second).detachTo(value);
        }
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID iid, void** object) override
    {
        *object = nullptr;
        if (!(service == iid)) {
            return E_INVALIDARG;
        }
        if (const HRESULT result = m_state->perform("service", std::nullopt); FAILED(result)) {
            return result;
        }
        return makeService(m_state, iid, object) ? S_OK : E_NOINTERFACE;
    }

private:
    StatePtr m_state;
};

} // namespace

ComPtr<_SqlConnection> makeSqlConnection(StatePtr state)
{
    return makeCom<FakeSqlConnection>(std::move(state));
}

} // namespace zul::test
