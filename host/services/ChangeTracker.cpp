#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "base/DateText.h"
#include "host/database/Schema.h"
#include "host/services/Services.h"

#include <array>

namespace zul::host {

namespace {

constexpr std::u16string_view sourceName = u"Zul_Host.ChangeTracker";

// Keeps a row for every row that the component says it wrote: which, when, by whom.
class ChangeTracker final : public ComObject<Dispatching<IChangeTracker>>
{
public:
    explicit ChangeTracker(SessionPtr session)
        : m_session(std::move(session))
    {}

    HRESULT STDMETHODCALLTYPE RowAdded(BSTR table, LONG id, _SqlConnection* connection) override
    {
        if (connection == nullptr) {
            return reportError(E_POINTER, u"no connection", sourceName);
        }
        return hostGuard(sourceName, [&] {
            Engine& engine = *m_session->engine;
            engine.ensureTable(changeTable());
            static constexpr std::array<std::string_view, 4> columns{"Tabella", "Chiave", "Data", "Utente"};
            const std::array<Value, 4> values{utf8FromUtf16(textOf(table)), std::int64_t{id},
                                              DateValue{currentDate()}, m_session->userName};
            std::int64_t number = 0;
            engine.addRow({"tabModificheRighe", "id", columns, values}, number);
        });
    }

private:
    const DispTable<IChangeTracker>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<IChangeTracker> members{
            method("RowAdded", 1, &IChangeTracker::RowAdded, {"table", "id", "connection"}),
        };
        return members;
    }

    SessionPtr m_session;
};

} // namespace

ComPtr<IChangeTracker> makeChangeTracker(SessionPtr session)
{
    return makeCom<ChangeTracker>(std::move(session));
}

} // namespace zul::host
