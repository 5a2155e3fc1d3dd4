#include "automation/Dispatch.h"

#include <algorithm>
#include <cstring>

#include "automation/ErrorInfo.h"
#include "automation/Variant.h"
#include "base/CaseFold.h"

namespace zul::dispatch {

namespace {

// The outcome of a step that concerns one argument; index is its place in rgvarg.
struct ArgumentError
{
    HRESULT result = S_OK;
    UINT index = 0;
};

constexpr UINT notGiven = static_cast<UINT>(-1);

std::u16string_view nameOf(LPOLESTR name) noexcept
{
    return {reinterpret_cast<const char16_t*>(name)};
}

const MemberInfo* findMember(const std::vector<MemberInfo>& members, DISPID id, WORD flags) noexcept
{
    for (const MemberInfo& member : members) {
        if (member.id == id && (member.kind & flags) != 0) {
            return &member;
        }
    }
    return nullptr;
}

// The variant that an argument leads to: the one behind VT_VARIANT|VT_BYREF, else itself.
VARIANT* behind(VARIANT* argument) noexcept
{
    return argument->vt == (VT_VARIANT | VT_BYREF) && argument->pvarVal != nullptr ? argument->pvarVal
                                                                                   : argument;
}

bool isLeftOut(const VARIANT& argument) noexcept
{
    return argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND;
}

// The slots of one call, with everything in them that the dispatcher has to free.
class Slots
{
public:
    explicit Slots(const MemberInfo& member)
        : m_slots(member.params.size() + (member.hasResult ? 1 : 0))
    {}
    Slots(const Slots&) = delete;
    Slots& operator=(const Slots&) = delete;
    ~Slots()
    {
        for (ArgSlot& slot : m_slots) {
            if (slot.object != nullptr) {
                // Every interface pointer begins as an IUnknown.
                static_cast<IUnknown*>(slot.object)->Release();
            }
            if (slot.ownsValue) {
                VariantClear(&slot.value);
            }
        }
    }
    ArgSlot& operator[](std::size_t index) noexcept { return m_slots[index]; }
    ArgSlot* data() noexcept { return m_slots.data(); }

private:
    std::vector<ArgSlot> m_slots;
};

HRESULT coerceObject(const ParamInfo& param, VARIANT* argument, ArgSlot& slot)
{
    const VARTYPE type = argument->vt & static_cast<VARTYPE>(~VT_BYREF);
    if (type != VT_DISPATCH && type != VT_UNKNOWN) {
        return DISP_E_TYPEMISMATCH;
    }
    // The caller's own variable can be passed on only where it has the parameter's very type.
    if (param.byRef && argument->vt == (param.type | VT_BYREF) &&
        (param.iid == iidOf<IDispatch>() || param.iid == iidOf<IUnknown>())) {
        slot.caller = argument->byref;
        return S_OK;
    }
    IUnknown* const object = (argument->vt & VT_BYREF) != 0 ? *argument->ppunkVal : argument->punkVal;
    if (object == nullptr) {
        return S_OK;
    }
    if (FAILED(object->QueryInterface(param.iid, &slot.object))) {
        slot.object = nullptr;
        return DISP_E_TYPEMISMATCH;
    }
    return S_OK;
}

HRESULT coerceVariant(const ParamInfo& param, VARIANT* given, ArgSlot& slot)
{
    if (param.byRef && given->vt == (VT_VARIANT | VT_BYREF)) {
        slot.caller = given->pvarVal;
        return S_OK;
    }
    if ((given->vt & VT_BYREF) == 0) {
        slot.value = *given; // lent for the time of the call
        return S_OK;
    }
    slot.ownsValue = true;
    return VariantCopyInd(&slot.value, given);
}

// Whether a text consists of whole characters. A reference is not null.
bool isWhole(const VARIANT& text) noexcept
{
    const BSTR bytes = (text.vt & VT_BYREF) != 0 ? *text.pbstrVal : text.bstrVal;
    return SysStringByteLen(bytes) % sizeof(OLECHAR) == 0;
}

// Makes an argument fit a parameter. The argument is not missing. Texts are read and written in the user's way: the
// system's dispatcher does not use the locale of the call either, nor words for truth values.
HRESULT coerce(const ParamInfo& param, VARIANT* given, ArgSlot& slot)
{
    if ((given->vt & VT_BYREF) != 0 && given->byref == nullptr) {
        return E_POINTER;
    }
    if (param.type == VT_VARIANT) {
        return coerceVariant(param, given, slot);
    }
    VARIANT* const argument = behind(given);
    if ((argument->vt & VT_BYREF) != 0 && argument->byref == nullptr) {
        return E_POINTER;
    }
    if (param.isOut) {
        // Starts empty; the value goes back after the call, or is freed when that fails.
        if (!param.isObject) {
            slot.value.vt = param.type;
            slot.ownsValue = true;
        }
        return S_OK;
    }
    if (param.isObject) {
        return coerceObject(param, argument, slot);
    }
    const bool isText = (argument->vt & ~VT_BYREF) == VT_BSTR;
    if (isText && !isWhole(*argument)) {
        return DISP_E_TYPEMISMATCH;
    }
    if (argument->vt == (param.type | VT_BYREF)) {
        if (param.byRef) {
            slot.caller = argument->byref;
            return S_OK;
        }
    } else if (argument->vt == param.type) {
        if (param.byRef) {
            slot.caller = &argument->llVal;
            return S_OK;
        }
        slot.value = *argument; // lent for the time of the call
        return S_OK;
    }
    slot.ownsValue = true;
    return VariantChangeType(&slot.value, argument, 0, param.type);
}

// Puts what a call left in our own storage back into the caller's variable, for [out] parameters and for
// objects that the member exchanged.
HRESULT writeBack(const ParamInfo& param, VARIANT* given, ArgSlot& slot)
{
    Variant value;
    if (param.isObject) {
        // The query's pointer of a dual interface is its IDispatch as well.
        value.punkVal = static_cast<IUnknown*>(std::exchange(slot.object, nullptr));
        value.vt = param.type;
    } else {
        static_cast<VARIANT&>(value) = std::exchange(slot.value, VARIANT{});
        if (param.type != VT_VARIANT) {
            value.vt = param.type;
        }
    }

    if (given->vt == (VT_VARIANT | VT_BYREF)) {
        VARIANT* const place = given->pvarVal;
        if ((place->vt & VT_BYREF) == 0) {
            VariantClear(place);
            value.detachTo(place);
            return S_OK;
        }
        given = place;
    }
    if ((given->vt & VT_BYREF) == 0) {
        return S_OK; // passed by value: nobody waits for it
    }
    const VARTYPE type = given->vt & static_cast<VARTYPE>(~VT_BYREF);
    if (value.vt != type) {
        const HRESULT result = value.changeType(type);
        if (FAILED(result)) {
            return result;
        }
    }
    switch (type) {
    case VT_BSTR:
        SysFreeString(std::exchange(*given->pbstrVal, std::exchange(value.bstrVal, nullptr)));
        break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        if (IUnknown* const old = std::exchange(*given->ppunkVal, std::exchange(value.punkVal, nullptr))) {
            old->Release();
        }
        break;
    case VT_I1:
    case VT_UI1:
        *given->pbVal = value.bVal;
        break;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        *given->piVal = value.iVal;
        break;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
        *given->plVal = value.lVal;
        break;
    case VT_DECIMAL:
        *given->pdecVal = value.decVal;
        break;
    default:
        *given->pllVal = value.llVal;
        break;
    }
    return S_OK;
}

// Finds for each parameter its argument's place in rgvarg, or notGiven.
ArgumentError placeArguments(const MemberInfo& member, const DISPPARAMS& params, std::vector<UINT>& places)
{
    const UINT count = static_cast<UINT>(member.params.size());
    places.assign(count, notGiven);
    if (params.cArgs > count) {
        return {DISP_E_BADPARAMCOUNT, 0};
    }
    const auto required = static_cast<UINT>(std::count_if(member.params.begin(), member.params.end(),
                                                          [](const ParamInfo& p) { return !p.isOptional; }));
    if (params.cArgs < required) {
        return {DISP_E_BADPARAMCOUNT, 0};
    }
    for (UINT i = 0; i < params.cNamedArgs; ++i) {
        const DISPID named = params.rgdispidNamedArgs[i];
        const bool isNewValue = named == DISPID_PROPERTYPUT && member.kind == DISPATCH_PROPERTYPUT;
        const UINT index = isNewValue ? count - 1 : static_cast<UINT>(named);
        if (index >= count || places[index] != notGiven) {
            return {DISP_E_PARAMNOTFOUND, i};
        }
        places[index] = i;
    }
    // The last argument stands first, so positional ones are taken from the end.
    UINT next = 0;
    const bool lastIsNamed = params.cNamedArgs > 0 && params.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
    for (UINT i = params.cArgs; i > params.cNamedArgs; --i) {
        // A new value that is not named is the last argument, whatever optional indices are left out.
        const bool isNewValue =
            member.kind == DISPATCH_PROPERTYPUT && !lastIsNamed && i - 1 == params.cNamedArgs;
        const UINT index = isNewValue ? count - 1 : next++;
        if (index >= count || places[index] != notGiven) {
            return {DISP_E_PARAMNOTFOUND, i - 1};
        }
        places[index] = i - 1;
    }
    return {};
}

ArgumentError fillSlots(const MemberInfo& member, const DISPPARAMS& params, const std::vector<UINT>& places,
                        Slots& slots)
{
    for (std::size_t i = 0; i < member.params.size(); ++i) {
        const ParamInfo& param = member.params[i];
        const UINT place = places[i];
        VARIANT* const given = place == notGiven ? nullptr : &params.rgvarg[place];
        if (given == nullptr || isLeftOut(*behind(given))) {
            if (!param.isOptional) {
                return {DISP_E_PARAMNOTOPTIONAL, place == notGiven ? 0 : place};
            }
            slots[i].value.vt = VT_ERROR;
            slots[i].value.scode = DISP_E_PARAMNOTFOUND;
            continue;
        }
        const HRESULT result = coerce(param, given, slots[i]);
        if (FAILED(result)) {
            return {result, place};
        }
    }
    return {};
}

void fillException(HRESULT failure, EXCEPINFO* exception) noexcept
{
    if (exception == nullptr) {
        return; // the error object stays for GetErrorInfo
    }
    exception->scode = failure;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) == S_OK && info) {
        info->GetSource(&exception->bstrSource);
        info->GetDescription(&exception->bstrDescription);
        info->GetHelpFile(&exception->bstrHelpFile);
        info->GetHelpContext(&exception->dwHelpContext);
    }
}

HRESULT callMember(const MemberInfo& member, void* target, const DISPPARAMS& params, VARIANT* result,
                   EXCEPINFO* exception, UINT* argErr)
{
    std::vector<UINT> places;
    Slots slots(member);
    ArgumentError error = placeArguments(member, params, places);
    if (SUCCEEDED(error.result)) {
        error = fillSlots(member, params, places, slots);
    }
    if (FAILED(error.result)) {
        if (argErr != nullptr) {
            *argErr = error.index;
        }
        return error.result;
    }

    const std::vector<IUnknown*> before = [&] {
        std::vector<IUnknown*> objects;
        for (std::size_t i = 0; i < member.params.size(); ++i) {
            objects.push_back(static_cast<IUnknown*>(slots[i].object));
        }
        return objects;
    }();

    // An error object from an earlier call must not be taken for this one's.
    SetErrorInfo(0, nullptr);
    HRESULT outcome = S_OK;
    try {
        outcome = member.call(target, slots.data());
    } catch (...) {
        outcome = reportCurrentException();
    }

    if (member.hasResult) {
        // Adopted also after a failure, so that nothing is lost of what the member may have left.
        ArgSlot& slot = slots[member.params.size()];
        Variant value;
        if (member.result.isObject) {
            value.punkVal = static_cast<IUnknown*>(std::exchange(slot.object, nullptr));
            value.vt = member.result.type;
        } else {
            static_cast<VARIANT&>(value) = std::exchange(slot.value, VARIANT{});
            if (member.result.type != VT_VARIANT) {
                value.vt = member.result.type;
            }
        }
        if (SUCCEEDED(outcome) && result != nullptr) {
            value.detachTo(result);
        }
    }
    if (FAILED(outcome)) {
        fillException(outcome, exception);
        return DISP_E_EXCEPTION;
    }

    for (std::size_t i = 0; i < member.params.size(); ++i) {
        const ParamInfo& param = member.params[i];
        const bool exchanged = param.byRef && param.isObject && slots[i].object != before[i];
        if (places[i] == notGiven || !(param.isOut || exchanged)) {
            continue;
        }
        const HRESULT written = writeBack(param, &params.rgvarg[places[i]], slots[i]);
        if (FAILED(written)) {
            if (argErr != nullptr) {
                *argErr = places[i];
            }
            return written;
        }
    }
    return outcome;
}

} // namespace

void describeParams(MemberInfo& member, std::vector<ParamInfo> types, std::initializer_list<Param> names)
{
    const bool resultExpected = member.kind == DISPATCH_PROPERTYGET;
    const bool fits = types.size() == names.size() + 1 ? types.back().byRef
                                                       : types.size() == names.size() && !resultExpected;
    if (!fits) {
        throw std::logic_error("the parameter names of " + utf8FromUtf16(member.name) + " do not fit");
    }
    if (types.size() == names.size() + 1) {
        member.hasResult = true;
        member.result = types.back();
        types.pop_back();
    }
    auto info = types.begin();
    for (const Param& param : names) {
        info->name = utf16FromUtf8(param.name);
        info->type = param.type != VT_EMPTY ? static_cast<VARTYPE>(param.type) : info->type;
        info->isOptional = param.isOptional;
        info->isOut = param.isOut;
        if ((param.isOptional && info->type != VT_VARIANT) || (param.isOut && !info->byRef)) {
            throw std::logic_error("the parameter " + std::string(param.name) +
                                   " cannot be left out or written");
        }
        ++info;
    }
    member.params = std::move(types);
}

HRESULT getIdsOfNames(const std::vector<MemberInfo>& members, REFIID riid, LPOLESTR* names, UINT count,
                      DISPID* ids) noexcept
{
    if (names == nullptr || ids == nullptr || count == 0) {
        return E_INVALIDARG;
    }
    std::fill_n(ids, count, DISPID_UNKNOWN);
    if (!(riid == GUID_NULL)) {
        return DISP_E_UNKNOWNINTERFACE;
    }
    for (UINT i = 0; i < count; ++i) {
        if (names[i] == nullptr) {
            return E_INVALIDARG;
        }
    }
    bool found = false;
    for (const MemberInfo& member : members) {
        if (!equalNames(member.name, nameOf(names[0]))) {
            continue;
        }
        found = true;
        ids[0] = member.id;
        // Both forms of a property share the name; a parameter's name may belong to either.
        for (UINT i = 1; i < count; ++i) {
            for (std::size_t p = 0; p < member.params.size() && ids[i] == DISPID_UNKNOWN; ++p) {
                if (equalNames(member.params[p].name, nameOf(names[i]))) {
                    ids[i] = static_cast<DISPID>(p);
                }
            }
        }
    }
    const bool all = std::find(ids + 1, ids + count, DISPID_UNKNOWN) == ids + count;
    return found && all ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT invoke(const std::vector<MemberInfo>& members, void* target, DISPID id, REFIID riid, LCID, WORD flags,
               DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argErr) noexcept
{
    if (result != nullptr) {
        VariantInit(result);
    }
    if (exception != nullptr) {
        *exception = EXCEPINFO{};
    }
    if (argErr != nullptr) {
        *argErr = 0;
    }
    if (!(riid == GUID_NULL)) {
        return DISP_E_UNKNOWNINTERFACE;
    }
    constexpr WORD knownFlags =
        DISPATCH_METHOD | DISPATCH_PROPERTYGET | DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
    if (params == nullptr || flags == 0 || (flags & ~knownFlags) != 0 || params->cNamedArgs > params->cArgs ||
        (params->cArgs > 0 && params->rgvarg == nullptr) ||
        (params->cNamedArgs > 0 && params->rgdispidNamedArgs == nullptr)) {
        return E_INVALIDARG;
    }
    const MemberInfo* const member = findMember(members, id, flags);
    if (member == nullptr) {
        return DISP_E_MEMBERNOTFOUND;
    }
    try {
        return callMember(*member, target, *params, result, exception, argErr);
    } catch (...) {
        return E_OUTOFMEMORY; // the dispatcher itself needs nothing but memory
    }
}

} // namespace zul::dispatch
