#include "host/dialect/functions/NumberFunctions.h"

#include "host/dialect/base/NumberText.h"

#include <algorithm>
#include <cmath>

namespace zul::dialect {

namespace {

using std::int64_t;

Result round(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const Number value = numberOf(arguments[0]);
    const int64_t digits = wholeOf(arguments[1]);
    const bool cut = arguments.size() > 2 && wholeOf(arguments[2]) != 0;
    const auto* whole = std::get_if<int64_t>(&value);
    if (whole == nullptr) {
        return roundedTo(std::get<double>(value), digits, cut);
    }
    if (digits >= 0) {
        return *whole;
    }
    return truncated(roundedTo(static_cast<double>(*whole), digits, cut), "bigint");
}

Result wholeStep(Arguments arguments, double (*step)(double))
{
    if (anyNull(arguments)) {
        return {};
    }
    const Number value = numberOf(arguments[0]);
    if (std::holds_alternative<int64_t>(value)) {
        return resultOf(value);
    }
    return step(std::get<double>(value));
}

Result floorOf(Arguments arguments)
{
    return wholeStep(arguments, [](double x) { return std::floor(x); });
}

Result ceilingOf(Arguments arguments)
{
    return wholeStep(arguments, [](double x) { return std::ceil(x); });
}

Result isNumericText(Arguments arguments)
{
    const auto* text = std::get_if<std::string_view>(&arguments[0]);
    if (text == nullptr) {
        return int64_t{isNull(arguments[0]) ? 0 : 1};
    }
    std::string_view rest = *text;
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    if (!rest.empty() && rest.front() == '$') {
        rest.remove_prefix(1);
    }
    return int64_t{std::holds_alternative<std::monostate>(parseNumber(rest)) ? 0 : 1};
}

constexpr Function table[] = {
    {"zul_round", 2, 3, round},
    {"zul_floor", 1, 1, floorOf},
    {"zul_ceiling", 1, 1, ceilingOf},
    {"zul_isnumeric", 1, 1, isNumericText},
};

} // namespace

std::span<const Function> numberFunctions()
{
    return table;
}

void Average::add(const Argument& value)
{
    if (isNull(value)) {
        return;
    }
    const Number number = numberOf(value);
    ++m_count;
    if (const auto* whole = std::get_if<int64_t>(&number)) {
        if (__builtin_add_overflow(m_whole, *whole, &m_whole)) {
            overflow("bigint");
        }
        return;
    }
    ++m_reals;
    m_real += std::get<double>(number);
}

Result Average::result() const
{
    if (m_count == 0) {
        return {};
    }
    if (m_reals == 0) {
        return m_whole / m_count;
    }
    return (static_cast<double>(m_whole) + m_real) / static_cast<double>(m_count);
}

} // namespace zul::dialect
