#pragma once
// What the functions take and give, and how they read it: one rule for each conversion that the server makes on
// its own.

#include "host/dialect/base/DateTime.h"

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

namespace zul::dialect {

/// An argument: NULL, a whole number, a real number, or a text that lives as long as the call.
using Argument = std::variant<std::monostate, std::int64_t, double, std::string_view>;
/// A result.
using Result = std::variant<std::monostate, std::int64_t, double, std::string>;
using Arguments = std::span<const Argument>;

class FunctionError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct Function
{
    const char* name;
    int least; ///< fewest arguments
    int most;  ///< most arguments; -1 for any number
    Result (*call)(Arguments);
};

/// Longer texts, in bytes, are an error.
inline constexpr std::size_t longestText = 64U << 20U;

// The server's errors.
[[noreturn]] void notADate();
[[noreturn]] void notANumber(std::string_view text, std::string_view type);
[[noreturn]] void overflow(std::string_view type);
void checkLength(std::size_t length);

inline bool isNull(const Argument& argument)
{
    return std::holds_alternative<std::monostate>(argument);
}

inline bool isText(const Argument& argument)
{
    return std::holds_alternative<std::string_view>(argument);
}

bool anyNull(Arguments arguments);

std::string textOf(const Argument& argument);

/// The text without a copy where it is one already.
class TextView
{
public:
    explicit TextView(const Argument& argument)
    {
        if (const auto* text = std::get_if<std::string_view>(&argument)) {
            m_view = *text;
        } else {
            m_owned = textOf(argument);
            m_view = m_owned;
        }
    }
    TextView(const TextView&) = delete;
    TextView& operator=(const TextView&) = delete;
    std::string_view operator*() const { return m_view; }

private:
    std::string m_owned;
    std::string_view m_view;
};

using Number = std::variant<std::int64_t, double>;

/// A text that is no number is an error; an empty one is 0.
Number numberOf(const Argument& argument);
double realOf(const Number& number);
double realOf(const Argument& argument);
/// Without what stands behind the point; what does not fit into 64 bits is an overflow of the named type.
std::int64_t wholeOf(const Argument& argument);
std::int64_t truncated(double real, std::string_view type);
/// To this many decimals; negative ones round before the point. 'cut' drops instead.
double roundedTo(double value, std::int64_t digits, bool cut);

Result resultOf(const Number& number);
Result resultOf(const Argument& argument);

/// A date in one of CONVERT's styles, -1 for none; a number counts days.
std::optional<Moment> momentMaybe(const Argument& argument, int style);
Moment momentOf(const Argument& argument);
Result plusDays(const Moment& moment, double days);

} // namespace zul::dialect
