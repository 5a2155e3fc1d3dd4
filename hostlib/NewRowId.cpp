#include "hostlib/NewRowId.h"

namespace zul::hostlib {

using namespace Qt::StringLiterals;

namespace {

/// Ends a transaction after an error. That the connection cannot even do this is no news next to the error.
void rollbackQuietly(const ado::Connection& database) noexcept
{
    try {
        database.rollback();
    } catch (...) {
        return;
    }
}

/// A shared lock ends with the reading, and two readers would get one key; the update lock and the range it is
/// held on keep the second one waiting until the first has written its row.
qint32 keyAfterLargest(const ado::Connection& database, const QString& table, const QString& key)
{
    ado::Recordset largest =
        database.open(u"SELECT Max("_s + key + u") as maxId FROM "_s + table + u" WITH (UPDLOCK, HOLDLOCK)"_s,
                      ado::Cursor::Static, ado::Lock::ReadOnly);
    const qint32 next = ado::keyAfter(largest.integer(u"maxId"_s, 0));
    largest.close();
    return next;
}

} // namespace

NewRowId::NewRowId(const SqlConnection& connection, const QString& table, const QString& key)
{
    if (const std::optional<qint32> generated = connection.generatedId(table, key)) {
        m_value = *generated;
        return;
    }
    const ado::Connection database = connection.connection();
    database.begin();
    try {
        m_value = keyAfterLargest(database, table, key);
        m_transaction = database;
    } catch (...) {
        rollbackQuietly(database);
        throw;
    }
}

NewRowId::~NewRowId()
{
    if (m_transaction) {
        rollbackQuietly(*m_transaction);
    }
}

void NewRowId::written()
{
    if (!m_transaction) {
        return;
    }
    m_transaction->commit();
    m_transaction.reset();
}

} // namespace zul::hostlib
