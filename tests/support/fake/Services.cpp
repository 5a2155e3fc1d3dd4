#include "tests/support/fake/Services.h"

#include "automation/ComObject.h"
#include "tests/support/fake/EarlyBound.h"

namespace zul::test {

namespace {

class FakeIdGenerator final : public ComObject<EarlyBound<IIdGenerator>>
{
public:
    explicit FakeIdGenerator(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE NextId(BSTR table, BSTR key, _SqlConnection* connection, LONG* id) override
    {
        *id = 0;
        if (connection == nullptr) {
            return E_POINTER;
        }
        const HRESULT result = m_state->perform("nextid", utf8(table) + " " + utf8(key));
        if (SUCCEEDED(result)) {
            *id = static_cast<LONG>(m_state->nextId++);
        }
        return result;
    }

private:
    StatePtr m_state;
};

class FakeTextParser final : public ComObject<EarlyBound<ITextParser>>
{
public:
    explicit FakeTextParser(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE Parse(BSTR source, ICustomer* customer, BSTR classificazione,
                                    BSTR* parsed) override
    {
        *parsed = nullptr;
        Bstr name;
        if (customer != nullptr) {
            customer->get_Name(name.put());
        }
        const HRESULT result =
            m_state->perform("parse", utf8(source) + "|" + name.toUtf8() + "|" + utf8(classificazione));
        if (FAILED(result)) {
            return result;
        }
        *parsed =
            Bstr::fromUtf8(utf8(source) + "<" + name.toUtf8() + "," + utf8(classificazione) + ">").detach();
        return S_OK;
    }

private:
    StatePtr m_state;
};

class FakeAdvancedSearch final : public ComObject<EarlyBound<IAdvancedSearch>>
{
public:
    explicit FakeAdvancedSearch(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE put_Connection(_SqlConnection* value) override
    {
        m_hasConnection = value != nullptr;
        return m_state->perform("searchconnection");
    }
    HRESULT STDMETHODCALLTYPE Search(LONG kind, BSTR* filter) override
    {
        *filter = nullptr;
        if (!m_hasConnection) {
            return E_UNEXPECTED;
        }
        if (const HRESULT result = m_state->perform("search", std::to_string(kind)); FAILED(result)) {
            return result;
        }
        *filter = Bstr::fromUtf8(FakeHost::State::next(m_state->searchAnswers, std::string())).detach();
        return S_OK;
    }

private:
    StatePtr m_state;
    bool m_hasConnection = false;
};

class FakeChangeTracker final : public ComObject<EarlyBound<IChangeTracker>>
{
public:
    explicit FakeChangeTracker(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE RowAdded(BSTR table, LONG id, _SqlConnection* connection) override
    {
        if (connection == nullptr) {
            return E_POINTER;
        }
        return m_state->perform("tracked", utf8(table) + " " + std::to_string(id));
    }

private:
    StatePtr m_state;
};

class FakeEmailCheck final : public ComObject<EarlyBound<IEmailCheck>>
{
public:
    explicit FakeEmailCheck(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE IsValid(BSTR email, VARIANT_BOOL* valid) override
    {
        *valid = VARIANT_FALSE;
        if (const HRESULT result = m_state->perform("checkemail", utf8(email)); FAILED(result)) {
            return result;
        }
        *valid = m_state->isValidEmail(utf8(email)) ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }

private:
    StatePtr m_state;
};

class FakeProgramStarter final : public ComObject<EarlyBound<IProgramStarter>>
{
public:
    explicit FakeProgramStarter(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE Start(BSTR path, BSTR parameters) override
    {
        return m_state->perform("start", utf8(path) + "|" + utf8(parameters));
    }

private:
    StatePtr m_state;
};

template <class I, class T>
ComPtr<I> makeObject(StatePtr state)
{
    return makeCom<T>(std::move(state));
}

template <class I>
bool serve(const StatePtr& state, Service service, REFIID iid, void** object, ComPtr<I> (*make)(StatePtr))
{
    if (!(iid == iidOf<I>()) || state->services.count(service) == 0) {
        return false;
    }
    ++state->made[service];
    *object = make(state).detach();
    return true;
}

} // namespace

bool makeService(const StatePtr& state, REFIID iid, void** object)
{
    return serve<IIdGenerator>(state, Service::IdGenerator, iid, object,
                               makeObject<IIdGenerator, FakeIdGenerator>) ||
           serve<ICustomer>(state, Service::Customer, iid, object, makeCustomer) ||
           serve<IMessageRecord>(state, Service::MessageRecord, iid, object, makeMessageRecord) ||
           serve<ITextParser>(state, Service::TextParser, iid, object,
                              makeObject<ITextParser, FakeTextParser>) ||
           serve<IAppConnector>(state, Service::AppConnector, iid, object, makeAppConnector) ||
           serve<ICustomerFilterSql>(state, Service::CustomerFilterSql, iid, object, makeCustomerFilterSql) ||
           serve<IAdvancedSearch>(state, Service::AdvancedSearch, iid, object,
                                  makeObject<IAdvancedSearch, FakeAdvancedSearch>) ||
           serve<IChangeTracker>(state, Service::ChangeTracker, iid, object,
                                 makeObject<IChangeTracker, FakeChangeTracker>) ||
           serve<IEmailCheck>(state, Service::EmailCheck, iid, object,
                              makeObject<IEmailCheck, FakeEmailCheck>) ||
           serve<IProgramStarter>(state, Service::ProgramStarter, iid, object,
                                  makeObject<IProgramStarter, FakeProgramStarter>);
}

} // namespace zul::test
