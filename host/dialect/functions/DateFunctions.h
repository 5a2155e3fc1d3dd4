#pragma once
// Functions of dates.

#include "host/dialect/functions/Value.h"

#include <span>

namespace zul::dialect {

std::span<const Function> dateFunctions();

} // namespace zul::dialect
