// Late-bound calls by the system's dispatcher over a type library.
#include "automation/Uuid.h"
#include "base/Utf8.h"
#include "tests/automation/differential/Callee.h"

namespace differential {

namespace {

class SystemCallee final : public Callee
{
public:
    explicit SystemCallee(ITypeInfo* info) noexcept
        : m_info(info)
    {}
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) override
    {
        return riid == GUID_NULL ? DispGetIDsOfNames(m_info, names, count, ids) : DISP_E_UNKNOWNINTERFACE;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* params,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argErr) override
    {
        return riid == GUID_NULL ? DispInvoke(static_cast<ICalls*>(this), m_info, id, flags, params, result,
                                              exception, argErr)
                                 : DISP_E_UNKNOWNINTERFACE;
    }

private:
    ITypeInfo* m_info; // kept to the end of the program
};

} // namespace

Callee* makeCallee(const std::string& folder)
{
    std::u16string path = zul::utf16FromUtf8(folder + "\\Differential.tlb");
    ITypeLib* library = nullptr;
    ITypeInfo* info = nullptr;
    if (FAILED(LoadTypeLibEx(reinterpret_cast<const OLECHAR*>(path.c_str()), REGKIND_NONE, &library)) ||
        FAILED(library->GetTypeInfoOfGuid(zul::iidOf<ICalls>(), &info))) {
        return nullptr;
    }
    static SystemCallee callee(info);
    return &callee;
}

} // namespace differential
