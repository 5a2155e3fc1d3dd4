// The coercions between the types of a variant.
#include <charconv>
#include <cmath>
#include <cstring>
#include <exception>
#include <limits>
#include <optional>
#include <type_traits>
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
using Value = std::variant<Nothing, Wide, double, Decimal, NumberText>;

struct Conversion
{
    LocaleStyle style;
    USHORT flags;
    VARTYPE from;
};

// How many bytes an integer type has; 0 for every other type.
std::size_t integerSize(VARTYPE vt) noexcept
{
    switch (vt) {
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
        return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
        return 4;
    case VT_I8:
    case VT_UI8:
        return 8;
    default:
        return 0;
    }
}

// As many digits as a real type is good for.
int digitsOf(VARTYPE vt) noexcept
{
    return vt == VT_R4 ? 7 : 15;
}

// The value of every type but those that texts are read for; DISP_E_TYPEMISMATCH where there is none.
HRESULT valueOf(const VARIANT& source, Value& value)
{
    switch (source.vt) {
    case VT_EMPTY:
        value = Nothing{};
        break;
    case VT_I1:
        value = Wide{source.cVal};
        break;
    case VT_UI1:
        value = Wide{source.bVal};
        break;
    case VT_I2:
    case VT_BOOL:
        value = Wide{source.iVal};
        break;
    case VT_UI2:
        value = Wide{source.uiVal};
        break;
    case VT_I4:
    case VT_INT:
        value = Wide{source.lVal};
        break;
    case VT_UI4:
    case VT_UINT:
        value = Wide{source.ulVal};
        break;
    case VT_I8:
        value = Wide{source.llVal};
        break;
    case VT_UI8:
        value = Wide{source.ullVal};
        break;
    case VT_R4:
        value = double{source.fltVal};
        break;
    case VT_R8:
    case VT_DATE:
        value = source.dblVal;
        break;
    case VT_CY:
        value = Decimal::fromCurrency(source.cyVal);
        break;
    case VT_DECIMAL:
        if (!Decimal::isWellFormed(source.decVal)) {
            return E_INVALIDARG;
        }
        value = Decimal::fromStorage(source.decVal);
        break;
    default:
        return DISP_E_TYPEMISMATCH;
    }
    return S_OK;
}

HRESULT doubleFromPlain(const std::string& plain, double& result) noexcept
{
    const std::from_chars_result read = std::from_chars(plain.data(), plain.data() + plain.size(), result);
    if (read.ec == std::errc::result_out_of_range) {
        // Too small is zero; too large is told. The library does not say which, but the digits do.
        const std::optional<Decimal> decimal = Decimal::fromPlain(plain);
        result = 0;
        return decimal && decimal->mantissa == 0 ? S_OK : DISP_E_OVERFLOW;
    }
    return S_OK;
}

// The bits of a number to another base, as a signed number of 32 bits.
HRESULT longFromBits(std::uint64_t bits, double& result) noexcept
{
    if (bits > std::numeric_limits<std::uint32_t>::max()) {
        return DISP_E_OVERFLOW;
    }
    result = static_cast<std::int32_t>(bits);
    return S_OK;
}

HRESULT toReal(const Value& value, double& result)
{
    if (const auto* integer = std::get_if<Wide>(&value)) {
        result = static_cast<double>(*integer);
    } else if (const auto* real = std::get_if<double>(&value)) {
        result = *real;
    } else if (const auto* decimal = std::get_if<Decimal>(&value)) {
        result = decimal->toDouble();
    } else if (const auto* text = std::get_if<NumberText>(&value)) {
        return text->bits ? longFromBits(*text->bits, result) : doubleFromPlain(text->plain, result);
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

HRESULT toInteger(const Value& value, Wide& result)
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
    if (const auto* text = std::get_if<NumberText>(&value)) {
        // Through a decimal number, which keeps every digit of the largest integer.
        const std::optional<Decimal> decimal = Decimal::fromPlain(text->plain);
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
        // The one place where a true Boolean counts as one.
        decimal = Decimal::fromInteger(conversion.from == VT_BOOL ? Wide{*integer != 0} : *integer);
    } else if (const auto* real = std::get_if<double>(&value)) {
        decimal = Decimal::fromDouble(*real, digitsOf(conversion.from));
    } else if (const auto* given = std::get_if<Decimal>(&value)) {
        decimal = *given;
    } else if (const auto* text = std::get_if<NumberText>(&value)) {
        decimal = text->bits ? Decimal::fromInteger(Wide{*text->bits}) : Decimal::fromPlain(text->plain);
        if (decimal) {
            decimal->dropZeros();
        }
    } else {
        decimal = Decimal{};
    }
    if (!decimal) {
        return DISP_E_OVERFLOW;
    }
    result = *decimal;
    return S_OK;
}

HRESULT storeCurrency(const Value& value, CY& place)
{
    std::optional<CY> currency;
    const auto* text = std::get_if<NumberText>(&value);
    if (const auto* real = std::get_if<double>(&value)) {
        currency = Decimal::currencyFromDouble(*real);
    } else if (text != nullptr && text->bits) {
        double number = 0;
        const HRESULT read = longFromBits(*text->bits, number);
        if (FAILED(read)) {
            return read;
        }
        currency = Decimal::currencyFromDouble(number);
    } else {
        std::optional<Decimal> decimal;
        if (text != nullptr) {
            decimal = Decimal::fromPlain(text->plain);
        } else if (const auto* integer = std::get_if<Wide>(&value)) {
            decimal = Decimal::fromInteger(*integer);
        } else if (const auto* given = std::get_if<Decimal>(&value)) {
            decimal = *given;
        } else {
            decimal = Decimal{};
        }
        currency = decimal ? decimal->toCurrency() : std::nullopt;
    }
    if (!currency) {
        return DISP_E_OVERFLOW;
    }
    place = *currency;
    return S_OK;
}

// Stores an integer as type T, which must be able to hold it.
template <typename T>
HRESULT storeInteger(const Value& value, const Conversion& conversion, T& place)
{
    const auto* text = std::get_if<NumberText>(&value);
    if (text != nullptr && text->bits) {
        // "&HFFFF" is -1 where 16 bits are wanted and 65535 where there is room for more.
        place = static_cast<T>(*text->bits);
        return *text->bits > std::numeric_limits<std::make_unsigned_t<T>>::max() ? DISP_E_OVERFLOW : S_OK;
    }
    Wide integer = 0;
    const HRESULT read = toInteger(value, integer);
    if (FAILED(read)) {
        return read;
    }
    if constexpr (std::is_same_v<T, LONGLONG>) {
        // Meant: the system rounds a negative currency down here, and to the nearest in every other integer.
        const auto* decimal = std::get_if<Decimal>(&value);
        if (conversion.from == VT_CY && decimal->negative) {
            integer = -static_cast<Wide>((decimal->mantissa + 9999) / 10000);
        }
    }
    // Among integers of one size the bits stay as they are, whatever they mean then; a true Boolean becomes all ones
    // in every type.
    const bool bitsStay = conversion.from == VT_BOOL || integerSize(conversion.from) == sizeof(T);
    if (!bitsStay &&
        (integer < Wide{std::numeric_limits<T>::min()} || integer > Wide{std::numeric_limits<T>::max()})) {
        return DISP_E_OVERFLOW;
    }
    place = static_cast<T>(integer);
    return S_OK;
}

HRESULT storeTruth(const Value& value, VARIANT_BOOL& place)
{
    bool truth = false;
    if (const auto* integer = std::get_if<Wide>(&value)) {
        truth = *integer != 0;
    } else if (const auto* decimal = std::get_if<Decimal>(&value)) {
        truth = decimal->mantissa != 0;
    } else {
        double real = 0;
        const HRESULT read = toReal(value, real);
        if (FAILED(read)) {
            return read;
        }
        truth = real != 0.0;
    }
    place = truth ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
}

HRESULT storeSingle(const Value& value, FLOAT& place)
{
    double real = 0;
    const HRESULT read = toReal(value, real);
    if (FAILED(read)) {
        return read;
    }
    // A text that is no zero must not become one.
    const bool lost = std::holds_alternative<NumberText>(value) && real != 0.0 &&
                      std::fabs(real) < double{std::numeric_limits<float>::denorm_min()};
    if (lost || std::fabs(real) > double{std::numeric_limits<float>::max()}) {
        return DISP_E_OVERFLOW;
    }
    place = static_cast<float>(real);
    return S_OK;
}

HRESULT storeDate(const Value& value, DATE& place)
{
    const HRESULT read = toReal(value, place);
    if (FAILED(read)) {
        return read;
    }
    return isDateInRange(place) ? S_OK : DISP_E_OVERFLOW;
}

std::u16string_view wordFor(bool truth, const Conversion& conversion) noexcept
{
    const LocaleWords& words =
        (conversion.flags & VARIANT_LOCALBOOL) != 0 ? *conversion.style.words : englishWords();
    return truth ? words.yes : words.no;
}

std::u16string textFor(const Value& value, const Conversion& conversion)
{
    if (conversion.from == VT_BOOL && (conversion.flags & (VARIANT_ALPHABOOL | VARIANT_LOCALBOOL)) != 0) {
        return std::u16string(wordFor(std::get<Wide>(value) != 0, conversion));
    }
    if (conversion.from == VT_DATE) {
        return formatDate(std::get<double>(value), conversion.style);
    }
    if (const auto* integer = std::get_if<Wide>(&value)) {
        return zul::utf16FromUtf8(Decimal::fromInteger(*integer).toPlain());
    }
    if (const auto* real = std::get_if<double>(&value)) {
        return localNumber(plainReal(*real, digitsOf(conversion.from)), conversion.style);
    }
    if (const auto* decimal = std::get_if<Decimal>(&value)) {
        return localNumber(decimal->toPlain(), conversion.style);
    }
    return {};
}

HRESULT storeText(const Value& value, const Conversion& conversion, BSTR& place)
{
    if (conversion.from == VT_DATE && !isDateInRange(std::get<double>(value))) {
        return E_INVALIDARG;
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
        return storeTruth(value, result.boolVal);
    case VT_R4:
        return storeSingle(value, result.fltVal);
    case VT_R8:
        return toReal(value, result.dblVal);
    case VT_DATE:
        return storeDate(value, result.date);
    case VT_BSTR:
        return storeText(value, conversion, result.bstrVal);
    case VT_CY:
        return storeCurrency(value, result.cyVal);
    case VT_DECIMAL: {
        Decimal decimal;
        const HRESULT read = toDecimal(value, conversion, decimal);
        if (SUCCEEDED(read)) {
            result.decVal = decimal.toStorage();
        }
        return read;
    }
    default:
        return DISP_E_TYPEMISMATCH;
    }
}

// A text as a number, a date or a truth value.
HRESULT storeFromText(std::u16string_view text, const Conversion& conversion, VARTYPE vt, VARIANT& result)
{
    if (vt == VT_DATE) {
        const std::optional<DATE> date = readDate(text, conversion.style);
        result.date = date.value_or(0.0);
        return date ? S_OK : DISP_E_TYPEMISMATCH;
    }
    if (vt == VT_BOOL) {
        const bool localized = (conversion.flags & VARIANT_LOCALBOOL) != 0;
        if (const std::optional<bool> word = readTruth(text, conversion.style, localized)) {
            result.boolVal = *word ? VARIANT_TRUE : VARIANT_FALSE;
            return S_OK;
        }
    }
    std::optional<NumberText> number = readNumber(text, conversion.style);
    return number ? store(Value{std::move(*number)}, conversion, vt, result) : DISP_E_TYPEMISMATCH;
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
        return DISP_E_BADVARTYPE;
    }
    DISPPARAMS none{};
    const HRESULT read = object->Invoke(DISPID_VALUE, GUID_NULL, lcid, DISPATCH_PROPERTYGET, &none,
                                        value.put(), nullptr, nullptr);
    return SUCCEEDED(read) && value.vt != VT_DISPATCH ? S_OK : DISP_E_TYPEMISMATCH;
}

// A text and the array of the bytes it stands on are the same to automation.
HRESULT bytesFromText(BSTR text, Variant& result) noexcept
{
    const UINT count = SysStringByteLen(text);
    SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, count);
    void* data = nullptr;
    if (array == nullptr || FAILED(SafeArrayAccessData(array, &data))) {
        return E_OUTOFMEMORY;
    }
    if (count != 0) {
        std::memcpy(data, text, count);
    }
    SafeArrayUnaccessData(array);
    result.parray = array;
    result.vt = VT_ARRAY | VT_UI1;
    return S_OK;
}

HRESULT textFromBytes(SAFEARRAY* array, Variant& result) noexcept
{
    if (SafeArrayGetDim(array) != 1) {
        return E_INVALIDARG;
    }
    void* data = nullptr;
    if (FAILED(SafeArrayAccessData(array, &data))) {
        return E_INVALIDARG;
    }
    // Counted, not from the bounds: the upper one may lie beyond what a bound can say. An odd byte at the end is no
    // character.
    const auto count = static_cast<UINT>(array->rgsabound[0].cElements / sizeof(OLECHAR));
    result.bstrVal = SysAllocStringLen(nullptr, count);
    if (result.bstrVal != nullptr) {
        std::memcpy(result.bstrVal, data, count * sizeof(OLECHAR));
        result.vt = VT_BSTR;
    }
    SafeArrayUnaccessData(array);
    return result.bstrVal != nullptr ? S_OK : E_OUTOFMEMORY;
}

// A type that a variant can have or be asked to become, though perhaps nothing can become it.
bool isVariantType(VARTYPE vt) noexcept
{
    const auto type = static_cast<VARTYPE>(vt & VT_TYPEMASK);
    const auto modifiers = static_cast<VARTYPE>(vt & ~VT_TYPEMASK);
    if ((modifiers & ~(VT_ARRAY | VT_BYREF)) != 0) {
        return false;
    }
    if (type == VT_EMPTY || type == VT_NULL) {
        return modifiers == 0;
    }
    return type <= VT_DECIMAL || (type >= VT_I1 && type <= VT_UINT) || type == VT_RECORD;
}

HRESULT changeText(Variant& source, const Conversion& conversion, VARTYPE vt, Variant& result)
{
    if (vt == (VT_ARRAY | VT_UI1)) {
        return bytesFromText(source.bstrVal, result);
    }
    const HRESULT stored = storeFromText(source.text(), conversion, vt, result);
    if (SUCCEEDED(stored)) {
        result.vt = vt; // last: a decimal number lies over it
    }
    return stored;
}

HRESULT change(Variant& source, LCID lcid, USHORT flags, VARTYPE vt, Variant& result)
{
    if (source.vt == vt) {
        result.swap(source);
        return S_OK;
    }
    if ((source.vt & VT_ARRAY) != 0) {
        return source.vt == (VT_ARRAY | VT_UI1) && vt == VT_BSTR ? textFromBytes(source.parray, result)
                                                                 : DISP_E_TYPEMISMATCH;
    }
    if (source.vt == VT_NULL || source.vt == VT_ERROR || (vt & VT_BYREF) != 0) {
        return DISP_E_TYPEMISMATCH; // Null and error codes are nothing else
    }
    if (vt == VT_EMPTY || vt == VT_NULL) {
        result.vt = vt; // everything can be forgotten
        return S_OK;
    }
    const Conversion conversion{localeStyle(lcid), flags, source.vt};
    if (source.vt == VT_BSTR) {
        return isObject(vt) || vt == VT_ERROR ? DISP_E_TYPEMISMATCH
                                              : changeText(source, conversion, vt, result);
    }
    if ((vt & VT_ARRAY) != 0 || vt == VT_VARIANT || vt == VT_RECORD || vt == VT_ERROR) {
        return DISP_E_TYPEMISMATCH;
    }
    if (isObject(source.vt)) {
        if (isObject(vt)) {
            return changeObject(source.punkVal, vt, result);
        }
        Variant value;
        if (source.vt != VT_DISPATCH || (flags & VARIANT_NOVALUEPROP) != 0) {
            return DISP_E_TYPEMISMATCH;
        }
        const HRESULT read = defaultValue(source.pdispVal, lcid, value);
        return FAILED(read) ? read : change(value, lcid, flags, vt, result);
    }
    if (isObject(vt)) {
        return DISP_E_TYPEMISMATCH;
    }
    Value value;
    HRESULT outcome = valueOf(source, value);
    if (SUCCEEDED(outcome)) {
        outcome = store(value, conversion, vt, result);
    }
    if (SUCCEEDED(outcome)) {
        result.vt = vt; // last: a decimal number lies over it
    }
    return outcome;
}

// A reference that leads nowhere has no type at all.
bool leadsNowhere(const VARIANT& source) noexcept
{
    return (source.vt & VT_BYREF) != 0 && source.byref == nullptr;
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
    if (!isVariantType(vt)) {
        return DISP_E_BADVARTYPE;
    }
    if (leadsNowhere(*source)) {
        return isVariantType(source->vt) ? DISP_E_TYPEMISMATCH : DISP_E_BADVARTYPE;
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
    } catch (const std::exception&) { // no memory is all that can be wrong here
        return E_OUTOFMEMORY;
    }
}
