// A VARIANT that is owned. It is a VARIANT, so it can be passed wherever one is wanted, also as an array.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "automation/Bstr.h"
#include "automation/ComPtr.h"

namespace zul {

// VariantCopy and VariantCopyInd: a system's header may forget that the source is only read.
inline HRESULT copyVariant(VARIANT& to, const VARIANT& from) noexcept
{
    return VariantCopy(&to, const_cast<VARIANT*>(&from));
}
inline HRESULT copyWithoutReference(VARIANT& to, const VARIANT& from) noexcept
{
    return VariantCopyInd(&to, const_cast<VARIANT*>(&from));
}

class Variant : public VARIANT
{
public:
    Variant() noexcept { VariantInit(this); }
    // A deep copy. Throws std::bad_alloc.
    explicit Variant(const VARIANT& other)
        : Variant()
    {
        copyFrom(other);
    }
    Variant(const Variant& other)
        : Variant(static_cast<const VARIANT&>(other))
    {}
    Variant(Variant&& other) noexcept
        : Variant()
    {
        swap(other);
    }
    Variant& operator=(Variant other) noexcept
    {
        swap(other);
        return *this;
    }
    ~Variant() { clear(); }

    static Variant null() noexcept { return typed(VT_NULL); }
    // An argument left out.
    static Variant missing() noexcept
    {
        Variant v = typed(VT_ERROR);
        v.scode = DISP_E_PARAMNOTFOUND;
        return v;
    }
    static Variant fromLong(LONG value) noexcept
    {
        Variant v = typed(VT_I4);
        v.lVal = value;
        return v;
    }
    static Variant fromInt64(std::int64_t value) noexcept
    {
        Variant v = typed(VT_I8);
        v.llVal = value;
        return v;
    }
    static Variant fromDouble(double value) noexcept
    {
        Variant v = typed(VT_R8);
        v.dblVal = value;
        return v;
    }
    // Days since 1899-12-30, the time of day as the fraction.
    static Variant fromDate(DATE value) noexcept
    {
        Variant v = typed(VT_DATE);
        v.date = value;
        return v;
    }
    static Variant fromBool(bool value) noexcept
    {
        Variant v = typed(VT_BOOL);
        v.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
        return v;
    }
    static Variant fromText(std::u16string_view text)
    {
        Bstr copy(text);
        Variant v = typed(VT_BSTR);
        v.bstrVal = copy.detach();
        return v;
    }
    static Variant fromUtf8(std::string_view text) { return fromText(utf16FromUtf8(text)); }
    // Takes a reference of its own.
    static Variant fromDispatch(IDispatch* object) noexcept
    {
        Variant v = typed(VT_DISPATCH);
        v.pdispVal = ComPtr<IDispatch>(object).detach();
        return v;
    }
    static Variant fromUnknown(IUnknown* object) noexcept
    {
        Variant v = typed(VT_UNKNOWN);
        v.punkVal = ComPtr<IUnknown>(object).detach();
        return v;
    }

    // References to the caller's storage, which must live as long as the variant is used.
    static Variant ref(LONG* place) noexcept { return reference(VT_I4, place); }
    static Variant ref(VARIANT_BOOL* place) noexcept { return reference(VT_BOOL, place); }
    static Variant ref(double* place) noexcept { return reference(VT_R8, place); }
    static Variant ref(BSTR* place) noexcept { return reference(VT_BSTR, place); }
    static Variant ref(IDispatch** place) noexcept { return reference(VT_DISPATCH, place); }
    static Variant ref(IUnknown** place) noexcept { return reference(VT_UNKNOWN, place); }
    static Variant ref(VARIANT* place) noexcept { return reference(VT_VARIANT, place); }

    bool isEmpty() const noexcept { return vt == VT_EMPTY; }
    bool isNull() const noexcept { return vt == VT_NULL; }
    bool isMissing() const noexcept { return vt == VT_ERROR && scode == DISP_E_PARAMNOTFOUND; }
    // The characters of a VT_BSTR; empty for every other type.
    std::u16string_view text() const noexcept
    {
        return vt == VT_BSTR ? textOf(bstrVal) : std::u16string_view();
    }

    // Changes the type in place; the value is unchanged after a failure. See VariantChangeType.
    HRESULT changeType(VARTYPE type, LCID lcid = LOCALE_USER_DEFAULT) noexcept
    {
        return VariantChangeTypeEx(this, this, lcid, VARIANT_ALPHABOOL, type);
    }

    void clear() noexcept { VariantClear(this); }
    // For an out-parameter: clears what is held and gives the place for the new value.
    VARIANT* put() noexcept
    {
        clear();
        return this;
    }
    // Moves the value to an out-parameter, whose old contents are not looked at.
    void detachTo(VARIANT* out) noexcept
    {
        *out = *this;
        VariantInit(this);
    }
    void swap(Variant& other) noexcept
    {
        std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
    }

private:
    void copyFrom(const VARIANT& other)
    {
        if (copyVariant(*this, other) == E_OUTOFMEMORY) {
            throw std::bad_alloc();
        }
    }
    static Variant typed(VARENUM type) noexcept
    {
        Variant v;
        v.vt = static_cast<VARTYPE>(type);
        return v;
    }
    static Variant reference(VARENUM type, void* place) noexcept
    {
        Variant v = typed(type);
        v.vt = static_cast<VARTYPE>(type | VT_BYREF);
        v.byref = place;
        return v;
    }
};

static_assert(sizeof(Variant) == sizeof(VARIANT), "an array of these is an array of VARIANT");

} // namespace zul
