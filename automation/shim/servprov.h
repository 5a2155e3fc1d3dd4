// An object that hands out others.
#pragma once
#pragma GCC system_header
#include <unknwn.h>

typedef struct IServiceProvider IServiceProvider;

DEFINE_GUID(IID_IServiceProvider, 0x6d5140c1, 0x7436, 0x11ce, 0x80, 0x34, 0x00, 0xaa, 0x00, 0x60, 0x09, 0xfa)
#ifdef __cplusplus
struct IServiceProvider : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE QueryService(REFGUID guidService, REFIID riid, void** ppvObject) = 0;
};
#else
ZUL_C_INTERFACE(IServiceProvider)
{
    ZUL_C_UNKNOWN(IServiceProvider)
    HRESULT(STDMETHODCALLTYPE* QueryService)(IServiceProvider*, REFGUID guidService, REFIID riid, void** ppvObject);
};
#endif
__CRT_UUID_DECL(IServiceProvider, 0x6d5140c1, 0x7436, 0x11ce, 0x80, 0x34, 0x00, 0xaa, 0x00, 0x60, 0x09, 0xfa)
