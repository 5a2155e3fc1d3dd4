#include "host/database/OneStatement.h"

#include "host/database/EngineError.h"
#include "host/database/sqlite/SqliteEngine.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace zul::host;

TEST(OneStatement, TakesOne)
{
    for (const char* sql : {
             "",
             " ; ",
             "SELECT 1",
             "SELECT 1;",
             " select * from tabclienti where telefono2 like '%a; drop table x%'",
             "UPDATE t SET a = 'x'' ; DELETE FROM t' WHERE [delete] = 1 -- ; DROP TABLE t",
             "INSERT INTO t SELECT a FROM u /* ; DROP TABLE /* t */ */",
             "WITH x AS (SELECT 1 AS a) UPDATE t SET a = (SELECT a FROM x)",
             "SELECT 1 UNION ALL SELECT 2",
             // What the dialect does not know, and a server may.
             "SELECT * FROM OPENJSON('{}') FOR JSON PATH",
             "ALTER TABLE t ADD CONSTRAINT f FOREIGN KEY (a) REFERENCES u (a) ON DELETE SET NULL",
             "ALTER TABLE t ADD CONSTRAINT f FOREIGN KEY (a) REFERENCES u (a) ON UPDATE CASCADE",
             "WITH x AS (SELECT 1 AS a) MERGE t USING x ON t.a = x.a",
             "EXEC sp_who",
             "SELECT t.[insert], t.kill FROM t OPTION (RECOMPILE) FOR XML AUTO",
         }) {
        EXPECT_NO_THROW(requireOneStatement(sql)) << sql;
    }
}

TEST(OneStatement, RefusesMore)
{
    for (const char* sql : {
             "SELECT 1; SELECT 2",
             "SELECT 1 DELETE FROM t",
             " select * from tabclienti where telefono2 like '%x'; DROP TABLE tabClienti --%'",
             "select * from t where a like '%x' drop table t --%'",
             "UPDATE t SET a = 1 WHERE b = '' EXEC xp_cmdshell 'x' --'",
             "UPDATE t SET a = 1 WHERE b = '' WAITFOR DELAY '1:00' --'",
             "SELECT * FROM OPENJSON('{}') FOR JSON PATH; SHUTDOWN",
             "EXEC sp_who EXEC sp_who",
             "; SELECT 1 /* */ ; /* */ DECLARE @a int",
         }) {
        try {
            requireOneStatement(sql);
            ADD_FAILURE() << sql;
        } catch (const EngineError& error) {
            EXPECT_EQ(error.code(), ErrorCode::Statement);
            EXPECT_NE(std::string(error.what()).find("one statement a call"), std::string::npos);
        }
    }
}

TEST(OneStatement, TheEmbeddedEngineRunsNothingOfSeveral)
{
    const TemporaryFolder folder;
    SqliteEngine engine(folder.file("x.db"), SqliteDatabase::Mode::OpenOrCreate);
    engine.execute("CREATE TABLE t (a int)", Language::Transact);
    engine.execute("INSERT INTO t VALUES (1)", Language::Transact);
    EXPECT_THROW(engine.execute("DELETE FROM t; DELETE FROM t", Language::Transact), EngineError);
    EXPECT_THROW(engine.execute("DELETE FROM t DELETE FROM t", Language::Transact), EngineError);
    EXPECT_THROW(engine.query("SELECT 1; DELETE FROM t", Language::Transact), EngineError);
    EXPECT_EQ(engine.execute("DELETE FROM t ;", Language::Transact), 1);
}
