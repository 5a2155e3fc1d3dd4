#include "tests/automation/differential/Callee.h"

#include "automation/Uuid.h"
#include "base/Utf8.h"
#include "tests/automation/differential/Answer.h"
#include "tests/automation/differential/Source.h"

namespace differential {

namespace {

HRESULT say(const std::string& text, BSTR* result)
{
    *result = makeText(zul::utf16FromUtf8(text));
    return S_OK;
}

// The places that a member was given are our own or the caller's; which, the caller asks.
const void* lastPlace = nullptr;

template <typename T>
T& at(T* place)
{
    lastPlace = place;
    return *place;
}

std::string variantText(const VARIANT& value)
{
    if (value.vt == (VT_VARIANT | VT_BYREF) && value.pvarVal != nullptr) {
        return "reference to " + typedText(*value.pvarVal);
    }
    return typedText(value);
}

} // namespace

const void* placeOfLastReference() noexcept
{
    return lastPlace;
}

HRESULT Callee::QueryInterface(REFIID riid, void** object)
{
    *object = nullptr;
    if (riid == zul::iidOf<IUnknown>() || riid == zul::iidOf<IDispatch>() || riid == zul::iidOf<ICalls>()) {
        *object = static_cast<ICalls*>(this);
    }
    return *object != nullptr ? S_OK : E_NOINTERFACE;
}

HRESULT Callee::GetTypeInfoCount(UINT* count)
{
    *count = 0;
    return S_OK;
}

HRESULT Callee::GetTypeInfo(UINT, LCID, ITypeInfo** info)
{
    *info = nullptr;
    return DISP_E_BADINDEX;
}

HRESULT Callee::get_Item(LONG Index, BSTR* result)
{
    return say("item " + std::to_string(Index), result);
}

HRESULT Callee::put_Item(LONG Index, BSTR value)
{
    m_number = Index + static_cast<LONG>(textOf(value).size());
    return S_OK;
}

HRESULT Callee::get_Number(LONG* result)
{
    *result = m_number;
    return S_OK;
}

HRESULT Callee::put_Number(LONG NewNumber)
{
    m_number = NewNumber;
    return S_OK;
}

HRESULT Callee::TakeLong(LONG value, BSTR* result)
{
    return say(std::to_string(value), result);
}

HRESULT Callee::TakeShort(SHORT value, BSTR* result)
{
    return say(std::to_string(value), result);
}

HRESULT Callee::TakeBoolean(VARIANT_BOOL value, BSTR* result)
{
    return say(std::to_string(value), result);
}

HRESULT Callee::TakeByte(unsigned char value, BSTR* result)
{
    return say(std::to_string(value), result);
}

HRESULT Callee::TakeLarge(hyper value, BSTR* result)
{
    return say(std::to_string(value), result);
}

HRESULT Callee::TakeFloat(FLOAT value, BSTR* result)
{
    return say(numberText(value), result);
}

HRESULT Callee::TakeDouble(DOUBLE value, BSTR* result)
{
    return say(numberText(value), result);
}

HRESULT Callee::TakeDate(DATE value, BSTR* result)
{
    return say(numberText(value), result);
}

HRESULT Callee::TakeText(BSTR value, BSTR* result)
{
    return say(quoted(textOf(value)), result);
}

HRESULT Callee::TakeColour(CallColour value, BSTR* result)
{
    return say(std::to_string(static_cast<LONG>(value)), result);
}

HRESULT Callee::TakeVariant(VARIANT value, BSTR* result)
{
    return say(variantText(value), result);
}

HRESULT Callee::TakeDispatch(IDispatch* value, BSTR* result)
{
    return say(value == nullptr ? "null" : "object", result);
}

HRESULT Callee::TakeUnknown(IUnknown* value, BSTR* result)
{
    return say(value == nullptr ? "null" : "object", result);
}

HRESULT Callee::TakeCalls(ICalls* value, BSTR* result)
{
    return say(value == nullptr ? "null" : "object", result);
}

HRESULT Callee::ReadLong(LONG* value, BSTR* result)
{
    return say(std::to_string(at(value)), result);
}

HRESULT Callee::ReadBoolean(VARIANT_BOOL* value, BSTR* result)
{
    return say(std::to_string(at(value)), result);
}

HRESULT Callee::ReadDouble(DOUBLE* value, BSTR* result)
{
    return say(numberText(at(value)), result);
}

HRESULT Callee::ReadDate(DATE* value, BSTR* result)
{
    return say(numberText(at(value)), result);
}

HRESULT Callee::ReadText(BSTR* value, BSTR* result)
{
    return say(quoted(textOf(at(value))), result);
}

HRESULT Callee::ReadVariant(VARIANT* value, BSTR* result)
{
    return say(variantText(at(value)), result);
}

HRESULT Callee::ReadDispatch(IDispatch** value, BSTR* result)
{
    return say(at(value) == nullptr ? "null" : "object", result);
}

HRESULT Callee::Subtract(DOUBLE a, DOUBLE b, DOUBLE c, DOUBLE* result)
{
    *result = a - b * c;
    return S_OK;
}

HRESULT Callee::Add(VARIANT item, VARIANT key, VARIANT before, BSTR* result)
{
    return say(variantText(item) + "; " + variantText(key) + "; " + variantText(before), result);
}

HRESULT Callee::Send(BSTR to, BSTR* errorText, VARIANT_BOOL* result)
{
    *errorText = makeText(u"no way to " + std::u16string(textOf(to)));
    *result = VARIANT_FALSE;
    return S_OK;
}

HRESULT Callee::Nothing()
{
    return S_OK;
}

HRESULT Callee::Fail(LONG code)
{
    return static_cast<HRESULT>(code);
}

HRESULT Callee::ResultVariant(VARIANT* result)
{
    *result = fromText(u"variant");
    return S_OK;
}

HRESULT Callee::ResultDate(DATE* result)
{
    *result = 37980.75;
    return S_OK;
}

HRESULT Callee::ResultObject(IDispatch** result)
{
    *result = this;
    return S_OK;
}

HRESULT Callee::ResultBoolean(VARIANT_BOOL* result)
{
    *result = VARIANT_TRUE;
    return S_OK;
}

} // namespace differential
