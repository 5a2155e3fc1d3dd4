// The search for a text in a column gives what the table holds at that moment, whoever changed it and how.
#include "tests/support/TemporaryFolder.h"

#include "host/database/sqlite/SqliteEngine.h"

#include <gmock/gmock.h>

using namespace zul::host;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SqliteSearchTest : public ::testing::Test
{
protected:
    SqliteSearchTest()
    {
        change("CREATE TABLE c(id int PRIMARY KEY, tel nvarchar(50), n int)");
        change("INSERT INTO c(id, tel, n) VALUES (3, '+39 333123', 333123), (1, '333123', 1), (2, NULL, 2), "
               "(4, '', 3)");
    }

    void change(std::string_view sql) { m_engine.execute(sql, Language::Transact); }

    std::vector<std::int64_t> ids(std::string_view sql)
    {
        std::vector<std::int64_t> found;
        const auto rows = m_engine.query(sql, Language::Transact);
        while (rows->next()) {
            found.push_back(rows->cells()[0].Integer);
        }
        return found;
    }
    std::vector<std::int64_t> search() { return ids(" select * from c where tel like '%333123%'"); }

    TemporaryFolder m_folder;
    SqliteEngine m_engine{m_folder.file("x.db"), SqliteDatabase::Mode::OpenOrCreate};
};

} // namespace

TEST_F(SqliteSearchTest, FindsTheRowsInTheTablesOrder)
{
    for (int i = 0; i < 2; ++i) {
        EXPECT_THAT(search(), ElementsAre(1, 3));
    }
    EXPECT_THAT(ids("select x.id from c x where x.tel like '%39 333%'"), ElementsAre(3));
    EXPECT_THAT(ids("select * from c where tel like '%999%'"), IsEmpty());
    EXPECT_THAT(ids("select * from c where n like '%333%'"), ElementsAre(3));
}

TEST_F(SqliteSearchTest, TheResultsColumnsAreTheStatements)
{
    const auto rows = m_engine.query("select * from c where tel like '%333123%'", Language::Transact);
    ASSERT_EQ(rows->columns().size(), 3U);
    EXPECT_EQ(rows->columns()[1].name, "tel");
    EXPECT_EQ(rows->columns()[1].type, ColumnType::Text);
}

TEST_F(SqliteSearchTest, SeesWhatThisConnectionChanged)
{
    search();
    change("UPDATE c SET tel = '' WHERE id = 1");
    EXPECT_THAT(search(), ElementsAre(3));
    change("INSERT INTO c(id, tel) VALUES (9, '0333123')");
    EXPECT_THAT(search(), ElementsAre(3, 9));
    change("DELETE FROM c");
    EXPECT_THAT(search(), IsEmpty());
}

TEST_F(SqliteSearchTest, SeesWhatAnotherConnectionChanged)
{
    search();
    SqliteEngine other(m_folder.file("x.db"), SqliteDatabase::Mode::OpenExisting);
    other.execute("UPDATE c SET tel = '333123 9' WHERE id = 4", Language::Transact);
    EXPECT_THAT(search(), ElementsAre(1, 3, 4));
    other.execute("DELETE FROM c WHERE id < 4", Language::Transact);
    EXPECT_THAT(search(), ElementsAre(4));
}

TEST_F(SqliteSearchTest, SeesATransactionsChangesAndTheirEnd)
{
    search();
    m_engine.begin();
    change("UPDATE c SET tel = '' WHERE id = 1");
    EXPECT_THAT(search(), ElementsAre(3));
    m_engine.rollback();
    EXPECT_THAT(search(), ElementsAre(1, 3));
    m_engine.begin();
    change("UPDATE c SET tel = '' WHERE id = 3");
    EXPECT_THAT(search(), ElementsAre(1));
    m_engine.commit();
    EXPECT_THAT(search(), ElementsAre(1));
}

TEST_F(SqliteSearchTest, SeesATableThatWasMadeAnew)
{
    search();
    change("DROP TABLE c");
    EXPECT_THROW(search(), EngineError);
    change("CREATE TABLE c(id int PRIMARY KEY, tel nvarchar(50))");
    EXPECT_THAT(search(), IsEmpty());
    change("INSERT INTO c(id, tel) VALUES (8, '333123')");
    EXPECT_THAT(search(), ElementsAre(8));
}

TEST_F(SqliteSearchTest, ViewsAndManyHitsAreReadInFull)
{
    change("CREATE VIEW v AS SELECT id, tel FROM c");
    EXPECT_THAT(ids("select * from v where tel like '%333123%' "), testing::UnorderedElementsAre(1, 3));
    for (int id = 100; id < 1200; ++id) {
        change("INSERT INTO c(id, tel) VALUES (" + std::to_string(id) + ", '333123')");
    }
    EXPECT_EQ(search().size(), 1102U);
}

TEST_F(SqliteSearchTest, TwoColumnsInTurnDoNotMixUp)
{
    change("ALTER TABLE c ADD cell nvarchar(50)");
    change("UPDATE c SET cell = '333123' WHERE id = 4");
    for (int i = 0; i < 2; ++i) {
        EXPECT_THAT(search(), ElementsAre(1, 3));
        EXPECT_THAT(ids("select * from c where cell like '%333123%'"), ElementsAre(4));
    }
}
