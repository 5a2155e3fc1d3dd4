// CREATE, ALTER, DROP and what a session says besides.
#include "tests/host/dialect/Engine.h"

#include <gmock/gmock.h>

using namespace zul::dialect;
using namespace zul::dialect::test;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

TEST(Schema, TypesKeepTheirNames)
{
    EXPECT_EQ(translate("CREATE TABLE dbo.t(a int NOT NULL, b nvarchar(50) NULL, c [datetime], d "
                        "decimal(10,2), e bit, f ntext, g varbinary(max), h "
                        "nvarchar(max), i varchar(5), j float)")
                  .sql,
              "CREATE TABLE [t]([a] INTEGER NOT NULL, [b] NVARCHAR(50) COLLATE NOCASE, [c] DATETIME, [d] "
              "DECIMAL(10,2), [e] BIT, [f] NTEXT COLLATE "
              "NOCASE, [g] BLOB, [h] NVARCHAR COLLATE NOCASE, [i] VARCHAR(5) COLLATE NOCASE, [j] FLOAT)");
}

TEST(Schema, DeclarationsTellTheirType)
{
    EXPECT_EQ(columnTypeOf("nvarchar(50)"), ColumnType::Text);
    EXPECT_EQ(columnTypeOf("DATETIME"), ColumnType::DateTime);
    EXPECT_EQ(columnTypeOf("date"), ColumnType::Date);
    EXPECT_EQ(columnTypeOf("INTEGER"), ColumnType::Integer);
    EXPECT_EQ(columnTypeOf("[int]"), ColumnType::Integer);
    EXPECT_EQ(columnTypeOf("decimal(10,2)"), ColumnType::Decimal);
    EXPECT_EQ(columnTypeOf("bit"), ColumnType::Bit);
    EXPECT_EQ(columnTypeOf("REAL"), ColumnType::Real);
    EXPECT_EQ(columnTypeOf("BLOB"), ColumnType::Binary);
    EXPECT_EQ(columnTypeOf(""), ColumnType::Unknown);
    EXPECT_EQ(columnTypeOf("geometry"), ColumnType::Unknown);
}

TEST(Schema, IdentityIsTheKey)
{
    Engine engine;
    engine.run("CREATE TABLE t(id int IDENTITY(1,1) NOT NULL, s nvarchar(5), CONSTRAINT PK_t PRIMARY KEY "
               "CLUSTERED (id ASC))");
    engine.run("INSERT INTO t(s) VALUES ('a'); INSERT INTO t(s) VALUES ('b'); DELETE FROM t WHERE id = 2; "
               "INSERT t(s) VALUES ('c')");
    EXPECT_THAT(engine.run("SELECT id FROM t"), ElementsAre(ElementsAre("1"), ElementsAre("3")));
    engine.run("CREATE TABLE u(id int IDENTITY, s nvarchar(5)); INSERT INTO u DEFAULT VALUES");
    EXPECT_THAT(engine.run("SELECT id, s FROM u"), ElementsAre(ElementsAre("1", "NULL")));
}

TEST(Schema, ConstraintsHold)
{
    Engine engine;
    engine.run("CREATE TABLE p(id int PRIMARY KEY, code nvarchar(5) NOT NULL UNIQUE, n int DEFAULT ((7)), d "
               "datetime DEFAULT '20261121', c datetime DEFAULT "
               "(GETDATE()), CHECK (n > 0))");
    engine.run("INSERT INTO p(id, code) VALUES (1, 'a')");
    EXPECT_THAT(engine.run("SELECT n, d, DATEDIFF(day, c, GETDATE()) FROM p"),
                ElementsAre(ElementsAre("7", "2026-11-21 00:00:00.000", "0")));
    EXPECT_THAT(engine.failure("INSERT INTO p(id, code) VALUES (2, 'A')"), HasSubstr("UNIQUE"));
    EXPECT_THAT(engine.failure("INSERT INTO p(id, code) VALUES (2, NULL)"), HasSubstr("NOT NULL"));
    EXPECT_THAT(engine.failure("INSERT INTO p(id, code, n) VALUES (2, 'b', 0)"), HasSubstr("CHECK"));
    engine.run("CREATE TABLE k(a int, b nvarchar(5), PRIMARY KEY (a, b), FOREIGN KEY (a) REFERENCES p(id) ON "
               "DELETE CASCADE)");
    engine.run("INSERT INTO k(a, b) VALUES (1, 'x')");
    EXPECT_THAT(engine.failure("INSERT INTO k(a, b) VALUES (1, 'X')"), HasSubstr("UNIQUE"));
}

TEST(Schema, TextColumnsDoNotLookAtCase)
{
    Engine engine;
    engine.run("CREATE TABLE t(s nvarchar(5)); INSERT INTO t(s) VALUES ('b'), ('A'), ('C'), ('a'), (NULL)");
    EXPECT_THAT(engine.run("SELECT DISTINCT s FROM t WHERE s = 'A'"), testing::SizeIs(1));
    EXPECT_THAT(engine.run("SELECT s FROM t WHERE s <> 'a' ORDER BY s DESC"),
                ElementsAre(ElementsAre("C"), ElementsAre("b")));
    EXPECT_THAT(engine.run("SELECT TOP 1 s FROM t ORDER BY s"), ElementsAre(ElementsAre("NULL")));
    EXPECT_THAT(engine.run("SELECT s + '' AS x FROM t WHERE s IS NOT NULL ORDER BY x"),
                ElementsAre(testing::_, testing::_, ElementsAre("b"), ElementsAre("C")));
    EXPECT_THAT(engine.run("SELECT s + '' FROM t WHERE s IS NOT NULL ORDER BY s + ''"),
                ElementsAre(testing::_, testing::_, ElementsAre("b"), ElementsAre("C")));
    EXPECT_THAT(engine.run("SELECT x FROM (SELECT s + '' AS x FROM t) AS d WHERE x = 'B'"),
                ElementsAre(ElementsAre("b")));
    EXPECT_THAT(engine.run("SELECT 'x' UNION SELECT 'X'"), testing::SizeIs(1));
    EXPECT_THAT(engine.run("SELECT 'x' UNION ALL SELECT 'X'"), testing::SizeIs(2));
}

TEST(Schema, AlterDropAndIndexes)
{
    Engine engine;
    engine.run("CREATE TABLE t(a int)");
    engine.run("ALTER TABLE dbo.t ADD b nvarchar(5) NULL, c int NOT NULL DEFAULT 3");
    engine.run("INSERT INTO t(a) VALUES (1)");
    EXPECT_THAT(engine.run("SELECT * FROM t"), ElementsAre(ElementsAre("1", "NULL", "3")));
    engine.run("CREATE UNIQUE NONCLUSTERED INDEX IX_t ON dbo.t (a DESC, b)");
    EXPECT_THAT(engine.failure("INSERT INTO t(a, b) VALUES (2, 'x'), (2, 'X')"), HasSubstr("UNIQUE"));
    engine.run("DROP INDEX IX_t ON t");
    engine.run("ALTER TABLE t DROP COLUMN c");
    EXPECT_THAT(engine.run("SELECT * FROM t"), ElementsAre(ElementsAre("1", "NULL")));
    engine.run("CREATE VIEW v AS SELECT a, ISNULL(b, '') + '!' AS s FROM t");
    EXPECT_THAT(engine.run("SELECT s FROM v"), ElementsAre(ElementsAre("!")));
    engine.run("DROP VIEW v; TRUNCATE TABLE t");
    EXPECT_THAT(engine.run("SELECT * FROM t"), testing::IsEmpty());
    engine.run("DROP TABLE t; DROP TABLE IF EXISTS t, u");
    EXPECT_THAT(engine.failure("SELECT * FROM t"), HasSubstr("no such table"));
}

TEST(Schema, TransactionsRollBack)
{
    Engine engine;
    engine.run("CREATE TABLE t(a int); BEGIN TRAN; INSERT INTO t(a) VALUES (1); ROLLBACK TRANSACTION");
    EXPECT_THAT(engine.run("SELECT * FROM t"), testing::IsEmpty());
    engine.run("BEGIN TRANSACTION INSERT INTO t(a) VALUES (1) COMMIT TRAN");
    EXPECT_THAT(engine.run("SELECT * FROM t"), ElementsAre(ElementsAre("1")));
    EXPECT_EQ(translate("begin tran").kind, StatementKind::Begin);
    EXPECT_EQ(translate("COMMIT").kind, StatementKind::Commit);
    EXPECT_EQ(translate("rollback tran").kind, StatementKind::Rollback);
}

TEST(Schema, InsertWithoutColumnListLeavesTheIdentityOut)
{
    Engine engine;
    engine.run("CREATE TABLE t(id int IDENTITY PRIMARY KEY, d datetime, s nvarchar(9)); INSERT INTO t VALUES "
               "('20261121', '20261121'); "
               "INSERT t SELECT '19000101', 5");
    EXPECT_THAT(engine.run("SELECT id, d, s FROM t"),
                ElementsAre(ElementsAre("1", "2026-11-21 00:00:00.000", "20261121"),
                            ElementsAre("2", "1900-01-01 00:00:00.000", "5")));
    EXPECT_THROW(
        translateBatch("CREATE TABLE t(id int IDENTITY, d datetime); INSERT INTO t VALUES (1, '20261121')"),
        DialectError);
    const TableColumns columns = [](std::string_view) { return std::vector<std::string>{"a", "d"}; };
    const ColumnTypes types = [](std::string_view, std::string_view column) {
        return column == "d" ? ColumnType::Date : ColumnType::Unknown;
    };
    EXPECT_EQ(translate("INSERT INTO t VALUES (1, '20261121 10:20')", types, columns).sql,
              "INSERT INTO [t]([a], [d]) VALUES (1, '2026-11-21 00:00:00.000')");
}

TEST(Schema, BatchForgetsWhatItDrops)
{
    Engine engine;
    engine.run("CREATE TABLE t(a int, b datetime, c nvarchar(9)); ALTER TABLE t DROP COLUMN b; "
               "INSERT INTO t VALUES (1, '20261121')");
    EXPECT_THAT(engine.run("SELECT a, c FROM t"), ElementsAre(ElementsAre("1", "20261121")));
    engine.run("DROP TABLE t; CREATE TABLE t(d datetime); INSERT INTO t VALUES ('20261121')");
    EXPECT_THAT(engine.run("SELECT d FROM t"), ElementsAre(ElementsAre("2026-11-21 00:00:00.000")));
}

TEST(Schema, TemporaryTables)
{
    Engine engine;
    engine.run("CREATE TABLE #ids(id int); INSERT INTO #ids VALUES (1),(2)");
    EXPECT_THAT(engine.run("SELECT COUNT(*) FROM #ids AS i WHERE i.id > 1"), ElementsAre(ElementsAre("1")));
    EXPECT_THAT(engine.runNative("SELECT COUNT(*) FROM sqlite_master"), ElementsAre(ElementsAre("0")));
    engine.run("DROP TABLE #ids");
}

} // namespace
