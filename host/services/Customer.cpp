#include "automation/Bstr.h"
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/database/Cell.h"
#include "host/services/CustomerData.h"
#include "host/services/Services.h"

namespace zul::host {

namespace {

constexpr std::u16string_view sourceName = u"Zul_Host.Customer";

std::u16string textOf(const ZulCell& cell)
{
    return utf16FromUtf8(cellText(cell));
}

class Customer final : public ComObject<Dispatching<ICustomer>, ICustomerData>
{
public:
    explicit Customer(SessionPtr session)
        : m_session(std::move(session))
    {}

    const CustomerData& STDMETHODCALLTYPE customerData() const override { return m_data; }

    HRESULT STDMETHODCALLTYPE Init(LONG idCliente, _SqlConnection* connection) override
    {
        m_data = {};
        if (connection == nullptr) {
            return reportError(E_POINTER, u"no connection", sourceName);
        }
        return hostGuard(sourceName, [&] {
            if (auto data = readCustomer(*m_session->engine, idCliente)) {
                m_data = std::move(*data);
            }
        });
    }

    HRESULT STDMETHODCALLTYPE get_Id(LONG* value) override { return number(value, m_data.id); }

    HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override
    {
        return text(value, m_data.id != 0 ? m_data.name() : std::u16string());
    }

    HRESULT STDMETHODCALLTYPE get_Email(BSTR* value) override { return text(value, m_data.email); }

    HRESULT STDMETHODCALLTYPE get_ConsensoSms(VARIANT_BOOL* value) override
    {
        return flag(value, m_data.smsConsent);
    }

    HRESULT STDMETHODCALLTYPE get_ConsensoEmail(VARIANT_BOOL* value) override
    {
        return flag(value, m_data.emailConsent);
    }

    HRESULT STDMETHODCALLTYPE get_IdClassificazione(LONG* value) override
    {
        return number(value, m_data.classification);
    }

private:
    static HRESULT number(LONG* value, std::int64_t from)
    {
        if (value == nullptr) {
            return E_POINTER;
        }
        *value = static_cast<LONG>(from);
        return S_OK;
    }

    static HRESULT flag(VARIANT_BOOL* value, bool from)
    {
        if (value == nullptr) {
            return E_POINTER;
        }
        *value = from ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }

    static HRESULT text(BSTR* value, const std::u16string& from)
    {
        if (value == nullptr) {
            return E_POINTER;
        }
        *value = nullptr;
        return hostGuard(sourceName, [&] { *value = Bstr(from).detach(); });
    }

    const DispTable<ICustomer>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<ICustomer> table{
            method("Init", 1, &ICustomer::Init, {"idCliente", "connection"}),
            propget("Id", 2, &ICustomer::get_Id),
            propget("Name", 3, &ICustomer::get_Name),
            propget("Email", 4, &ICustomer::get_Email),
            propget("ConsensoSms", 5, &ICustomer::get_ConsensoSms),
            propget("ConsensoEmail", 6, &ICustomer::get_ConsensoEmail),
            propget("IdClassificazione", 7, &ICustomer::get_IdClassificazione),
        };
        return table;
    }

    SessionPtr m_session;
    CustomerData m_data;
};

} // namespace

std::optional<CustomerData> readCustomer(Engine& engine, std::int64_t id)
{
    const Value key(id);
    const auto rows =
        engine.query("SELECT RagioneSociale1, RagioneSociale2, Paese, provincia, Telefono2, email,"
                     " DataNascita, ConsensoSms, ConsensoEmail, idClassificazione"
                     " FROM tabClienti WHERE IdCliente = ?",
                     Language::Native, {&key, 1});
    if (!rows->next()) {
        return std::nullopt;
    }
    const ZulCell* cells = rows->cells();
    CustomerData data;
    data.id = id;
    data.firstName = textOf(cells[0]);
    data.secondName = textOf(cells[1]);
    data.place = textOf(cells[2]);
    data.province = textOf(cells[3]);
    data.mobile = textOf(cells[4]);
    data.email = textOf(cells[5]);
    if (cells[6].Kind == CellDate) {
        data.birth = cells[6].Real;
    }
    data.smsConsent = cellNumber(cells[7]) != 0;
    data.emailConsent = cellNumber(cells[8]) != 0;
    data.classification = cellNumber(cells[9]);
    return data;
}

ComPtr<ICustomer> makeCustomer(SessionPtr session)
{
    return makeCom<Customer>(std::move(session));
}

} // namespace zul::host
