// The coercions between the types of a variant.
#include <charconv>
#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <variant>

#include <oleauto.h>

#include "automation/Variant.h"
#include "automation/runtime/Decimal.h"
#include "automation/runtime/VariantText.h"

namespace {

using zul::Variant;
using namespace zul::runtime;

struct Nothing
{};

// A value before it gets its new type. A Boolean is the integer that it is stored as.
using Value = std::variant<Nothing, Wide, double, Decimal, std::u16string_view>;

struct Conversion
{
    LocaleStyle style;
    USHORT flags;
    VARTYPE from;
};

// Nothing where the type has no such value at all.
std::optional<Value> valueOf(const VARIANT& source) noexcept
{
    switch (source.vt) {
    case VT_EMPTY:
        return Nothing{};
    case VT_I1:
        return Wide{source.cVal};
    case VT_UI1:
        return Wide{source.bVal};
    case VT_I2:
    case VT_BOOL:
        return Wide{source.iVal};
    case VT_UI2:
        return Wide{source.uiVal};
    case VT_I4:
    case VT_INT:
        return Wide{source.lVal};
    case VT_UI4:
    case VT_UINT:
        return Wide{source.ulVal};
    case VT_I8:
        return Wide{source.llVal};
    case VT_UI8:
        return Wide{source.ullVal};
    case VT_R4:
        return double{source.fltVal};
    case VT_R8:
    case VT_DATE:
        return source.dblVal;
    case VT_CY:
        return Decimal::fromCurrency(source.cyVal);
    case VT_DECIMAL:
        return Decimal::fromStorage(source.decVal);
    case VT_BSTR:
        return zul::textOf(source.bstrVal);
    default:
        return std::nullopt;
    }
}

// The text of a number as "-12.5e3", or DISP_E_TYPEMISMATCH.
HRESULT plainOf(std::u16string_view text, const Conversion& conversion, std::string& plain)
{
    std::optional<std::string> number = plainNumber(text, conversion.style);
    if (!number) {
        return DISP_E_TYPEMISMATCH;
    }
    plain = std::move(*number);
    return S_OK;
}

HRESULT doubleFromPlain(const std::string& plain, double& result) noexcept
{
    const std::from_chars_result read = std::from_chars(plain.data(), plain.data() + plain.size(), result);
    if (read.ec == std::errc::result_out_of_range) {
        // Too small is zero; too large is told.
        const std::size_t e = plain.find("e-");
        const bool tiny = e != std::string::npos || plain.find_first_of("123456789") > plain.find('.');
        result = 0;
        return tiny ? S_OK : DISP_E_OVERFLOW;
    }
    return S_OK;
}

HRESULT toReal(const Value& value, const Conversion& conversion, double& result)
{
    if (const auto* integer = std::get_if<Wide>(&value)) {
        result = static_cast<double>(*integer);
    } else if (const auto* real = std::get_if<double>(&value)) {
        result = *real;
    } else if (const auto* decimal = std::get_if<Decimal>(&value)) {
        result = decimal->toDouble();
    } else if (const auto* text = std::get_if<std::u16string_view>(&value)) {
        std::string plain;
        const HRESULT read = plainOf(*text, conversion, plain);
        return FAILED(read) ? read : doubleFromPlain(plain, result);
    } else {
        result = 0;
    }
    return S_OK;
}

HRESULT integerFromReal(double real, Wide& result) noexcept
{
    // Halves go to the even number, whatever rounding the process has set.
    double rounded = std::floor(real);
    const double rest = real - rounded;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(rounded, 2.0) != 0.0)) {
        rounded += 1;
    }
    if (!(rounded >= -1e20 && rounded <= 1e20)) {
        return DISP_E_OVERFLOW;
    }
    result = static_cast<Wide>(rounded);
    return S_OK;
}

HRESULT toInteger(const Value& value, const Conversion& conversion, Wide& result)
{
    if (const auto* integer = std::get_if<Wide>(&value)) {
        result = *integer;
        return S_OK;
    }
    if (const auto* real = std::get_if<double>(&value)) {
        return integerFromReal(*real, result);
    }
    if (const auto* decimal = std::get_if<Decimal>(&value)) {
        result = decimal->toInteger();
        return S_OK;
    }
    if (const auto* text = std::get_if<std::u16string_view>(&value)) {
        // Through a decimal number, which keeps every digit of the largest integer.
        std::string plain;
        const HRESULT read = plainOf(*text, conversion, plain);
        if (FAILED(read)) {
            return read;
        }
        const std::optional<Decimal> decimal = Decimal::fromPlain(plain);
        if (!decimal) {
            return DISP_E_OVERFLOW;
        }
        result = decimal->toInteger();
        return S_OK;
    }
    result = 0;
    return S_OK;
}

HRESULT toDecimal(const Value& value, const Conversion& conversion, Decimal& result)
{
    std::optional<Decimal> decimal;
    if (const auto* integer = std::get_if<Wide>(&value)) {
        decimal = Decimal::fromInteger(*integer);
    } else if (const auto* real = std::get_if<double>(&value)) {
        decimal = Decimal::fromDouble(*real);
    } else if (const auto* given = std::get_if<Decimal>(&value)) {
        decimal = *given;
    } else if (const auto* text = std::get_if<std::u16string_view>(&value)) {
        std::string plain;
        const HRESULT read = plainOf(*text, conversion, plain);
        if (FAILED(read)) {
            return read;
        }
        decimal = Decimal::fromPlain(plain);
    } else {
        decimal = Decimal{};
    }
    if (!decimal) {
        return DISP_E_OVERFLOW;
    }
    result = *decimal;
    return S_OK;
}

// Stores an integer as type T, which must be able to hold it. A true Boolean becomes all ones in every type.
template <typename T>
HRESULT storeInteger(const Value& value, const Conversion& conversion, T& place)
{
    Wide integer = 0;
    const HRESULT read = toInteger(value, conversion, integer);
    if (FAILED(read)) {
        return read;
    }
    if (conversion.from != VT_BOOL &&
        (integer < Wide{std::numeric_limits<T>::min()} || integer > Wide{std::numeric_limits<T>::max()})) {
        return DISP_E_OVERFLOW;
    }
    place = static_cast<T>(integer);
    return S_OK;
}

HRESULT storeTruth(const Value& value, const Conversion& conversion, VARIANT_BOOL& place)
{
    bool truth = false;
    if (const auto* text = std::get_if<std::u16string_view>(&value)) {
        const std::optional<bool> word = parseTruth(*text, conversion.style);
        if (word) {
            truth = *word;
        } else {
            double number = 0;
            const HRESULT read = toReal(value, conversion, number);
            if (FAILED(read)) {
                return read;
            }
            truth = number != 0.0;
        }
    } else if (const auto* integer = std::get_if<Wide>(&value)) {
        truth = *integer != 0;
    } else if (const auto* real = std::get_if<double>(&value)) {
        truth = *real != 0.0;
    } else if (const auto* decimal = std::get_if<Decimal>(&value)) {
        truth = decimal->mantissa != 0;
    }
    place = truth ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT storeDate(const Value& value, const Conversion& conversion, DATE& place)
{
    if (const auto* text = std::get_if<std::u16string_view>(&value)) {
        const std::optional<DATE> date = parseDate(*text, conversion.style);
        if (!date) {
            return DISP_E_TYPEMISMATCH;
        }
        place = *date;
        return S_OK;
    }
    const HRESULT read = toReal(value, conversion, place);
    if (FAILED(read)) {
        return read;
    }
    return isDateInRange(place) ? S_OK : DISP_E_OVERFLOW;
}

std::u16string realText(double value, int digits, const LocaleStyle& style)
{
    char text[64];
    const std::to_chars_result end = std::to_chars(text, text + sizeof text, value == 0.0 ? 0.0 : value,
                                                   std::chars_format::general, digits);
    return localNumber({text, static_cast<std::size_t>(end.ptr - text)}, style);
}

std::u16string wordFor(bool truth, const Conversion& conversion)
{
    if ((conversion.flags & VARIANT_LOCALBOOL) != 0 && conversion.style.italian) {
        return truth ? u"Vero" : u"Falso";
    }
    return truth ? u"True" : u"False";
}

std::u16string textFor(const Value& value, const Conversion& conversion)
{
    if (conversion.from == VT_BOOL && (conversion.flags & (VARIANT_ALPHABOOL | VARIANT_LOCALBOOL)) != 0) {
        return wordFor(std::get<Wide>(value) != 0, conversion);
    }
    if (conversion.from == VT_DATE) {
        return formatDate(std::get<double>(value), conversion.style);
    }
    if (const auto* integer = std::get_if<Wide>(&value)) {
        return zul::utf16FromUtf8(Decimal::fromInteger(*integer).toPlain());
    }
    if (const auto* real = std::get_if<double>(&value)) {
        // As many digits as the type is good for.
        return realText(*real, conversion.from == VT_R4 ? 7 : 15, conversion.style);
    }
    if (const auto* decimal = std::get_if<Decimal>(&value)) {
        return localNumber(decimal->toPlain(), conversion.style);
    }
    return {};
}

HRESULT storeText(const Value& value, const Conversion& conversion, BSTR& place)
{
    if (conversion.from == VT_DATE && !isDateInRange(std::get<double>(value))) {
        return DISP_E_TYPEMISMATCH;
    }
    place = zul::Bstr(textFor(value, conversion)).detach();
    return S_OK;
}

HRESULT store(const Value& value, const Conversion& conversion, VARTYPE vt, VARIANT& result)
{
    switch (vt) {
    case VT_I1:
        return storeInteger(value, conversion, result.cVal);
    case VT_UI1:
        return storeInteger(value, conversion, result.bVal);
    case VT_I2:
        return storeInteger(value, conversion, result.iVal);
    case VT_UI2:
        return storeInteger(value, conversion, result.uiVal);
    case VT_I4:
    case VT_INT:
        return storeInteger(value, conversion, result.lVal);
    case VT_UI4:
    case VT_UINT:
        return storeInteger(value, conversion, result.ulVal);
    case VT_I8:
        return storeInteger(value, conversion, result.llVal);
    case VT_UI8:
        return storeInteger(value, conversion, result.ullVal);
    case VT_BOOL:
        return storeTruth(value, conversion, result.boolVal);
    case VT_R4: {
        double real = 0;
        const HRESULT read = toReal(value, conversion, real);
        if (SUCCEEDED(read) && std::fabs(real) > double{std::numeric_limits<float>::max()}) {
            return DISP_E_OVERFLOW;
        }
        result.fltVal = static_cast<float>(real);
        return read;
    }
    case VT_R8:
        return toReal(value, conversion, result.dblVal);
    case VT_DATE:
        return storeDate(value, conversion, result.date);
    case VT_BSTR:
        return storeText(value, conversion, result.bstrVal);
    case VT_CY:
    case VT_DECIMAL: {
        Decimal decimal;
        const HRESULT read = toDecimal(value, conversion, decimal);
        if (FAILED(read)) {
            return read;
        }
        if (vt == VT_DECIMAL) {
            result.decVal = decimal.toStorage();
            return S_OK;
        }
        const std::optional<CY> currency = decimal.toCurrency();
        if (!currency) {
            return DISP_E_OVERFLOW;
        }
        result.cyVal = *currency;
        return S_OK;
    }
    default:
        return DISP_E_TYPEMISMATCH;
    }
}

bool isObject(VARTYPE vt) noexcept
{
    return vt == VT_DISPATCH || vt == VT_UNKNOWN;
}

HRESULT changeObject(IUnknown* object, VARTYPE vt, Variant& result) noexcept
{
    void* other = nullptr;
    if (object != nullptr) {
        const IID& iid = vt == VT_DISPATCH ? zul::iidOf<IDispatch>() : zul::iidOf<IUnknown>();
        if (FAILED(object->QueryInterface(iid, &other))) {
            return DISP_E_TYPEMISMATCH;
        }
    }
    result.punkVal = static_cast<IUnknown*>(other);
    result.vt = vt;
    return S_OK;
}

// What an object stands for where a plain value is wanted.
HRESULT defaultValue(IDispatch* object, LCID lcid, Variant& value) noexcept
{
    if (object == nullptr) {
        return DISP_E_TYPEMISMATCH;
    }
    DISPPARAMS none{};
    const HRESULT read = object->Invoke(DISPID_VALUE, GUID_NULL, lcid, DISPATCH_PROPERTYGET, &none,
                                        value.put(), nullptr, nullptr);
    return SUCCEEDED(read) && value.vt != VT_DISPATCH ? S_OK : DISP_E_TYPEMISMATCH;
}

bool isValueType(VARTYPE vt) noexcept
{
    return vt <= VT_DECIMAL ? vt != VT_VARIANT : vt >= VT_I1 && vt <= VT_UINT;
}

HRESULT change(Variant& source, LCID lcid, USHORT flags, VARTYPE vt, Variant& result)
{
    if (source.vt == vt) {
        result.swap(source);
        return S_OK;
    }
    if ((vt & VT_ARRAY) != 0 || (source.vt & VT_ARRAY) != 0) {
        return DISP_E_TYPEMISMATCH;
    }
    if (isObject(source.vt)) {
        if (isObject(vt)) {
            return changeObject(source.punkVal, vt, result);
        }
        Variant value;
        if (source.vt != VT_DISPATCH || (flags & VARIANT_NOVALUEPROP) != 0 ||
            FAILED(defaultValue(source.pdispVal, lcid, value))) {
            return DISP_E_TYPEMISMATCH;
        }
        return change(value, lcid, flags, vt, result);
    }
    const std::optional<Value> value = valueOf(source);
    if (!value) {
        return DISP_E_TYPEMISMATCH; // Null and error codes are nothing else
    }
    const Conversion conversion{localeStyle(lcid), flags, source.vt};
    const HRESULT stored = store(*value, conversion, vt, result);
    if (SUCCEEDED(stored)) {
        result.vt = vt; // last: a decimal number lies over it
    }
    return stored;
}

} // namespace

HRESULT VariantChangeType(VARIANTARG* destination, const VARIANTARG* source, USHORT flags, VARTYPE vt)
{
    return VariantChangeTypeEx(destination, source, LOCALE_USER_DEFAULT, flags, vt);
}

HRESULT VariantChangeTypeEx(VARIANTARG* destination, const VARIANTARG* source, LCID lcid, USHORT flags,
                            VARTYPE vt)
{
    if (destination == nullptr || source == nullptr) {
        return E_INVALIDARG;
    }
    if ((vt & VT_BYREF) != 0) {
        return DISP_E_TYPEMISMATCH;
    }
    if (!isValueType(static_cast<VARTYPE>(vt & VT_TYPEMASK))) {
        return DISP_E_BADVARTYPE;
    }
    try {
        Variant plain;
        HRESULT result = VariantCopyInd(&plain, source);
        Variant changed;
        if (SUCCEEDED(result)) {
            result = change(plain, lcid, flags, vt, changed);
        }
        if (SUCCEEDED(result)) {
            result = VariantClear(destination);
        }
        if (SUCCEEDED(result)) {
            changed.detachTo(destination);
        }
        return result;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}
