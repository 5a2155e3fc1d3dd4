#include "tests/support/fake/Values.h"

#include "base/CaseFold.h"
#include "base/DateText.h"
#include "tests/support/FakeHost.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace zul::test {

Variant null()
{
    return Variant::null();
}

Variant text(std::string_view utf8)
{
    return Variant::fromUtf8(utf8);
}

Variant number(std::int32_t value)
{
    return Variant::fromLong(value);
}

Variant real(double value)
{
    return Variant::fromDouble(value);
}

Variant boolean(bool value)
{
    return Variant::fromBool(value);
}

Variant date(double days)
{
    return Variant::fromDate(days);
}

std::string utf8(BSTR text)
{
    return utf8FromUtf16(textOf(text));
}

std::string dayText(double days)
{
    return formatDate(days).substr(0, 10);
}

std::string realText(double value)
{
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.15g", value);
    std::string text = buffer.data();
    std::replace(text.begin(), text.end(), ',', '.');
    return text;
}

bool sameName(const std::string& a, const std::string& b)
{
    return equalNames(utf16FromUtf8(a), utf16FromUtf8(b));
}

bool contains(const std::string& whole, const std::string& part)
{
    return whole.find(part) != std::string::npos;
}

std::string show(const VARIANT& value)
{
    switch (value.vt) {
    case VT_NULL:
        return "NULL";
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE ? "true" : "false";
    case VT_I2:
        return std::to_string(value.iVal) + "s";
    case VT_I4:
        return std::to_string(value.lVal);
    case VT_I8:
        return std::to_string(value.llVal) + "l";
    case VT_R8:
        return realText(value.dblVal);
    case VT_DATE:
        return value.date == std::floor(value.date) ? dayText(value.date) : "<moment>";
    case VT_BSTR:
        return std::string("'").append(utf8(value.bstrVal)).append("'");
    default:
        return std::string("?").append(std::to_string(value.vt));
    }
}

} // namespace zul::test
