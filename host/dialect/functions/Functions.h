#pragma once
// The application functions that translated statements call: what the server does and the engine has no
// operator for. Pure functions over simple values; SqliteFunctions.h puts them on a connection.
//
// Every function answers NULL when an argument is NULL unless its comment says otherwise, and throws FunctionError
// where the server raises an error (a text that is no number, a division by zero …).

#include "host/dialect/functions/Value.h"

#include <span>
#include <string_view>

namespace zul::dialect {

/// All scalar functions, of every kind.
std::span<const Function> functions();

/// A function by its name; throws FunctionError when there is none or the number of arguments is wrong.
Result callFunction(std::string_view name, Arguments arguments);

} // namespace zul::dialect
