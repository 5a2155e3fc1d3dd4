#pragma once
// Functions of texts, and LIKE.

#include "host/dialect/functions/Value.h"

#include <span>

namespace zul::dialect {

std::span<const Function> textFunctions();

} // namespace zul::dialect
