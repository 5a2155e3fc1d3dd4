#include "automation/Bstr.h"
#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/services/Services.h"

#include <array>
#include <optional>

namespace zul::host {

namespace {

constexpr std::u16string_view sourceName = u"Zul_Host.MessageRecord";

// The columns behind the properties, in the order in which they are written.
enum Column
{
    IdTipoMessaggio,
    Descrizione,
    Testo,
    Contatto,
    IDCliente,
    Riferimento,
    Flag1,
    Flag2,
    Flag3,
    Valore,
    DataCreaz,
    OraCreaz,
    UtenteUltimoAccesso,
    ColumnCount
};

constexpr std::array<std::string_view, ColumnCount> columnNames{
    "idTipoMessaggio", "Descrizione", "Testo",  "Contatto",  "IDCliente", "Riferimento",        "Flag1",
    "Flag2",           "Flag3",       "Valore", "DataCreaz", "OraCreaz",  "UtenteUltimoAccesso"};

constexpr std::string_view table = "TMK_MailingList";
constexpr std::string_view key = "idMailing";

class MessageRecord final : public ComObject<Dispatching<IMessageRecord>>
{
public:
    explicit MessageRecord(SessionPtr session)
        : m_session(std::move(session))
    {}

    HRESULT STDMETHODCALLTYPE put_IdTipoMessaggio(LONG value) override { return put(IdTipoMessaggio, value); }
    HRESULT STDMETHODCALLTYPE put_Descrizione(BSTR value) override { return put(Descrizione, value); }
    HRESULT STDMETHODCALLTYPE put_Testo(BSTR value) override { return put(Testo, value); }
    HRESULT STDMETHODCALLTYPE put_Contatto(BSTR value) override { return put(Contatto, value); }
    HRESULT STDMETHODCALLTYPE put_IDCliente(LONG value) override { return put(IDCliente, value); }
    HRESULT STDMETHODCALLTYPE put_Riferimento(BSTR value) override { return put(Riferimento, value); }
    HRESULT STDMETHODCALLTYPE put_Flag1(VARIANT_BOOL value) override { return put(Flag1, value); }
    HRESULT STDMETHODCALLTYPE put_Flag2(VARIANT_BOOL value) override { return put(Flag2, value); }
    HRESULT STDMETHODCALLTYPE put_Flag3(VARIANT_BOOL value) override { return put(Flag3, value); }
    HRESULT STDMETHODCALLTYPE put_Valore(LONG value) override { return put(Valore, value); }
    HRESULT STDMETHODCALLTYPE put_DataCreaz(DATE value) override { return put(DataCreaz, value); }
    HRESULT STDMETHODCALLTYPE put_OraCreaz(DATE value) override { return put(OraCreaz, value); }
    HRESULT STDMETHODCALLTYPE put_UtenteUltimoAccesso(BSTR value) override
    {
        return put(UtenteUltimoAccesso, value);
    }

    HRESULT STDMETHODCALLTYPE Save(_SqlConnection* connection, VARIANT_BOOL* stored) override
    {
        if (stored == nullptr) {
            return E_POINTER;
        }
        *stored = VARIANT_FALSE;
        if (connection == nullptr) {
            return reportError(E_POINTER, u"no connection", sourceName);
        }
        return hostGuard(sourceName, [&] {
            // The record is empty afterwards in every case: a message that failed must not colour the next.
            const auto set = std::exchange(m_values, {});
            std::vector<std::string_view> columns;
            std::vector<Value> values;
            for (std::size_t i = 0; i < ColumnCount; ++i) {
                if (set[i]) {
                    columns.push_back(columnNames[i]);
                    values.push_back(*set[i]);
                }
            }
            std::int64_t id = 0;
            journaled(
                [&] {
                    m_session->engine->addRow({table, key, columns, values}, id);
                },
                [&](std::string_view error) { log(id, columns, values, error); });
            *stored = VARIANT_TRUE;
        });
    }

private:
    HRESULT put(Column column, BSTR value)
    {
        return hostGuard(sourceName, [&] { m_values[column] = utf8FromUtf16(textOf(value)); });
    }
    HRESULT put(Column column, LONG value)
    {
        m_values[column] = std::int64_t{value};
        return S_OK;
    }
    HRESULT put(Column column, VARIANT_BOOL value)
    {
        m_values[column] = value != VARIANT_FALSE;
        return S_OK;
    }
    HRESULT put(Column column, DATE value)
    {
        m_values[column] = DateValue{value};
        return S_OK;
    }

    // A record that did not get as far as its id has nothing to show.
    void log(std::int64_t id, const std::vector<std::string_view>& columns, const std::vector<Value>& values,
             std::string_view error)
    {
        if (!m_session->journal.isOpen()) {
            return;
        }
        ColumnValues logged;
        if (id != 0) {
            logged.emplace_back(key, id);
            for (std::size_t i = 0; i < columns.size(); ++i) {
                logged.emplace_back(columns[i], values[i]);
            }
        }
        m_session->journal.insert(table, logged, error);
    }

    const DispTable<IMessageRecord>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<IMessageRecord> members{
            propput("IdTipoMessaggio", 1, &IMessageRecord::put_IdTipoMessaggio, {"value"}),
            propput("Descrizione", 2, &IMessageRecord::put_Descrizione, {"value"}),
            propput("Testo", 3, &IMessageRecord::put_Testo, {"value"}),
            propput("Contatto", 4, &IMessageRecord::put_Contatto, {"value"}),
            propput("IDCliente", 5, &IMessageRecord::put_IDCliente, {"value"}),
            propput("Riferimento", 6, &IMessageRecord::put_Riferimento, {"value"}),
            propput("Flag1", 7, &IMessageRecord::put_Flag1, {"value"}),
            propput("Flag2", 8, &IMessageRecord::put_Flag2, {"value"}),
            propput("Flag3", 9, &IMessageRecord::put_Flag3, {"value"}),
            propput("Valore", 10, &IMessageRecord::put_Valore, {"value"}),
            propput("DataCreaz", 11, &IMessageRecord::put_DataCreaz, {date("value")}),
            propput("OraCreaz", 12, &IMessageRecord::put_OraCreaz, {date("value")}),
            propput("UtenteUltimoAccesso", 13, &IMessageRecord::put_UtenteUltimoAccesso, {"value"}),
            method("Save", 14, &IMessageRecord::Save, {"connection"}),
        };
        return members;
    }

    SessionPtr m_session;
    std::array<std::optional<Value>, ColumnCount> m_values;
};

} // namespace

ComPtr<IMessageRecord> makeMessageRecord(SessionPtr session)
{
    return makeCom<MessageRecord>(std::move(session));
}

} // namespace zul::host
