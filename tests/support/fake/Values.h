// Values of cells and of arguments as the fake host shows and compares them.
#pragma once

#include "automation/Bstr.h"

#include <string>

namespace zul::test {

std::string utf8(BSTR text);

/// Days since 1899-12-30 as yyyy-mm-dd; the time of day is dropped.
std::string dayText(double days);

/// A decimal number with a point, up to 15 digits.
std::string realText(double value);

/// Names of fields and tables: any case will do.
bool sameName(const std::string& a, const std::string& b);

bool contains(const std::string& whole, const std::string& part);

} // namespace zul::test
