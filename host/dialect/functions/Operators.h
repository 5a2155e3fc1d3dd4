#pragma once
// The operators that the engine has not, or has with another meaning.

#include "host/dialect/functions/Value.h"

#include <span>

namespace zul::dialect {

std::span<const Function> operators();

} // namespace zul::dialect
