#pragma once
// CAST and CONVERT.

#include "host/dialect/functions/Value.h"

#include <span>

namespace zul::dialect {

std::span<const Function> conversions();

} // namespace zul::dialect
