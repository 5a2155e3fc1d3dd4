// Values and results as short ASCII words, the same on every platform.
#pragma once

#include <string>
#include <string_view>

#include <oleauto.h>

namespace differential {

// "ok", "!type" (type mismatch), "!overflow", "!badtype", …; else the code in hexadecimal.
std::string nameOf(HRESULT result);
// "I4", "BSTR|BYREF", "ARRAY|UI1"; the number for a code that has no name.
std::string nameOf(VARTYPE type);
// In double quotes; what is not printable ASCII as \uXXXX.
std::string quoted(std::u16string_view text);
// The shortest digits that give the same number.
std::string numberText(double value);
std::string numberText(float value);
// What a variant holds, without its type.
std::string valueText(const VARIANT& value);
// "I4 5"
std::string typedText(const VARIANT& value);

} // namespace differential
