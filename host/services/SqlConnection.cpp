#include "host/services/SqlConnection.h"

#include "host/database/Connection.h"
#include "host/database/VariantValue.h"
#include "host/services/Services.h"

namespace zul::host {

namespace {

constexpr std::u16string_view sourceName = u"Zul_SQL.SqlConnection";

} // namespace

SqlConnection::SqlConnection(SessionPtr session)
    : m_session(std::move(session))
    , m_connection(makeCom<Connection>(m_session))
{}

const DispTable<_SqlConnection>& SqlConnection::dispTable() const
{
    using namespace zul::dispatch;
    static const DispTable<_SqlConnection> table{
        propget("Connection", 1, &_SqlConnection::get_Connection),
        propget("UserName", 2, &_SqlConnection::get_UserName),
        method("LookupValue", 3, &_SqlConnection::LookupValue, {"field", "table", "condition"}),
    };
    return table;
}

HRESULT SqlConnection::get_Connection(IConnection** value)
{
    return m_connection.copyTo(value);
}

HRESULT SqlConnection::get_UserName(BSTR* value)
{
    if (value == nullptr) {
        return E_POINTER;
    }
    *value = nullptr;
    return hostGuard(sourceName, [&] { *value = Bstr::fromUtf8(m_session->userName).detach(); });
}

HRESULT SqlConnection::LookupValue(BSTR field, BSTR table, BSTR condition, VARIANT* value)
{
    if (value == nullptr) {
        return E_POINTER;
    }
    VariantInit(value);
    return hostGuard(sourceName, [&] {
        const std::string fieldText = utf8FromUtf16(textOf(field));
        const std::string tableText = utf8FromUtf16(textOf(table));
        const std::string conditionText = utf8FromUtf16(textOf(condition));
        std::string sql = "SELECT " + fieldText + " FROM " + tableText;
        if (!conditionText.empty()) {
            sql += " WHERE " + conditionText;
        }
        Variant found;
        journaled(
            [&] {
                const auto rows = m_session->engine->query(sql, Language::Transact);
                if (rows->next()) {
                    found = variantOf(rows->cells()[0], rows->columns()[0]);
                }
            },
            [&](std::string_view error) {
                m_session->journal.lookup(fieldText, tableText, conditionText, error);
            });
        found.detachTo(value);
    });
}

HRESULT SqlConnection::QueryService(REFGUID service, REFIID riid, void** object)
{
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    return hostGuard(sourceName, [&]() -> HRESULT {
        const ComPtr<IUnknown> created = createService(m_session, service);
        return created ? created->QueryInterface(riid, object) : E_NOINTERFACE;
    });
}

} // namespace zul::host
