#pragma once
// A database of each product with two small tables, and short words for what the component does to it.
#include "tests/host/database/Backends.h"
#include "tests/support/Lines.h"

#include "automation/Bstr.h"
#include "automation/ErrorInfo.h"
#include "automation/Variant.h"

#include <Zul_Host.h>

#include <servprov.h>

namespace zul::host {

inline const TableDefinition& sampleTable()
{
    static const TableDefinition table{"tabProva",
                                       {"id"},
                                       {{"id", ColumnDefinition::Kind::Integer, 0},
                                        {"piccolo", ColumnDefinition::Kind::SmallInt, 0},
                                        {"vero", ColumnDefinition::Kind::Boolean, 0},
                                        {"reale", ColumnDefinition::Kind::Real, 0},
                                        {"importo", ColumnDefinition::Kind::Money, 0},
                                        {"testo", ColumnDefinition::Kind::Text, 60},
                                        {"lungo", ColumnDefinition::Kind::LongText, 0},
                                        {"quando", ColumnDefinition::Kind::DateTime, 0}},
                                       {}};
    return table;
}

inline const TableDefinition& keylessTable()
{
    static const TableDefinition table{
        "tabSenzaChiave",
        {},
        {{"numero", ColumnDefinition::Kind::Integer, 0}, {"testo", ColumnDefinition::Kind::Text, 60}},
        {}};
    return table;
}

class ContractTest : public ::testing::TestWithParam<Backend>
{
protected:
    void SetUp() override
    {
        std::string why;
        const auto database = GetParam().database(m_folder, why);
        if (!database) {
            GTEST_SKIP() << why;
        }
        m_options.database = *database;
        m_options.userName = "Operatore à € 😀";
        m_options.journalPath = m_folder.file("journal.txt");
        m_database = std::make_unique<HostDatabase>(m_options);
        // A server of the user's own may hold what a broken run left.
        dropTables();
        for (const TableDefinition* table : {&sampleTable(), &keylessTable()}) {
            engine().execute(createTableStatement(*table, engine().product()), Language::Native);
        }
        ASSERT_EQ(m_database->connection()->get_Connection(m_connection.put()), S_OK);
    }

    void TearDown() override
    {
        m_connection.reset();
        if (m_database) {
            dropTables();
        }
    }

    void dropTables()
    {
        for (const std::string_view table : {"tabProva", "tabSenzaChiave", "tabAltra", "tabContatori"}) {
            if (engine().hasTable(table)) {
                engine().execute("DROP TABLE " + std::string(table), Language::Native);
            }
        }
    }

    /// Engines count with numbers of different sizes.
    LONG count(std::u16string_view sql)
    {
        Variant value;
        throwIfFailed(open(sql)->get_Value(Variant::fromLong(0), value.put()));
        throwIfFailed(value.changeType(VT_I4));
        return value.lVal;
    }

    Engine& engine() const { return m_database->engine(); }

    LONG execute(std::u16string_view sql)
    {
        LONG affected = -1;
        throwIfFailed(m_connection->Execute(Bstr(sql).get(), &affected));
        return affected;
    }

    HRESULT tryExecute(std::u16string_view sql)
    {
        LONG affected = 0;
        const HRESULT result = m_connection->Execute(Bstr(sql).get(), &affected);
        m_error = FAILED(result) ? takeErrorDetails(result).description : std::u16string();
        return result;
    }

    ComPtr<IRecordset> open(std::u16string_view source, CursorKind cursor = CursorStatic,
                            LockKind lock = LockReadOnly)
    {
        ComPtr<IRecordset> rows;
        throwIfFailed(m_connection->OpenRecordset(Bstr(source).get(), cursor, lock, rows.put()));
        return rows;
    }

    HRESULT tryOpen(std::u16string_view source, CursorKind cursor = CursorStatic,
                    LockKind lock = LockReadOnly)
    {
        ComPtr<IRecordset> rows;
        const HRESULT result = m_connection->OpenRecordset(Bstr(source).get(), cursor, lock, rows.put());
        m_error = FAILED(result) ? takeErrorDetails(result).description : std::u16string();
        return result;
    }

    static Variant field(std::u16string_view name) { return Variant::fromText(name); }

    static Variant get(const ComPtr<IRecordset>& rows, std::u16string_view name)
    {
        Variant value;
        throwIfFailed(rows->get_Value(field(name), value.put()));
        return value;
    }

    static void put(const ComPtr<IRecordset>& rows, std::u16string_view name, const Variant& value)
    {
        throwIfFailed(rows->put_Value(field(name), value));
    }

    static bool atEnd(const ComPtr<IRecordset>& rows)
    {
        VARIANT_BOOL eof = VARIANT_FALSE;
        throwIfFailed(rows->get_Eof(&eof));
        return eof != VARIANT_FALSE;
    }

    void add(LONG id, std::u16string_view text)
    {
        const auto rows = open(u"SELECT * FROM tabProva WHERE 1=2", CursorStatic, LockPessimistic);
        throwIfFailed(rows->AddNew());
        put(rows, u"id", Variant::fromLong(id));
        put(rows, u"testo", Variant::fromText(text));
        throwIfFailed(rows->Update());
    }

    template <typename Service>
    ComPtr<Service> service() const
    {
        ComPtr<Service> result;
        const auto provider = queryFor<IServiceProvider>(m_database->connection());
        provider->QueryService(iidOf<Service>(), iidOf<Service>(), result.putVoid());
        return result;
    }

    std::vector<std::string> journal() const { return linesOf(m_options.journalPath); }

    TemporaryFolder m_folder;
    HostDatabaseOptions m_options;
    std::unique_ptr<HostDatabase> m_database;
    ComPtr<IConnection> m_connection;
    std::u16string m_error;
};

} // namespace zul::host
