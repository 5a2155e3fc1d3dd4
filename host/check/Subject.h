// The host that is checked: its connection object, its connection, and a table of the check's own.
#pragma once

#include "host/check/Rows.h"

#include <servprov.h>

#include <string>
#include <string_view>

namespace zul::host::check {

struct CheckOptions
{
    /// Nothing is written: no table is made, and only statements without one are run.
    bool readOnly = false;
    /// Makes the table zulVerifica. For a server that is none of Transact-SQL.
    std::u16string createTable =
        u"CREATE TABLE zulVerifica (id int NOT NULL PRIMARY KEY, piccolo smallint NULL,"
        u" grande bigint NULL, vero bit NULL, reale float NULL,"
        u" importo decimal(18,4) NULL, testo nvarchar(60) NULL, lungo nvarchar(max)"
        u" NULL, quando datetime NULL)";
};

/// Members throw Breach when the host fails, and Skipped where what they need is not there.
class Subject
{
public:
    /// Keeps references of its own.
    Subject(_SqlConnection* object, CheckOptions options);
    /// Drops the table.
    ~Subject();
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    _SqlConnection* object() const { return m_object.get(); }
    bool isReadOnly() const { return m_options.readOnly; }

    /// Asks for the connection that the other members use.
    void connect();
    IConnection* connection() const { return m_connection.get(); }

    /// Makes the table, in place of one that a broken run left.
    void createTable();
    bool hasTable() const { return m_madeTable; }
    /// Throws Skipped where there is none.
    void requireTable() const;
    /// Whether rows can be added by AddNew, as a check has found.
    bool addsRows() const { return m_addsRows; }
    void foundToAddRows() { m_addsRows = true; }
    /// The table as an earlier check did not leave it: without a row.
    void emptyTable() const;

    LONG execute(std::u16string_view sql) const;
    /// For what must fail. The description is that of this call.
    Failure tryExecute(std::u16string_view sql) const;
    Failure tryOpen(std::u16string_view sql, CursorKind cursor = CursorStatic,
                    LockKind lock = LockReadOnly) const;
    Failure tryLookup(std::u16string_view field, std::u16string_view table, std::u16string_view condition,
                      Variant& value) const;

    Rows open(std::u16string_view sql, CursorKind cursor = CursorStatic, LockKind lock = LockReadOnly) const;
    /// The first field of the first row.
    Variant single(std::u16string_view sql) const;
    LONG rowsInTable() const;

    /// Adds a row with the id, and with the value where a column is named.
    void addRow(LONG id, std::u16string_view column = {}, const Variant& value = Variant()) const;
    /// A value as it comes back: written to the column of a new row and read; of a read-only host what the literal
    /// of Transact-SQL gives.
    Variant brought(std::u16string_view column, const Variant& value, std::u16string_view literal);
    /// " by "STATEMENT"", of the last value that a read-only host brought; empty where it was written and read.
    const std::string& broughtBy() const { return m_broughtBy; }

private:
    void dropTable() const noexcept;

    ComPtr<_SqlConnection> m_object;
    CheckOptions m_options;
    ComPtr<IConnection> m_connection;
    bool m_madeTable = false;
    bool m_addsRows = false;
    LONG m_nextId = 1000;
    std::string m_broughtBy;
};

} // namespace zul::host::check
