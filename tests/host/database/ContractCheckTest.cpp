// The checks of zulhost --check-host, which hosts of others are held to, over the connections of the tree, on every
// database. What only this tree promises, as its error numbers, is in ContractTest.cpp.
#include "tests/host/database/Backends.h"

#include "host/check/HostCheck.h"

#include <gmock/gmock.h>

using namespace zul;
using namespace zul::host;
using check::CheckOptions;
using check::Finding;
using check::Report;

namespace {

std::string backendName(const ::testing::TestParamInfo<Backend>& info)
{
    return info.param.name;
}

/// The table in the words of a server that is none of Transact-SQL.
CheckOptions optionsFor(const std::string& backend)
{
    CheckOptions options;
    if (backend == "SqliteByOdbc") {
        options.createTable = u"CREATE TABLE zulVerifica (id INTEGER PRIMARY KEY, piccolo smallint,"
                              u" grande bigint, vero bit, reale float, importo decimal(18,4),"
                              u" testo nvarchar(60), lungo text, quando datetime)";
    } else if (backend == "PostgresByOdbc") {
        options.createTable = u"CREATE TABLE zulVerifica (id int PRIMARY KEY, piccolo smallint,"
                              u" grande bigint, vero boolean, reale double precision,"
                              u" importo decimal(18,4), testo varchar(60), lungo text,"
                              u" quando timestamp(3))";
    }
    return options;
}

class OwnHosts : public ::testing::TestWithParam<Backend>
{
protected:
    void SetUp() override
    {
        std::string why;
        const auto database = GetParam().database(m_folder, why);
        if (!database) {
            GTEST_SKIP() << why;
        }
        HostDatabaseOptions options;
        options.database = *database;
        m_database = std::make_unique<HostDatabase>(options);
    }

    TemporaryFolder m_folder;
    std::unique_ptr<HostDatabase> m_database;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(On, OwnHosts, ::testing::ValuesIn(backends()), backendName);

TEST_P(OwnHosts, KeepTheContract)
{
    std::size_t told = 0;
    const Report report = check::checkHost(m_database->connection(), optionsFor(GetParam().name),
                                           [&told](const Finding&) { ++told; });
    for (const Finding& finding : report.findings) {
        EXPECT_NE(finding.outcome, check::Outcome::Breach) << finding.line();
        if (finding.outcome == check::Outcome::Skipped) {
            // A host that is driven by the program gives its sink to the component alone.
            EXPECT_THAT(finding.check,
                        ::testing::AnyOf("the event CaricaGriglia", "failures: a lost connection"))
                << finding.line();
        }
    }
    EXPECT_EQ(told, report.findings.size());
    EXPECT_GT(report.count(check::Outcome::Ok), 50U);
    EXPECT_FALSE(m_database->engine().hasTable("zulVerifica"));
}

TEST_P(OwnHosts, AreNotTouchedReadOnly)
{
    if (GetParam().name != "Sqlite" && GetParam().name != "TransactSqlByOdbc") {
        GTEST_SKIP() << "it does not give every literal of Transact-SQL its type";
    }
    CheckOptions options;
    options.readOnly = true;
    const Report report = check::checkHost(m_database->connection(), options);
    for (const Finding& finding : report.findings) {
        EXPECT_NE(finding.outcome, check::Outcome::Breach) << finding.line();
    }
    EXPECT_FALSE(m_database->engine().hasTable("zulVerifica"));
    EXPECT_GT(report.count(check::Outcome::Skipped), 10U);
    EXPECT_GT(report.count(check::Outcome::Ok), 30U);
}
