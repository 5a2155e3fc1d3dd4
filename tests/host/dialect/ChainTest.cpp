// Chains of one operator, far longer than a person writes: they cost what they are long, never overflow the stack,
// and run wherever the engine may take the operands in any grouping.
#include "tests/host/dialect/Engine.h"

#include <gmock/gmock.h>

#include <chrono>

using namespace zul::dialect;
using namespace zul::dialect::test;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::string chain(std::string_view operand, std::string_view op, std::size_t count)
{
    std::string text(operand);
    for (std::size_t i = 1; i < count; ++i) {
        text += op;
        text += operand;
    }
    return text;
}

struct Chain
{
    const char* what;
    const char* operand;
    const char* op;
    const char* before; ///< the chain stands between these two
    const char* after;
    std::size_t (*value)(std::size_t count);
};

void PrintTo(const Chain& example, std::ostream* out)
{
    *out << example.what;
}

std::size_t one(std::size_t)
{
    return 1;
}

std::size_t all(std::size_t count)
{
    return count;
}

std::size_t twice(std::size_t count)
{
    return 2 * count;
}

constexpr Chain chains[] = {
    {"text literals", "'a'", "+", "LEN(", ")", all},
    {"text columns", "s", " + ", "LEN(", ")", all},
    {"texts that may be NULL", "ISNULL(s, '') + 'b'", "+", "LEN(", ")", twice},
    {"whole numbers", "1", "+", "", "", all},
    {"columns of whole numbers", "n", "+", "", "", all},
    {"numbers written as texts", "n + '1'", "+", "", "", twice},
    {"negative numbers", "-1", " - ", "2 + ", "", all},
    {"numbers added and taken off", "n - n + n", "+", "", "", all},
    {"numbers in parentheses", "(n)", "+", "", "", all},
    {"factors", "n", "*", "", "", one},
    {"factors of unknown kind", "x", "*", "", "", one},
};

class Chains : public testing::TestWithParam<Chain>
{
protected:
    void expectValue(std::size_t count)
    {
        const Chain& example = GetParam();
        Engine engine;
        engine.run("CREATE TABLE t(n int, s nvarchar(9)); INSERT INTO t(n, s) VALUES (1, 'a')");
        const auto start = std::chrono::steady_clock::now();
        const Rows rows =
            engine.run("SELECT " + std::string(example.before) + chain(example.operand, example.op, count) +
                       example.after + " FROM (SELECT n, s, ISNULL(NULL, n) AS x FROM t) AS d");
        // Ample for a loaded machine and instrumented code; a cost that grows with the square takes minutes.
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
        EXPECT_THAT(rows, ElementsAre(ElementsAre(std::to_string(example.value(count)))));
    }
};

TEST_P(Chains, OfAHundredAndOneRun)
{
    expectValue(101);
}

TEST_P(Chains, OfTenThousandRun)
{
    expectValue(10'000);
}

TEST_P(Chains, OfAHundredThousandRun)
{
    expectValue(100'000);
}

INSTANTIATE_TEST_SUITE_P(Dialect, Chains, testing::ValuesIn(chains));

TEST(ChainOfUnknownKinds, OfTwoThousandRuns)
{
    Engine engine;
    engine.runNative("CREATE TABLE t(a, b)");
    engine.runNative("INSERT INTO t VALUES (1, 'x')");
    EXPECT_THAT(
        engine.runUntyped("SELECT " + chain("a", "+", 2000) + ", LEN(" + chain("b", "+", 2000) + ") FROM t"),
        ElementsAre(ElementsAre("2000", "2000")));
}

// Which of such operands are texts shows only when the statement runs, and then their order counts: the left side
// nests, in the engine's language, and its parser has a limit.
TEST(ChainOfUnknownKinds, OfTenThousandIsAClearError)
{
    for (const auto& [first, next] :
         {std::pair{"a", " + a"}, {"a", " - a"}, {"a", " / a"}, {"a", " % a"}, {"GETDATE()", " + 1"}}) {
        for (const std::size_t count : {std::size_t{10'000}, std::size_t{100'000}}) {
            SCOPED_TRACE(next);
            try {
                translate("SELECT " + (first + chain(next, "", count)) + " FROM t");
                ADD_FAILURE() << "was translated";
            } catch (const DialectError& error) {
                EXPECT_THAT(error.message(), HasSubstr("a chain of operators as long as this one"));
                EXPECT_LT(error.offset(), 10'000U);
            }
        }
    }
}

// The engine refuses what leans to the left so far, with an error of its own; to find that out costs no more.
TEST(ChainOfFactorsAndDivisors, OfAHundredThousandEndsSoon)
{
    Engine engine;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(engine.value("1" + chain("*2/2", "", 300)), "1");
    EXPECT_THAT(engine.failure("SELECT 1" + chain("*2/2", "", 100'000)),
                HasSubstr("Expression tree is too large"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

// A chain is no nesting, however long: what reads and destroys it does not go deeper for each operand.
TEST(ChainOfConditions, OfAHundredThousandRuns)
{
    Engine engine;
    EXPECT_EQ(engine.value("IIF(" + chain("1=1", " AND ", 100'000) + ", 1, 0)"), "1");
    EXPECT_EQ(engine.value("IIF(" + chain("1=2", " OR ", 100'000) + ", 1, 0)"), "0");
    std::string any = "1=2";
    for (int i = 0; i < 5000; ++i) {
        any += " OR n=" + std::to_string(i);
    }
    EXPECT_THAT(engine.run("SELECT n FROM (SELECT 4999 AS n) AS t WHERE " + any),
                ElementsAre(ElementsAre("4999")));
}

} // namespace
