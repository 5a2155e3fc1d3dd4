// The root of every interface, and what makes objects.
#pragma once
#pragma GCC system_header
#include <wtypes.h>

typedef struct IUnknown IUnknown;
typedef struct IClassFactory IClassFactory;

DEFINE_GUID(IID_IUnknown, 0x00000000, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
#ifdef __cplusplus
struct IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;
};
#else
ZUL_C_INTERFACE(IUnknown)
{
    ZUL_C_UNKNOWN(IUnknown)
};
#endif
typedef IUnknown* LPUNKNOWN;
__CRT_UUID_DECL(IUnknown, 0x00000000, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)

DEFINE_GUID(IID_IClassFactory, 0x00000001, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
#ifdef __cplusplus
struct IClassFactory : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* pUnkOuter, REFIID riid, void** ppvObject) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockServer(int32_t fLock) = 0;
};
#else
ZUL_C_INTERFACE(IClassFactory)
{
    ZUL_C_UNKNOWN(IClassFactory)
    HRESULT(STDMETHODCALLTYPE* CreateInstance)(IClassFactory*, IUnknown* pUnkOuter, REFIID riid, void** ppvObject);
    HRESULT(STDMETHODCALLTYPE* LockServer)(IClassFactory*, int32_t fLock);
};
#endif
__CRT_UUID_DECL(IClassFactory, 0x00000001, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
