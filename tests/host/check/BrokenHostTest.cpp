// Hosts that are broken in one way each: the check finds that, and nothing else.
#include "tests/host/check/BrokenHost.h"
#include "tests/support/TemporaryFolder.h"

#include "host/check/HostCheck.h"
#include "host/database/sqlite/SqliteDatabase.h"
#include "host/session/HostDatabase.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace zul::host::check {

namespace {

struct Case
{
    const char* name;
    Fault fault;
    /// The check that finds it, and words of what it says.
    const char* check;
    const char* words;
};

std::ostream& operator<<(std::ostream& out, const Case& one)
{
    return out << one.name;
}

constexpr const char* noneLeft = "references: none is left behind";

const std::vector<Case>& cases()
{
    static const std::vector<Case> all{
        {"NoConnection", Fault::NoConnection, connectionCheck, "gives null"},
        {"ConnectionNotCounted", Fault::ConnectionNotCounted, "references: what is handed out has its own",
         "without a reference"},
        {"ConnectionLeaks", Fault::ConnectionLeaks, "references: what is handed out has its own",
         "counts otherwise"},
        {"NoRowSet", Fault::NoRowSet, movesCheck, "gives null"},
        {"RowSetLeaks", Fault::RowSetLeaks, noneLeft, "1 more references"},
        {"RowSetKeepsConnection", Fault::RowSetKeepsConnection, noneLeft, "other references"},
        {"AnswersEverything", Fault::AnswersEverything, rowInterfacesCheck, "nobody has"},
        {"RefusesWithoutNull", Fault::RefusesWithoutNull, interfacesCheck, "other than null"},
        {"EofNeverTrue", Fault::EofNeverTrue, movesCheck, "Eof is not true"},
        {"EofIsOne", Fault::EofIsOne, movesCheck, "Eof is 1"},
        {"NullAsEmpty", Fault::NullAsEmpty, "row sets: NULL", "VT_EMPTY"},
        {"NullAsZero", Fault::NullAsZero, "row sets: NULL", "VT_I4 0"},
        {"EmptyTextAsNull", Fault::EmptyTextAsNull, "row sets: the empty text", "VT_NULL"},
        {"TextCutAt255", Fault::TextCutAt255, "values: texts of 256, 10000 and 40000 characters",
         "of 255 characters"},
        {"CodePage", Fault::CodePage, "values: letters outside a code page", "?"},
        {"IndexNotTaken", Fault::IndexNotTaken, "row sets: fields by index", "a field has a name"},
        {"NamesInOneCase", Fault::NamesInOneCase, "row sets: fields by name, in any case", "DESCRIZIONE"},
        {"ClosedGoesOn", Fault::ClosedGoesOn, "row sets: closed", "succeeds"},
        {"CloseTwiceFails", Fault::CloseTwiceFails, "row sets: closed", "second time"},
        {"LostWhenAnotherRuns", Fault::LostWhenAnotherRuns, "row sets: nothing stays open behind them",
         "lost rows"},
        {"UpdateChangesNothing", Fault::UpdateChangesNothing, "changes: the current row", "prima"},
        {"AddNewChangesNothing", Fault::AddNewChangesNothing, addCheck, "0 rows"},
        {"UpdateHidesFailures", Fault::UpdateHidesFailures, "failures: a key that is there", "succeeds"},
        {"NoDescription", Fault::NoDescription, "failures: descriptions", "no description"},
        {"RowsNotCounted", Fault::RowsNotCounted, "changes: the number of rows", "-1"},
        {"RollbackKeeps", Fault::RollbackKeeps, "transactions", "after RollbackTrans"},
        {"LookupNull", Fault::LookupNull, "LookupValue", "VT_NULL"},
        {"LookupSucceeds", Fault::LookupSucceeds, "failures: LookupValue", "succeeds"},
        {"BooleanAsNumber", Fault::BooleanAsNumber, "values: Booleans", "VT_I4 -1"},
        {"BooleanIsOne", Fault::BooleanIsOne, "values: Booleans", "true comes back as VT_BOOL 1"},
        {"DateAsText", Fault::DateAsText, "values: dates", "VT_BSTR"},
        {"MoneyAsCurrency", Fault::MoneyAsCurrency, "values: decimals", "VT_CY"},
        {"StrayVariant", Fault::StrayVariant, "values: reals", "none of the contract"},
        {"ServiceNull", Fault::ServiceNull, "services: IEmailCheck", "gives null"},
        {"ServiceFails", Fault::ServiceFails, "services: IEmailCheck", "E_NOINTERFACE"},
        {"ReaderLosesARow", Fault::ReaderLosesARow, "IRowReader", "3 rows, and Value 4"},
        {"NoTable", Fault::NoTable, tableCheck, "CREATE TABLE zulVerifica (id int NOT NULL PRIMARY KEY,"},
        {"DecimalTakenAsNull", Fault::DecimalTakenAsNull, "values: decimals",
         "the number CAST(-1234.5 AS decimal(18,4)) comes as VT_NULL"},
        {"TakesTwoStatements", Fault::TakesTwoStatements, "failures: two statements in one text",
         "runs a text of two statements"},
        {"Throws", Fault::Throws, "row sets: NULL", "an exception came out of the host"},
        {"ThrowsInClose", Fault::ThrowsInClose, "row sets: NULL", "out of the host by Close"},
        {"ThrowsInRelease", Fault::ThrowsInRelease, "row sets: NULL", "out of the host by Release"},
        {"ReaderGivesStrayTexts", Fault::ReaderGivesStrayTexts, "IRowReader", "no good place"},
    };
    return all;
}

/// Against the contract, and not to the component's harm.
bool isHarmless(Fault fault)
{
    return fault == Fault::ServiceNull || fault == Fault::TakesTwoStatements || fault == Fault::EofIsOne ||
           fault == Fault::BooleanIsOne;
}

std::string caseName(const ::testing::TestParamInfo<Case>& info)
{
    return info.param.name;
}

class BrokenHostTest : public ::testing::Test
{
protected:
    BrokenHostTest()
    {
        const SqliteDatabase made(m_folder.file("host.db"), SqliteDatabase::Mode::OpenOrCreate);
        HostDatabaseOptions options;
        options.database = m_folder.file("host.db");
        m_sound = std::make_unique<HostDatabase>(options);
    }

    Report checked(Fault fault)
    {
        m_state->fault = fault;
        Report report = checkHost(makeBrokenHost(m_sound->connection(), m_state).get(), {});
        m_state->leaked.clear();
        return report;
    }

    TemporaryFolder m_folder;
    std::unique_ptr<HostDatabase> m_sound;
    std::shared_ptr<BrokenState> m_state = std::make_shared<BrokenState>();
};

class BrokenHosts : public BrokenHostTest, public ::testing::WithParamInterface<Case>
{};

} // namespace

INSTANTIATE_TEST_SUITE_P(Each, BrokenHosts, ::testing::ValuesIn(cases()), caseName);

TEST_P(BrokenHosts, HaveTheirBreach)
{
    const Report report = checked(GetParam().fault);
    std::vector<std::string> found;
    for (const Finding& finding : report.findings) {
        if (finding.outcome == (isHarmless(GetParam().fault) ? Outcome::Warning : Outcome::Breach)) {
            found.push_back(finding.check);
            EXPECT_THAT(finding.text, ::testing::HasSubstr(GetParam().words));
            EXPECT_THAT(finding.text, ::testing::HasSubstr("the component: "));
        }
    }
    // Both say it of what was set; and what changes one of a kind of dates changes the others.
    std::vector<std::string> expected{GetParam().check};
    if (GetParam().fault == Fault::NullAsZero || GetParam().fault == Fault::EmptyTextAsNull) {
        expected.emplace_back("values: NULL and empty, written");
    } else if (GetParam().fault == Fault::DateAsText) {
        expected.emplace_back("values: early and late dates, milliseconds");
    }
    EXPECT_EQ(found, expected);
    EXPECT_NE(report.hasBreach(), isHarmless(GetParam().fault)) << report.summary();
    EXPECT_FALSE(m_sound->engine().hasTable("zulVerifica"));
}

TEST_F(BrokenHostTest, TheOneBetweenBreaksNothingByItself)
{
    for (const Finding& finding : checked(Fault::None).findings) {
        EXPECT_NE(finding.outcome, Outcome::Breach) << finding.line();
    }
}

TEST_F(BrokenHostTest, OneThatAFailureBreaksIsTold)
{
    const Report report = checked(Fault::BrokenByFailure);
    const auto found = std::find_if(report.findings.begin(), report.findings.end(), [](const Finding& one) {
        return one.check == "failures: the connection goes on";
    });
    ASSERT_NE(found, report.findings.end());
    EXPECT_EQ(found->outcome, Outcome::Breach);
    EXPECT_THAT(found->text, ::testing::HasSubstr("the connection is broken"));
}

TEST_F(BrokenHostTest, OneThatTakesFailuresForSuccessIsTold)
{
    const Report report = checked(Fault::FailuresSucceed);
    EXPECT_TRUE(report.hasBreach());
    EXPECT_THAT(report.summary(), ::testing::HasSubstr("breach"));
}

} // namespace zul::host::check
