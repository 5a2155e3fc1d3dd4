// What cannot be translated names its place.
#include "tests/host/dialect/Engine.h"

#include <gmock/gmock.h>

using namespace zul::dialect;
using namespace zul::dialect::test;
using testing::HasSubstr;

namespace {

struct Case
{
    const char* tsql;
    std::size_t line;
    std::size_t column;
    const char* message;
};

void PrintTo(const Case& example, std::ostream* out)
{
    *out << example.tsql;
}

class Errors : public testing::TestWithParam<Case>
{};

TEST_P(Errors, NameTheirPlace)
{
    try {
        const Translation translation = translate(GetParam().tsql);
        FAIL() << translation.sql;
    } catch (const DialectError& error) {
        EXPECT_EQ(error.line(), GetParam().line) << error.what();
        EXPECT_EQ(error.column(), GetParam().column) << error.what();
        EXPECT_THAT(error.message(), HasSubstr(GetParam().message));
        EXPECT_THAT(error.what(), HasSubstr("line " + std::to_string(GetParam().line)));
    }
}

constexpr Case syntax[] = {
    {"", 1, 1, "the statement is empty"},
    {" -- nothing\n", 1, 1, "the statement is empty"},
    {"SELECT a b FRON c", 1, 12, "incorrect syntax near 'FRON': expected the end of the statement"},
    {"SELECT", 1, 7, "the statement ends where an expression is expected"},
    {"SELECT *\nFROM t\nWHERE àè = = 5", 3, 12, "incorrect syntax near '=': expected an expression"},
    {"SELECT * FROM t WHERE a = 'x", 1, 27, "the text that starts here is not closed"},
    {"SELECT [a FROM t", 1, 8, "the name that starts here is not closed"},
    {"SELECT a /* b", 1, 10, "is not closed: expected '*/'"},
    {"SELECT [] FROM t", 1, 8, "a name cannot be empty"},
    {"SELECT a FROM t WHERE a ! 5", 1, 25, "'!' has no meaning here"},
    {"SELECT FROM t", 1, 8, "incorrect syntax near 'FROM': expected an expression"},
    {"SELECT a FROM t WHERE a", 1, 23, "a value stands here where a condition is expected"},
    {"SELECT (a = 1) + 2 FROM t", 1, 9, "a condition stands here where a value is expected"},
    {"SELECT a FROM t WHERE a IN ()", 1, 29, "expected an expression"},
    {"SELECT a FROM t WHERE a BETWEEN 1 OR 2", 1, 35, "expected AND"},
    {"SELECT CASE a END", 1, 15, "expected WHEN"},
    {"SELECT CAST(a AS foo)", 1, 18, "the type 'foo' is not known"},
    {"SELECT a FROM (SELECT 1 AS a)", 1, 30, "an alias for the derived table"},
    {"SELECT a FROM t INNER JOIN u", 1, 29, "ON is expected"},
    {"SELECT 1; SELECT 2", 1, 11, "only one statement can stand here"},
    {"INSERT INTO t(a, b) VALUES (1)", 1, 21, "the number of values is not the number of columns"},
    {"INSERT INTO t(a, b) SELECT 1", 1, 21, "the number of values is not the number of columns"},
    {"INSERT INTO t(a) VALUES (1), (1, 2)", 1, 36, "as many values in this row"},
    {"UPDATE t WHERE a = 1", 1, 10, "expected SET"},
    {"UPDATE t SET a = += 1", 1, 18, "incorrect syntax near '+='"},
    {"DELETE FROM t WHERE", 1, 20, "the statement ends where an expression is expected"},
    {"GO", 1, 1, "incorrect syntax near 'GO': expected a statement"},
    {"SELECT a FROM t UNION SELECT 1, 2", 1, 1, "need as many columns"},
    {"SELECT key FROM t", 1, 8, "incorrect syntax near 'key'"},
    {"SELECT a, FROM t", 1, 11, "incorrect syntax near 'FROM'"},
    {"SELECT a FROM t ORDER BY", 1, 25, "an expression is expected"},
    {"SELECT a FROM t)", 1, 16, "incorrect syntax near ')'"},
    {"SELECT a FROM t WHERE DateDiff(year,a,'20261121') >= 18,5 and 1=1", 1, 56, "incorrect syntax near ','"},
};

INSTANTIATE_TEST_SUITE_P(Syntax, Errors, testing::ValuesIn(syntax));

constexpr Case meaning[] = {
    {"SELECT foo(1)", 1, 8, "the function 'FOO' is not known"},
    {"SELECT LEN()", 1, 8, "the function LEN has 0 arguments: expected 1"},
    {"SELECT ROUND(1)", 1, 8, "expected 2 to 3"},
    {"SELECT COALESCE(1)", 1, 8, "expected at least 2"},
    {"SELECT DATEDIFF(century, a, b) FROM t", 1, 17, "'century' is not a date part"},
    {"SELECT DATEDIFF('year', a, b) FROM t", 1, 17, "is not a date part"},
    {"SELECT YEAR('21/11/2026')", 1, 13, "'21/11/2026' is not a date: expected 'yyyymmdd'"},
    {"SELECT 1 WHERE GETDATE() > 'domani'", 1, 28, "'domani' is not a date"},
    {"SELECT 1 WHERE 5 = 'x'", 1, 20, "a number is expected"},
    {"SELECT GETDATE() + 'x'", 1, 20, "CONVERT the date to a text first"},
    {"SELECT GETDATE() - GETDATE()", 1, 20, "use DATEDIFF"},
    {"SELECT LEN(DISTINCT a) FROM t", 1, 8, "DISTINCT cannot stand in LEN"},
    {"CREATE TABLE t(a int, PRIMARY KEY(b))", 1, 35, "the table has no column 'b' for its key"},
    {"CREATE TABLE t(a int, CONSTRAINT k PRIMARY KEY(a, [c d]))", 1, 51, "no column 'c d' for its key"},
    {"CREATE TABLE t(a int, UNIQUE (A, b))", 1, 34, "the table has no column 'b' for its key"},
    {"CREATE TABLE t(a int PRIMARY KEY, b int PRIMARY KEY)", 1, 35, "one primary key"},
    {"CREATE TABLE t(a int PRIMARY KEY, b int, PRIMARY KEY(b))", 1, 42, "one primary key"},
    {"CREATE TABLE t(a int, PRIMARY KEY(a), PRIMARY KEY(a))", 1, 39, "one primary key"},
    {"SELECT LEN(*) FROM t", 1, 12, "incorrect syntax near '*'"},
    {"SELECT CAST(a AS varbinary(5)) FROM t", 1, 8, "a conversion to varbinary is not supported"},
};

INSTANTIATE_TEST_SUITE_P(Meaning, Errors, testing::ValuesIn(meaning));

constexpr Case unsupported[] = {
    {"SELECT ROW_NUMBER() OVER (ORDER BY a) FROM t", 1, 21, "OVER is not supported"},
    {"SELECT STRING_AGG(a, ',') FROM t", 1, 8, "the function 'STRING_AGG' is not known"},
    {"SELECT {d '2026-11-21'}", 1, 8, "'{' has no meaning here"},
    {"SELECT 1 ^ 2", 1, 10, "'^' has no meaning here"},
    {"SET NOCOUNT ON", 1, 1, "expected a statement"},
    {"SELECT @x", 1, 8, "a variable is not supported"},
    {"DECLARE @x int", 1, 1, "expected a statement"},
    {"EXEC sp_who", 1, 1, "expected a statement"},
    {"SELECT TOP 5 PERCENT a FROM t", 1, 14, "is not supported"},
    {"SELECT * FROM t CROSS APPLY f(1)", 1, 23, "APPLY is not supported"},
    {"SELECT * FROM f(1)", 1, 15, "the function 'f' is not known"},
    {"SELECT a INTO u FROM t", 1, 1, "SELECT … INTO is not supported"},
    {"SELECT a FROM t WHERE a > ALL (SELECT 1)", 1, 27, "ALL, ANY or SOME"},
    {"DELETE TOP (5) FROM t", 1, 8, "TOP in a statement that writes"},
    {"INSERT INTO t(a) OUTPUT inserted.a VALUES (1)", 1, 18, "OUTPUT"},
    {"SELECT a FROM t FOR XML AUTO", 1, 17, "FOR"},
    {"CREATE TABLE t(a AS 1)", 1, 18, "a computed column"},
    {"CREATE TABLE t(a int IDENTITY(5,1))", 1, 31, "identity other than (1,1)"},
    {"BEGIN SELECT 1 END", 1, 7, "expected TRAN"},
};

INSTANTIATE_TEST_SUITE_P(Unsupported, Errors, testing::ValuesIn(unsupported));

TEST(Error, PlacesCountCharactersNotBytes)
{
    try {
        translate("SELECT 'à€😀' ,, 1");
        FAIL();
    } catch (const DialectError& error) {
        EXPECT_EQ(error.column(), 15U);
        EXPECT_EQ(error.offset(), 20U);
    }
}

TEST(Error, NulAndBrokenUtf8AreRefused)
{
    const std::string nul("SELECT 'a\0b'", 12);
    const std::string broken = "SELECT '\xC3('";
    for (const auto& [text, column, message] :
         {std::tuple(nul, 10U, "NUL character"), std::tuple(broken, 9U, "not valid UTF-8"),
          std::tuple(std::string("\xFF"), 1U, "not valid UTF-8"),
          std::tuple(std::string("SELECT '\xED\xA0\x80'"), 9U, "not valid UTF-8"),
          std::tuple(std::string("SELECT '\xC0\xAF'"), 9U, "not valid UTF-8")}) {
        try {
            translate(text);
            FAIL() << message;
        } catch (const DialectError& error) {
            EXPECT_EQ(error.column(), column);
            EXPECT_THAT(error.message(), HasSubstr(message));
        }
    }
}

TEST(Error, NestingHasALimit)
{
    const auto nested = [](const std::string& open, const std::string& inner, const std::string& close,
                           int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += open;
        }
        text += inner;
        for (int i = 0; i < count; ++i) {
            text += close;
        }
        return text;
    };
    for (const auto& [open, close] : {std::pair<std::string, std::string>{"(", ")"},
                                      {"ABS(", ")"},
                                      {"(SELECT ", ")"},
                                      {"- ", ""},
                                      {"CASE WHEN 1=1 THEN ", " END"}}) {
        try {
            translate("SELECT " + nested(open, "1", close, 100000));
            FAIL() << open;
        } catch (const DialectError& error) {
            EXPECT_THAT(error.message(), HasSubstr("nested too deep"));
        }
    }
    for (const auto& [open, close] :
         {std::pair<std::string, std::string>{"(", ")"}, {"(SELECT * FROM ", ") AS x"}}) {
        EXPECT_THROW(translate("SELECT * FROM " + nested(open, "t", close, 100000)), DialectError) << open;
    }
    EXPECT_THROW(translate("SELECT * FROM t WHERE " + nested("(", "1=1", ")", 100000)), DialectError);
    EXPECT_THROW(translate("SELECT * FROM t WHERE " + nested("NOT (", "1=1", ")", 100000)), DialectError);
    EXPECT_THROW(translate(nested("(", "SELECT 1", ")", 100000)), DialectError);
    EXPECT_NO_THROW(translate("SELECT * FROM t WHERE " + nested("NOT ", "1=1", "", 100000)));
    std::string joins = "SELECT * FROM t";
    for (int i = 0; i < 100000; ++i) {
        joins += " JOIN t";
    }
    EXPECT_THROW(translate(joins), DialectError);

    Engine engine;
    EXPECT_EQ(engine.value(nested("(", "1", ")", 60)), "1");
    EXPECT_EQ(engine.value(nested("ABS(", "-1", ")", 25)), "1");
    EXPECT_EQ(engine.value(nested("-(", "1", ")", 30)), "1");
}

TEST(Error, MisspeltColumnIsNoText)
{
    // The engine would take "name" for a text when there is no such column.
    Engine engine;
    engine.run("CREATE TABLE t(a int); INSERT INTO t(a) VALUES (1)");
    EXPECT_THAT(engine.failure("SELECT \"nonexistent\" FROM t"), HasSubstr("no such column"));
    EXPECT_THAT(engine.failure("SELECT a FROM t WHERE [b] = 'b'"), HasSubstr("no such column"));
}

} // namespace
