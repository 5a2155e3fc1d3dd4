// Late-bound calls as a host in another language makes them, and event sinks.
#pragma once

#include "automation/ComObject.h"
#include "automation/Variant.h"

#include <oleauto.h>

#include <functional>
#include <string>
#include <vector>

namespace zul::test {

/// What a late-bound call came to.
struct CallOutcome
{
    HRESULT result = S_OK;
    Variant value;
    UINT argErr = 999;
};

/// The dispatch id of a name; DISPID_UNKNOWN when there is none.
inline DISPID idOf(IDispatch* object, const std::string& name)
{
    std::u16string wide = utf16FromUtf8(name);
    auto* text = reinterpret_cast<LPOLESTR>(wide.data());
    DISPID id = DISPID_UNKNOWN;
    object->GetIDsOfNames(GUID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
    return id;
}

/// Calls a member by its id; arguments in declared order.
inline CallOutcome invoke(IDispatch* object, DISPID id, WORD flags, const std::vector<VARIANT>& arguments,
                          bool namedPut = false)
{
    std::vector<VARIANTARG> reversed(arguments.rbegin(), arguments.rend());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{};
    params.rgvarg = reversed.data();
    params.cArgs = static_cast<UINT>(reversed.size());
    if (namedPut) {
        params.rgdispidNamedArgs = &put;
        params.cNamedArgs = 1;
    }
    CallOutcome outcome;
    EXCEPINFO exception{};
    outcome.result = object->Invoke(id, GUID_NULL, LOCALE_USER_DEFAULT, flags, &params, &outcome.value,
                                    &exception, &outcome.argErr);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return outcome;
}

inline CallOutcome call(IDispatch* object, const std::string& name,
                        const std::vector<VARIANT>& arguments = {})
{
    return invoke(object, idOf(object, name), DISPATCH_METHOD, arguments);
}

/// A sink that does what it is told with the arguments, which stand in declared order.
class Sink final : public ComObject<IDispatch>
{
public:
    using Action = std::function<HRESULT(DISPID id, const std::vector<VARIANT>& arguments)>;

    explicit Sink(Action action)
        : m_action(std::move(action))
    {}

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        std::vector<VARIANT> arguments;
        for (UINT i = params->cArgs; i > 0; --i) {
            arguments.push_back(params->rgvarg[i - 1]);
        }
        return m_action(id, arguments);
    }

private:
    Action m_action;
};

} // namespace zul::test
