// Connection points: how an object tells others of its events.
#pragma once
#pragma GCC system_header
#include <oaidl.h>
#include <servprov.h>

typedef struct IConnectionPoint IConnectionPoint;
typedef struct IConnectionPointContainer IConnectionPointContainer;
typedef struct IEnumConnections IEnumConnections;
typedef struct IEnumConnectionPoints IEnumConnectionPoints;
typedef struct IProvideClassInfo IProvideClassInfo;

typedef struct tagCONNECTDATA
{
    IUnknown* pUnk;
    DWORD dwCookie;
} CONNECTDATA;

DEFINE_GUID(IID_IEnumConnections, 0xb196b287, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
#ifdef __cplusplus
struct IEnumConnections : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG cConnections, CONNECTDATA* rgcd, ULONG* pcFetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG cConnections) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumConnections** ppEnum) = 0;
};
#else
ZUL_C_INTERFACE(IEnumConnections)
{
    ZUL_C_UNKNOWN(IEnumConnections)
    HRESULT(STDMETHODCALLTYPE* Next)(IEnumConnections*, ULONG cConnections, CONNECTDATA* rgcd, ULONG* pcFetched);
    HRESULT(STDMETHODCALLTYPE* Skip)(IEnumConnections*, ULONG cConnections);
    HRESULT(STDMETHODCALLTYPE* Reset)(IEnumConnections*);
    HRESULT(STDMETHODCALLTYPE* Clone)(IEnumConnections*, IEnumConnections** ppEnum);
};
#endif
__CRT_UUID_DECL(IEnumConnections, 0xb196b287, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)

DEFINE_GUID(IID_IEnumConnectionPoints, 0xb196b285, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
#ifdef __cplusplus
struct IEnumConnectionPoints : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG cConnections, IConnectionPoint** ppCP, ULONG* pcFetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG cConnections) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumConnectionPoints** ppEnum) = 0;
};
#else
ZUL_C_INTERFACE(IEnumConnectionPoints)
{
    ZUL_C_UNKNOWN(IEnumConnectionPoints)
    HRESULT(STDMETHODCALLTYPE* Next)(IEnumConnectionPoints*, ULONG cConnections, IConnectionPoint** ppCP, ULONG* pcFetched);
    HRESULT(STDMETHODCALLTYPE* Skip)(IEnumConnectionPoints*, ULONG cConnections);
    HRESULT(STDMETHODCALLTYPE* Reset)(IEnumConnectionPoints*);
    HRESULT(STDMETHODCALLTYPE* Clone)(IEnumConnectionPoints*, IEnumConnectionPoints** ppEnum);
};
#endif
__CRT_UUID_DECL(IEnumConnectionPoints, 0xb196b285, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)

DEFINE_GUID(IID_IConnectionPoint, 0xb196b286, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
#ifdef __cplusplus
struct IConnectionPoint : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* pIID) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer** ppCPC) = 0;
    virtual HRESULT STDMETHODCALLTYPE Advise(IUnknown* pUnkSink, DWORD* pdwCookie) = 0;
    virtual HRESULT STDMETHODCALLTYPE Unadvise(DWORD dwCookie) = 0;
    virtual HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** ppEnum) = 0;
};
#else
ZUL_C_INTERFACE(IConnectionPoint)
{
    ZUL_C_UNKNOWN(IConnectionPoint)
    HRESULT(STDMETHODCALLTYPE* GetConnectionInterface)(IConnectionPoint*, IID* pIID);
    HRESULT(STDMETHODCALLTYPE* GetConnectionPointContainer)(IConnectionPoint*, IConnectionPointContainer** ppCPC);
    HRESULT(STDMETHODCALLTYPE* Advise)(IConnectionPoint*, IUnknown* pUnkSink, DWORD* pdwCookie);
    HRESULT(STDMETHODCALLTYPE* Unadvise)(IConnectionPoint*, DWORD dwCookie);
    HRESULT(STDMETHODCALLTYPE* EnumConnections)(IConnectionPoint*, IEnumConnections** ppEnum);
};
#endif
__CRT_UUID_DECL(IConnectionPoint, 0xb196b286, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)

DEFINE_GUID(IID_IConnectionPointContainer, 0xb196b284, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d,
            0x07)
#ifdef __cplusplus
struct IConnectionPointContainer : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** ppEnum) = 0;
    virtual HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID riid, IConnectionPoint** ppCP) = 0;
};
#else
ZUL_C_INTERFACE(IConnectionPointContainer)
{
    ZUL_C_UNKNOWN(IConnectionPointContainer)
    HRESULT(STDMETHODCALLTYPE* EnumConnectionPoints)(IConnectionPointContainer*, IEnumConnectionPoints** ppEnum);
    HRESULT(STDMETHODCALLTYPE* FindConnectionPoint)(IConnectionPointContainer*, REFIID riid, IConnectionPoint** ppCP);
};
#endif
__CRT_UUID_DECL(IConnectionPointContainer, 0xb196b284, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d,
                0x07)

DEFINE_GUID(IID_IProvideClassInfo, 0xb196b283, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
#ifdef __cplusplus
struct IProvideClassInfo : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** ppTI) = 0;
};
#else
ZUL_C_INTERFACE(IProvideClassInfo)
{
    ZUL_C_UNKNOWN(IProvideClassInfo)
    HRESULT(STDMETHODCALLTYPE* GetClassInfo)(IProvideClassInfo*, ITypeInfo** ppTI);
};
#endif
__CRT_UUID_DECL(IProvideClassInfo, 0xb196b283, 0xbab4, 0x101a, 0xb6, 0x9c, 0x00, 0xaa, 0x00, 0x34, 0x1d, 0x07)
