// A host's connection object whose every member fails: what is there without a database.
#pragma once

#include "automation/ComObject.h"

#include <Zul_SQL.h>

namespace zul::test {

/// @tparam Base _SqlConnection, with its late-bound half
template <typename Base>
class DeadConnection : public ComObject<Base>
{
public:
    HRESULT STDMETHODCALLTYPE get_Connection(IConnection** value) override
    {
        *value = nullptr;
        return E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override
    {
        *value = nullptr;
        return E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE LookupValue(BSTR, BSTR, BSTR, VARIANT* value) override
    {
        VariantInit(value);
        return E_FAIL;
    }
};

} // namespace zul::test
