// What this tree promises beyond the checks of ContractCheckTest.cpp, the same on every database: error numbers, types,
// streaming, ids, the journal. Changes through a row set are in ContractChangesTest.cpp.
#include "tests/host/database/ContractTest.h"

#include "automation/ComObject.h"
#include "automation/ErrorInfo.h"
#include "automation/Variant.h"
#include "base/CaseFold.h"
#include "base/DateText.h"
#include "host/database/Cell.h"
#include "host/database/EngineError.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <set>
#include <sstream>

using namespace zul;
using namespace zul::host;

namespace {

std::string nameOf(const ::testing::TestParamInfo<Backend>& info)
{
    return info.param.name;
}

/// Takes rows on the fast path as texts, each cell with the letter of its kind.
class TextSink final : public ComObject<IRowSink>
{
public:
    HRESULT STDMETHODCALLTYPE Row(LONG count, const ZulCell* cells) override
    {
        std::string row;
        for (LONG i = 0; i < count; ++i) {
            const ZulCell& cell = cells[i];
            row += i > 0 ? "|" : "";
            switch (cell.Kind) {
            case CellNull:
                row += "-";
                break;
            case CellInteger:
                row += "i" + std::to_string(cell.Integer);
                break;
            case CellBoolean:
                row += "b" + std::to_string(cell.Integer);
                break;
            case CellReal: {
                std::ostringstream text;
                text << cell.Real;
                row += "r" + text.str();
                break;
            }
            case CellDate:
                row += "d" + formatDate(cell.Real);
                break;
            default:
                row += "t" + std::string(cellText(cell));
            }
        }
        rows.push_back(std::move(row));
        return rows.size() == stopAfter ? E_ABORT : S_OK;
    }

    std::vector<std::string> rows;
    std::size_t stopAfter = 0;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(On, ContractTest, ::testing::ValuesIn(backends()), nameOf);

TEST_P(ContractTest, TellsUserAndConnection)
{
    Bstr name;
    ASSERT_EQ(m_database->connection()->get_UserName(name.put()), S_OK);
    EXPECT_EQ(name.toUtf8(), "Operatore à € 😀");
    Bstr text;
    ASSERT_EQ(m_connection->get_ConnectionString(text.put()), S_OK);
    EXPECT_NE(text.toUtf8().find(m_options.database), std::string::npos);
}

TEST_P(ContractTest, CountsNoRowsForADefinition)
{
    EXPECT_EQ(execute(u"CREATE TABLE tabAltra (a int)"), 0);
    EXPECT_EQ(execute(u"DROP TABLE tabAltra"), 0);
}

TEST_P(ContractTest, BringsEveryTypeThereAndBack)
{
    const double moment = *parseDate("2024-05-01 23:59:58.123");
    const auto rows = open(u"SELECT * FROM tabProva WHERE 1=2", CursorStatic, LockPessimistic);
    ASSERT_TRUE(atEnd(rows));
    throwIfFailed(rows->AddNew());
    put(rows, u"ID", Variant::fromLong(2147483647));
    Variant small;
    small.vt = VT_I2;
    small.iVal = -1;
    put(rows, u"Piccolo", small);
    put(rows, u"vero", Variant::fromBool(true));
    put(rows, u"reale", Variant::fromDouble(-0.1));
    put(rows, u"importo", Variant::fromDouble(12345678.91));
    put(rows, u"testo", Variant::fromUtf8("l'età % \"à è € 😀\" _[x]"));
    put(rows, u"lungo", Variant::fromText(std::u16string(10'000, u'è')));
    put(rows, u"quando", Variant::fromDate(moment));
    throwIfFailed(rows->Update());

    const auto read = open(u"SELECT * FROM tabProva");
    ASSERT_FALSE(atEnd(read));
    EXPECT_EQ(get(read, u"id").vt, VT_I4);
    EXPECT_EQ(get(read, u"id").lVal, 2147483647);
    EXPECT_EQ(get(read, u"piccolo").vt, VT_I2);
    EXPECT_EQ(get(read, u"piccolo").iVal, -1);
    EXPECT_EQ(get(read, u"vero").vt, VT_BOOL);
    EXPECT_EQ(get(read, u"vero").boolVal, VARIANT_TRUE);
    EXPECT_EQ(get(read, u"reale").vt, VT_R8);
    EXPECT_EQ(get(read, u"reale").dblVal, -0.1);
    EXPECT_EQ(get(read, u"importo").vt, VT_DECIMAL);
    Variant amount = get(read, u"importo");
    ASSERT_EQ(amount.changeType(VT_R8), S_OK);
    EXPECT_DOUBLE_EQ(amount.dblVal, 12345678.91);
    EXPECT_EQ(utf8FromUtf16(get(read, u"testo").text()), "l'età % \"à è € 😀\" _[x]");
    EXPECT_EQ(get(read, u"lungo").text(), std::u16string(10'000, u'è'));
    EXPECT_EQ(get(read, u"quando").vt, VT_DATE);
    // datetime of the server counts in three-hundredths of a second.
    EXPECT_NEAR(get(read, u"quando").date, moment, 0.004 / 86'400);
}

TEST_P(ContractTest, BringsNullAndEmptyThereAndBack)
{
    const auto rows = open(u"tabProva", CursorDynamic, LockOptimistic);
    throwIfFailed(rows->AddNew());
    put(rows, u"id", Variant::fromLong(1));
    put(rows, u"testo", Variant::fromText(u""));
    put(rows, u"piccolo", Variant::null());
    throwIfFailed(rows->Update());
    const auto read = open(u"SELECT * FROM tabProva");
    EXPECT_EQ(get(read, u"testo").vt, VT_BSTR);
    EXPECT_EQ(get(read, u"testo").text(), u"");
    for (const char16_t* name : {u"piccolo", u"vero", u"reale", u"importo", u"lungo", u"quando"}) {
        EXPECT_EQ(get(read, name).vt, VT_NULL);
    }
}

TEST_P(ContractTest, BringsTextsOfEveryLength)
{
    for (LONG i = 1; i <= 60; ++i) {
        std::u16string text;
        while (text.size() < static_cast<std::size_t>(i)) {
            text += text.size() % 2 == 0 ? u'à' : u'x';
        }
        add(i, text);
    }
    const auto read = open(u"SELECT id, testo FROM tabProva ORDER BY id", CursorForwardOnly);
    for (std::size_t i = 1; i <= 60; ++i) {
        ASSERT_FALSE(atEnd(read));
        EXPECT_EQ(get(read, u"testo").text().size(), i);
        throwIfFailed(read->MoveNext());
    }
    EXPECT_TRUE(atEnd(read));
}

TEST_P(ContractTest, MovesNoFurtherThanBehindTheLastRow)
{
    add(1, u"riga");
    for (const CursorKind cursor : {CursorForwardOnly, CursorKeyset, CursorDynamic, CursorStatic}) {
        for (const LockKind lock : {LockReadOnly, LockPessimistic, LockOptimistic}) {
            const auto rows = open(u"SELECT id FROM tabProva", cursor, lock);
            throwIfFailed(rows->MoveNext());
            EXPECT_EQ(rows->MoveNext(), static_cast<HRESULT>(ErrorCode::NoCurrentRow));
        }
    }
}

TEST_P(ContractTest, LeavesNothingRunningBehindARowSet)
{
    for (LONG id = 1; id <= 3; ++id) {
        add(id, u"riga");
    }
    const auto whole = open(u"SELECT id FROM tabProva ORDER BY id", CursorStatic);
    const auto streaming = open(u"SELECT id FROM tabProva ORDER BY id", CursorForwardOnly);
    // With both open, and the second in the middle, other statements run.
    throwIfFailed(streaming->MoveNext());
    EXPECT_EQ(execute(u"UPDATE tabProva SET testo = 'x' WHERE id = 1"), 1);
    EXPECT_EQ(count(u"SELECT COUNT(*) AS n FROM tabProva"), 3);
    EXPECT_EQ(get(streaming, u"id").lVal, 2);
    throwIfFailed(streaming->MoveNext());
    EXPECT_EQ(get(streaming, u"id").lVal, 3);
    throwIfFailed(streaming->MoveNext());
    EXPECT_TRUE(atEnd(streaming));
    EXPECT_EQ(get(whole, u"id").lVal, 1);
    EXPECT_EQ(execute(u"DELETE FROM tabProva"), 3);
    // What was read whole does not know.
    throwIfFailed(whole->MoveNext());
    EXPECT_EQ(get(whole, u"id").lVal, 2);
}

TEST_P(ContractTest, NamesItsFields)
{
    const auto rows = open(u"SELECT id, testo AS Descrizione FROM tabProva");
    LONG count = 0;
    ASSERT_EQ(rows->get_FieldCount(&count), S_OK);
    EXPECT_EQ(count, 2);
    Bstr name;
    ASSERT_EQ(rows->FieldName(1, name.put()), S_OK);
    EXPECT_TRUE(equalNames(name.view(), u"Descrizione"));
    EXPECT_EQ(rows->FieldName(2, name.put()), static_cast<HRESULT>(ErrorCode::ItemNotFound));
    EXPECT_EQ(rows->FieldName(-1, name.put()), static_cast<HRESULT>(ErrorCode::ItemNotFound));
}

TEST_P(ContractTest, TakesAFieldByNameInAnyCaseOrByPosition)
{
    add(7, u"sette");
    const auto rows = open(u"SELECT id, testo FROM tabProva");
    EXPECT_EQ(get(rows, u"TESTO").text(), u"sette");
    Variant value;
    ASSERT_EQ(rows->get_Value(Variant::fromLong(1), value.put()), S_OK);
    EXPECT_EQ(value.text(), u"sette");
    LONG index = 0;
    ASSERT_EQ(rows->get_Value(Variant::ref(&index), value.put()), S_OK);
    EXPECT_EQ(value.lVal, 7);
    EXPECT_EQ(rows->get_Value(field(u"manca"), value.put()), static_cast<HRESULT>(ErrorCode::ItemNotFound));
    EXPECT_NE(takeErrorDetails(E_FAIL).description.find(u"manca"), std::u16string::npos);
    EXPECT_EQ(rows->get_Value(Variant::fromLong(2), value.put()),
              static_cast<HRESULT>(ErrorCode::ItemNotFound));
    EXPECT_EQ(rows->get_Value(Variant::null(), value.put()), static_cast<HRESULT>(ErrorCode::ItemNotFound));
}

TEST_P(ContractTest, HasNoRowAtItsEnd)
{
    const auto rows = open(u"SELECT * FROM tabProva", CursorStatic, LockOptimistic);
    Variant value;
    EXPECT_EQ(rows->get_Value(field(u"id"), value.put()), static_cast<HRESULT>(ErrorCode::NoCurrentRow));
    EXPECT_EQ(rows->put_Value(field(u"id"), Variant::fromLong(1)),
              static_cast<HRESULT>(ErrorCode::NoCurrentRow));
}

TEST_P(ContractTest, AnswersNothingOnceClosed)
{
    add(1, u"uno");
    const auto rows = open(u"SELECT * FROM tabProva", CursorForwardOnly);
    EXPECT_EQ(rows->Close(), S_OK);
    EXPECT_EQ(rows->Close(), S_OK);
    constexpr auto closed = static_cast<HRESULT>(ErrorCode::Closed);
    VARIANT_BOOL eof = VARIANT_FALSE;
    LONG count = 0;
    Bstr name;
    Variant value;
    EXPECT_EQ(rows->get_Eof(&eof), closed);
    EXPECT_EQ(rows->get_FieldCount(&count), closed);
    EXPECT_EQ(rows->FieldName(0, name.put()), closed);
    EXPECT_EQ(rows->get_Value(field(u"id"), value.put()), closed);
    EXPECT_EQ(rows->put_Value(field(u"id"), value), closed);
    EXPECT_EQ(rows->MoveNext(), closed);
    EXPECT_EQ(rows->AddNew(), closed);
    EXPECT_EQ(rows->Update(), closed);
}

TEST_P(ContractTest, GivesEveryFailureItsNumberAndText)
{
    EXPECT_EQ(tryExecute(u"SELEC x"), static_cast<HRESULT>(ErrorCode::Statement));
    EXPECT_FALSE(m_error.empty());
    EXPECT_EQ(tryExecute(u"DELETE FROM tabCheManca"), static_cast<HRESULT>(ErrorCode::NoTable));
    EXPECT_NE(m_error.find(u"abCheManca") == std::u16string::npos ? m_error.find(u"abchemanca") : 0,
              std::u16string::npos);
    EXPECT_EQ(tryOpen(u"SELECT * FROM tabCheManca"), static_cast<HRESULT>(ErrorCode::NoTable));
    EXPECT_EQ(tryOpen(u"tabCheManca", CursorDynamic, LockOptimistic),
              static_cast<HRESULT>(ErrorCode::NoTable));
    EXPECT_EQ(tryOpen(u"SELECT nonEsiste FROM tabProva"), static_cast<HRESULT>(ErrorCode::Statement));
    EXPECT_TRUE(FAILED(tryOpen(u"")));
    EXPECT_TRUE(FAILED(tryExecute(u"INSERT INTO tabProva (id) VALUES ('1'")));
    EXPECT_EQ(tryOpen(u"SELECT 1 AS x", CursorStatic, static_cast<LockKind>(0)),
              static_cast<HRESULT>(ErrorCode::InvalidArgument));
    // The connection is as good as before.
    EXPECT_EQ(execute(u"INSERT INTO tabProva (id) VALUES (1)"), 1);
}

TEST_P(ContractTest, RefusesAKeyThatIsThereAndGoesOn)
{
    add(1, u"uno");
    EXPECT_EQ(tryExecute(u"INSERT INTO tabProva (id) VALUES (1)"),
              static_cast<HRESULT>(ErrorCode::Integrity));
    const auto rows = open(u"SELECT * FROM tabProva WHERE 1=2", CursorStatic, LockPessimistic);
    throwIfFailed(rows->AddNew());
    put(rows, u"id", Variant::fromLong(1));
    EXPECT_EQ(rows->Update(), static_cast<HRESULT>(ErrorCode::Integrity));
    // The refused row waits to be corrected.
    put(rows, u"id", Variant::fromLong(2));
    EXPECT_EQ(rows->Update(), S_OK);
}

TEST_P(ContractTest, KeepsOrDropsATransaction)
{
    throwIfFailed(m_connection->BeginTrans());
    add(1, u"uno");
    throwIfFailed(m_connection->RollbackTrans());
    EXPECT_EQ(count(u"SELECT COUNT(*) AS n FROM tabProva"), 0);
    throwIfFailed(m_connection->BeginTrans());
    EXPECT_EQ(m_connection->BeginTrans(), static_cast<HRESULT>(ErrorCode::TransactionOpen));
    add(1, u"uno");
    throwIfFailed(m_connection->CommitTrans());
    EXPECT_EQ(count(u"SELECT COUNT(*) AS n FROM tabProva"), 1);
    EXPECT_EQ(m_connection->CommitTrans(), static_cast<HRESULT>(ErrorCode::NoTransaction));
    EXPECT_EQ(m_connection->RollbackTrans(), static_cast<HRESULT>(ErrorCode::NoTransaction));
}

TEST_P(ContractTest, ShowsItsChangesToOtherConnectionsOnceCommitted)
{
    HostDatabaseOptions options = m_options;
    options.journalPath.clear();
    const HostDatabase other(options);
    const auto count = [&] { return other.run("SELECT COUNT(*) AS n FROM tabProva").rows.at(0).at(0); };
    add(1, u"uno");
    EXPECT_EQ(count(), "1");
    throwIfFailed(m_connection->BeginTrans());
    add(2, u"due");
    throwIfFailed(m_connection->CommitTrans());
    EXPECT_EQ(count(), "2");
}

TEST_P(ContractTest, IsClosedUnderWhoeverHoldsOnToIt)
{
    add(1, u"uno");
    add(2, u"due");
    const auto memory = open(u"SELECT * FROM tabProva ORDER BY id");
    auto stream = open(u"SELECT * FROM tabProva ORDER BY id", CursorForwardOnly);
    throwIfFailed(m_connection->BeginTrans());
    EXPECT_EQ(execute(u"DELETE FROM tabProva"), 2);
    m_database->close();
    EXPECT_EQ(tryExecute(u"DELETE FROM tabProva"), static_cast<HRESULT>(ErrorCode::ConnectionLost));
    EXPECT_FALSE(m_error.empty());
    EXPECT_EQ(tryOpen(u"tabProva"), static_cast<HRESULT>(ErrorCode::ConnectionLost));
    EXPECT_TRUE(FAILED(m_connection->BeginTrans()));
    EXPECT_TRUE(FAILED(m_connection->CommitTrans()));
    EXPECT_EQ(get(memory, u"testo").text(), u"uno");
    stream.reset();
    m_database = std::make_unique<HostDatabase>(m_options);
    EXPECT_EQ(m_database->run("SELECT COUNT(*) AS n FROM tabProva").rows.at(0).at(0), "2");
}

TEST_P(ContractTest, LooksASingleValueUp)
{
    add(3, u"tre");
    Variant value;
    const auto lookup = [&](std::u16string_view fieldName, std::u16string_view condition) {
        return m_database->connection()->LookupValue(Bstr(fieldName).get(), Bstr(u"tabProva").get(),
                                                     Bstr(condition).get(), value.put());
    };
    ASSERT_EQ(lookup(u"testo", u"id = 3"), S_OK);
    EXPECT_EQ(value.text(), u"tre");
    ASSERT_EQ(lookup(u"lungo", u"id = 3"), S_OK);
    EXPECT_EQ(value.vt, VT_NULL);
    ASSERT_EQ(lookup(u"testo", u"id = 4"), S_OK);
    EXPECT_EQ(value.vt, VT_EMPTY);
    ASSERT_EQ(lookup(u"testo", u""), S_OK);
    EXPECT_EQ(value.text(), u"tre");
    EXPECT_TRUE(FAILED(lookup(u"manca", u"id = 3")));
    EXPECT_EQ(value.vt, VT_EMPTY);
}

TEST_P(ContractTest, HandsRowsToASinkWithoutCopies)
{
    const auto rows = open(u"tabProva", CursorStatic, LockOptimistic);
    throwIfFailed(rows->AddNew());
    put(rows, u"id", Variant::fromLong(1));
    put(rows, u"piccolo", Variant::fromLong(2));
    put(rows, u"vero", Variant::fromBool(true));
    put(rows, u"reale", Variant::fromDouble(1.5));
    put(rows, u"importo", Variant::fromDouble(2.25));
    put(rows, u"testo", Variant::fromUtf8("à € 😀"));
    put(rows, u"quando", Variant::fromDate(*parseDate("1980-05-01")));
    throwIfFailed(rows->Update());
    add(2, u"due");
    for (const CursorKind cursor : {CursorForwardOnly, CursorStatic}) {
        const auto read = open(u"SELECT * FROM tabProva ORDER BY id", cursor);
        const auto sink = makeCom<TextSink>();
        throwIfFailed(read.as<IRowReader>()->ReadRows(sink.get()));
        ASSERT_EQ(sink->rows.size(), 2U);
        EXPECT_EQ(sink->rows[0], "i1|i2|b1|r1.5|r2.25|tà € 😀|-|d1980-05-01 00:00:00.000");
        EXPECT_EQ(sink->rows[1], "i2|-|-|-|-|tdue|-|-");
        EXPECT_TRUE(atEnd(read));
        throwIfFailed(read.as<IRowReader>()->ReadRows(sink.get()));
        EXPECT_EQ(sink->rows.size(), 2U);
    }
}

TEST_P(ContractTest, BeginsAtTheCurrentRowAndStopsWhereTheSinkSays)
{
    for (LONG id = 1; id <= 4; ++id) {
        add(id, u"x");
    }
    for (const CursorKind cursor : {CursorForwardOnly, CursorStatic}) {
        const auto read = open(u"SELECT id FROM tabProva ORDER BY id", cursor);
        throwIfFailed(read->MoveNext());
        const auto sink = makeCom<TextSink>();
        sink->stopAfter = 2;
        EXPECT_EQ(read.as<IRowReader>()->ReadRows(sink.get()), E_ABORT);
        EXPECT_EQ(sink->rows, (std::vector<std::string>{"i2", "i3"}));
        EXPECT_EQ(get(read, u"id").lVal, 3);
    }
}

TEST_P(ContractTest, ReadsManyRows)
{
    engine().begin();
    std::vector<Value> values;
    for (std::int64_t id = 1; id <= 3000; ++id) {
        values.emplace_back(id);
        values.emplace_back("riga à " + std::to_string(id));
    }
    const std::vector<std::string_view> columns{"id", "testo"};
    engine().insertRows("tabProva", columns, values);
    engine().commit();
    for (const CursorKind cursor : {CursorForwardOnly, CursorStatic}) {
        const auto read = open(u"SELECT id, testo FROM tabProva ORDER BY id", cursor);
        const auto sink = makeCom<TextSink>();
        throwIfFailed(read.as<IRowReader>()->ReadRows(sink.get()));
        ASSERT_EQ(sink->rows.size(), 3000U);
        EXPECT_EQ(sink->rows.front(), "i1|triga à 1");
        EXPECT_EQ(sink->rows.back(), "i3000|triga à 3000");
    }
}

TEST_P(ContractTest, GivesIdsThatNobodyElseHas)
{
    const auto ids = service<IIdGenerator>();
    const auto next = [&] {
        LONG id = 0;
        throwIfFailed(ids->NextId(Bstr(u"tabProva").get(), Bstr(u"id").get(), m_database->connection(), &id));
        return id;
    };
    EXPECT_EQ(next(), 1);
    EXPECT_EQ(next(), 2);
    // Rows that others put there count.
    add(40, u"x");
    EXPECT_EQ(next(), 41);
    throwIfFailed(m_connection->BeginTrans());
    EXPECT_EQ(next(), 42);
    throwIfFailed(m_connection->CommitTrans());
    EXPECT_EQ(next(), 43);
    LONG id = 5;
    EXPECT_TRUE(
        FAILED(ids->NextId(Bstr(u"tabCheManca").get(), Bstr(u"id").get(), m_database->connection(), &id)));
    EXPECT_EQ(id, 0);
    EXPECT_EQ(ids->NextId(Bstr(u"tabProva").get(), Bstr(u"id").get(), nullptr, &id), E_POINTER);
    EXPECT_EQ(next(), 44);
}

TEST_P(ContractTest, GivesIdsAgainWhenTheTransactionOfTheFirstWasUndone)
{
    engine().begin();
    EXPECT_EQ(engine().nextId("tabProva", "id"), 1);
    EXPECT_EQ(engine().nextId("tabProva", "id"), 2);
    engine().rollback();
    EXPECT_EQ(engine().nextId("tabProva", "id"), 1);
    EXPECT_EQ(engine().nextId("tabProva", "id"), 2);
}

TEST_P(ContractTest, GivesIdsToTwoProcessesAtOnce)
{
    constexpr int each = 150;
    constexpr int processes = 3;
    // The table of given ids is made once, before the race.
    engine().nextId("tabProva", "id");
    std::vector<int> pipes;
    std::vector<pid_t> children;
    for (int i = 0; i < processes; ++i) {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            // A program of its own: nothing of the parent's connection is touched.
            int status = 1;
            try {
                HostDatabaseOptions options = m_options;
                options.journalPath.clear();
                auto own = std::make_unique<HostDatabase>(options);
                std::string text;
                for (int n = 0; n < each; ++n) {
                    text += std::to_string(own->engine().nextId("tabProva", "id")) + ' ';
                }
                status =
                    ::write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size()) ? 0 : 2;
                own.reset();
            } catch (const std::exception& error) {
                std::fprintf(stderr, "child: %s\n", error.what());
            }
            ::_exit(status);
        }
        ::close(ends[1]);
        pipes.push_back(ends[0]);
        children.push_back(child);
    }
    std::set<int> given;
    for (std::size_t i = 0; i < children.size(); ++i) {
        std::string text;
        char buffer[4096];
        for (ssize_t got = 0; (got = ::read(pipes[i], buffer, sizeof buffer)) > 0;) {
            text.append(buffer, static_cast<std::size_t>(got));
        }
        ::close(pipes[i]);
        int status = -1;
        ::waitpid(children[i], &status, 0);
        EXPECT_EQ(status, 0);
        std::istringstream numbers(text);
        for (int id = 0; numbers >> id;) {
            EXPECT_TRUE(given.insert(id).second) << id << " was given twice";
        }
    }
    EXPECT_EQ(given.size(), static_cast<std::size_t>(each * processes));
    EXPECT_EQ(*given.begin(), 2);
}

TEST_P(ContractTest, WritesDownWhatTheComponentDoes)
{
    add(1, u"l'uno \"à\"");
    const auto rows = open(u"SELECT * FROM tabProva", CursorDynamic, LockOptimistic);
    put(rows, u"VERO", Variant::fromBool(true));
    put(rows, u"quando", Variant::fromDate(*parseDate("2024-05-01 10:20:30.400")));
    throwIfFailed(rows->Update());
    execute(u"DELETE FROM tabProva");
    Variant value;
    m_database->connection()->LookupValue(Bstr(u"testo").get(), Bstr(u"tabProva").get(),
                                          Bstr(u"id = 1").get(), value.put());
    LONG id = 0;
    service<IIdGenerator>()->NextId(Bstr(u"tabProva").get(), Bstr(u"id").get(), m_database->connection(),
                                    &id);
    throwIfFailed(m_connection->BeginTrans());
    throwIfFailed(m_connection->CommitTrans());
    throwIfFailed(m_connection->BeginTrans());
    throwIfFailed(m_connection->RollbackTrans());
    tryExecute(u"DELETE FROM tabCheManca");
    m_database->run("SELECT 1 AS x");
    m_database->openRows("SELECT 1 AS x");
    std::vector<std::string> lines = journal();
    ASSERT_EQ(lines.size(), 12U);
    EXPECT_EQ(
        lines[0],
        R"({"op":"open","sql":"SELECT * FROM tabProva WHERE 1=2","cursor":"static","lock":"pessimistic"})");
    EXPECT_EQ(lines[1], R"({"op":"insert","table":"tabProva","values":[["id",1],["testo","l'uno \"à\""]]})");
    EXPECT_EQ(lines[2],
              R"({"op":"open","sql":"SELECT * FROM tabProva","cursor":"dynamic","lock":"optimistic"})");
    EXPECT_EQ(
        lines[3],
        R"({"op":"update","table":"tabProva","values":[["VERO",true],["quando","2024-05-01 10:20:30.400"]]})");
    EXPECT_EQ(lines[4], R"({"op":"execute","sql":"DELETE FROM tabProva"})");
    EXPECT_EQ(lines[5], R"({"op":"lookup","field":"testo","table":"tabProva","condition":"id = 1"})");
    EXPECT_EQ(lines[6], R"({"op":"nextid","table":"tabProva","key":"id","id":1})");
    EXPECT_EQ(lines[7], R"({"op":"begin"})");
    EXPECT_EQ(lines[8], R"({"op":"commit"})");
    EXPECT_EQ(lines[10], R"({"op":"rollback"})");
    const std::string failed = R"({"op":"execute","sql":"DELETE FROM tabCheManca","error":")";
    EXPECT_EQ(lines[11].substr(0, failed.size()), failed);
}

TEST_P(ContractTest, TakesNullWhereTheContractHasNone)
{
    LONG affected = 0;
    EXPECT_EQ(m_connection->Execute(nullptr, nullptr), E_POINTER);
    EXPECT_TRUE(FAILED(m_connection->Execute(nullptr, &affected)));
    EXPECT_EQ(m_connection->OpenRecordset(nullptr, CursorStatic, LockReadOnly, nullptr), E_POINTER);
    EXPECT_EQ(m_connection->get_ConnectionString(nullptr), E_POINTER);
    EXPECT_EQ(m_database->connection()->get_Connection(nullptr), E_POINTER);
    EXPECT_EQ(m_database->connection()->get_UserName(nullptr), E_POINTER);
    EXPECT_EQ(m_database->connection()->LookupValue(nullptr, nullptr, nullptr, nullptr), E_POINTER);
    const auto rows = open(u"SELECT * FROM tabProva");
    EXPECT_EQ(rows->get_Eof(nullptr), E_POINTER);
    EXPECT_EQ(rows->get_FieldCount(nullptr), E_POINTER);
    EXPECT_EQ(rows->FieldName(0, nullptr), E_POINTER);
    EXPECT_EQ(rows->get_Value(field(u"id"), nullptr), E_POINTER);
    EXPECT_EQ(rows.as<IRowReader>()->ReadRows(nullptr), E_POINTER);
}

TEST_P(ContractTest, OutlivesItsOwnersAsLongAsSomebodyHoldsOn)
{
    add(1, u"uno");
    auto rows = open(u"SELECT * FROM tabProva", CursorForwardOnly);
    auto tracker = service<IChangeTracker>();
    m_connection.reset();
    m_database.reset();
    EXPECT_EQ(get(rows, u"testo").text(), u"uno");
    rows.reset();
    tracker.reset();
    m_database = std::make_unique<HostDatabase>(m_options);
}
