// SELECT, INSERT, UPDATE and DELETE in all their forms, run.
#include "tests/host/dialect/Engine.h"

#include <gmock/gmock.h>

using namespace zul::dialect;
using namespace zul::dialect::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace {

class Statements : public testing::Test
{
protected:
    Statements()
    {
        m_engine.run("CREATE TABLE c(id int PRIMARY KEY, nome nvarchar(20), nato datetime, importo "
                     "decimal(10,2), attivo bit);"
                     "CREATE TABLE v(id int IDENTITY PRIMARY KEY, idc int, valore int);"
                     "INSERT INTO c(id, nome, nato, importo, attivo) VALUES (1, 'Ada', '19800102', 10, "
                     "'true'), (2, 'bea', '1990-05-06 "
                     "10:20', 2.5, 0), (3, NULL, NULL, NULL, NULL);"
                     "INSERT INTO v(idc, valore) VALUES (1, 10), (1, 20), (2, 5), (9, 1)");
    }

    Rows run(std::string_view tsql) { return m_engine.run(tsql); }

    Engine m_engine;
};

TEST_F(Statements, InsertStoresDatesFlagsAndNumbersInTheirForm)
{
    EXPECT_THAT(run("SELECT nato, attivo, importo FROM c ORDER BY id"),
                ElementsAre(ElementsAre("1980-01-02 00:00:00.000", "1", "10"),
                            ElementsAre("1990-05-06 10:20:00.000", "0", "2.5"),
                            ElementsAre("NULL", "NULL", "NULL")));
    EXPECT_THAT(run("SELECT id FROM c WHERE nato >= '19900506'"), ElementsAre(ElementsAre("2")));
    EXPECT_THAT(run("SELECT id FROM c WHERE nato > '19900506 10:20'"), IsEmpty());
    EXPECT_THAT(run("SELECT id FROM c WHERE nato = '19800102'"), ElementsAre(ElementsAre("1")));
    EXPECT_THAT(run("SELECT importo / 4 FROM c WHERE id = 1"), ElementsAre(ElementsAre("2.5")));
}

TEST_F(Statements, InsertSelectConverts)
{
    run("INSERT INTO c(id, nato) SELECT 10, '20261121' UNION ALL SELECT 11, NULL");
    EXPECT_THAT(run("SELECT nato FROM c WHERE id >= 10 ORDER BY id"),
                ElementsAre(ElementsAre("2026-11-21 00:00:00.000"), ElementsAre("NULL")));
    run("INSERT c(id, nato) VALUES (12, DATEADD(day, 1, '20261121'))");
    EXPECT_THAT(run("SELECT nato FROM c WHERE id = 12"), ElementsAre(ElementsAre("2026-11-22 00:00:00.000")));
    run("INSERT INTO c(id, nome) (SELECT 13, 'x')");
    EXPECT_THAT(run("SELECT nome FROM c WHERE id = 13"), ElementsAre(ElementsAre("x")));
}

TEST_F(Statements, Aliases)
{
    run("SELECT id AS a, id b, id [c d], c = id, 'e' = id, id 'f', \"g\" = id, id AS 'h', id, LEN(nome), 1 "
        "FROM c");
    EXPECT_THAT(m_engine.columns(), ElementsAre("a", "b", "c d", "c", "e", "f", "g", "h", "id", "", ""));
}

TEST_F(Statements, TopAndPaging)
{
    EXPECT_THAT(run("SELECT TOP 2 id FROM c ORDER BY id DESC"),
                ElementsAre(ElementsAre("3"), ElementsAre("2")));
    EXPECT_THAT(run("SELECT DISTINCT TOP (1+0) id FROM c ORDER BY 1"), ElementsAre(ElementsAre("1")));
    EXPECT_THAT(run("SELECT id FROM c ORDER BY id OFFSET 1 ROWS FETCH NEXT 1 ROWS ONLY"),
                ElementsAre(ElementsAre("2")));
    EXPECT_THAT(run("SELECT id FROM c ORDER BY id OFFSET 2 ROWS"), ElementsAre(ElementsAre("3")));
    EXPECT_THAT(run("SELECT TOP 1 id FROM c UNION ALL SELECT TOP 1 valore FROM v ORDER BY 1"),
                ElementsAre(ElementsAre("1"), ElementsAre("10")));
    EXPECT_THAT(run("SELECT TOP 0 id FROM c"), IsEmpty());
}

TEST_F(Statements, Joins)
{
    EXPECT_THAT(run("SELECT a.id, SUM(b.valore) AS somma FROM c a INNER JOIN v AS b ON a.id = b.idc GROUP BY "
                    "a.id ORDER BY somma DESC"),
                ElementsAre(ElementsAre("1", "30"), ElementsAre("2", "5")));
    EXPECT_THAT(run("SELECT c.id, v.valore FROM c LEFT OUTER JOIN v ON c.id = v.idc WHERE v.id IS NULL"),
                ElementsAre(ElementsAre("3", "NULL")));
    EXPECT_THAT(run("SELECT v.idc FROM c RIGHT JOIN v ON c.id = v.idc WHERE c.id IS NULL"),
                ElementsAre(ElementsAre("9")));
    EXPECT_THAT(run("SELECT 1 FROM c FULL OUTER JOIN v ON c.id = v.idc"), SizeIs(5));
    EXPECT_THAT(run("SELECT 1 FROM c CROSS JOIN v"), SizeIs(12));
    EXPECT_THAT(run("SELECT 1 FROM c, v WHERE c.id = v.idc"), SizeIs(3));
    EXPECT_THAT(run("SELECT c.* FROM c JOIN v x JOIN v y ON x.id = y.id ON c.id = x.idc"), SizeIs(3));
    EXPECT_THAT(run("SELECT c.id FROM c LEFT JOIN (v x INNER JOIN v y ON x.id = y.id) ON c.id = x.idc"),
                SizeIs(4));
    EXPECT_THAT(run("SELECT z.id FROM v z, c LEFT JOIN v ON c.id = v.idc WHERE z.id = 1"), SizeIs(4));
    EXPECT_THAT(run("SELECT c.id FROM dbo.c WITH (NOLOCK) INNER JOIN ZUL.dbo.v (nolock) ON dbo.c.id = "
                    "v.idc OPTION (MAXDOP 1)"),
                SizeIs(3));
    EXPECT_THAT(run("SELECT t.id FROM ZUL..c t WITH(NOLOCK, ROWLOCK)"), SizeIs(3));
}

TEST_F(Statements, SubSelects)
{
    EXPECT_THAT(run("SELECT id FROM c WHERE id IN (SELECT idc FROM v WHERE valore > 5)"),
                ElementsAre(ElementsAre("1")));
    EXPECT_THAT(run("SELECT id FROM c WHERE NOT EXISTS (SELECT * FROM v WHERE v.idc = c.id)"),
                ElementsAre(ElementsAre("3")));
    EXPECT_THAT(run("SELECT (SELECT MAX(valore) FROM v WHERE idc = c.id) AS m FROM c ORDER BY id"),
                ElementsAre(ElementsAre("20"), ElementsAre("5"), ElementsAre("NULL")));
    EXPECT_THAT(run("SELECT d.eta + 1 FROM (SELECT DATEDIFF(year, nato, '20261121') AS eta, id FROM c) d "
                    "WHERE d.id = 1"),
                ElementsAre(ElementsAre("47")));
    EXPECT_THAT(run("SELECT x, y FROM (SELECT id, nome FROM c WHERE id < 3) AS d(x, y) ORDER BY y"),
                ElementsAre(ElementsAre("1", "Ada"), ElementsAre("2", "bea")));
    EXPECT_THAT(run("SELECT n FROM (VALUES (1), (2)) AS k(n) WHERE n > 1"), ElementsAre(ElementsAre("2")));
    EXPECT_THAT(run("SELECT id FROM c WHERE (SELECT COUNT(*) FROM v WHERE idc = c.id) = 2"),
                ElementsAre(ElementsAre("1")));
}

TEST_F(Statements, SetOperators)
{
    EXPECT_THAT(run("SELECT id FROM c EXCEPT SELECT idc FROM v"), ElementsAre(ElementsAre("3")));
    EXPECT_THAT(run("SELECT id FROM c INTERSECT SELECT idc FROM v ORDER BY id DESC"),
                ElementsAre(ElementsAre("2"), ElementsAre("1")));
    // INTERSECT binds closer than UNION.
    EXPECT_THAT(run("SELECT 1 UNION SELECT 2 INTERSECT SELECT 2 ORDER BY 1"),
                ElementsAre(ElementsAre("1"), ElementsAre("2")));
    EXPECT_THAT(run("(SELECT 1 UNION SELECT 2) INTERSECT SELECT 2"), ElementsAre(ElementsAre("2")));
    EXPECT_THAT(run("SELECT 1 EXCEPT (SELECT 1 EXCEPT SELECT 1)"), ElementsAre(ElementsAre("1")));
    EXPECT_THAT(
        run("(SELECT TOP 1 id FROM c ORDER BY id DESC) UNION ALL (SELECT TOP 1 id FROM c ORDER BY id)"),
        ElementsAre(ElementsAre("3"), ElementsAre("1")));
    EXPECT_THAT(run("SELECT n FROM ((SELECT 1 AS n) UNION ALL (SELECT 2)) AS k ORDER BY n DESC"),
                ElementsAre(ElementsAre("2"), ElementsAre("1")));
}

TEST_F(Statements, CommonTables)
{
    EXPECT_THAT(run("WITH grandi AS (SELECT idc, valore FROM v WHERE valore >= 10), uno(x) AS (SELECT 1) "
                    "SELECT valore FROM grandi, uno WHERE idc = x ORDER BY 1"),
                ElementsAre(ElementsAre("10"), ElementsAre("20")));
    EXPECT_THAT(run("WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 4) SELECT SUM(i) FROM n "
                    "OPTION (MAXRECURSION 0)"),
                ElementsAre(ElementsAre("10")));
    run("WITH s AS (SELECT idc FROM v WHERE valore = 5) DELETE FROM c WHERE id IN (SELECT idc FROM s)");
    EXPECT_THAT(run("SELECT id FROM c"), UnorderedElementsAre(ElementsAre("1"), ElementsAre("3")));
    run(";WITH s AS (SELECT 50 AS id) INSERT INTO c(id) SELECT id FROM s");
    EXPECT_THAT(run("SELECT id FROM c WHERE id = 50"), SizeIs(1));
}

TEST_F(Statements, Update)
{
    run("UPDATE dbo.c SET nome = UPPER(nome) + '!', nato = '20261121', importo += 1, attivo = 'false' WHERE "
        "id = 1");
    EXPECT_THAT(run("SELECT nome, nato, importo, attivo FROM c WHERE id = 1"),
                ElementsAre(ElementsAre("ADA!", "2026-11-21 00:00:00.000", "11", "0")));
    run("UPDATE v SET valore *= 2 WHERE idc = 1");
    EXPECT_THAT(run("SELECT SUM(valore) FROM v"), ElementsAre(ElementsAre("66")));
}

TEST_F(Statements, UpdateFromAJoin)
{
    run("UPDATE a SET nome = a.nome + '+', importo = b.valore FROM c a INNER JOIN v b ON a.id = b.idc WHERE "
        "b.valore = 20");
    EXPECT_THAT(
        run("SELECT nome, importo FROM c ORDER BY id"),
        ElementsAre(ElementsAre("Ada+", "20"), ElementsAre("bea", "2.5"), ElementsAre("NULL", "NULL")));
    run("UPDATE c SET importo = v.valore FROM v WHERE c.id = v.idc AND c.id = 2");
    EXPECT_THAT(run("SELECT importo FROM c WHERE id = 2"), ElementsAre(ElementsAre("5")));
    run("UPDATE c SET c.importo += 1 FROM c, v x WHERE c.id = x.idc AND x.valore = 5");
    EXPECT_THAT(run("SELECT importo FROM c WHERE id = 2"), ElementsAre(ElementsAre("6")));
}

TEST_F(Statements, DeleteForms)
{
    run("DELETE x FROM v x INNER JOIN c ON c.id = x.idc WHERE c.nome = 'BEA'");
    EXPECT_THAT(run("SELECT idc FROM v"),
                UnorderedElementsAre(ElementsAre("1"), ElementsAre("1"), ElementsAre("9")));
    run("DELETE FROM v FROM c WHERE v.idc = c.id");
    EXPECT_THAT(run("SELECT idc FROM v"), ElementsAre(ElementsAre("9")));
    run("DELETE v WHERE idc = 9");
    EXPECT_THAT(run("SELECT idc FROM v"), IsEmpty());
    run("DELETE FROM dbo.c");
    EXPECT_THAT(run("SELECT * FROM c"), IsEmpty());
}

TEST_F(Statements, Batches)
{
    EXPECT_THAT(translateBatch("SELECT 1 SELECT 2;;SELECT 3;"), SizeIs(3));
    EXPECT_THAT(translateBatch(" ; -- nothing"), IsEmpty());
    EXPECT_EQ(translate("SELECT 1;").sql, "SELECT 1 AS []");
    EXPECT_THROW(translateBatch("SELECT 1; SELECT FROM"), DialectError);
}

TEST_F(Statements, OrderingByAliasPositionAndExpression)
{
    EXPECT_THAT(run("SELECT id, ISNULL(nome, '') AS n FROM c ORDER BY n DESC"),
                ElementsAre(ElementsAre("2", "bea"), ElementsAre("1", "Ada"), ElementsAre("3", "")));
    EXPECT_THAT(run("SELECT id FROM c ORDER BY LEN(nome), id DESC"),
                ElementsAre(ElementsAre("3"), ElementsAre("2"), ElementsAre("1")));
    EXPECT_THAT(run("SELECT id FROM c ORDER BY CASE WHEN id = 2 THEN 0 ELSE 1 END, id"),
                ElementsAre(ElementsAre("2"), ElementsAre("1"), ElementsAre("3")));
}

TEST_F(Statements, ExpressionsGroupWithoutRegardToCase)
{
    run("INSERT INTO c(id, nome) VALUES (4, 'ADA')");
    EXPECT_THAT(run("SELECT DISTINCT nome + '!' FROM c WHERE nome IS NOT NULL"), SizeIs(2));
    EXPECT_THAT(run("SELECT DISTINCT nome FROM c WHERE nome IS NOT NULL"), SizeIs(2));
    EXPECT_THAT(run("SELECT nome, COUNT(*) FROM c WHERE nome IS NOT NULL GROUP BY nome ORDER BY 2 DESC"),
                ElementsAre(ElementsAre(testing::_, "2"), ElementsAre("bea", "1")));
}

TEST_F(Statements, LikeOnColumnsAndPatternsThatAreColumns)
{
    EXPECT_THAT(run("SELECT id FROM c WHERE nome LIKE 'A%'"), ElementsAre(ElementsAre("1")));
    EXPECT_THAT(run("SELECT id FROM c WHERE nome LIKE '[b-z]%'"), ElementsAre(ElementsAre("2")));
    EXPECT_THAT(run("SELECT id FROM c WHERE nome NOT LIKE '[^A]%'"), ElementsAre(ElementsAre("1")));
    EXPECT_THAT(run("SELECT id FROM c WHERE nome LIKE LOWER(nome)"),
                UnorderedElementsAre(ElementsAre("1"), ElementsAre("2")));
    EXPECT_THAT(run("SELECT id FROM c WHERE nome LIKE NULL"), IsEmpty());
    EXPECT_EQ(translate("SELECT a FROM t WHERE a LIKE '%x_\\'").sql,
              "SELECT [a] AS [a] FROM [t] WHERE [a] LIKE '%x_\\'");
    EXPECT_EQ(translate("SELECT a FROM t WHERE a LIKE '[x]%' ESCAPE '!'").sql,
              "SELECT [a] AS [a] FROM [t] WHERE zul_like('[x]%', [a], '!')");
}

} // namespace
