#include "host/dialect/functions/Operators.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace zul::dialect {

namespace {

using std::int64_t;

Number sum(const Number& a, const Number& b, bool minus)
{
    const auto* x = std::get_if<int64_t>(&a);
    const auto* y = std::get_if<int64_t>(&b);
    if (x == nullptr || y == nullptr) {
        return minus ? realOf(a) - realOf(b) : realOf(a) + realOf(b);
    }
    int64_t total = 0;
    if (minus ? __builtin_sub_overflow(*x, *y, &total) : __builtin_add_overflow(*x, *y, &total)) {
        overflow("bigint");
    }
    return total;
}

// A text in the stored form of a date, and a number beside it: days are added.
std::optional<Moment> storedMoment(const Argument& argument)
{
    const auto* text = std::get_if<std::string_view>(&argument);
    if (text == nullptr || text->size() != 23 || (*text)[4] != '-' || (*text)[19] != '.') {
        return std::nullopt;
    }
    return parseMoment(*text);
}

Result addTwo(const Argument& a, const Argument& b, bool minus)
{
    if (isText(a) && isText(b) && !minus) {
        return textOf(a) + textOf(b);
    }
    if (const auto moment = storedMoment(a); moment && !isText(b)) {
        return plusDays(*moment, minus ? -realOf(b) : realOf(b));
    }
    if (const auto moment = storedMoment(b); moment && !isText(a) && !minus) {
        return plusDays(*moment, realOf(a));
    }
    return resultOf(sum(numberOf(a), numberOf(b), minus));
}

Argument argumentOf(const Result& result)
{
    if (const auto* text = std::get_if<std::string>(&result)) {
        return std::string_view(*text);
    }
    if (const auto* whole = std::get_if<int64_t>(&result)) {
        return *whole;
    }
    if (const auto* real = std::get_if<double>(&result)) {
        return *real;
    }
    return {};
}

// '+' between values whose kinds are known only now: two texts are joined, numbers are added, a text beside a
// number must be one.
Result add(Arguments arguments)
{
    if (arguments.empty() || anyNull(arguments)) {
        return {};
    }
    if (std::all_of(arguments.begin(), arguments.end(), isText)) {
        std::string joined;
        for (const Argument& argument : arguments) {
            joined += std::get<std::string_view>(argument);
        }
        return joined;
    }
    Result total = resultOf(arguments[0]);
    for (const Argument& argument : arguments.subspan(1)) {
        total = addTwo(argumentOf(total), argument, false);
    }
    return total;
}

Result subtract(Arguments arguments)
{
    return anyNull(arguments) ? Result{} : addTwo(arguments[0], arguments[1], true);
}

// The server refuses to divide by zero where the engine answers NULL.
Result divided(Arguments arguments, Number (*whole)(int64_t, int64_t), double (*real)(double, double))
{
    if (anyNull(arguments)) {
        return {};
    }
    const Number a = numberOf(arguments[0]);
    const Number b = numberOf(arguments[1]);
    if (realOf(b) == 0) {
        throw FunctionError("Divide by zero error encountered.");
    }
    const auto* x = std::get_if<int64_t>(&a);
    const auto* y = std::get_if<int64_t>(&b);
    if (x == nullptr || y == nullptr) {
        return real(realOf(a), realOf(b));
    }
    return resultOf(whole(*x, *y));
}

// By -1 the smallest whole number overflows.
Result quotient(Arguments arguments)
{
    return divided(
        arguments, [](int64_t x, int64_t y) { return y == -1 ? sum(int64_t{0}, x, true) : Number(x / y); },
        [](double x, double y) { return x / y; });
}

Result remainder(Arguments arguments)
{
    return divided(
        arguments, [](int64_t x, int64_t y) { return Number(y == -1 ? 0 : x % y); },
        [](double x, double y) { return std::fmod(x, y); });
}

Result number(Arguments arguments)
{
    return anyNull(arguments) ? Result{} : resultOf(numberOf(arguments[0]));
}

constexpr Function table[] = {
    {"zul_add", 1, -1, add},      {"zul_sub", 2, 2, subtract},  {"zul_div", 2, 2, quotient},
    {"zul_mod", 2, 2, remainder}, {"zul_number", 1, 1, number},
};

} // namespace

std::span<const Function> operators()
{
    return table;
}

} // namespace zul::dialect
