// Automation: VARIANT, SAFEARRAY, IDispatch, enumerators and error objects.
#pragma once
#pragma GCC system_header
#include <unknwn.h>

typedef struct IDispatch IDispatch;
typedef struct IRecordInfo IRecordInfo;
typedef struct ITypeInfo ITypeInfo;
typedef struct ITypeLib ITypeLib;
typedef struct IEnumVARIANT IEnumVARIANT;
typedef struct IErrorInfo IErrorInfo;
typedef struct ICreateErrorInfo ICreateErrorInfo;
typedef struct ISupportErrorInfo ISupportErrorInfo;

typedef struct tagSAFEARRAYBOUND
{
    ULONG cElements;
    LONG lLbound;
} SAFEARRAYBOUND;

typedef struct tagSAFEARRAY
{
    USHORT cDims;
    USHORT fFeatures;
    ULONG cbElements;
    ULONG cLocks;
    LPVOID pvData;
    SAFEARRAYBOUND rgsabound[1]; // cDims of them, the last dimension first
} SAFEARRAY;

#define FADF_AUTO 0x0001
#define FADF_STATIC 0x0002
#define FADF_EMBEDDED 0x0004
#define FADF_FIXEDSIZE 0x0010
#define FADF_RECORD 0x0020
#define FADF_HAVEIID 0x0040
#define FADF_HAVEVARTYPE 0x0080
#define FADF_BSTR 0x0100
#define FADF_UNKNOWN 0x0200
#define FADF_DISPATCH 0x0400
#define FADF_VARIANT 0x0800
#define FADF_CREATEVECTOR 0x2000

typedef struct tagVARIANT
{
    __extension__ union {
        __extension__ struct
        {
            VARTYPE vt;
            WORD wReserved1;
            WORD wReserved2;
            WORD wReserved3;
            __extension__ union {
                LONGLONG llVal;
                LONG lVal;
                BYTE bVal;
                SHORT iVal;
                FLOAT fltVal;
                DOUBLE dblVal;
                VARIANT_BOOL boolVal;
                SCODE scode;
                CY cyVal;
                DATE date;
                BSTR bstrVal;
                IUnknown* punkVal;
                IDispatch* pdispVal;
                SAFEARRAY* parray;
                BYTE* pbVal;
                SHORT* piVal;
                LONG* plVal;
                LONGLONG* pllVal;
                FLOAT* pfltVal;
                DOUBLE* pdblVal;
                VARIANT_BOOL* pboolVal;
                SCODE* pscode;
                CY* pcyVal;
                DATE* pdate;
                BSTR* pbstrVal;
                IUnknown** ppunkVal;
                IDispatch** ppdispVal;
                SAFEARRAY** pparray;
                struct tagVARIANT* pvarVal;
                void* byref;
                signed char cVal;
                USHORT uiVal;
                ULONG ulVal;
                ULONGLONG ullVal;
                INT intVal;
                UINT uintVal;
                DECIMAL* pdecVal;
                signed char* pcVal;
                USHORT* puiVal;
                ULONG* pulVal;
                ULONGLONG* pullVal;
                INT* pintVal;
                UINT* puintVal;
                __extension__ struct
                {
                    void* pvRecord;
                    IRecordInfo* pRecInfo;
                };
            };
        };
        DECIMAL decVal;
    };
} VARIANT;
typedef VARIANT VARIANTARG;
typedef VARIANT* LPVARIANT;

static_assert(sizeof(VARIANT) == 24 && sizeof(DECIMAL) == 16, "laid out as on 64-bit Windows");

#define V_UNION(x, y) ((x)->y)
#define V_VT(x) ((x)->vt)
#define V_I4(x) ((x)->lVal)
#define V_I2(x) ((x)->iVal)
#define V_I8(x) ((x)->llVal)
#define V_R8(x) ((x)->dblVal)
#define V_BSTR(x) ((x)->bstrVal)
#define V_BOOL(x) ((x)->boolVal)
#define V_DATE(x) ((x)->date)
#define V_DISPATCH(x) ((x)->pdispVal)
#define V_UNKNOWN(x) ((x)->punkVal)
#define V_ERROR(x) ((x)->scode)

typedef struct tagDISPPARAMS
{
    VARIANTARG* rgvarg;       // the last argument first; named ones before the others
    DISPID* rgdispidNamedArgs;
    UINT cArgs;
    UINT cNamedArgs;
} DISPPARAMS;

typedef struct tagEXCEPINFO
{
    WORD wCode;
    WORD wReserved;
    BSTR bstrSource;
    BSTR bstrDescription;
    BSTR bstrHelpFile;
    DWORD dwHelpContext;
    LPVOID pvReserved;
    HRESULT(STDMETHODCALLTYPE* pfnDeferredFillIn)(struct tagEXCEPINFO*);
    SCODE scode;
} EXCEPINFO;

#define DISPID_UNKNOWN ((DISPID)-1)
#define DISPID_VALUE ((DISPID)0)
#define DISPID_PROPERTYPUT ((DISPID)-3)
#define DISPID_NEWENUM ((DISPID)-4)
#define DISPATCH_METHOD 0x1
#define DISPATCH_PROPERTYGET 0x2
#define DISPATCH_PROPERTYPUT 0x4
#define DISPATCH_PROPERTYPUTREF 0x8

DEFINE_GUID(IID_IDispatch, 0x00020400, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
#ifdef __cplusplus
struct IDispatch : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pctinfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT iTInfo, LCID lcid, ITypeInfo** ppTInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID riid, LPOLESTR* rgszNames, UINT cNames, LCID lcid,
                                                    DISPID* rgDispId) = 0;
    virtual HRESULT STDMETHODCALLTYPE Invoke(DISPID dispIdMember, REFIID riid, LCID lcid, WORD wFlags,
                                             DISPPARAMS* pDispParams, VARIANT* pVarResult,
                                             EXCEPINFO* pExcepInfo, UINT* puArgErr) = 0;
};
#else
ZUL_C_INTERFACE(IDispatch)
{
    ZUL_C_UNKNOWN(IDispatch)
    HRESULT(STDMETHODCALLTYPE* GetTypeInfoCount)(IDispatch*, UINT* pctinfo);
    HRESULT(STDMETHODCALLTYPE* GetTypeInfo)(IDispatch*, UINT iTInfo, LCID lcid, ITypeInfo** ppTInfo);
    HRESULT(STDMETHODCALLTYPE* GetIDsOfNames)(IDispatch*, REFIID riid, LPOLESTR* rgszNames, UINT cNames, LCID lcid, DISPID* rgDispId);
    HRESULT(STDMETHODCALLTYPE* Invoke)(IDispatch*, DISPID dispIdMember, REFIID riid, LCID lcid, WORD wFlags, DISPPARAMS* pDispParams, VARIANT* pVarResult, EXCEPINFO* pExcepInfo, UINT* puArgErr);
};
#endif
typedef IDispatch* LPDISPATCH;
__CRT_UUID_DECL(IDispatch, 0x00020400, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)

DEFINE_GUID(IID_IEnumVARIANT, 0x00020404, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)
#ifdef __cplusplus
struct IEnumVARIANT : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE Next(ULONG celt, VARIANT* rgVar, ULONG* pCeltFetched) = 0;
    virtual HRESULT STDMETHODCALLTYPE Skip(ULONG celt) = 0;
    virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
    virtual HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** ppEnum) = 0;
};
#else
ZUL_C_INTERFACE(IEnumVARIANT)
{
    ZUL_C_UNKNOWN(IEnumVARIANT)
    HRESULT(STDMETHODCALLTYPE* Next)(IEnumVARIANT*, ULONG celt, VARIANT* rgVar, ULONG* pCeltFetched);
    HRESULT(STDMETHODCALLTYPE* Skip)(IEnumVARIANT*, ULONG celt);
    HRESULT(STDMETHODCALLTYPE* Reset)(IEnumVARIANT*);
    HRESULT(STDMETHODCALLTYPE* Clone)(IEnumVARIANT*, IEnumVARIANT** ppEnum);
};
#endif
__CRT_UUID_DECL(IEnumVARIANT, 0x00020404, 0x0000, 0x0000, 0xc0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46)

DEFINE_GUID(IID_IErrorInfo, 0x1cf2b120, 0x547d, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19)
#ifdef __cplusplus
struct IErrorInfo : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE GetGUID(GUID* pGUID) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSource(BSTR* pBstrSource) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDescription(BSTR* pBstrDescription) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* pBstrHelpFile) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* pdwHelpContext) = 0;
};
#else
ZUL_C_INTERFACE(IErrorInfo)
{
    ZUL_C_UNKNOWN(IErrorInfo)
    HRESULT(STDMETHODCALLTYPE* GetGUID)(IErrorInfo*, GUID* pGUID);
    HRESULT(STDMETHODCALLTYPE* GetSource)(IErrorInfo*, BSTR* pBstrSource);
    HRESULT(STDMETHODCALLTYPE* GetDescription)(IErrorInfo*, BSTR* pBstrDescription);
    HRESULT(STDMETHODCALLTYPE* GetHelpFile)(IErrorInfo*, BSTR* pBstrHelpFile);
    HRESULT(STDMETHODCALLTYPE* GetHelpContext)(IErrorInfo*, DWORD* pdwHelpContext);
};
#endif
__CRT_UUID_DECL(IErrorInfo, 0x1cf2b120, 0x547d, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19)

DEFINE_GUID(IID_ICreateErrorInfo, 0x22f03340, 0x547d, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19)
#ifdef __cplusplus
struct ICreateErrorInfo : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE SetGUID(REFGUID rguid) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSource(LPOLESTR szSource) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDescription(LPOLESTR szDescription) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpFile(LPOLESTR szHelpFile) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD dwHelpContext) = 0;
};
#else
ZUL_C_INTERFACE(ICreateErrorInfo)
{
    ZUL_C_UNKNOWN(ICreateErrorInfo)
    HRESULT(STDMETHODCALLTYPE* SetGUID)(ICreateErrorInfo*, REFGUID rguid);
    HRESULT(STDMETHODCALLTYPE* SetSource)(ICreateErrorInfo*, LPOLESTR szSource);
    HRESULT(STDMETHODCALLTYPE* SetDescription)(ICreateErrorInfo*, LPOLESTR szDescription);
    HRESULT(STDMETHODCALLTYPE* SetHelpFile)(ICreateErrorInfo*, LPOLESTR szHelpFile);
    HRESULT(STDMETHODCALLTYPE* SetHelpContext)(ICreateErrorInfo*, DWORD dwHelpContext);
};
#endif
__CRT_UUID_DECL(ICreateErrorInfo, 0x22f03340, 0x547d, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19)

DEFINE_GUID(IID_ISupportErrorInfo, 0xdf0b3d60, 0x548f, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19)
#ifdef __cplusplus
struct ISupportErrorInfo : public IUnknown
{
    virtual HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID riid) = 0;
};
#else
ZUL_C_INTERFACE(ISupportErrorInfo)
{
    ZUL_C_UNKNOWN(ISupportErrorInfo)
    HRESULT(STDMETHODCALLTYPE* InterfaceSupportsErrorInfo)(ISupportErrorInfo*, REFIID riid);
};
#endif
__CRT_UUID_DECL(ISupportErrorInfo, 0xdf0b3d60, 0x548f, 0x101b, 0x8e, 0x65, 0x08, 0x00, 0x2b, 0x2b, 0xd1, 0x19)
