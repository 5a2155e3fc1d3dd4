// A DISTINCT over rows that a key tells apart: the cheaper statement gives the same rows, and it is chosen only
// where it does.
#include "tests/host/dialect/Engine.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace zul::dialect;
using namespace zul::dialect::test;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class DistinctKey : public testing::Test
{
protected:
    DistinctKey()
    {
        m_engine.run(
            "CREATE TABLE c(id int PRIMARY KEY, nome nvarchar(20), nato datetime, codice nvarchar(5));"
            "CREATE TABLE s(x int, t nvarchar(5));"
            "CREATE TABLE p(a int, b int, PRIMARY KEY (a, b));"
            "INSERT INTO c(id, nome, nato, codice) VALUES (1, 'Ada', '19800102', 'a'), (2, 'ADA', "
            "'19900506', 'a'), (3, NULL, NULL, 'b'), (4, 'L''ò', '20000101', NULL);"
            "INSERT INTO s(x, t) VALUES (4, 'a'), (1, 'a'), (1, 'b'), (9, 'a'), (NULL, 'a'), (4, 'c'), "
            "(2, '1');"
            "INSERT INTO p(a, b) VALUES (1, 1), (1, 2)");
    }

    std::string translated(std::string_view tsql) const
    {
        const TableKey key = [](std::string_view table) {
            if (table == "c" || table == "C") {
                return std::vector<std::string>{"id"};
            }
            if (table == "p") {
                return std::vector<std::string>{"a", "b"};
            }
            return std::vector<std::string>{};
        };
        return translate(tsql, m_engine.types(), {}, key).sql;
    }

    // Whether the statement was changed, after its rows were found to be those of the unchanged one.
    bool isUsedFor(std::string_view tsql)
    {
        const std::string sql = translated(tsql);
        Rows changed = m_engine.runNative(sql);
        const std::vector<std::string> names = m_engine.columns();
        Rows plain = m_engine.run(tsql);
        EXPECT_EQ(names, m_engine.columns()) << tsql;
        std::sort(changed.begin(), changed.end());
        std::sort(plain.begin(), plain.end());
        EXPECT_EQ(changed, plain) << tsql;
        return sql.find("DISTINCT") == std::string::npos;
    }

    Engine m_engine;
};

TEST_F(DistinctKey, AsksTheOtherTableForItsIds)
{
    EXPECT_EQ(
        translated("SELECT DISTINCT c.id, c.nome FROM s INNER JOIN c ON s.x = c.id"),
        "SELECT [c].[id] AS [id], [c].[nome] AS [nome] FROM [c] WHERE [c].[id] IN (SELECT [s].[x] FROM [s])");
}

TEST_F(DistinctKey, GivesEachRowOnceInTheOrderOfTheKey)
{
    EXPECT_THAT(m_engine.runNative(translated("SELECT DISTINCT c.id FROM s INNER JOIN c ON s.x = c.id")),
                ElementsAre(ElementsAre("1"), ElementsAre("2"), ElementsAre("4")));
}

TEST_F(DistinctKey, IsUsedForTheShapesOfASearch)
{
    EXPECT_TRUE(
        isUsedFor("SELECT DISTINCT c.id, '' AS mark, ISNULL(c.nome,'') + ' ' + ISNULL(c.codice,'') AS n, "
                  "DateDiff(year,c.nato,'20261121') as age FROM s INNER JOIN c ON s.x = c.id"));
    EXPECT_TRUE(isUsedFor("SELECT DISTINCT C.ID FROM c INNER JOIN s ON c.id = s.x"));
    EXPECT_TRUE(
        isUsedFor("SELECT DISTINCT k.id, k.nome FROM s AS z JOIN c AS k ON k.id = z.x WHERE k.codice = 'a' "
                  "OR k.nome LIKE 'L%'"));
}

TEST_F(DistinctKey, IsNotUsedWhereRowsCouldBeEqual)
{
    EXPECT_FALSE(isUsedFor("SELECT DISTINCT c.nome FROM s INNER JOIN c ON s.x = c.id"));
    EXPECT_FALSE(isUsedFor("SELECT DISTINCT c.id + 0 FROM s INNER JOIN c ON s.x = c.id"));
    EXPECT_FALSE(isUsedFor("SELECT DISTINCT c.codice, c.nome FROM s INNER JOIN c ON s.t = c.codice"));
    EXPECT_FALSE(isUsedFor("SELECT DISTINCT p.a FROM s INNER JOIN p ON s.x = p.a"));
}

TEST_F(DistinctKey, IsNotUsedWhereTheOtherTableIsSeen)
{
    EXPECT_FALSE(isUsedFor("SELECT DISTINCT c.id, s.t FROM s INNER JOIN c ON s.x = c.id"));
    EXPECT_FALSE(isUsedFor("SELECT DISTINCT c.id, t FROM s INNER JOIN c ON s.x = c.id"));
    EXPECT_FALSE(isUsedFor("SELECT DISTINCT c.id, s.* FROM s INNER JOIN c ON s.x = c.id"));
    EXPECT_FALSE(isUsedFor("SELECT DISTINCT c.id FROM s INNER JOIN c ON s.x = c.id WHERE s.t = 'a'"));
    EXPECT_FALSE(isUsedFor("SELECT DISTINCT c.id FROM s INNER JOIN c ON s.x = c.id AND s.t = 'a'"));
}

TEST_F(DistinctKey, IsNotUsedForOtherStatements)
{
    EXPECT_THAT(translated("SELECT c.id FROM s INNER JOIN c ON s.x = c.id"), HasSubstr("JOIN"));
    EXPECT_FALSE(isUsedFor("SELECT DISTINCT c.id FROM s LEFT JOIN c ON s.x = c.id"));
    EXPECT_FALSE(
        isUsedFor("SELECT DISTINCT TOP 1 c.id FROM s INNER JOIN c ON s.x = c.id ORDER BY c.id DESC"));
    EXPECT_FALSE(isUsedFor("SELECT DISTINCT c.id, COUNT(*) FROM s INNER JOIN c ON s.x = c.id GROUP BY c.id"));
    EXPECT_FALSE(
        isUsedFor("WITH s AS (SELECT 1 AS x) SELECT DISTINCT c.id FROM s INNER JOIN c ON s.x = c.id"));
    // A text that meets a number is converted by "=" in its own way.
    EXPECT_THAT(translated("SELECT DISTINCT c.id FROM s INNER JOIN c ON s.t = c.id"), HasSubstr("DISTINCT"));
}

} // namespace
