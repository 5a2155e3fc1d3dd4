// Operators, conditions and conversions: what an expression is worth.
#include "tests/host/dialect/Engine.h"

#include <gmock/gmock.h>

using namespace zul::dialect;
using namespace zul::dialect::test;
using testing::ElementsAre;

namespace {

class Values : public testing::TestWithParam<ValueCase>
{};

TEST_P(Values, AreTheServers)
{
    Engine engine;
    EXPECT_EQ(engine.value(GetParam().expression), GetParam().value)
        << translate(std::string("SELECT ") + GetParam().expression).sql;
}

// clang-format off
constexpr ValueCase literals[] = {
    {"1", "1"},
    {"1e2", "100.0"},
    {".5", "0.5"},
    {"1.", "1.0"},
    {"0x0A + 0", "10"},
    {"0x + 0", "0"},
    {"NULL", "NULL"},
    {"'it''s'", "it's"},
    {"N'città €😀'", "città €😀"},
    {"''", ""},
    {"1AS x", "1"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Literals, Values, testing::ValuesIn(literals));

// clang-format off
constexpr ValueCase arithmetic[] = {
    {"7/2", "3"},
    {"-7/2", "-3"},
    {"7/2.0", "3.5"},
    {"7%4", "3"},
    {"-7%4", "-3"},
    {"2+3*4", "14"},
    {"(2+3)*4", "20"},
    {"10-4-3", "3"},
    {"10-(4-3)", "9"},
    {"100/10/5", "2"},
    {"100/(10/5)", "50"},
    {"- -5", "5"},
    {"-(-5)", "5"},
    {"+5", "5"},
    {"6&3", "2"},
    {"6|3", "7"},
    {"1+6&3", "3"},
    {"1+(6&3)", "3"},
    {"4|1+2", "7"},
    {"8-1&7", "7"},
    {"2*-3", "-6"},
    {"5 - -5", "10"},
    {"1/(1+1)", "0"},
    {"CAST(5 AS decimal(10,2))/2", "2.5"},
    {"NULL + 1", "NULL"},
    {"7.5 % 2", "1.5"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Arithmetic, Values, testing::ValuesIn(arithmetic));

constexpr ValueCase plus[] = {
    {"'a' + 'b' + 'c'", "abc"},
    {"'1' + '2'", "12"},
    {"1 + '2'", "3"},
    {"'2' + 1", "3"},
    {"'a' + NULL", "NULL"},
    {"1 + 2 + '3'", "6"},
    {"'1' + '2' + 3", "15"},
    {"CAST(1 AS varchar(5)) + 'x'", "1x"},
    {"STR(1,1) + 'x'", "1x"},
    {"LTRIM(' a') + 'b'", "ab"},
    {"CASE WHEN 1=1 THEN 'a' ELSE 'b' END + 'c'", "ac"},
    {"(SELECT 'a') + 'b'", "ab"},
    {"'x' + REPLICATE('ab', 2)", "xabab"},
    {"CAST('20261121' AS datetime) + 1", "2026-11-22 00:00:00.000"},
    {"1 + CAST('20261121' AS datetime)", "2026-11-22 00:00:00.000"},
    {"CAST('20261121' AS datetime) - 0.5", "2026-11-20 12:00:00.000"},
    {"'10' - '3'", "7"},
    {"'3' * 2", "6"},
    {"'' + 5", "5"},
};

INSTANTIATE_TEST_SUITE_P(Plus, Values, testing::ValuesIn(plus));

constexpr ValueCase conditions[] = {
    {"IIF('a'='A', 'y', 'n')", "y"},
    {"IIF('a'<>'A', 'y', 'n')", "n"},
    {"IIF('b' > 'A', 'y', 'n')", "y"},
    {"IIF(UPPER('a') IN ('b','a'), 'y', 'n')", "y"},
    {"IIF('M' BETWEEN 'a' AND 'z', 'y', 'n')", "y"},
    {"IIF(1 != 2, 'y', 'n')", "y"},
    {"IIF(NULL = NULL, 'y', 'n')", "n"},
    {"IIF(NULL IS NULL, 'y', 'n')", "y"},
    {"IIF(NOT 1=2 AND NOT (1=1 AND 2=3), 'y', 'n')", "y"},
    {"IIF(NOT NOT 1=1, 'y', 'n')", "y"},
    {"IIF(1=1 OR 1=1 AND 1=2, 'y', 'n')", "y"},
    {"IIF((1=1 OR 1=1) AND 1=2, 'y', 'n')", "n"},
    {"IIF(5 NOT IN (1,2), 'y', 'n')", "y"},
    {"IIF(5 NOT IN (1,NULL), 'y', 'n')", "n"},
    {"IIF(5 = '5', 'y', 'n')", "y"},
    {"IIF('05' = 5, 'y', 'n')", "y"},
    {"IIF(LTRIM(' 05') = 5, 'y', 'n')", "y"},
    {"IIF(EXISTS(SELECT 1 WHERE 1=2), 'y', 'n')", "n"},
    {"IIF(CAST(1 AS bit) = 'True', 'y', 'n')", "y"},
    {"CASE 'A' WHEN 'a' THEN 1 ELSE 2 END", "1"},
    {"CASE WHEN 1=2 THEN 1 END", "NULL"},
    {"IIF('5' IN (1, 5), 'y', 'n')", "y"},
    {"IIF('5' BETWEEN 1 AND 9, 'y', 'n')", "y"},
    {"CASE 5 WHEN '5' THEN 'five' END", "five"},
    {"CASE WHEN 'x' LIKE 'X' THEN 'y' END", "y"},
    {"IIF('à' LIKE 'À', 'y', 'n')", "y"},
    {"IIF('a5' LIKE '[a-c][0-9]', 'y', 'n')", "y"},
    {"IIF('a5' NOT LIKE '[^a-c]%', 'y', 'n')", "y"},
    {"IIF('50%' LIKE '%!%' ESCAPE '!', 'y', 'n')", "y"},
    {"IIF('a' COLLATE Latin1_General_CS_AS = 'A', 'y', 'n')", "n"},
    {"IIF('a' COLLATE Latin1_General_CI_AS = 'A', 'y', 'n')", "y"},
    {"IIF(NULLIF('a','A') IS NULL, 'y', 'n')", "y"},
    {"IIF(CAST('20261121' AS datetime) = '2026-11-21', 'y', 'n')", "y"},
    {"IIF('20261121 10:00' > CAST('2026-11-21' AS date), 'y', 'n')", "y"},
    {"IIF(CAST('20261121' AS datetime) BETWEEN '20261101' AND '20261130', 'y', 'n')", "y"},
    {"IIF(CAST('19000102' AS datetime) = 1, 'y', 'n')", "y"},
    {"IIF(DATEADD(day, 1, '20261130') IN ('20261201'), 'y', 'n')", "y"},
    {"IIF(CAST('10:20' AS time) < '10:20:01', 'y', 'n')", "y"},
};

INSTANTIATE_TEST_SUITE_P(Conditions, Values, testing::ValuesIn(conditions));

constexpr ValueCase casts[] = {
    {"CAST('12' AS int)", "12"},
    {"CAST(' 12 ' AS int)", "12"},
    {"CAST('' AS int)", "0"},
    {"CAST(2.9 AS int)", "2"},
    {"CAST(-2.9 AS int)", "-2"},
    {"CAST(5 AS bigint)", "5"},
    {"CAST(NULL AS int)", "NULL"},
    {"CAST('true' AS bit)", "1"},
    {"CAST(7 AS bit)", "1"},
    {"CAST(0 AS bit)", "0"},
    {"CAST('1.5' AS float)", "1.5"},
    {"CAST(1 AS float)", "1.0"},
    {"CAST('2.675' AS decimal(10,2))", "2.68"},
    {"CAST(2.5 AS decimal)", "3"},
    {"CAST(-2.5 AS numeric(5,0))", "-3"},
    {"CAST('3.14159' AS money)", "3.1416"},
    {"CAST(12345 AS varchar(10))", "12345"},
    {"CAST(12345 AS varchar(3))", "*"},
    {"CAST('abcdef' AS varchar(3))", "abc"},
    {"CAST('ab' AS char(4)) + '|'", "ab  |"},
    {"CAST('àèì' AS nvarchar(2))", "àè"},
    {"CAST(1.5 AS varchar)", "1.5"},
    {"CAST(CAST(1234567 AS float) AS varchar(30))", "1.23457e+006"},
    {"CAST('20261121' AS datetime)", "2026-11-21 00:00:00.000"},
    {"CAST('2026-11-21T10:20:30.5' AS datetime)", "2026-11-21 10:20:30.500"},
    {"CAST('2026-11-21 10:20' AS date)", "2026-11-21 00:00:00.000"},
    {"CAST('10:20 PM' AS time)", "22:20:00.000"},
    {"CAST('20261121 10:20:45' AS smalldatetime)", "2026-11-21 10:21:00.000"},
    {"CAST(CAST('20261121 10:20' AS datetime) AS varchar(30))", "Nov 21 2026 10:20AM"},
    {"CAST(CAST('20261121' AS date) AS varchar(30))", "2026-11-21"},
    {"CAST(CAST('20261121' AS datetime) AS int)", "46345"},
    {"CAST(1 AS datetime)", "1900-01-02 00:00:00.000"},
    {"CONVERT(varchar(10), CAST('20261121' AS datetime), 103)", "21/11/2026"},
    {"CONVERT(varchar, CAST('20261121 10:20:30.123' AS datetime), 121)", "2026-11-21 10:20:30.123"},
    {"CONVERT(varchar(8), CAST('20261121' AS datetime), 112)", "20261121"},
    {"CONVERT(char(10), CAST('20261121' AS datetime), 101)", "11/21/2026"},
    {"CONVERT(varchar(10), CAST('20261121' AS datetime), 104)", "21.11.2026"},
    {"CONVERT(varchar(10), CAST('20261121' AS datetime), 105)", "21-11-2026"},
    {"CONVERT(varchar(10), CAST('20261121' AS datetime), 110)", "11-21-2026"},
    {"CONVERT(varchar(10), CAST('20261121' AS datetime), 111)", "2026/11/21"},
    {"CONVERT(varchar(19), CAST('20261121 01:02:03' AS datetime), 120)", "2026-11-21 01:02:03"},
    {"CONVERT(varchar(30), CAST('20261121 01:02:03' AS datetime), 126)", "2026-11-21T01:02:03"},
    {"CONVERT(datetime, '21/11/2026', 103)", "2026-11-21 00:00:00.000"},
    {"CONVERT(datetime, '11/21/2026', 101)", "2026-11-21 00:00:00.000"},
    {"CONVERT(int, '7')", "7"},
    {"CAST('x' AS nvarchar(max))", "x"},
    {"CAST(0x10 AS int)", "16"},
};

INSTANTIATE_TEST_SUITE_P(Casts, Values, testing::ValuesIn(casts));

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
    EXPECT_EQ(engine.failure("SELECT 1/0.0"), "Divide by zero error encountered.");
    EXPECT_EQ(engine.failure("SELECT 1/0e5"), "Divide by zero error encountered.");
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
              "SELECT 2026 - zul_yearcell([d]) AS [x] FROM [t]");
}

TEST(Expression, UnknownColumnAndDateLookingTextStayAsWritten)
{
    // '20261121' may be a telephone number.
    EXPECT_EQ(translate("SELECT 1 AS x FROM t WHERE c = '20261121'").sql,
              "SELECT 1 AS [x] FROM [t] WHERE [c] = '20261121'");
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
