#include "host/database/Connection.h"

#include "host/database/Recordset.h"

#include <algorithm>
#include <limits>

namespace zul::host {

namespace {

constexpr std::u16string_view sourceName = u"Zul_SQL.Connection";

} // namespace

const DispTable<IConnection>& Connection::dispTable() const
{
    using namespace zul::dispatch;
    static const DispTable<IConnection> table{
        propget("ConnectionString", 1, &IConnection::get_ConnectionString),
        method("Execute", 2, &IConnection::Execute, {"sql"}),
        method("OpenRecordset", 3, &IConnection::OpenRecordset, {"source", "cursor", "lock"}),
        method("BeginTrans", 4, &IConnection::BeginTrans),
        method("CommitTrans", 5, &IConnection::CommitTrans),
        method("RollbackTrans", 6, &IConnection::RollbackTrans),
    };
    return table;
}

HRESULT Connection::get_ConnectionString(BSTR* value)
{
    if (value == nullptr) {
        return E_POINTER;
    }
    *value = nullptr;
    return hostGuard(sourceName,
                     [&] { *value = Bstr::fromUtf8(m_session->engine->connectionString()).detach(); });
}

HRESULT Connection::Execute(BSTR sql, LONG* affected)
{
    if (affected == nullptr) {
        return E_POINTER;
    }
    *affected = 0;
    return hostGuard(sourceName, [&] {
        const std::string text = utf8FromUtf16(textOf(sql));
        std::int64_t touched = 0;
        journaled([&] { touched = m_session->engine->execute(text, Language::Transact); },
                  [&](std::string_view error) { m_session->journal.execute(text, error); });
        *affected = static_cast<LONG>(std::min<std::int64_t>(touched, std::numeric_limits<LONG>::max()));
    });
}

HRESULT Connection::OpenRecordset(BSTR source, CursorKind cursor, LockKind lock, IRecordset** recordset)
{
    if (recordset == nullptr) {
        return E_POINTER;
    }
    *recordset = nullptr;
    return hostGuard(sourceName, [&] {
        const std::string text = utf8FromUtf16(textOf(source));
        const std::string_view cursorName = cursorWord(cursor);
        const std::string_view lockName = lockWord(lock);
        ComPtr<Recordset> opened;
        journaled(
            [&] { opened = Recordset::open(m_session, text, cursor, lock, Journaled::Yes); },
            [&](std::string_view error) { m_session->journal.openRows(text, cursorName, lockName, error); });
        *recordset = opened.detach();
    });
}

HRESULT Connection::transact(std::string_view operation, void (Engine::*step)())
{
    return hostGuard(sourceName, [&] {
        journaled([&] { (m_session->engine.get()->*step)(); },
                  [&](std::string_view error) { m_session->journal.transaction(operation, error); });
    });
}

HRESULT Connection::BeginTrans()
{
    return transact("begin", &Engine::begin);
}

HRESULT Connection::CommitTrans()
{
    return transact("commit", &Engine::commit);
}

HRESULT Connection::RollbackTrans()
{
    return transact("rollback", &Engine::rollback);
}

} // namespace zul::host
