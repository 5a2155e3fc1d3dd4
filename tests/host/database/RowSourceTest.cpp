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
          "SELECT * FROM a CROSS APPLY b"})
        EXPECT_EQ(parseRowSource(sql).table, "") << sql;
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
