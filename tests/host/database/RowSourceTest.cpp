#include "host/database/RowSource.h"

#include <gtest/gtest.h>

using zul::host::parseRowSource;

TEST(RowSource, FindsTheTableOfASimpleSelect)
{
    EXPECT_EQ(parseRowSource("SELECT * FROM TMK_MailingList WHERE 1=2").table, "TMK_MailingList");
    EXPECT_EQ(parseRowSource("select * from TMK_Campagne where IdCampagna=12").table, "TMK_Campagne");
    EXPECT_EQ(parseRowSource("SELECT a, (SELECT MAX(b) FROM x) AS m FROM [dbo].[y z] AS t").table,
              "[dbo].[y z]");
    EXPECT_EQ(parseRowSource(" SELECT * FROM t ORDER BY a, b").table, "t");
    EXPECT_EQ(parseRowSource("SELECT * FROM t WHERE a IN (1, 2) AND b = 'x, JOIN y'").table, "t");
    EXPECT_EQ(parseRowSource("SELECT * /* FROM x */ FROM t -- , u").table, "t");
    EXPECT_EQ(parseRowSource("SELECT [FROM] FROM t").table, "t");
}

TEST(RowSource, HasNoTableWhereRowsAreMadeOfSeveral)
{
    for (const char* sql :
         {"SELECT * FROM a, b", "SELECT * FROM a JOIN b ON a.x=b.x", "SELECT * FROM a INNER JOIN b ON 1=1",
          "SELECT DISTINCT x FROM a", "SELECT x FROM a GROUP BY x", "SELECT x FROM a UNION SELECT x FROM b",
          "SELECT * FROM (SELECT * FROM a) s", "SELECT 1", "", "DELETE FROM a", "SELECT * FROM", "'", "(((",
          "SELECT * FROM a CROSS APPLY b"}) {
        EXPECT_EQ(parseRowSource(sql).table, "") << sql;
    }
}

TEST(RowSource, TakesTheBareNameOfATable)
{
    EXPECT_EQ(parseRowSource("tabImpostazioni").statement, "SELECT * FROM tabImpostazioni");
    EXPECT_EQ(parseRowSource("tabImpostazioni").table, "tabImpostazioni");
    EXPECT_EQ(parseRowSource(" [dbo].[x y] ").statement, "SELECT * FROM [dbo].[x y]");
}

TEST(RowSource, KnowsWhereAFurtherColumnGoes)
{
    for (const char* sql : {"SELECT * FROM t WHERE 1=2", "t"}) {
        auto source = parseRowSource(sql);
        source.statement.insert(source.endOfColumns, ", rowid ");
        EXPECT_EQ(source.statement.substr(0, 23), "SELECT * , rowid FROM t") << sql;
    }
}

TEST(RowSource, KnowsWhichColumnsOfTheTableAreListedUnderTheirNames)
{
    struct Case
    {
        const char* sql;
        bool listsId;
        bool takesMore;
    };
    for (const Case& one : std::initializer_list<Case>{
             {"t", true, true},
             {"SELECT * FROM t", true, true},
             {"SELECT t.* FROM [dbo].[t]", true, true},
             {"SELECT testo, ID FROM t", true, true},
             {"SELECT TOP 5 id FROM t", true, true},
             {"SELECT TOP (5) PERCENT WITH TIES id FROM t", true, true},
             {"SELECT ALL [t].[id], testo FROM t", true, true},
             {"SELECT testo FROM t WHERE id = 5 ORDER BY id", false, true},
             {"SELECT testo AS id FROM t", false, true},
             {"SELECT testo id FROM t", false, true},
             {"SELECT id AS numero FROM t", false, true},
             {"SELECT *, piccolo AS id FROM t", false, true},
             {"SELECT id, id + 1 AS piu FROM t", false, true},
             {"SELECT id = piccolo FROM t", false, true},
             {"SELECT 'id, *' FROM t", false, true},
             {"SELECT ISNULL(testo, '*'), 1 FROM t", false, true},
             {"SELECT COUNT(*) FROM t", false, false},
             {"SELECT ISNULL(MAX(id), 0) + 1 AS n FROM t", false, false},
             {"SELECT (SELECT MAX(x) FROM u) AS n, id FROM t", true, true},
             {"SELECT ) ( , FROM t", false, true},
         }) {
        const auto source = parseRowSource(one.sql);
        EXPECT_EQ(source.lists("id"), one.listsId) << one.sql;
        EXPECT_EQ(source.endOfColumns > 0, one.takesMore) << one.sql;
    }
}

TEST(RowSource, KnowsTheColumnBehindAnotherName)
{
    const auto source = parseRowSource("SELECT [dbo].t.[Età x] AS eta, testo nome, a + b AS c, n FROM t");
    ASSERT_EQ(source.items.size(), 4U);
    EXPECT_EQ(source.items[0].column, "Età x");
    EXPECT_EQ(source.items[1].column, "testo");
    EXPECT_EQ(source.items[2].column, "");
    EXPECT_EQ(source.items[3].column, "n");
    EXPECT_FALSE(source.items[3].renamed);
}
