// Making, clearing and copying variants.
#include <cstring>

#include <oleauto.h>

namespace {

bool isKnown(VARTYPE vt) noexcept
{
    const auto type = static_cast<VARTYPE>(vt & VT_TYPEMASK);
    const auto modifiers = static_cast<VARTYPE>(vt & ~VT_TYPEMASK);
    if ((modifiers & ~(VT_ARRAY | VT_BYREF)) != 0) {
        return false;
    }
    if (type == VT_EMPTY || type == VT_NULL) {
        return modifiers == 0;
    }
    if (type == VT_VARIANT) {
        return modifiers != 0; // a variant in a variant is an array of them or behind a reference
    }
    return type <= VT_DECIMAL || (type >= VT_I1 && type <= VT_UINT);
}

HRESULT copyContents(VARIANT& copy, const VARIANT& source) noexcept
{
    copy = source;
    if ((source.vt & VT_BYREF) != 0) {
        return S_OK; // the reference is copied, not what it leads to
    }
    if ((source.vt & VT_ARRAY) != 0) {
        copy.parray = nullptr;
        return source.parray == nullptr ? S_OK : SafeArrayCopy(source.parray, &copy.parray);
    }
    switch (source.vt) {
    case VT_BSTR:
        if (source.bstrVal != nullptr) {
            copy.bstrVal = SysAllocStringByteLen(reinterpret_cast<const char*>(source.bstrVal),
                                                 SysStringByteLen(source.bstrVal));
            return copy.bstrVal != nullptr ? S_OK : E_OUTOFMEMORY;
        }
        return S_OK;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        if (source.punkVal != nullptr) {
            source.punkVal->AddRef();
        }
        return S_OK;
    default:
        return S_OK;
    }
}

// The value behind a reference, as a variant that owns nothing.
HRESULT lookBehind(const VARIANT& reference, VARIANT& value) noexcept
{
    value = VARIANT{};
    if (reference.byref == nullptr) {
        return E_INVALIDARG;
    }
    if ((reference.vt & VT_ARRAY) != 0) {
        value.vt = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
        value.parray = *reference.pparray;
        return S_OK;
    }
    const auto type = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
    switch (type) {
    case VT_VARIANT:
        value = *reference.pvarVal;
        return S_OK;
    case VT_DECIMAL:
        value.decVal = *reference.pdecVal;
        break;
    case VT_I1:
    case VT_UI1:
        value.bVal = *reference.pbVal;
        break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        value.iVal = *reference.piVal;
        break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_ERROR:
        value.lVal = *reference.plVal;
        break;
    case VT_R4:
        value.fltVal = *reference.pfltVal;
        break;
    case VT_R8:
    case VT_DATE:
        value.dblVal = *reference.pdblVal;
        break;
    case VT_I8:
    case VT_UI8:
        value.llVal = *reference.pllVal;
        break;
    case VT_CY:
        value.cyVal = *reference.pcyVal;
        break;
    case VT_BSTR:
        value.bstrVal = *reference.pbstrVal;
        break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        value.punkVal = *reference.ppunkVal;
        break;
    default:
        return DISP_E_BADVARTYPE;
    }
    value.vt = type;
    return S_OK;
}

HRESULT replace(VARIANT* destination, const VARIANT& source) noexcept
{
    VARIANT copy{};
    const HRESULT copied = copyContents(copy, source);
    if (FAILED(copied)) {
        return copied;
    }
    const HRESULT cleared = VariantClear(destination);
    if (FAILED(cleared)) {
        VariantClear(&copy);
        return cleared;
    }
    *destination = copy;
    return S_OK;
}

} // namespace

void VariantInit(VARIANTARG* variant)
{
    if (variant != nullptr) {
        *variant = VARIANT{};
    }
}

HRESULT VariantClear(VARIANTARG* variant)
{
    if (variant == nullptr) {
        return E_INVALIDARG;
    }
    if (!isKnown(variant->vt)) {
        return DISP_E_BADVARTYPE;
    }
    // Emptied first: what is released may run code that looks at the variant.
    const VARIANT old = *variant;
    *variant = VARIANT{};
    if ((old.vt & VT_BYREF) != 0) {
        return S_OK;
    }
    if ((old.vt & VT_ARRAY) != 0) {
        const HRESULT destroyed = old.parray == nullptr ? S_OK : SafeArrayDestroy(old.parray);
        if (FAILED(destroyed)) {
            *variant = old;
        }
        return destroyed;
    }
    if (old.vt == VT_BSTR) {
        SysFreeString(old.bstrVal);
    } else if ((old.vt == VT_DISPATCH || old.vt == VT_UNKNOWN) && old.punkVal != nullptr) {
        old.punkVal->Release();
    }
    return S_OK;
}

HRESULT VariantCopy(VARIANTARG* destination, const VARIANTARG* source)
{
    if (destination == nullptr || source == nullptr) {
        return E_INVALIDARG;
    }
    if (!isKnown(source->vt)) {
        return DISP_E_BADVARTYPE;
    }
    return destination == source ? S_OK : replace(destination, *source);
}

HRESULT VariantCopyInd(VARIANT* destination, const VARIANTARG* source)
{
    if (destination == nullptr || source == nullptr) {
        return E_INVALIDARG;
    }
    if (!isKnown(source->vt)) {
        return DISP_E_BADVARTYPE;
    }
    if ((source->vt & VT_BYREF) == 0) {
        return VariantCopy(destination, source);
    }
    VARIANT value{};
    HRESULT result = lookBehind(*source, value);
    if (SUCCEEDED(result) && (value.vt & VT_BYREF) != 0) {
        // A variant behind a reference may itself refer to a plain value, and no further.
        const VARIANT inner = value;
        result = inner.vt == (VT_VARIANT | VT_BYREF) ? E_INVALIDARG : lookBehind(inner, value);
    }
    if (FAILED(result)) {
        return result;
    }
    return isKnown(value.vt) ? replace(destination, value) : DISP_E_BADVARTYPE;
}
