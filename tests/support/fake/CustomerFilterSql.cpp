#include "automation/ComObject.h"
#include "tests/support/fake/EarlyBound.h"
#include "tests/support/fake/Services.h"

namespace zul::test {

namespace {

class FakeFilters final : public ComObject<EarlyBound<ICustomerFilterSql>>
{
public:
    explicit FakeFilters(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE Ricorrenze(LONG id, DATE from, DATE to, BSTR* sql) override
    {
        return give("Ricorrenze", {std::to_string(id), dayText(from), dayText(to)}, nullptr, sql);
    }
    HRESULT STDMETHODCALLTYPE RicorrenzeIn(LONG id, DATE from, DATE to, BSTR ids, BSTR* sql) override
    {
        return give("RicorrenzeIn", {std::to_string(id), dayText(from), dayText(to)}, ids, sql);
    }
    HRESULT STDMETHODCALLTYPE PuntiFidelity(double least, double most, BSTR* sql) override
    {
        return give("PuntiFidelity", {realText(least), realText(most)}, nullptr, sql);
    }
    HRESULT STDMETHODCALLTYPE PuntiFidelityIn(double least, double most, BSTR ids, BSTR* sql) override
    {
        return give("PuntiFidelityIn", {realText(least), realText(most)}, ids, sql);
    }
    HRESULT STDMETHODCALLTYPE Classificazione(LONG id, BSTR* sql) override
    {
        return give("Classificazione", {std::to_string(id)}, nullptr, sql);
    }
    HRESULT STDMETHODCALLTYPE ClassificazioneIn(LONG id, BSTR ids, BSTR* sql) override
    {
        return give("ClassificazioneIn", {std::to_string(id)}, ids, sql);
    }
    HRESULT STDMETHODCALLTYPE Fatturato(DATE from, DATE to, double least, double most, BSTR* sql) override
    {
        return give("Fatturato", {dayText(from), dayText(to), realText(least), realText(most)}, nullptr, sql);
    }
    HRESULT STDMETHODCALLTYPE FatturatoIn(DATE from, DATE to, double least, double most, BSTR ids,
                                          BSTR* sql) override
    {
        return give("FatturatoIn", {dayText(from), dayText(to), realText(least), realText(most)}, ids, sql);
    }
    HRESULT STDMETHODCALLTYPE NumeroAcquisti(DATE from, DATE to, double least, double most,
                                             BSTR* sql) override
    {
        return give("NumeroAcquisti", {dayText(from), dayText(to), realText(least), realText(most)}, nullptr,
                    sql);
    }
    HRESULT STDMETHODCALLTYPE NumeroAcquistiIn(DATE from, DATE to, double least, double most, BSTR ids,
                                               BSTR* sql) override
    {
        return give("NumeroAcquistiIn", {dayText(from), dayText(to), realText(least), realText(most)}, ids,
                    sql);
    }
    HRESULT STDMETHODCALLTYPE PeriodoAcquisto(DATE from, DATE to, BSTR* sql) override
    {
        return give("PeriodoAcquisto", {dayText(from), dayText(to)}, nullptr, sql);
    }
    HRESULT STDMETHODCALLTYPE PeriodoAcquistoIn(DATE from, DATE to, BSTR ids, BSTR* sql) override
    {
        return give("PeriodoAcquistoIn", {dayText(from), dayText(to)}, ids, sql);
    }

private:
    /// The statement is the call itself, so that what is executed tells what was asked for.
    HRESULT give(const char* name, const std::vector<std::string>& arguments, BSTR ids, BSTR* sql)
    {
        *sql = nullptr;
        std::string call = name;
        call.append("(");
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            call.append(i > 0 ? "," : "").append(arguments[i]);
        }
        if (ids != nullptr) {
            call.append(",").append(utf8(ids));
        }
        call.append(")");
        if (const HRESULT result = m_state->perform("filter", call); FAILED(result)) {
            return result;
        }
        *sql = Bstr::fromUtf8(call).detach();
        return S_OK;
    }

    StatePtr m_state;
};

} // namespace

ComPtr<ICustomerFilterSql> makeCustomerFilterSql(StatePtr state)
{
    return makeCom<FakeFilters>(std::move(state));
}

} // namespace zul::test
