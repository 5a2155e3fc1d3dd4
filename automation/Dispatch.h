// A table-driven IDispatch: late-bound calls to the members of an interface, answered as the system's own
// dispatcher over a type library answers them.
//
//   class Connection final : public zul::ComObject<zul::Dispatching<IConnection>>
//   {
//       const zul::DispTable<IConnection>& dispTable() const override
//       {
//           using namespace zul::dispatch;
//           static const zul::DispTable table{
//               propget("ConnectionString", 1, &IConnection::get_ConnectionString),
//               method("OpenRecordset", 3, &IConnection::OpenRecordset, {"source", "cursor", "lock"}),
//           };
//           return table;
//       }
//   };
//
// Types come from the member function: LONG and enumerations are Long, short is Boolean, BSTR is String,
// pointers to interfaces are objects, a pointer to any of these is an argument by reference. A last pointer
// parameter that has no name is the result. What C++ cannot tell is said with the name: date("dal"),
// optional("Key"), out("errorText"), integer("n").
#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <new>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <oleauto.h>

#include "automation/ComPtr.h"
#include "automation/TypeInfo.h"
#include "base/Utf8.h"

namespace zul {

namespace dispatch {

// A parameter as a table writes it.
struct Param
{
    Param(const char* paramName)
        : name(paramName)
    {}
    const char* name;
    VARENUM type = VT_EMPTY; // what the C++ type means, when it does not say it by itself
    bool isOptional = false;
    bool isOut = false;
};

// A double that is a date.
inline Param date(const char* name)
{
    Param p(name);
    p.type = VT_DATE;
    return p;
}
// A short that is a number.
inline Param integer(const char* name)
{
    Param p(name);
    p.type = VT_I2;
    return p;
}
// A VARIANT, or VARIANT by reference, that may be left out: the member gets VT_ERROR/DISP_E_PARAMNOTFOUND.
inline Param optional(const char* name)
{
    Param p(name);
    p.isOptional = true;
    return p;
}
// A parameter by reference that only brings a value back; what the caller's variable held is freed.
inline Param out(const char* name)
{
    Param p(name);
    p.isOut = true;
    return p;
}

// A parameter as the dispatcher sees it.
struct ParamInfo
{
    std::u16string name;
    VARTYPE type = VT_EMPTY;
    bool byRef = false;
    bool isOptional = false;
    bool isOut = false;
    bool isObject = false;
    IID iid{}; // of an object's interface
};

// One argument on its way into a call.
struct ArgSlot
{
    VARIANT value{};        // what is passed by value, or the storage behind a reference
    void* object = nullptr; // an interface pointer of the parameter's own type; owns a reference
    void* caller = nullptr; // the caller's storage behind a reference; null: our own
    bool ownsValue = false; // value is ours to clear
};

using Thunk = std::function<HRESULT(void* target, ArgSlot* slots)>;

struct MemberInfo
{
    std::u16string name;
    DISPID id = DISPID_UNKNOWN;
    WORD kind = 0; // one of DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT
    std::vector<ParamInfo> params;
    bool hasResult = false;
    ParamInfo result; // a reference; its slot stands behind those of the parameters
    Thunk call;
};

HRESULT getIdsOfNames(const std::vector<MemberInfo>& members, REFIID riid, LPOLESTR* names, UINT count,
                      DISPID* ids) noexcept;
HRESULT invoke(const std::vector<MemberInfo>& members, void* target, DISPID id, REFIID riid, LCID lcid,
               WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argErr) noexcept;

// Throws std::logic_error when the names do not fit the parameters: the table is wrong, and every test sees it.
void describeParams(MemberInfo& member, std::vector<ParamInfo> types, std::initializer_list<Param> names);

template <typename T>
inline constexpr bool isInterface = std::is_base_of_v<IUnknown, T>;
template <typename>
inline constexpr bool notAutomation = false;

// What a value type is to automation.
template <typename T>
ParamInfo valueInfo()
{
    ParamInfo info;
    if constexpr (std::is_same_v<T, VARIANT>) {
        info.type = VT_VARIANT;
    } else if constexpr (std::is_same_v<T, BSTR>) {
        info.type = VT_BSTR;
    } else if constexpr (std::is_same_v<T, CY>) {
        info.type = VT_CY;
    } else if constexpr (std::is_pointer_v<T> && isInterface<std::remove_pointer_t<T>>) {
        using Interface = std::remove_pointer_t<T>;
        info.isObject = true;
        info.type = std::is_base_of_v<IDispatch, Interface> ? VT_DISPATCH : VT_UNKNOWN;
        info.iid = iidOf<Interface>();
    } else if constexpr (std::is_same_v<T, double>) {
        info.type = VT_R8;
    } else if constexpr (std::is_same_v<T, float>) {
        info.type = VT_R4;
    } else if constexpr (std::is_same_v<T, short>) {
        info.type = VT_BOOL;
    } else if constexpr (std::is_same_v<T, unsigned char>) {
        info.type = VT_UI1;
    } else if constexpr ((std::is_integral_v<T> || std::is_enum_v<T>)&&sizeof(T) == 4) {
        info.type = std::is_enum_v<T> || std::is_signed_v<T> ? VT_I4 : VT_UI4;
    } else if constexpr (std::is_integral_v<T> && sizeof(T) == 8) {
        info.type = std::is_signed_v<T> ? VT_I8 : VT_UI8;
    } else {
        static_assert(notAutomation<T>, "not a type of automation");
    }
    return info;
}

template <typename T>
inline constexpr bool isReference =
    std::is_pointer_v<T> && !std::is_same_v<T, BSTR> && !isInterface<std::remove_pointer_t<T>>;

template <typename T>
ParamInfo paramInfo()
{
    if constexpr (isReference<T>) {
        ParamInfo info = valueInfo<std::remove_pointer_t<T>>();
        info.byRef = true;
        return info;
    } else {
        return valueInfo<T>();
    }
}

// The value of a slot as the C++ type of a parameter, for the time of the call.
template <typename T>
class Argument
{
public:
    explicit Argument(ArgSlot& slot)
        : m_slot(slot)
    {
        if constexpr (objectReference) {
            m_object = static_cast<std::remove_pointer_t<T>>(slot.object);
        }
    }
    ~Argument()
    {
        if constexpr (objectReference) {
            m_slot.object = m_object; // the member may have put another one
        }
    }
    Argument(const Argument&) = delete;
    Argument& operator=(const Argument&) = delete;

    operator T()
    {
        if constexpr (objectReference) {
            return m_slot.caller != nullptr ? static_cast<T>(m_slot.caller) : &m_object;
        } else if constexpr (isReference<T>) {
            if constexpr (std::is_same_v<T, VARIANT*>) {
                return m_slot.caller != nullptr ? static_cast<T>(m_slot.caller) : &m_slot.value;
            } else {
                // All members of the union begin at the same place.
                return static_cast<T>(m_slot.caller != nullptr ? m_slot.caller : &m_slot.value.llVal);
            }
        } else if constexpr (std::is_same_v<T, VARIANT>) {
            return m_slot.value;
        } else if constexpr (std::is_same_v<T, BSTR>) {
            return m_slot.value.bstrVal;
        } else if constexpr (std::is_same_v<T, CY>) {
            return m_slot.value.cyVal;
        } else if constexpr (std::is_pointer_v<T>) {
            return static_cast<T>(m_slot.object);
        } else if constexpr (std::is_same_v<T, double>) {
            return m_slot.value.dblVal;
        } else if constexpr (std::is_same_v<T, float>) {
            return m_slot.value.fltVal;
        } else if constexpr (sizeof(T) == 1) {
            return static_cast<T>(m_slot.value.bVal);
        } else if constexpr (sizeof(T) == 2) {
            return static_cast<T>(m_slot.value.iVal);
        } else if constexpr (sizeof(T) == 4) {
            return static_cast<T>(m_slot.value.lVal);
        } else {
            return static_cast<T>(m_slot.value.llVal);
        }
    }

private:
    template <typename U>
    static constexpr bool pointsToObject()
    {
        if constexpr (isReference<U>) {
            using Pointee = std::remove_pointer_t<U>;
            return std::is_pointer_v<Pointee> && !std::is_same_v<Pointee, BSTR>;
        } else {
            return false;
        }
    }
    static constexpr bool objectReference = pointsToObject<T>();
    struct Nothing
    {};

    ArgSlot& m_slot;
    std::conditional_t<objectReference, std::remove_pointer_t<T>, Nothing> m_object{};
};

// A member of the interface or class I.
template <typename I>
struct Member
{
    MemberInfo info;
};

template <typename I, typename... Args, std::size_t... Index>
Thunk makeThunk(HRESULT (STDMETHODCALLTYPE I::*function)(Args...), std::index_sequence<Index...>)
{
    return [function](void* target, [[maybe_unused]] ArgSlot* slots) -> HRESULT {
        [[maybe_unused]] std::tuple<Argument<Args>...> arguments(slots[Index]...);
        return (static_cast<I*>(target)->*function)(std::get<Index>(arguments)...);
    };
}

template <typename I, typename... Args>
Member<I> member(const char* name, DISPID id, WORD kind, HRESULT (STDMETHODCALLTYPE I::*function)(Args...),
                 std::initializer_list<Param> names)
{
    Member<I> result;
    result.info.name = utf16FromUtf8(name);
    result.info.id = id;
    result.info.kind = kind;
    result.info.call = makeThunk(function, std::index_sequence_for<Args...>());
    describeParams(result.info, {paramInfo<Args>()...}, names);
    return result;
}

// A method.
template <typename I, typename... Args>
Member<I> method(const char* name, DISPID id, HRESULT (STDMETHODCALLTYPE I::*function)(Args...),
                 std::initializer_list<Param> names = {})
{
    return member(name, id, DISPATCH_METHOD, function, names);
}

// The reading of a property; the names are those of its indices, the result has none.
template <typename I, typename... Args>
Member<I> propget(const char* name, DISPID id, HRESULT (STDMETHODCALLTYPE I::*function)(Args...),
                  std::initializer_list<Param> names = {})
{
    return member(name, id, DISPATCH_PROPERTYGET, function, names);
}

// The writing of a property; the last name is the new value's.
template <typename I, typename... Args>
Member<I> propput(const char* name, DISPID id, HRESULT (STDMETHODCALLTYPE I::*function)(Args...),
                  std::initializer_list<Param> names)
{
    return member(name, id, DISPATCH_PROPERTYPUT, function, names);
}

} // namespace dispatch

// The members of I, made once and shared by all objects.
template <typename I>
class DispTable
{
public:
    DispTable(std::initializer_list<dispatch::Member<I>> members)
    {
        m_members.reserve(members.size());
        for (const dispatch::Member<I>& member : members) {
            m_members.push_back(member.info);
        }
    }
    const std::vector<dispatch::MemberInfo>& members() const noexcept { return m_members; }

private:
    std::vector<dispatch::MemberInfo> m_members;
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// Implements the four members of IDispatch for the interface I. The members of the table belong to I, or to
// Target where a pure event interface has no members to call: the class that derives from this one.
template <typename I, typename Target = I>
class Dispatching : public I
{
public:
    using ComInterface = I;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        if (count == nullptr) {
            return E_POINTER;
        }
        *count = typeInfoCount(iidOf<I>());
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override
    {
        return typeInfo(iidOf<I>(), index, info);
    }

    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) override
    {
        return dispatch::getIdsOfNames(dispTable().members(), riid, names, count, ids);
    }

    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argErr) override
    {
        // A call may be the one that lets the last reference go.
        const ComPtr<IDispatch> alive(this);
        return dispatch::invoke(dispTable().members(), static_cast<Target*>(this), id, riid, lcid, flags,
                                params, result, exception, argErr);
    }

protected:
    virtual const DispTable<Target>& dispTable() const = 0;
};

#pragma GCC diagnostic pop

} // namespace zul
