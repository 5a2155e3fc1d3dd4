#include "host/check/Subject.h"

#include "base/Utf8.h"
#include "host/check/Verdict.h"

#include <utility>

namespace zul::host::check {

Subject::Subject(_SqlConnection* object, CheckOptions options)
    : m_object(object)
    , m_options(std::move(options))
{}

Subject::~Subject()
{
    if (m_madeTable) {
        // A transaction that a broken host left open would keep the table.
        m_connection->RollbackTrans();
        dropTable();
    }
    forgetErrors();
}

void Subject::connect()
{
    IConnection* handedOut = nullptr;
    mustSucceed(m_object->get_Connection(&handedOut), "Connection");
    if (handedOut == nullptr) {
        throw Breach("Connection succeeds and gives null", "logs \"object not set\" for every command");
    }
    m_connection = ComPtr<IConnection>::adopt(handedOut);
}

void Subject::createTable()
{
    if (m_options.readOnly) {
        throw Skipped("read-only");
    }
    dropTable();
    LONG affected = 0;
    const HRESULT result = m_connection->Execute(Bstr(m_options.createTable).get(), &affected);
    if (FAILED(result)) {
        throw Breach(
            "the table cannot be made: Execute \"" + utf8FromUtf16(m_options.createTable) +
                "\" fails: " + takeFailure(result).text(),
            "makes no table itself; but nothing that writes could be tried, which --read-only passes over");
    }
    m_madeTable = true;
}

void Subject::requireTable() const
{
    if (!m_madeTable) {
        throw Skipped(m_options.readOnly ? "read-only" : std::string("there is no table to work on"));
    }
}

void Subject::dropTable() const noexcept
{
    LONG affected = 0;
    m_connection->Execute(Bstr(u"DROP TABLE zulVerifica").get(), &affected);
    forgetErrors();
}

void Subject::emptyTable() const
{
    execute(u"DELETE FROM zulVerifica");
}

LONG Subject::execute(std::u16string_view sql) const
{
    LONG affected = -1;
    mustSucceed(m_connection->Execute(Bstr(sql).get(), &affected), "Execute " + shown(sql));
    return affected;
}

Failure Subject::tryExecute(std::u16string_view sql) const
{
    forgetErrors();
    LONG affected = 0;
    return takeFailure(m_connection->Execute(Bstr(sql).get(), &affected));
}

Failure Subject::tryOpen(std::u16string_view sql, CursorKind cursor, LockKind lock) const
{
    forgetErrors();
    ComPtr<IRecordset> rows;
    const HRESULT result = m_connection->OpenRecordset(Bstr(sql).get(), cursor, lock, rows.put());
    if (FAILED(result)) {
        rows.detach(); // what a failed call leaves behind is no reference
    }
    return takeFailure(result);
}

Failure Subject::tryLookup(std::u16string_view field, std::u16string_view table,
                           std::u16string_view condition, Variant& value) const
{
    forgetErrors();
    return takeFailure(
        m_object->LookupValue(Bstr(field).get(), Bstr(table).get(), Bstr(condition).get(), value.put()));
}

Rows Subject::open(std::u16string_view sql, CursorKind cursor, LockKind lock) const
{
    ComPtr<IRecordset> rows;
    const HRESULT result = m_connection->OpenRecordset(Bstr(sql).get(), cursor, lock, rows.put());
    if (FAILED(result)) {
        rows.detach();
    }
    mustSucceed(result, "OpenRecordset " + shown(sql));
    if (!rows) {
        throw Breach("OpenRecordset " + shown(sql) + " succeeds and gives null",
                     "ends the operator's command: there is no row set to read");
    }
    return Rows(std::move(rows), sql);
}

Variant Subject::single(std::u16string_view sql) const
{
    const Rows rows = open(sql);
    if (rows.atEnd()) {
        throw Breach("the row set " + shown(sql) + " has no row", "shows no rows");
    }
    return rows.value(rows.fieldName(0));
}

LONG Subject::rowsInTable() const
{
    return static_cast<LONG>(
        numberOf(single(u"SELECT COUNT(*) AS quanti FROM zulVerifica"), "the number of rows"));
}

void Subject::addRow(LONG id, std::u16string_view column, const Variant& value) const
{
    const Rows rows = open(u"SELECT * FROM zulVerifica WHERE 1=2", CursorDynamic, LockOptimistic);
    rows.addNew();
    rows.put(u"id", Variant::fromLong(id));
    if (!column.empty()) {
        rows.put(column, value);
    }
    rows.update();
}

Variant Subject::brought(std::u16string_view column, const Variant& value, std::u16string_view literal)
{
    if (isReadOnly()) {
        const std::u16string sql = u"SELECT " + std::u16string(literal) + u" AS valore";
        m_broughtBy = " by " + shown(sql);
        return single(sql);
    }
    if (!m_addsRows) {
        throw Skipped("no row can be added to try it with");
    }
    const LONG id = ++m_nextId;
    addRow(id, column, value);
    const std::u16string number = utf16FromUtf8(std::to_string(id));
    return single(u"SELECT " + std::u16string(column) + u" FROM zulVerifica WHERE id = " + number);
}

} // namespace zul::host::check
