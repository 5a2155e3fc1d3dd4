// No text between quotes is ever changed, and none can end its quotes early.
#include "tests/host/dialect/Engine.h"

#include <gmock/gmock.h>

using namespace zul::dialect;
using namespace zul::dialect::test;
using testing::ElementsAre;

namespace {

std::string quoted(const std::string& text)
{
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? std::string("''") : std::string(1, c);
    }
    return result + "'";
}

const std::vector<std::string>& texts()
{
    static const std::vector<std::string> list = {"",
                                                  " ",
                                                  "  two  blanks  ",
                                                  "'",
                                                  "''",
                                                  "';--",
                                                  "'); DROP TABLE t; --",
                                                  "\"",
                                                  "[x]",
                                                  "]",
                                                  "`",
                                                  "%",
                                                  "_",
                                                  "?",
                                                  "@x",
                                                  "/* no comment */",
                                                  "-- no comment",
                                                  "SELECT ISNULL(a, 'b') FROM [t]",
                                                  "ISNULL(",
                                                  "[Tmk_Messaggi].[TESTOSMS]",
                                                  "à è ì ò ù € 😀",
                                                  "line\r\nbreak\ttab",
                                                  "\\",
                                                  "\\'",
                                                  "20261121",
                                                  "2026-11-21",
                                                  "N'x'",
                                                  "0x01",
                                                  "NULL",
                                                  "GETDATE()",
                                                  "{d '2026-01-01'}",
                                                  "dbo.t",
                                                  std::string(10000, 'x'),
                                                  std::string(10000, '\'')};
    return list;
}

TEST(Quote, TextsComeOutAsTheyWentIn)
{
    Engine engine;
    engine.run("CREATE TABLE t(id int IDENTITY PRIMARY KEY, s nvarchar(max))");
    for (const std::string& text : texts()) {
        EXPECT_EQ(engine.value(quoted(text)), text);
        EXPECT_EQ(engine.value("N" + quoted(text)), text);
        EXPECT_EQ(engine.value(quoted(text) + " + ''"), text);
        engine.run("DELETE FROM t; INSERT INTO t(s) VALUES (" + quoted(text) + ")");
        EXPECT_THAT(engine.run("SELECT s FROM t WHERE s = " + quoted(text)), ElementsAre(ElementsAre(text)));
        EXPECT_THAT(engine.runUntyped("SELECT s FROM t WHERE s = " + quoted(text)),
                    ElementsAre(ElementsAre(text)));
        engine.run("UPDATE t SET s = ISNULL(s, '') + " + quoted(text));
        EXPECT_THAT(engine.run("SELECT s FROM t"), ElementsAre(ElementsAre(text + text)));
    }
}

TEST(Quote, ThePlainTranslationHoldsTheVeryLiteral)
{
    for (const std::string& text : texts()) {
        EXPECT_EQ(translate("SELECT " + quoted(text) + " AS a").sql, "SELECT " + quoted(text) + " AS [a]");
    }
}

TEST(Quote, NamesOfAnyKind)
{
    Engine engine;
    // clang-format off
    static const std::vector<std::string> names = {
        "a b",
        "it's",
        "say \"x\"",
        "a]b",
        "a`b]",
        "città €",
        "select",
        "1x",
        "--",
        "x;y",
        "?",
    };
    // clang-format on
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        std::string bracketed = "[";
        for (const char c : name) {
            bracketed += c == ']' ? std::string("]]") : std::string(1, c);
        }
        bracketed += "]";
        std::string doubled = "\"";
        for (const char c : name) {
            doubled += c == '"' ? std::string("\"\"") : std::string(1, c);
        }
        doubled += "\"";
        engine.run("DROP TABLE IF EXISTS " + bracketed + "; CREATE TABLE " + bracketed + "(" + doubled +
                   " int); INSERT INTO dbo." + bracketed + "(" + bracketed + ") VALUES (7)");
        EXPECT_THAT(
            engine.run("SELECT " + bracketed + ", " + doubled + " AS " + bracketed + " FROM " + doubled),
            ElementsAre(ElementsAre("7", "7")));
        EXPECT_THAT(engine.columns(), ElementsAre(name, name));
    }
}

TEST(Quote, CommentsNest)
{
    Engine engine;
    EXPECT_EQ(engine.value("/* a /* b ' */ c */ 1 -- ' the rest"), "1");
    EXPECT_EQ(engine.value("1--1\n+1"), "2");
    EXPECT_EQ(engine.value("'/* x */' /* y */"), "/* x */");
}

TEST(Quote, OddBlanksAreBlanks)
{
    Engine engine;
    EXPECT_EQ(engine.value("\t1\r\n+\xC2\xA0"
                           "2\v\f"),
              "3");
    EXPECT_THAT(engine.run("\xEF\xBB\xBFSELECT 1"), ElementsAre(ElementsAre("1")));
}

TEST(Quote, LongStatementsPass)
{
    Engine engine;
    std::string list = "0";
    for (int i = 1; i < 10000; ++i) {
        list += "," + std::to_string(i);
    }
    EXPECT_EQ(engine.value("IIF(9999 IN (" + list + "), 1, 0)"), "1");
}

} // namespace
