// The server's functions, each with values and with NULL.
#include "host/dialect/functions/Functions.h"
#include "tests/host/dialect/Engine.h"

#include <array>

#include <gmock/gmock.h>
#include <regex>

using namespace zul::dialect;
using namespace zul::dialect::test;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class FunctionValues : public testing::TestWithParam<ValueCase>
{};

TEST_P(FunctionValues, AreTheServers)
{
    Engine engine;
    EXPECT_EQ(engine.value(GetParam().expression), GetParam().value)
        << translate(std::string("SELECT ") + GetParam().expression).sql;
}

constexpr ValueCase choice[] = {
    {"ISNULL(NULL, 'x')", "x"},
    {"isnull('a', 'x')", "a"},
    {"ISNULL(CAST(NULL AS int), '')", "0"},
    {"COALESCE(NULL, NULL, 3)", "3"},
    {"COALESCE(NULL, '20261121', GETDATE())", "2026-11-21 00:00:00.000"},
    {"NULLIF(5, 5)", "NULL"},
    {"NULLIF(5, 6)", "5"},
    {"IIF(1=1, 'a', 'b')", "a"},
};

INSTANTIATE_TEST_SUITE_P(Choice, FunctionValues, testing::ValuesIn(choice));

constexpr ValueCase texts[] = {
    {"LEN('abc  ')", "3"},
    {"LEN('  ')", "0"},
    {"LEN(NULL)", "NULL"},
    {"LEN('àè€')", "3"},
    {"LEN(12345)", "5"},
    {"LEFT('àbc', 2)", "àb"},
    {"LEFT('abc', 10)", "abc"},
    {"LEFT('abc', 0)", ""},
    {"LEFT('abc', 1+1)", "ab"},
    {"RIGHT('abc', 2)", "bc"},
    {"RIGHT('abc', 10)", "abc"},
    {"RIGHT('abc', 0)", ""},
    {"RIGHT('abc', 1+1)", "bc"},
    {"RIGHT(NULL, 1)", "NULL"},
    {"SUBSTRING('abcdef', 2, 3)", "bcd"},
    {"SUBSTRING('abcdef', 0, 3)", "ab"},
    {"SUBSTRING('abcdef', -1, 3)", "a"},
    {"SUBSTRING('abcdef', -5, 3)", ""},
    {"SUBSTRING('abcdef', 5, 100)", "ef"},
    {"SUBSTRING('abcdef', 9, 1)", ""},
    {"SUBSTRING('àèìòù', 1+1, 2)", "èì"},
    {"LTRIM('  a ') + '|'", "a |"},
    {"'|' + RTRIM(' a  ') + '|'", "| a|"},
    {"'|' + TRIM(' a ') + '|'", "|a|"},
    {"UPPER('abcàèß€')", "ABCÀÈß€"},
    {"LOWER('ABCÀÈ')", "abcàè"},
    {"REPLACE('AbcabC', 'ABC', 'x')", "xx"},
    {"REPLACE('abc', '', 'x')", "abc"},
    {"REPLACE('città', 'À', 'a')", "citta"},
    {"REPLACE(NULL, 'a', 'b')", "NULL"},
    {"CHARINDEX('C', 'abc')", "3"},
    {"CHARINDEX('x', 'abc')", "0"},
    {"CHARINDEX('a', 'abca', 2)", "4"},
    {"CHARINDEX('', 'abc')", "0"},
    {"CHARINDEX('è', 'àè')", "2"},
    {"PATINDEX('%[0-9]%', 'ab3')", "3"},
    {"PATINDEX('%x%', 'ab3')", "0"},
    {"PATINDEX('ab%', 'ab3')", "1"},
    {"REPLICATE('ab', 3)", "ababab"},
    {"REPLICATE('ab', -1)", "NULL"},
    {"'|' + SPACE(3) + '|'", "|   |"},
    {"CHAR(65)", "A"},
    {"CHAR(128)", "€"},
    {"CHAR(300)", "NULL"},
    {"NCHAR(8364)", "€"},
    {"ASCII('A')", "65"},
    {"ASCII('€')", "128"},
    {"UNICODE('€')", "8364"},
    {"STR(123.456, 8, 2)", "  123.46"},
    {"STR(5)", "         5"},
    {"STR(12345, 3)", "***"},
    {"CONCAT('a', NULL, 1)", "a1"},
    {"CONCAT('a', CAST('20261121' AS date))", "a2026-11-21"},
};

INSTANTIATE_TEST_SUITE_P(Texts, FunctionValues, testing::ValuesIn(texts));

constexpr ValueCase numbers[] = {
    {"ABS(-5)", "5"},
    {"ROUND(2.675, 2)", "2.68"},
    {"ROUND(-2.5, 0)", "-3.0"},
    {"ROUND(1234, -2)", "1200"},
    {"ROUND(1250, -2)", "1300"},
    {"ROUND(2.78, 1, 1)", "2.7"},
    {"FLOOR(-2.5)", "-3.0"},
    {"CEILING(2.1)", "3.0"},
    {"FLOOR(7)", "7"},
    {"ISNUMERIC('12.5')", "1"},
    {"ISNUMERIC('$12')", "1"},
    {"ISNUMERIC('abc')", "0"},
    {"ISNUMERIC(NULL)", "0"},
    {"ISNUMERIC(5)", "1"},
    {"ABS(NULL)", "NULL"},
};

INSTANTIATE_TEST_SUITE_P(Numbers, FunctionValues, testing::ValuesIn(numbers));

constexpr ValueCase dates[] = {
    {"DATEDIFF(year, '20251231', '20260101')", "1"},
    {"DATEDIFF(yy, '2026-01-01', '20261231')", "0"},
    {"DATEDIFF(quarter, '20260331', '20260401')", "1"},
    {"DATEDIFF(q, '20250101', '20260101')", "4"},
    {"DATEDIFF(month, '20260131', '20260201')", "1"},
    {"DATEDIFF(mm, '20260201', '20260131')", "-1"},
    {"DATEDIFF(day, '20260228', '20260301')", "1"},
    {"DATEDIFF(dd, '20261121 23:59', '20261122')", "1"},
    {"DATEDIFF(dy, '20260101', '20261231')", "364"},
    {"DATEDIFF(week, '20261121', '20261122')", "1"},
    {"DATEDIFF(wk, '20261122', '20261128')", "0"},
    {"DATEDIFF(hour, '10:59', '11:00')", "1"},
    {"DATEDIFF(mi, '10:59:59', '11:00:00')", "1"},
    {"DATEDIFF(n, '10:00', '11:00')", "60"},
    {"DATEDIFF(ss, '10:00', '10:01')", "60"},
    {"DATEDIFF(ms, '10:00:00', '10:00:01')", "1000"},
    {"DATEDIFF(day, 0, '19000105')", "4"},
    {"DATEDIFF(year, NULL, '20260101')", "NULL"},
    {"DATEADD(day, 1, '20261231')", "2027-01-01 00:00:00.000"},
    {"DATEADD(month, 1, '20260131')", "2026-02-28 00:00:00.000"},
    {"DATEADD(yy, -1, '20240229')", "2023-02-28 00:00:00.000"},
    {"DATEADD(qq, 1, '20261130')", "2027-02-28 00:00:00.000"},
    {"DATEADD(ww, -1, '20260103 10:20')", "2025-12-27 10:20:00.000"},
    {"DATEADD(hh, 25, '20261121')", "2026-11-22 01:00:00.000"},
    {"DATEADD(ms, -1, '20261121')", "2026-11-20 23:59:59.999"},
    {"DATEADD(day, 1.9, '20261121')", "2026-11-22 00:00:00.000"},
    {"DATEADD(day, NULL, '20261121')", "NULL"},
    {"DATEADD(day, DATEDIFF(day, 0, '20261121 10:20'), 0)", "2026-11-21 00:00:00.000"},
    {"DATEPART(year, '20261121')", "2026"},
    {"DATEPART(qq, '20261121')", "4"},
    {"DATEPART(dy, '20260201')", "32"},
    {"DATEPART(week, '20260101')", "1"},
    {"DATEPART(week, '20260104')", "2"},
    {"DATEPART(dw, '20261121')", "7"},
    {"DATEPART(hh, '10:20:30.123')", "10"},
    {"DATEPART(ms, '10:20:30.123')", "123"},
    {"YEAR('20261121')", "2026"},
    {"MONTH('20261121')", "11"},
    {"DAY('20261121')", "21"},
    {"YEAR(NULL)", "NULL"},
    {"ISDATE('20261121')", "1"},
    {"ISDATE('20261131')", "0"},
    {"ISDATE('x')", "0"},
    {"ISDATE(NULL)", "0"},
    {"DATEDIFF(day, GETDATE(), CURRENT_TIMESTAMP)", "0"},
    {"LEN(GETDATE())", "19"},
};

INSTANTIATE_TEST_SUITE_P(Dates, FunctionValues, testing::ValuesIn(dates));

TEST(Functions, NowHasTheStoredForm)
{
    Engine engine;
    const std::regex stored(R"(\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2}\.\d{3})");
    EXPECT_TRUE(std::regex_match(engine.value("GETDATE()"), stored)) << engine.value("GETDATE()");
}

TEST(Functions, Aggregates)
{
    Engine engine;
    engine.run("CREATE TABLE t(g nvarchar(5), n int, r float, s nvarchar(5)); INSERT INTO t(g, n, r, s) "
               "VALUES ('a', 1, 1, 'x'), "
               "('A', 2, 2, 'X'), ('b', 4, 4, NULL), ('b', NULL, NULL, 'z')");
    EXPECT_THAT(engine.run("SELECT COUNT(*), COUNT(n), SUM(n), MIN(n), MAX(n), AVG(n), AVG(r) FROM t"),
                ElementsAre(ElementsAre("4", "3", "7", "1", "4", "2", "2.33333333333333")));
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
    EXPECT_THAT(engine.failure("SELECT REPLICATE('x', 1000000000)"), HasSubstr("too long"));
    EXPECT_THAT(engine.failure("SELECT CONVERT(varchar(10), GETDATE(), 999)"),
                HasSubstr("999 is not a valid style number"));
}

TEST(Functions, WhatIsNoDateInAColumnOfDatesCostsItsOwnRow)
{
    Engine engine;
    engine.run("CREATE TABLE t(d datetime, id int)");
    for (const char* stored : {"'31/02/1990'", "'2020-13-45'", "'x'", "''", "x'00ff'", "1e300", "-1e300",
                               "'2020-06-15'", "NULL"}) {
        engine.runNative("INSERT INTO t(d) VALUES (" + std::string(stored) + ")");
    }
    for (const char* expression : {"YEAR(d)", "MONTH(d)", "DAY(d)", "DATEPART(month, d)", "DATEPART(hour, d)",
                                   "DATEDIFF(year, d, '20261121')", "DATEDIFF(year, '20261121', t.d)",
                                   "DATEDIFF(day, d, GETDATE())", "DATEADD(day, 1, d)"}) {
        const Rows rows = engine.run("SELECT " + std::string(expression) + " FROM t");
        ASSERT_EQ(rows.size(), 9U) << expression;
        EXPECT_EQ(rows[0].front(), "NULL") << expression;
        EXPECT_EQ(rows[2].front(), "NULL") << expression;
        EXPECT_NE(rows[7].front(), "NULL") << expression;
        EXPECT_EQ(rows[8].front(), "NULL") << expression;
    }
    EXPECT_EQ(engine.run("SELECT DATEDIFF(year, d, '20261121') FROM t WHERE YEAR(d) > 2000 AND MONTH(d) = 6"),
              (Rows{{"6"}}));
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
    for (const Function& function : functions()) {
        for (std::size_t count = 0; count <= arguments.size(); ++count) {
            try {
                callFunction(function.name, Arguments(arguments.data(), count));
            } catch (const FunctionError& error) {
                EXPECT_NE(std::string(error.what()), "");
            }
        }
    }
}

TEST(Functions, SurviveExtremeNumbers)
{
    const std::array<Argument, 5> extremes{Argument{std::int64_t{INT64_MIN}},
                                           Argument{std::int64_t{INT64_MAX}}, Argument{1e308},
                                           Argument{-1e-308}, Argument{std::int64_t{0}}};
    for (const Function& function : functions()) {
        for (const Argument& a : extremes) {
            for (const Argument& b : extremes) {
                for (std::size_t count = 0; count <= 4; ++count) {
                    const std::array<Argument, 4> arguments{a, b, a, b};
                    try {
                        callFunction(function.name, Arguments(arguments.data(), count));
                    } catch (const FunctionError& error) {
                        EXPECT_NE(std::string(error.what()), "");
                    }
                }
            }
        }
    }
}

} // namespace
