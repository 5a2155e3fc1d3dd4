#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "host/services/Services.h"

namespace zul::host {

namespace {

constexpr std::u16string_view sourceName = u"Zul_Host.IdGenerator";

class IdGenerator final : public ComObject<Dispatching<IIdGenerator>>
{
public:
    explicit IdGenerator(SessionPtr session)
        : m_session(std::move(session))
    {}

    HRESULT STDMETHODCALLTYPE NextId(BSTR table, BSTR key, _SqlConnection* connection, LONG* id) override
    {
        if (id == nullptr) {
            return E_POINTER;
        }
        *id = 0;
        if (connection == nullptr) {
            return reportError(E_POINTER, u"no connection", sourceName);
        }
        return hostGuard(sourceName, [&] {
            const std::string tableName = utf8FromUtf16(textOf(table));
            const std::string keyName = utf8FromUtf16(textOf(key));
            std::int64_t next = 0;
            journaled(
                [&] {
                    next = m_session->engine->nextId(tableName, keyName);
                    requireGivableId(next, tableName);
                },
                [&](std::string_view error) { m_session->journal.nextId(tableName, keyName, next, error); });
            *id = static_cast<LONG>(next);
        });
    }

private:
    const DispTable<IIdGenerator>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<IIdGenerator> table{
            method("NextId", 1, &IIdGenerator::NextId, {"table", "key", "connection"}),
        };
        return table;
    }

    SessionPtr m_session;
};

} // namespace

ComPtr<IIdGenerator> makeIdGenerator(SessionPtr session)
{
    return makeCom<IdGenerator>(std::move(session));
}

} // namespace zul::host
