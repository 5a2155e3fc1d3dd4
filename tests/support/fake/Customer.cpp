#include "automation/ComObject.h"
#include "tests/support/fake/EarlyBound.h"
#include "tests/support/fake/Services.h"

namespace zul::test {

namespace {

class FakeCustomerObject final : public ComObject<EarlyBound<ICustomer>>
{
public:
    explicit FakeCustomerObject(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE Init(LONG idCliente, _SqlConnection* connection) override
    {
        m_customer = {};
        m_id = 0;
        if (connection == nullptr) {
            return E_POINTER;
        }
        const HRESULT result = m_state->perform("customer", std::to_string(idCliente));
        if (FAILED(result)) {
            return result;
        }
        const auto found = m_state->customers.find(idCliente);
        if (found != m_state->customers.end()) {
            m_customer = found->second;
            m_id = idCliente;
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Id(LONG* value) override
    {
        *value = m_id;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override
    {
        *value = Bstr::fromUtf8(m_customer.name).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Email(BSTR* value) override
    {
        *value = Bstr::fromUtf8(m_customer.email).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_ConsensoSms(VARIANT_BOOL* value) override
    {
        *value = m_id != 0 && m_customer.consensoSms ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_ConsensoEmail(VARIANT_BOOL* value) override
    {
        *value = m_id != 0 && m_customer.consensoEmail ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_IdClassificazione(LONG* value) override
    {
        *value = static_cast<LONG>(m_customer.idClassificazione);
        return S_OK;
    }

private:
    StatePtr m_state;
    FakeCustomer m_customer;
    LONG m_id = 0;
};

} // namespace

ComPtr<ICustomer> makeCustomer(StatePtr state)
{
    return makeCom<FakeCustomerObject>(std::move(state));
}

} // namespace zul::test
