// Operators, conditions and conversions: what an expression is worth.
#include "tests/host/dialect/Engine.h"

#include <gmock/gmock.h>

using namespace zul::dialect;
using namespace zul::dialect::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

struct Case
{
    const char* expression;
    const char* value;
};

void PrintTo(const Case& example, std::ostream* out)
{
    *out << example.expression;
}

class Values : public testing::TestWithParam<Case>
{};

TEST_P(Values, AreTheServers)
{
    Engine engine;
    EXPECT_EQ(engine.value(GetParam().expression), GetParam().value)
        << translate(std::string("SELECT ") + GetParam().expression).sql;
}

INSTANTIATE_TEST_SUITE_P(Literals, Values,
                         testing::Values(Case{"1", "1"}, Case{"1e2", "100.0"}, Case{".5", "0.5"},
                                         Case{"1.", "1.0"}, Case{"$1.25", "1.25"}, Case{"0x0A + 0", "10"},
                                         Case{"0x + 0", "0"}, Case{"NULL", "NULL"}, Case{"'it''s'", "it's"},
                                         Case{"N'città €😀'", "città €😀"}, Case{"''", ""},
                                         Case{"{d '2026-11-21'}", "2026-11-21 00:00:00.000"},
                                         Case{"{ts '2026-11-21 10:20:30'}", "2026-11-21 10:20:30.000"},
                                         Case{"{fn UCASE('a')}", "A"}, Case{"1AS x", "1"}));

INSTANTIATE_TEST_SUITE_P(Arithmetic, Values,
                         testing::Values(Case{"7/2", "3"}, Case{"-7/2", "-3"}, Case{"7/2.0", "3.5"},
                                         Case{"7%4", "3"}, Case{"-7%4", "-3"}, Case{"2+3*4", "14"},
                                         Case{"(2+3)*4", "20"}, Case{"10-4-3", "3"}, Case{"10-(4-3)", "9"},
                                         Case{"100/10/5", "2"}, Case{"100/(10/5)", "50"}, Case{"- -5", "5"},
                                         Case{"-(-5)", "5"}, Case{"+5", "5"}, Case{"~5", "-6"},
                                         Case{"6&3", "2"}, Case{"6|3", "7"}, Case{"6^3", "5"},
                                         Case{"1+6&3", "3"}, Case{"1+(6&3)", "3"}, Case{"4|1+2", "7"},
                                         Case{"8-1&7", "7"}, Case{"2*-3", "-6"}, Case{"5 - -5", "10"},
                                         Case{"1/(1+1)", "0"}, Case{"CAST(5 AS decimal(10,2))/2", "2.5"},
                                         Case{"NULL + 1", "NULL"}, Case{"7.5 % 2", "1.5"}));

INSTANTIATE_TEST_SUITE_P(
    Plus, Values,
    testing::Values(Case{"'a' + 'b' + 'c'", "abc"}, Case{"'1' + '2'", "12"}, Case{"1 + '2'", "3"},
                    Case{"'2' + 1", "3"}, Case{"'a' + NULL", "NULL"}, Case{"1 + 2 + '3'", "6"},
                    Case{"'1' + '2' + 3", "15"}, Case{"CAST(1 AS varchar(5)) + 'x'", "1x"},
                    Case{"STR(1,1) + 'x'", "1x"}, Case{"LTRIM(' a') + 'b'", "ab"},
                    Case{"CASE WHEN 1=1 THEN 'a' ELSE 'b' END + 'c'", "ac"}, Case{"(SELECT 'a') + 'b'", "ab"},
                    Case{"'x' + REPLICATE('ab', 2)", "xabab"},
                    Case{"CAST('20261121' AS datetime) + 1", "2026-11-22 00:00:00.000"},
                    Case{"1 + CAST('20261121' AS datetime)", "2026-11-22 00:00:00.000"},
                    Case{"CAST('20261121' AS datetime) - 0.5", "2026-11-20 12:00:00.000"},
                    Case{"'10' - '3'", "7"}, Case{"'3' * 2", "6"}, Case{"'' + 5", "5"}));

INSTANTIATE_TEST_SUITE_P(
    Conditions, Values,
    testing::Values(
        Case{"IIF('a'='A', 'y', 'n')", "y"}, Case{"IIF('a'<>'A', 'y', 'n')", "n"},
        Case{"IIF('b' > 'A', 'y', 'n')", "y"}, Case{"IIF(UPPER('a') IN ('b','a'), 'y', 'n')", "y"},
        Case{"IIF('M' BETWEEN 'a' AND 'z', 'y', 'n')", "y"}, Case{"IIF(1 != 2, 'y', 'n')", "y"},
        Case{"IIF(1 !< 2, 'y', 'n')", "n"}, Case{"IIF(1 !> 2, 'y', 'n')", "y"},
        Case{"IIF(NULL = NULL, 'y', 'n')", "n"}, Case{"IIF(NULL IS NULL, 'y', 'n')", "y"},
        Case{"IIF(NOT 1=2 AND NOT (1=1 AND 2=3), 'y', 'n')", "y"}, Case{"IIF(NOT NOT 1=1, 'y', 'n')", "y"},
        Case{"IIF(1=1 OR 1=1 AND 1=2, 'y', 'n')", "y"}, Case{"IIF((1=1 OR 1=1) AND 1=2, 'y', 'n')", "n"},
        Case{"IIF(5 NOT IN (1,2), 'y', 'n')", "y"}, Case{"IIF(5 NOT IN (1,NULL), 'y', 'n')", "n"},
        Case{"IIF(5 = '5', 'y', 'n')", "y"}, Case{"IIF('05' = 5, 'y', 'n')", "y"},
        Case{"IIF(LTRIM(' 05') = 5, 'y', 'n')", "y"}, Case{"IIF(EXISTS(SELECT 1 WHERE 1=2), 'y', 'n')", "n"},
        Case{"IIF(CAST(1 AS bit) = 'True', 'y', 'n')", "y"}, Case{"CASE 'A' WHEN 'a' THEN 1 ELSE 2 END", "1"},
        Case{"CASE WHEN 1=2 THEN 1 END", "NULL"}, Case{"IIF('5' IN (1, 5), 'y', 'n')", "y"},
        Case{"IIF('5' BETWEEN 1 AND 9, 'y', 'n')", "y"}, Case{"CASE 5 WHEN '5' THEN 'five' END", "five"},
        Case{"CASE WHEN 'x' LIKE 'X' THEN 'y' END", "y"}, Case{"IIF('à' LIKE 'À', 'y', 'n')", "y"},
        Case{"IIF('a5' LIKE '[a-c][0-9]', 'y', 'n')", "y"},
        Case{"IIF('a5' NOT LIKE '[^a-c]%', 'y', 'n')", "y"},
        Case{"IIF('50%' LIKE '%!%' ESCAPE '!', 'y', 'n')", "y"},
        Case{"IIF('a' COLLATE Latin1_General_CS_AS = 'A', 'y', 'n')", "n"},
        Case{"IIF('a' COLLATE Latin1_General_CI_AS = 'A', 'y', 'n')", "y"},
        Case{"IIF(NULLIF('a','A') IS NULL, 'y', 'n')", "y"},
        Case{"IIF(CAST('20261121' AS datetime) = '2026-11-21', 'y', 'n')", "y"},
        Case{"IIF('20261121 10:00' > CAST('2026-11-21' AS date), 'y', 'n')", "y"},
        Case{"IIF(CAST('20261121' AS datetime) BETWEEN '20261101' AND '20261130', 'y', 'n')", "y"},
        Case{"IIF(CAST('19000102' AS datetime) = 1, 'y', 'n')", "y"},
        Case{"IIF(DATEADD(day, 1, '20261130') IN ('20261201'), 'y', 'n')", "y"},
        Case{"IIF(CAST('10:20' AS time) < '10:20:01', 'y', 'n')", "y"}));

INSTANTIATE_TEST_SUITE_P(
    Casts, Values,
    testing::Values(
        Case{"CAST('12' AS int)", "12"}, Case{"CAST(' 12 ' AS int)", "12"}, Case{"CAST('' AS int)", "0"},
        Case{"CAST(2.9 AS int)", "2"}, Case{"CAST(-2.9 AS int)", "-2"}, Case{"CAST(5 AS bigint)", "5"},
        Case{"CAST(NULL AS int)", "NULL"}, Case{"CAST('true' AS bit)", "1"}, Case{"CAST(7 AS bit)", "1"},
        Case{"CAST(0 AS bit)", "0"}, Case{"CAST('1.5' AS float)", "1.5"}, Case{"CAST(1 AS float)", "1.0"},
        Case{"CAST('2.675' AS decimal(10,2))", "2.68"}, Case{"CAST(2.5 AS decimal)", "3"},
        Case{"CAST(-2.5 AS numeric(5,0))", "-3"}, Case{"CAST('3.14159' AS money)", "3.1416"},
        Case{"CAST(12345 AS varchar(10))", "12345"}, Case{"CAST(12345 AS varchar(3))", "*"},
        Case{"CAST('abcdef' AS varchar(3))", "abc"}, Case{"CAST('ab' AS char(4)) + '|'", "ab  |"},
        Case{"CAST('àèì' AS nvarchar(2))", "àè"}, Case{"CAST(1.5 AS varchar)", "1.5"},
        Case{"CAST(CAST(1234567 AS float) AS varchar(30))", "1.23457e+006"},
        Case{"CAST('20261121' AS datetime)", "2026-11-21 00:00:00.000"},
        Case{"CAST('2026-11-21T10:20:30.5' AS datetime)", "2026-11-21 10:20:30.500"},
        Case{"CAST('2026-11-21 10:20' AS date)", "2026-11-21 00:00:00.000"},
        Case{"CAST('10:20 PM' AS time)", "22:20:00.000"},
        Case{"CAST('20261121 10:20:45' AS smalldatetime)", "2026-11-21 10:21:00.000"},
        Case{"CAST(CAST('20261121 10:20' AS datetime) AS varchar(30))", "Nov 21 2026 10:20AM"},
        Case{"CAST(CAST('20261121' AS date) AS varchar(30))", "2026-11-21"},
        Case{"CAST(CAST('20261121' AS datetime) AS int)", "46345"},
        Case{"CAST(1 AS datetime)", "1900-01-02 00:00:00.000"},
        Case{"CONVERT(varchar(10), CAST('20261121' AS datetime), 103)", "21/11/2026"},
        Case{"CONVERT(varchar, CAST('20261121 10:20:30.123' AS datetime), 121)", "2026-11-21 10:20:30.123"},
        Case{"CONVERT(varchar(8), CAST('20261121' AS datetime), 112)", "20261121"},
        Case{"CONVERT(char(10), CAST('20261121' AS datetime), 101)", "11/21/2026"},
        Case{"CONVERT(varchar(10), CAST('20261121' AS datetime), 104)", "21.11.2026"},
        Case{"CONVERT(varchar(10), CAST('20261121' AS datetime), 105)", "21-11-2026"},
        Case{"CONVERT(varchar(10), CAST('20261121' AS datetime), 110)", "11-21-2026"},
        Case{"CONVERT(varchar(10), CAST('20261121' AS datetime), 111)", "2026/11/21"},
        Case{"CONVERT(varchar(19), CAST('20261121 01:02:03' AS datetime), 120)", "2026-11-21 01:02:03"},
        Case{"CONVERT(varchar(30), CAST('20261121 01:02:03' AS datetime), 126)", "2026-11-21T01:02:03"},
        Case{"CONVERT(datetime, '21/11/2026', 103)", "2026-11-21 00:00:00.000"},
        Case{"CONVERT(datetime, '11/21/2026', 101)", "2026-11-21 00:00:00.000"},
        Case{"CONVERT(int, '7')", "7"}, Case{"TRY_CAST('x' AS int)", "NULL"},
        Case{"TRY_CONVERT(datetime, 'x')", "NULL"}, Case{"CAST('x' AS nvarchar(max))", "x"},
        Case{"CAST(0x10 AS int)", "16"}));

TEST(Expression, UnknownColumnsAreAddedByTheirValues)
{
    Engine engine;
    engine.runNative("CREATE TABLE t(a, b)");
    engine.runNative(
        "INSERT INTO t VALUES ('x','y'), (1, 2), (1, '2'), (NULL, 'y'), ('2026-11-21 00:00:00.000', 1)");
    EXPECT_THAT(engine.run("SELECT a + b FROM t"),
                ElementsAre(ElementsAre("xy"), ElementsAre("3"), ElementsAre("3"), ElementsAre("NULL"),
                            ElementsAre("2026-11-22 00:00:00.000")));
    EXPECT_THAT(engine.run("SELECT a + ' ' + b + '!' FROM t WHERE a = 'x'"),
                ElementsAre(ElementsAre("x y!")));
    EXPECT_THAT(engine.run("SELECT a - 1 FROM t WHERE a = 1"),
                ElementsAre(ElementsAre("0"), ElementsAre("0")));
}

TEST(Expression, TextBesideANumberMustBeANumber)
{
    Engine engine;
    engine.run("CREATE TABLE t(n int, s varchar(10)); INSERT INTO t(n, s) VALUES (1, 'abc')");
    EXPECT_EQ(engine.failure("SELECT n + s FROM t"),
              "Conversion failed when converting the varchar value 'abc' to data type int.");
    EXPECT_EQ(engine.failure("SELECT 1 FROM t WHERE s = 5"),
              "Conversion failed when converting the varchar value 'abc' to data type int.");
    EXPECT_EQ(engine.failure("SELECT CAST(s AS int) FROM t"),
              "Conversion failed when converting the varchar value 'abc' to data type int.");
}

TEST(Expression, DivisionByZeroFails)
{
    Engine engine;
    engine.run("CREATE TABLE t(n int); INSERT INTO t(n) VALUES (0)");
    EXPECT_EQ(engine.failure("SELECT 1/n FROM t"), "Divide by zero error encountered.");
    EXPECT_EQ(engine.failure("SELECT 1%n FROM t"), "Divide by zero error encountered.");
    EXPECT_EQ(engine.failure("SELECT 1/0"), "Divide by zero error encountered.");
    EXPECT_EQ(engine.failure("SELECT 1/NULLIF(n,0) FROM t"), "");
}

TEST(Expression, KnownTypesGiveNativeOperators)
{
    const ColumnTypes types = [](std::string_view, std::string_view column) {
        return column == "n" ? ColumnType::Integer : column == "d" ? ColumnType::DateTime : ColumnType::Text;
    };
    EXPECT_EQ(translate("SELECT n + 1 AS x FROM t", types).sql, "SELECT [n] + 1 AS [x] FROM [t]");
    EXPECT_EQ(translate("SELECT s + r AS x FROM t", types).sql, "SELECT [s] || [r] AS [x] FROM [t]");
    EXPECT_EQ(translate("SELECT a.s + n AS x FROM t a", types).sql,
              "SELECT zul_add([a].[s], [n]) AS [x] FROM [t] AS [a]");
    EXPECT_EQ(translate("SELECT 1 AS x FROM t WHERE d >= '20261121'", types).sql,
              "SELECT 1 AS [x] FROM [t] WHERE [d] >= '2026-11-21 00:00:00.000'");
    EXPECT_EQ(
        translate(
            "SELECT 1 AS x FROM t WHERE d BETWEEN '20261121' AND '2026-11-22 10:00' OR d IN ('20260101')",
            types)
            .sql,
        "SELECT 1 AS [x] FROM [t] WHERE [d] BETWEEN '2026-11-21 00:00:00.000' AND '2026-11-22 10:00:00.000' "
        "OR [d] IN "
        "('2026-01-01 00:00:00.000')");
    EXPECT_EQ(translate("SELECT 1 AS x FROM t WHERE n = '5'", types).sql,
              "SELECT 1 AS [x] FROM [t] WHERE [n] = 5");
    EXPECT_EQ(translate("SELECT DateDiff(year,d,'20261121') AS x FROM t", types).sql,
              "SELECT 2026 - zul_year([d]) AS [x] FROM [t]");
}

TEST(Expression, UnknownColumnAndDateLookingTextStayAsWritten)
{
    // '20261121' may be a telephone number.
    EXPECT_EQ(translate("SELECT 1 AS x FROM t WHERE c = '20261121'").sql,
              "SELECT 1 AS [x] FROM [t] WHERE [c] = '20261121'");
}

TEST(Expression, LongChainsRun)
{
    Engine engine;
    std::string sum = "1";
    std::string any = "1=2";
    std::string join = "'a'";
    engine.run("CREATE TABLE t(n int); INSERT INTO t(n) VALUES (4999)");
    for (int i = 0; i < 5000; ++i)
        any += " OR n=" + std::to_string(i);
    for (int i = 0; i < 900; ++i) {
        sum += "+1";
        join += "+'a'";
    }
    EXPECT_EQ(engine.value(sum), "901");
    EXPECT_EQ(engine.value("LEN(" + join + ")"), "901");
    EXPECT_THAT(engine.run("SELECT n FROM t WHERE " + any), ElementsAre(ElementsAre("4999")));
    std::string unknown = "n";
    for (int i = 0; i < 300; ++i)
        unknown += "+n";
    EXPECT_THAT(engine.runUntyped("SELECT " + unknown + " FROM t"),
                ElementsAre(ElementsAre(std::to_string(4999 * 301))));
}

TEST(Expression, ParametersAreNumbered)
{
    const Translation translation =
        translate("SELECT ISNULL(?, 'x') AS a FROM t WHERE c = ? AND d BETWEEN ? AND ?");
    EXPECT_EQ(translation.parameters, 4);
    EXPECT_EQ(translation.sql,
              "SELECT IFNULL(?1, 'x') AS [a] FROM [t] WHERE [c] = ?2 AND [d] BETWEEN ?3 AND ?4");
}

} // namespace
