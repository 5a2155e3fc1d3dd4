#pragma once
// The application functions that translated statements call: what the server does and the engine has no
// operator for. Pure functions over simple values; SqliteFunctions.h puts them on a connection.
//
// Every function answers NULL when an argument is NULL unless its comment in Functions.cpp says otherwise, and
// throws FunctionError where the server raises an error (a text that is no number, a division by zero …).

#include <cstdint>
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

/// All scalar functions.
std::span<const Function> functions();

/// A function by its name; throws FunctionError when there is none or the number of arguments is wrong.
Result callFunction(std::string_view name, Arguments arguments);

/// The average of the server: of whole numbers it is a whole number. NULLs do not count; of nothing it is NULL.
class Average
{
public:
    void add(const Argument& value);
    Result result() const;

private:
    std::int64_t m_count = 0;
    std::int64_t m_reals = 0;
    std::int64_t m_whole = 0;
    double m_real = 0;
};

/// A text as a number: a whole one when it has neither point nor exponent and fits. Blanks around do not
/// matter, an empty text is nothing.
std::variant<std::monostate, std::int64_t, double> parseNumber(std::string_view text);

} // namespace zul::dialect
