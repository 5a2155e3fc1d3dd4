#pragma once
// Numbers as texts write them.

#include <cstdint>
#include <string_view>
#include <variant>

namespace zul::dialect {

/// A text as a number: a whole one when it has neither point nor exponent and fits. Blanks around do not
/// matter, an empty text is nothing.
std::variant<std::monostate, std::int64_t, double> parseNumber(std::string_view text);

} // namespace zul::dialect
