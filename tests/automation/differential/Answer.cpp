#include "tests/automation/differential/Answer.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "tests/automation/differential/Source.h"

namespace differential {

namespace {

struct NamedResult
{
    HRESULT result;
    const char* name;
};

const NamedResult namedResults[] = {
    {S_OK, "ok"},
    {S_FALSE, "false"},
    {DISP_E_TYPEMISMATCH, "!type"},
    {DISP_E_OVERFLOW, "!overflow"},
    {DISP_E_BADVARTYPE, "!badtype"},
    {DISP_E_BADINDEX, "!index"},
    {DISP_E_ARRAYISLOCKED, "!locked"},
    {DISP_E_BADPARAMCOUNT, "!paramcount"},
    {DISP_E_PARAMNOTFOUND, "!paramnotfound"},
    {DISP_E_PARAMNOTOPTIONAL, "!notoptional"},
    {DISP_E_MEMBERNOTFOUND, "!membernotfound"},
    {DISP_E_UNKNOWNNAME, "!unknownname"},
    {DISP_E_UNKNOWNINTERFACE, "!unknowninterface"},
    {DISP_E_EXCEPTION, "!exception"},
    {E_INVALIDARG, "!invalid"},
    {E_POINTER, "!pointer"},
    {E_UNEXPECTED, "!unexpected"},
    {E_OUTOFMEMORY, "!memory"},
};

struct NamedType
{
    int type;
    const char* name;
};

constexpr NamedType namedTypes[] = {
    {VT_EMPTY, "EMPTY"},     {VT_NULL, "NULL"},
    {VT_I2, "I2"},           {VT_I4, "I4"},
    {VT_R4, "R4"},           {VT_R8, "R8"},
    {VT_CY, "CY"},           {VT_DATE, "DATE"},
    {VT_BSTR, "BSTR"},       {VT_DISPATCH, "DISPATCH"},
    {VT_ERROR, "ERROR"},     {VT_BOOL, "BOOL"},
    {VT_VARIANT, "VARIANT"}, {VT_UNKNOWN, "UNKNOWN"},
    {VT_DECIMAL, "DECIMAL"}, {VT_I1, "I1"},
    {VT_UI1, "UI1"},         {VT_UI2, "UI2"},
    {VT_UI4, "UI4"},         {VT_I8, "I8"},
    {VT_UI8, "UI8"},         {VT_INT, "INT"},
    {VT_UINT, "UINT"},       {VT_RECORD, "RECORD"},
};

template <typename Real>
std::string shortest(Real value)
{
    if (std::isnan(value)) {
        return "nan";
    }
    char text[64];
    const std::to_chars_result end = std::to_chars(text, text + sizeof text, value);
    return {text, end.ptr};
}

// Mantissa and scale apart, so that 1.0 and 1 are told from each other.
std::string decimalText(const DECIMAL& value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%s%lx:%llx/%u", (value.sign & DECIMAL_NEG) != 0 ? "-" : "",
                  static_cast<unsigned long>(value.Hi32), static_cast<unsigned long long>(value.Lo64),
                  static_cast<unsigned>(value.scale));
    return text;
}

std::string arrayText(SAFEARRAY* array)
{
    if (array == nullptr) {
        return "null";
    }
    VARTYPE type = VT_EMPTY;
    std::string text = SUCCEEDED(SafeArrayGetVartype(array, &type)) ? nameOf(type) : "?";
    for (UINT i = 1; i <= SafeArrayGetDim(array); ++i) {
        LONG lower = 0;
        LONG upper = 0;
        SafeArrayGetLBound(array, i, &lower);
        SafeArrayGetUBound(array, i, &upper);
        text += "[" + std::to_string(lower) + ".." + std::to_string(upper) + "]";
    }
    void* data = nullptr;
    if (type == VT_UI1 && SafeArrayGetDim(array) == 1 && SUCCEEDED(SafeArrayAccessData(array, &data))) {
        LONG upper = 0;
        LONG lower = 0;
        SafeArrayGetUBound(array, 1, &upper);
        SafeArrayGetLBound(array, 1, &lower);
        for (LONG i = 0; i <= upper - lower; ++i) {
            char byte[4];
            std::snprintf(byte, sizeof byte, "%02x", static_cast<unsigned char*>(data)[i]);
            text += byte;
        }
        SafeArrayUnaccessData(array);
    }
    return text;
}

} // namespace

std::string nameOf(HRESULT result)
{
    for (const NamedResult& named : namedResults) {
        if (named.result == result) {
            return named.name;
        }
    }
    char text[16];
    std::snprintf(text, sizeof text, "!%08lx",
                  static_cast<unsigned long>(static_cast<std::uint32_t>(result)));
    return text;
}

std::string nameOf(VARTYPE type)
{
    std::string name = std::to_string(type & VT_TYPEMASK);
    for (const NamedType& named : namedTypes) {
        if (named.type == (type & VT_TYPEMASK)) {
            name = named.name;
        }
    }
    for (const NamedType& modifier : {NamedType{0x1000, "VECTOR|"}, NamedType{VT_ARRAY, "ARRAY|"},
                                      NamedType{VT_BYREF, "BYREF|"}, NamedType{0x8000, "RESERVED|"}}) {
        if ((type & modifier.type) != 0) {
            name.insert(0, modifier.name);
        }
    }
    return name;
}

std::string quoted(std::u16string_view text)
{
    std::string result = "\"";
    for (const char16_t c : text) {
        if (c >= u' ' && c <= u'~' && c != u'"' && c != u'\\') {
            result.push_back(static_cast<char>(c));
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
            result += escape;
        }
    }
    return result + "\"";
}

std::string numberText(double value)
{
    return shortest(value);
}

std::string numberText(float value)
{
    return shortest(value);
}

std::string valueText(const VARIANT& value)
{
    if ((value.vt & VT_BYREF) != 0) {
        return value.byref == nullptr ? "null" : "place";
    }
    if ((value.vt & VT_ARRAY) != 0) {
        return arrayText(value.parray);
    }
    switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return "-";
    case VT_I1:
        return std::to_string(value.cVal);
    case VT_UI1:
        return std::to_string(value.bVal);
    case VT_I2:
    case VT_BOOL:
        return std::to_string(value.iVal);
    case VT_UI2:
        return std::to_string(value.uiVal);
    case VT_I4:
    case VT_INT:
        return std::to_string(value.lVal);
    case VT_ERROR:
        return nameOf(HRESULT{value.scode});
    case VT_UI4:
    case VT_UINT:
        return std::to_string(value.ulVal);
    case VT_I8:
        return std::to_string(value.llVal);
    case VT_UI8:
        return std::to_string(value.ullVal);
    case VT_R4:
        return numberText(value.fltVal);
    case VT_R8:
    case VT_DATE:
        return numberText(value.dblVal);
    case VT_CY:
        return std::to_string(value.cyVal.int64);
    case VT_DECIMAL:
        return decimalText(value.decVal);
    case VT_BSTR:
        return quoted(textOf(value.bstrVal));
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return value.punkVal == nullptr ? "null" : "object";
    default:
        return "?";
    }
}

std::string typedText(const VARIANT& value)
{
    return nameOf(value.vt) + " " + valueText(value);
}

} // namespace differential
