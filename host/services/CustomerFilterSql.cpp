#include "automation/Bstr.h"
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/services/CustomerFilterRules.h"
#include "host/services/Services.h"

namespace zul::host {

namespace {

class CustomerFilterSql final : public ComObject<Dispatching<ICustomerFilterSql>>
{
public:
    HRESULT STDMETHODCALLTYPE Ricorrenze(LONG idRicorrenza, DATE dal, DATE al, BSTR* sql) override
    {
        return give(sql, [&] { return recurrenceFilter(idRicorrenza, {dal, al}); });
    }
    HRESULT STDMETHODCALLTYPE RicorrenzeIn(LONG idRicorrenza, DATE dal, DATE al, BSTR ids, BSTR* sql) override
    {
        return give(sql, [&] { return recurrenceFilter(idRicorrenza, {dal, al}, among(ids)); });
    }
    HRESULT STDMETHODCALLTYPE PuntiFidelity(double minimo, double massimo, BSTR* sql) override
    {
        return give(sql, [&] { return pointsFilter({minimo, massimo}); });
    }
    HRESULT STDMETHODCALLTYPE PuntiFidelityIn(double minimo, double massimo, BSTR ids, BSTR* sql) override
    {
        return give(sql, [&] { return pointsFilter({minimo, massimo}, among(ids)); });
    }
    HRESULT STDMETHODCALLTYPE Classificazione(LONG idClassificazione, BSTR* sql) override
    {
        return give(sql, [&] { return classificationFilter(idClassificazione); });
    }
    HRESULT STDMETHODCALLTYPE ClassificazioneIn(LONG idClassificazione, BSTR ids, BSTR* sql) override
    {
        return give(sql, [&] { return classificationFilter(idClassificazione, among(ids)); });
    }
    HRESULT STDMETHODCALLTYPE Fatturato(DATE dal, DATE al, double minimo, double massimo, BSTR* sql) override
    {
        return give(sql, [&] { return turnoverFilter({dal, al}, {minimo, massimo}); });
    }
    HRESULT STDMETHODCALLTYPE FatturatoIn(DATE dal, DATE al, double minimo, double massimo, BSTR ids,
                                          BSTR* sql) override
    {
        return give(sql, [&] { return turnoverFilter({dal, al}, {minimo, massimo}, among(ids)); });
    }
    HRESULT STDMETHODCALLTYPE NumeroAcquisti(DATE dal, DATE al, double minimo, double massimo,
                                             BSTR* sql) override
    {
        return give(sql, [&] { return salesCountFilter({dal, al}, {minimo, massimo}); });
    }
    HRESULT STDMETHODCALLTYPE NumeroAcquistiIn(DATE dal, DATE al, double minimo, double massimo, BSTR ids,
                                               BSTR* sql) override
    {
        return give(sql, [&] { return salesCountFilter({dal, al}, {minimo, massimo}, among(ids)); });
    }
    HRESULT STDMETHODCALLTYPE PeriodoAcquisto(DATE dal, DATE al, BSTR* sql) override
    {
        return give(sql, [&] { return salesPeriodFilter({dal, al}); });
    }
    HRESULT STDMETHODCALLTYPE PeriodoAcquistoIn(DATE dal, DATE al, BSTR ids, BSTR* sql) override
    {
        return give(sql, [&] { return salesPeriodFilter({dal, al}, among(ids)); });
    }

private:
    // An empty sub-select restricts to nobody, not to everybody.
    static std::string among(BSTR ids)
    {
        const std::u16string_view text = textOf(ids);
        return text.empty() ? std::string("SELECT NULL WHERE 1 = 0") : utf8FromUtf16(text);
    }

    template <typename Build>
    static HRESULT give(BSTR* sql, Build&& build)
    {
        if (sql == nullptr) {
            return E_POINTER;
        }
        *sql = nullptr;
        return hostGuard(u"Zul_Host.CustomerFilterSql", [&] { *sql = Bstr::fromUtf8(build()).detach(); });
    }

    const DispTable<ICustomerFilterSql>& dispTable() const override
    {
        using namespace zul::dispatch;
        using I = ICustomerFilterSql;
        static const DispTable<I> table{
            method("Ricorrenze", 1, &I::Ricorrenze, {"idRicorrenza", date("dal"), date("al")}),
            method("RicorrenzeIn", 2, &I::RicorrenzeIn, {"idRicorrenza", date("dal"), date("al"), "ids"}),
            method("PuntiFidelity", 3, &I::PuntiFidelity, {"minimo", "massimo"}),
            method("PuntiFidelityIn", 4, &I::PuntiFidelityIn, {"minimo", "massimo", "ids"}),
            method("Classificazione", 5, &I::Classificazione, {"idClassificazione"}),
            method("ClassificazioneIn", 6, &I::ClassificazioneIn, {"idClassificazione", "ids"}),
            method("Fatturato", 7, &I::Fatturato, {date("dal"), date("al"), "minimo", "massimo"}),
            method("FatturatoIn", 8, &I::FatturatoIn, {date("dal"), date("al"), "minimo", "massimo", "ids"}),
            method("NumeroAcquisti", 9, &I::NumeroAcquisti, {date("dal"), date("al"), "minimo", "massimo"}),
            method("NumeroAcquistiIn", 10, &I::NumeroAcquistiIn,
                   {date("dal"), date("al"), "minimo", "massimo", "ids"}),
            method("PeriodoAcquisto", 11, &I::PeriodoAcquisto, {date("dal"), date("al")}),
            method("PeriodoAcquistoIn", 12, &I::PeriodoAcquistoIn, {date("dal"), date("al"), "ids"}),
        };
        return table;
    }
};

} // namespace

ComPtr<ICustomerFilterSql> makeCustomerFilterSql()
{
    return makeCom<CustomerFilterSql>();
}

} // namespace zul::host
