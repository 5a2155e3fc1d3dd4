#include "tests/support/TemporaryFolder.h"

#include "host/database/Schema.h"
#include "host/database/sqlite/SqliteDatabase.h"
#include "host/database/sqlite/SqliteEngine.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

using namespace zul::host;

namespace {

class SqliteDatabaseTest : public ::testing::Test
{
protected:
    TemporaryFolder m_folder;
    SqliteDatabase m_database{m_folder.file("x.db"), SqliteDatabase::Mode::OpenOrCreate};
};

} // namespace

TEST_F(SqliteDatabaseTest, LendsAStatementAgain)
{
    sqlite3_stmt* first = nullptr;
    {
        const SqliteStatement statement = m_database.prepare("SELECT 1");
        first = statement.handle();
        // The same text twice at once needs a second one.
        EXPECT_NE(m_database.prepare("SELECT 1").handle(), first);
    }
    EXPECT_EQ(m_database.prepare("SELECT 1").handle(), first);
}

TEST_F(SqliteDatabaseTest, TranslatesASourceOnce)
{
    int calls = 0;
    const SqlTranslator translate = [&](std::string_view) {
        ++calls;
        return NativeStatement{"SELECT 2", {}, false};
    };
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(m_database.prepare("two", translate).step());
    }
    EXPECT_EQ(calls, 1);
    m_database.forgetTranslations();
    EXPECT_TRUE(m_database.prepare("two", translate).step());
    EXPECT_EQ(calls, 2);
}

TEST_F(SqliteDatabaseTest, LeavesOneFileBehindWhenItIsClosed)
{
    const std::string log = m_database.path() + "-wal";
    m_database.run("CREATE TABLE t (a)");
    EXPECT_TRUE(std::filesystem::exists(log));
    m_database.close();
    EXPECT_FALSE(std::filesystem::exists(log));
    EXPECT_FALSE(std::filesystem::exists(m_database.path() + "-shm"));
    EXPECT_THROW(m_database.prepare("SELECT 1"), EngineError);
    EXPECT_THROW(m_database.run("CREATE TABLE u (a)"), EngineError);
    m_database.close();
    SqliteDatabase again(m_database.path(), SqliteDatabase::Mode::OpenExisting);
    EXPECT_FALSE(again.prepare("SELECT a FROM t").step());
}

TEST_F(SqliteDatabaseTest, KeepsMoreTextsThanItHasRoomFor)
{
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 300; ++i) {
            SqliteStatement statement = m_database.prepare("SELECT " + std::to_string(i));
            EXPECT_TRUE(statement.step());
        }
    }
}

TEST_F(SqliteDatabaseTest, KeepsALentStatementWhileOthersPush)
{
    SqliteStatement held = m_database.prepare("SELECT 'held' UNION ALL SELECT 'twice'");
    EXPECT_TRUE(held.step());
    for (int i = 0; i < 300; ++i) {
        m_database.prepare("SELECT " + std::to_string(i));
    }
    EXPECT_TRUE(held.step());
    EXPECT_FALSE(held.step());
}

TEST_F(SqliteDatabaseTest, RefusesWrongParameterCountsAndTwoStatements)
{
    SqliteStatement statement = m_database.prepare("SELECT ?");
    EXPECT_THROW(statement.bind({}), EngineError);
    EXPECT_THROW(m_database.prepare("SELECT 1; SELECT 2"), EngineError);
    EXPECT_NO_THROW(m_database.prepare("SELECT 1; \n"));
}

TEST_F(SqliteDatabaseTest, SaysWhichFileIsNoDatabase)
{
    EXPECT_THROW(SqliteDatabase(m_folder.file("none.db"), SqliteDatabase::Mode::OpenExisting), EngineError);
    const std::string path = m_folder.file("letter.txt");
    std::ofstream(path) << std::string(4096, 'x');
    try {
        SqliteDatabase letter(path, SqliteDatabase::Mode::OpenExisting);
        FAIL() << "opened";
    } catch (const EngineError& error) {
        EXPECT_NE(std::string(error.what()).find(path), std::string::npos);
    }
}

TEST_F(SqliteDatabaseTest, SaysTheColumnsOfNowAlsoWhenTheTableChanged)
{
    m_database.run("CREATE TABLE t (a INTEGER, b text); INSERT INTO t VALUES (1, 'x')");
    const auto columns = [this] {
        SqliteStatement statement = m_database.prepare("SELECT * FROM t");
        EXPECT_TRUE(statement.step());
        std::string text;
        for (const ColumnInfo& column : statement.columns()) {
            text += column.name + (column.type == ColumnType::Text ? ":text " : " ");
        }
        return text;
    };
    EXPECT_EQ(columns(), "a b:text ");
    EXPECT_EQ(columns(), "a b:text ");
    m_database.run("ALTER TABLE t RENAME COLUMN a TO first; ALTER TABLE t ADD COLUMN c nvarchar(5)");
    EXPECT_EQ(columns(), "first b:text c:text ");
}

TEST_F(SqliteDatabaseTest, TellsTheSizeOfWholeNumbersByTheirDeclaration)
{
    m_database.run(
        "CREATE TABLE t (a INTEGER, b int, c smallint, d TINYINT, e bigint, f bit, g decimal(18,2), h text)");
    SqliteStatement statement = m_database.prepare("SELECT *, 1 AS i FROM t");
    statement.step();
    std::string sizes;
    for (const ColumnInfo& column : statement.columns()) {
        sizes += std::to_string(column.integerBytes);
    }
    EXPECT_EQ(sizes, "442280000");
}

TEST(SqliteEngine, TranslatesWhatTheComponentWrites)
{
    const TemporaryFolder folder;
    SqliteEngine engine(folder.file("x.db"), SqliteDatabase::Mode::OpenOrCreate);
    createTables(engine);
    engine.execute(
        "INSERT INTO tabClienti (IdCliente, RAGIONESOCIALE1, DataNascita) VALUES (1, 'Rossi', '19800601');",
        Language::Transact);
    engine.execute("INSERT INTO tabClienti (IdCliente, RagioneSociale2) VALUES (2, 'Anna')",
                   Language::Transact);
    const auto rows =
        engine.query("SELECT DISTINCT tabClienti.IdCLiente , ISNULL(tabClienti.RAGIONESOCIALE1,'') + ' '+"
                     " ISNULL(tabClienti.RAGIONESOCIALE2,'') AS Cliente , "
                     "DateDiff(year,tabClienti.DataNascita,'20240101') as Eta"
                     " , tabClienti.DataNascita FROM tabClienti",
                     Language::Transact);
    ASSERT_TRUE(rows->next());
    EXPECT_EQ(rows->columns()[1].name, "Cliente");
    EXPECT_EQ(rows->columns()[1].type, ColumnType::Text);
    EXPECT_EQ(rows->columns()[3].type, ColumnType::DateTime);
    EXPECT_EQ(rows->cells()[2].Integer, 44);
    EXPECT_EQ(rows->cells()[3].Kind, CellDate);
    ASSERT_TRUE(rows->next());
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(rows->cells()[1].Text)), " Anna");
    EXPECT_FALSE(rows->next());
}

TEST(SqliteEngine, NoticesThatAColumnChangedItsType)
{
    const TemporaryFolder folder;
    SqliteEngine engine(folder.file("x.db"), SqliteDatabase::Mode::OpenOrCreate);
    engine.execute("CREATE TABLE t (a int)", Language::Transact);
    engine.execute("INSERT INTO t (a) VALUES (1)", Language::Transact);
    constexpr std::string_view sql = "SELECT a + 1 AS b FROM t";
    EXPECT_TRUE(engine.query(sql, Language::Transact)->next());
    engine.execute("DROP TABLE t", Language::Transact);
    engine.execute("CREATE TABLE t (a nvarchar(10))", Language::Transact);
    engine.execute("INSERT INTO t (a) VALUES ('41')", Language::Transact);
    const auto rows = engine.query(sql, Language::Transact);
    ASSERT_TRUE(rows->next());
    EXPECT_EQ(rows->cells()[0].Integer, 42);
}
