#include "automation/ComObject.h"
#include "tests/support/fake/EarlyBound.h"
#include "tests/support/fake/Services.h"

namespace zul::test {

namespace {

class FakeMessageRecord final : public ComObject<EarlyBound<IMessageRecord>>
{
public:
    explicit FakeMessageRecord(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE put_IdTipoMessaggio(LONG value) override
    {
        return put("IdTipoMessaggio", value);
    }
    HRESULT STDMETHODCALLTYPE put_Descrizione(BSTR value) override { return put("Descrizione", value); }
    HRESULT STDMETHODCALLTYPE put_Testo(BSTR value) override { return put("Testo", value); }
    HRESULT STDMETHODCALLTYPE put_Contatto(BSTR value) override { return put("Contatto", value); }
    HRESULT STDMETHODCALLTYPE put_IDCliente(LONG value) override { return put("IDCliente", value); }
    HRESULT STDMETHODCALLTYPE put_Riferimento(BSTR value) override { return put("Riferimento", value); }
    HRESULT STDMETHODCALLTYPE put_Flag1(VARIANT_BOOL value) override { return putFlag("Flag1", value); }
    HRESULT STDMETHODCALLTYPE put_Flag2(VARIANT_BOOL value) override { return putFlag("Flag2", value); }
    HRESULT STDMETHODCALLTYPE put_Flag3(VARIANT_BOOL value) override { return putFlag("Flag3", value); }
    HRESULT STDMETHODCALLTYPE put_Valore(LONG value) override { return put("Valore", value); }
    HRESULT STDMETHODCALLTYPE put_DataCreaz(DATE value) override { return putDate("DataCreaz", value); }
    HRESULT STDMETHODCALLTYPE put_OraCreaz(DATE value) override { return putDate("OraCreaz", value); }
    HRESULT STDMETHODCALLTYPE put_UtenteUltimoAccesso(BSTR value) override
    {
        return put("UtenteUltimoAccesso", value);
    }
    HRESULT STDMETHODCALLTYPE Save(_SqlConnection* connection, VARIANT_BOOL* stored) override
    {
        *stored = VARIANT_FALSE;
        if (connection == nullptr) {
            return E_POINTER;
        }
        FilledRecord filled;
        filled.swap(m_filled);
        if (const HRESULT result = m_state->perform("save"); FAILED(result)) {
            return result;
        }
        if (!FakeHost::State::next(m_state->saveAnswers, true)) {
            return S_OK;
        }
        m_state->savedRecords.push_back(std::move(filled));
        *stored = VARIANT_TRUE;
        return S_OK;
    }

private:
    HRESULT put(const char* name, LONG value)
    {
        m_filled.emplace_back(name, Variant::fromLong(value));
        return S_OK;
    }
    HRESULT put(const char* name, BSTR value)
    {
        m_filled.emplace_back(name, Variant::fromText(textOf(value)));
        return S_OK;
    }
    HRESULT putFlag(const char* name, VARIANT_BOOL value)
    {
        m_filled.emplace_back(name, Variant::fromBool(value != VARIANT_FALSE));
        return S_OK;
    }
    HRESULT putDate(const char* name, DATE value)
    {
        m_filled.emplace_back(name, Variant::fromDate(value));
        return S_OK;
    }

    StatePtr m_state;
    FilledRecord m_filled;
};

} // namespace

ComPtr<IMessageRecord> makeMessageRecord(StatePtr state)
{
    return makeCom<FakeMessageRecord>(std::move(state));
}

} // namespace zul::test
