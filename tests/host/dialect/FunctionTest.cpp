// The server's functions, each with values and with NULL.
#include "host/dialect/functions/Functions.h"
#include "tests/host/dialect/Engine.h"

#include <array>

#include <gmock/gmock.h>

using namespace zul::dialect;
using namespace zul::dialect::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::MatchesRegex;

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

class FunctionValues : public testing::TestWithParam<Case>
{};

TEST_P(FunctionValues, AreTheServers)
{
    Engine engine;
    EXPECT_EQ(engine.value(GetParam().expression), GetParam().value)
        << translate(std::string("SELECT ") + GetParam().expression).sql;
}

INSTANTIATE_TEST_SUITE_P(
    Choice, FunctionValues,
    testing::Values(Case{"ISNULL(NULL, 'x')", "x"}, Case{"isnull('a', 'x')", "a"},
                    Case{"ISNULL(CAST(NULL AS int), '')", "0"}, Case{"COALESCE(NULL, NULL, 3)", "3"},
                    Case{"COALESCE(NULL, '20261121', GETDATE())", "2026-11-21 00:00:00.000"},
                    Case{"NULLIF(5, 5)", "NULL"}, Case{"NULLIF(5, 6)", "5"}, Case{"IIF(1=1, 'a', 'b')", "a"},
                    Case{"CHOOSE(2, 'a', 'b', 'c')", "b"}, Case{"CHOOSE(9, 'a', 'b')", "NULL"}));

INSTANTIATE_TEST_SUITE_P(
    Texts, FunctionValues,
    testing::Values(
        Case{"LEN('abc  ')", "3"}, Case{"LEN('  ')", "0"}, Case{"LEN(NULL)", "NULL"}, Case{"LEN('àè€')", "3"},
        Case{"LEN(12345)", "5"}, Case{"LEFT('àbc', 2)", "àb"}, Case{"LEFT('abc', 10)", "abc"},
        Case{"LEFT('abc', 0)", ""}, Case{"LEFT('abc', 1+1)", "ab"}, Case{"RIGHT('abc', 2)", "bc"},
        Case{"RIGHT('abc', 10)", "abc"}, Case{"RIGHT('abc', 0)", ""}, Case{"RIGHT('abc', 1+1)", "bc"},
        Case{"RIGHT(NULL, 1)", "NULL"}, Case{"SUBSTRING('abcdef', 2, 3)", "bcd"},
        Case{"SUBSTRING('abcdef', 0, 3)", "ab"}, Case{"SUBSTRING('abcdef', -1, 3)", "a"},
        Case{"SUBSTRING('abcdef', -5, 3)", ""}, Case{"SUBSTRING('abcdef', 5, 100)", "ef"},
        Case{"SUBSTRING('abcdef', 9, 1)", ""}, Case{"SUBSTRING('àèìòù', 1+1, 2)", "èì"},
        Case{"LTRIM('  a ') + '|'", "a |"}, Case{"'|' + RTRIM(' a  ') + '|'", "| a|"},
        Case{"'|' + TRIM(' a ') + '|'", "|a|"}, Case{"TRIM('x' FROM 'xxax')", "a"},
        Case{"UPPER('abcàèß€')", "ABCÀÈß€"}, Case{"LOWER('ABCÀÈ')", "abcàè"},
        Case{"REPLACE('AbcabC', 'ABC', 'x')", "xx"}, Case{"REPLACE('abc', '', 'x')", "abc"},
        Case{"REPLACE('città', 'À', 'a')", "citta"}, Case{"REPLACE(NULL, 'a', 'b')", "NULL"},
        Case{"CHARINDEX('C', 'abc')", "3"}, Case{"CHARINDEX('x', 'abc')", "0"},
        Case{"CHARINDEX('a', 'abca', 2)", "4"}, Case{"CHARINDEX('', 'abc')", "0"},
        Case{"CHARINDEX('è', 'àè')", "2"}, Case{"PATINDEX('%[0-9]%', 'ab3')", "3"},
        Case{"PATINDEX('%x%', 'ab3')", "0"}, Case{"PATINDEX('ab%', 'ab3')", "1"},
        Case{"STUFF('abcdef', 2, 3, 'XY')", "aXYef"}, Case{"STUFF('abc', 9, 1, 'x')", "NULL"},
        Case{"STUFF('abc', 1, 1, NULL)", "bc"}, Case{"REPLICATE('ab', 3)", "ababab"},
        Case{"REPLICATE('ab', -1)", "NULL"}, Case{"'|' + SPACE(3) + '|'", "|   |"},
        Case{"REVERSE('aè€')", "€èa"}, Case{"CHAR(65)", "A"}, Case{"CHAR(128)", "€"},
        Case{"CHAR(300)", "NULL"}, Case{"NCHAR(8364)", "€"}, Case{"ASCII('A')", "65"},
        Case{"ASCII('€')", "128"}, Case{"UNICODE('€')", "8364"}, Case{"STR(123.456, 8, 2)", "  123.46"},
        Case{"STR(5)", "         5"}, Case{"STR(12345, 3)", "***"}, Case{"CONCAT('a', NULL, 1)", "a1"},
        Case{"CONCAT('a', CAST('20261121' AS date))", "a2026-11-21"}));

INSTANTIATE_TEST_SUITE_P(Numbers, FunctionValues,
                         testing::Values(Case{"ABS(-5)", "5"}, Case{"ROUND(2.675, 2)", "2.68"},
                                         Case{"ROUND(-2.5, 0)", "-3.0"}, Case{"ROUND(1234, -2)", "1200"},
                                         Case{"ROUND(1250, -2)", "1300"}, Case{"ROUND(2.78, 1, 1)", "2.7"},
                                         Case{"FLOOR(-2.5)", "-3.0"}, Case{"CEILING(2.1)", "3.0"},
                                         Case{"FLOOR(7)", "7"}, Case{"POWER(2, 10)", "1024"},
                                         Case{"POWER(2.0, 0.5) * 0", "0.0"}, Case{"SQRT(9)", "3.0"},
                                         Case{"SQUARE(3)", "9.0"}, Case{"SIGN(-3)", "-1"},
                                         Case{"SIGN(0)", "0"}, Case{"EXP(0)", "1.0"},
                                         Case{"LOG10(1000)", "3.0"}, Case{"ROUND(LOG(8, 2), 10)", "3.0"},
                                         Case{"ISNUMERIC('12.5')", "1"}, Case{"ISNUMERIC('$12')", "1"},
                                         Case{"ISNUMERIC('abc')", "0"}, Case{"ISNUMERIC(NULL)", "0"},
                                         Case{"ISNUMERIC(5)", "1"}, Case{"ABS(NULL)", "NULL"}));

INSTANTIATE_TEST_SUITE_P(
    Dates, FunctionValues,
    testing::Values(
        Case{"DATEDIFF(year, '20251231', '20260101')", "1"},
        Case{"DATEDIFF(yy, '2026-01-01', '20261231')", "0"},
        Case{"DATEDIFF(quarter, '20260331', '20260401')", "1"},
        Case{"DATEDIFF(q, '20250101', '20260101')", "4"},
        Case{"DATEDIFF(month, '20260131', '20260201')", "1"},
        Case{"DATEDIFF(mm, '20260201', '20260131')", "-1"},
        Case{"DATEDIFF(day, '20260228', '20260301')", "1"},
        Case{"DATEDIFF(dd, '20261121 23:59', '20261122')", "1"},
        Case{"DATEDIFF(dy, '20260101', '20261231')", "364"},
        Case{"DATEDIFF(week, '20261121', '20261122')", "1"},
        Case{"DATEDIFF(wk, '20261122', '20261128')", "0"}, Case{"DATEDIFF(hour, '10:59', '11:00')", "1"},
        Case{"DATEDIFF(mi, '10:59:59', '11:00:00')", "1"}, Case{"DATEDIFF(n, '10:00', '11:00')", "60"},
        Case{"DATEDIFF(ss, '10:00', '10:01')", "60"}, Case{"DATEDIFF(ms, '10:00:00', '10:00:01')", "1000"},
        Case{"DATEDIFF(mcs, '10:00:00', '10:00:01')", "1000000"},
        Case{"DATEDIFF(ns, '10:00:00', '10:00:01')", "1000000000"},
        Case{"DATEDIFF_BIG(ms, '19000101', '20261121')", "4004208000000"},
        Case{"DATEDIFF(day, 0, '19000105')", "4"}, Case{"DATEDIFF(year, NULL, '20260101')", "NULL"},
        Case{"DATEADD(day, 1, '20261231')", "2027-01-01 00:00:00.000"},
        Case{"DATEADD(month, 1, '20260131')", "2026-02-28 00:00:00.000"},
        Case{"DATEADD(yy, -1, '20240229')", "2023-02-28 00:00:00.000"},
        Case{"DATEADD(qq, 1, '20261130')", "2027-02-28 00:00:00.000"},
        Case{"DATEADD(ww, -1, '20260103 10:20')", "2025-12-27 10:20:00.000"},
        Case{"DATEADD(hh, 25, '20261121')", "2026-11-22 01:00:00.000"},
        Case{"DATEADD(ms, -1, '20261121')", "2026-11-20 23:59:59.999"},
        Case{"DATEADD(day, 1.9, '20261121')", "2026-11-22 00:00:00.000"},
        Case{"DATEADD(day, NULL, '20261121')", "NULL"},
        Case{"DATEADD(day, DATEDIFF(day, 0, '20261121 10:20'), 0)", "2026-11-21 00:00:00.000"},
        Case{"DATEPART(year, '20261121')", "2026"}, Case{"DATEPART(qq, '20261121')", "4"},
        Case{"DATEPART(dy, '20260201')", "32"}, Case{"DATEPART(week, '20260101')", "1"},
        Case{"DATEPART(week, '20260104')", "2"}, Case{"DATEPART(isowk, '20270101')", "53"},
        Case{"DATEPART(dw, '20261121')", "7"}, Case{"DATEPART(hh, '10:20:30.123')", "10"},
        Case{"DATEPART(ms, '10:20:30.123')", "123"}, Case{"DATEPART(mcs, '10:20:30.123')", "123000"},
        Case{"DATENAME(month, '20261121')", "November"}, Case{"DATENAME(weekday, '20261121')", "Saturday"},
        Case{"DATENAME(year, '20261121') + '!'", "2026!"}, Case{"YEAR('20261121')", "2026"},
        Case{"MONTH('20261121')", "11"}, Case{"DAY('20261121')", "21"}, Case{"YEAR(NULL)", "NULL"},
        Case{"DATEFROMPARTS(2026, 2, 28)", "2026-02-28 00:00:00.000"},
        Case{"DATETIMEFROMPARTS(2026, 2, 28, 1, 2, 3, 4)", "2026-02-28 01:02:03.004"},
        Case{"EOMONTH('20240210')", "2024-02-29 00:00:00.000"},
        Case{"EOMONTH('20261121', 1)", "2026-12-31 00:00:00.000"}, Case{"ISDATE('20261121')", "1"},
        Case{"ISDATE('20261131')", "0"}, Case{"ISDATE('x')", "0"}, Case{"ISDATE(NULL)", "0"},
        Case{"DATEDIFF(day, GETDATE(), CURRENT_TIMESTAMP)", "0"}, Case{"LEN(GETDATE())", "19"},
        Case{"DATEDIFF(year, getdate(), SYSDATETIME())", "0"}));

TEST(Functions, NowHasTheStoredForm)
{
    Engine engine;
    EXPECT_THAT(engine.value("GETDATE()"),
                MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}"));
    EXPECT_THAT(engine.value("GETUTCDATE()"),
                MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}"));
}

TEST(Functions, NewIdsDiffer)
{
    Engine engine;
    const std::string id = engine.value("NEWID()");
    EXPECT_THAT(id, MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
    EXPECT_NE(id, engine.value("NEWID()"));
}

TEST(Functions, Aggregates)
{
    Engine engine;
    engine.run("CREATE TABLE t(g nvarchar(5), n int, r float, s nvarchar(5)); INSERT INTO t(g, n, r, s) "
               "VALUES ('a', 1, 1, 'x'), "
               "('A', 2, 2, 'X'), ('b', 4, 4, NULL), ('b', NULL, NULL, 'z')");
    EXPECT_THAT(
        engine.run("SELECT COUNT(*), COUNT(n), COUNT_BIG(*), SUM(n), MIN(n), MAX(n), AVG(n), AVG(r) FROM t"),
        ElementsAre(ElementsAre("4", "3", "4", "7", "1", "4", "2", "2.33333333333333")));
    EXPECT_THAT(engine.runUntyped("SELECT AVG(n), AVG(r), AVG(n + n), AVG(DISTINCT n) FROM t"),
                ElementsAre(ElementsAre("2", "2.33333333333333", "4", "2")));
    EXPECT_THAT(engine.run("SELECT COUNT(DISTINCT s), COUNT(DISTINCT s + ''), MAX(s + '') FROM t"),
                ElementsAre(ElementsAre("2", "2", "z")));
    EXPECT_THAT(engine.run("SELECT COUNT(*) FROM t GROUP BY g HAVING COUNT(*) > 1 ORDER BY 1"),
                ElementsAre(ElementsAre("2"), ElementsAre("2")));
    EXPECT_THAT(engine.run("SELECT COUNT(*) FROM t GROUP BY g + '!' ORDER BY 1"),
                ElementsAre(ElementsAre("2"), ElementsAre("2")));
    EXPECT_THAT(engine.run("SELECT AVG(n), SUM(n), MAX(n), COUNT(n) FROM t WHERE 1=2"),
                ElementsAre(ElementsAre("NULL", "NULL", "NULL", "0")));
    EXPECT_THAT(engine.run("SELECT STRING_AGG(s, ',') FROM t WHERE s IS NOT NULL"),
                ElementsAre(ElementsAre("x,X,z")));
}

TEST(Functions, Windows)
{
    Engine engine;
    engine.run("CREATE TABLE t(g nvarchar(5), n int); INSERT INTO t(g, n) VALUES ('a', 1), ('A', 3), ('b', "
               "4), ('b', 6)");
    EXPECT_THAT(
        engine.run("SELECT ROW_NUMBER() OVER (PARTITION BY g ORDER BY n DESC) AS r, n FROM t ORDER BY n"),
        ElementsAre(ElementsAre("2", "1"), ElementsAre("1", "3"), ElementsAre("2", "4"),
                    ElementsAre("1", "6")));
    EXPECT_THAT(engine.run("SELECT SUM(n) OVER (ORDER BY n ROWS BETWEEN UNBOUNDED PRECEDING AND CURRENT ROW) "
                           "FROM t ORDER BY n"),
                ElementsAre(ElementsAre("1"), ElementsAre("4"), ElementsAre("8"), ElementsAre("14")));
    EXPECT_THAT(engine.runUntyped("SELECT AVG(n) OVER (ORDER BY n ROWS 1 PRECEDING) FROM t ORDER BY n"),
                ElementsAre(ElementsAre("1"), ElementsAre("2"), ElementsAre("3"), ElementsAre("5")));
    EXPECT_THAT(
        engine.run(
            "SELECT LAG(n) OVER (ORDER BY n), RANK() OVER (ORDER BY n) FROM t WHERE g = 'B' ORDER BY n"),
        ElementsAre(ElementsAre("NULL", "1"), ElementsAre("4", "2")));
}

TEST(Functions, IdentityAndRowCount)
{
    Engine engine;
    engine.run("CREATE TABLE t(id int IDENTITY(1,1) PRIMARY KEY, n int); INSERT INTO t(n) VALUES (7); INSERT "
               "INTO t(n) VALUES (8)");
    EXPECT_EQ(engine.value("SCOPE_IDENTITY()"), "2");
    EXPECT_EQ(engine.value("@@IDENTITY"), "2");
    EXPECT_EQ(engine.run("UPDATE t SET n = n + 1; SELECT @@ROWCOUNT").front().front(), "2");
}

TEST(Functions, FailAsOnTheServer)
{
    Engine engine;
    engine.run("CREATE TABLE t(s nvarchar(50), n int); INSERT INTO t(s, n) VALUES ('31/12/2026', -1)");
    const std::string noDate = "Conversion failed when converting date and/or time from character string.";
    EXPECT_EQ(engine.failure("SELECT DATEDIFF(day, s, '20261121') FROM t"), noDate);
    EXPECT_EQ(engine.failure("SELECT DATEDIFF(year, s, '20261121') FROM t"), noDate);
    EXPECT_EQ(engine.failure("SELECT YEAR(s) FROM t"), noDate);
    EXPECT_EQ(engine.failure("SELECT CAST(s AS datetime) FROM t"), noDate);
    EXPECT_THAT(engine.failure("SELECT LEFT(s, n) FROM t"),
                HasSubstr("Invalid length parameter passed to the left function"));
    EXPECT_THAT(engine.failure("SELECT SUBSTRING(s, 1, n) FROM t"), HasSubstr("Invalid length parameter"));
    EXPECT_THAT(engine.failure("SELECT DATEADD(year, 9000, GETDATE())"), HasSubstr("caused an overflow"));
    EXPECT_THAT(engine.failure("SELECT DATEDIFF(ms, '19000101', '20261121')"),
                HasSubstr("resulted in an overflow"));
    EXPECT_THAT(engine.failure("SELECT CAST(300 AS tinyint)"),
                HasSubstr("Arithmetic overflow error converting expression to data type tinyint"));
    EXPECT_THAT(engine.failure("SELECT CAST(123456 AS decimal(5,2))"), HasSubstr("Arithmetic overflow"));
    EXPECT_THAT(engine.failure("SELECT SQRT(-1)"), HasSubstr("invalid floating point"));
    EXPECT_THAT(engine.failure("SELECT REPLICATE('x', 1000000000)"), HasSubstr("too long"));
    EXPECT_THAT(engine.failure("SELECT DATEFROMPARTS(2026, 2, 30)"), HasSubstr("not valid"));
    EXPECT_THAT(engine.failure("SELECT CONVERT(varchar(10), GETDATE(), 999)"),
                HasSubstr("999 is not a valid style number"));
}

TEST(Functions, TakeTextsOfAnyLength)
{
    Engine engine;
    const std::string text(10000, 'x');
    EXPECT_EQ(engine.value("LEN('" + text + "')"), "10000");
    EXPECT_EQ(engine.value("REPLACE('" + text + "', 'X', 'yy')").size(), 20000U);
    EXPECT_EQ(engine.value("IIF('" + text + "' LIKE '%x%[x]%x', 1, 0)"), "1");
}

TEST(Functions, AreCalledByNameToo)
{
    const std::array<Argument, 2> arguments{Argument{std::string_view("a")}, Argument{std::string_view("b")}};
    EXPECT_EQ(std::get<std::string>(callFunction("zul_add", arguments)), "ab");
    EXPECT_THROW(callFunction("zul_nothing", arguments), FunctionError);
    EXPECT_THROW(callFunction("zul_year", arguments), FunctionError);
}

TEST(Functions, SurviveBrokenTexts)
{
    // Bytes that are no UTF-8 can stand in a database that another program wrote.
    const std::array<Argument, 3> arguments{Argument{std::string_view("\xC3", 1)},
                                            Argument{std::string_view("a\xFF\xC3", 3)},
                                            Argument{std::string_view("x", 1)}};
    for (const Function& function : functions())
        for (std::size_t count = 0; count <= arguments.size(); ++count)
            try {
                callFunction(function.name, Arguments(arguments.data(), count));
            } catch (const FunctionError& error) {
                EXPECT_NE(std::string(error.what()), "");
            }
}

TEST(Functions, SurviveExtremeNumbers)
{
    const std::array<Argument, 5> numbers{Argument{std::int64_t{INT64_MIN}},
                                          Argument{std::int64_t{INT64_MAX}}, Argument{1e308},
                                          Argument{-1e-308}, Argument{std::int64_t{0}}};
    for (const Function& function : functions())
        for (const Argument& a : numbers)
            for (const Argument& b : numbers)
                for (std::size_t count = 0; count <= 4; ++count) {
                    const std::array<Argument, 4> arguments{a, b, a, b};
                    try {
                        callFunction(function.name, Arguments(arguments.data(), count));
                    } catch (const FunctionError& error) {
                        EXPECT_NE(std::string(error.what()), "");
                    }
                }
}

} // namespace
