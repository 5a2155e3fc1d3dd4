// What the runtime exports for automation: texts, variants, arrays and error objects.
//
// A BSTR is UTF-16 with its length in bytes in the 32 bits before it; a null BSTR is the empty text everywhere.
#pragma once
#pragma GCC system_header
#include <oaidl.h>

STDAPI_(BSTR) SysAllocString(const OLECHAR* text);
STDAPI_(BSTR) SysAllocStringLen(const OLECHAR* text, UINT length);
STDAPI_(BSTR) SysAllocStringByteLen(const char* text, UINT bytes);
STDAPI_(INT) SysReAllocString(BSTR* text, const OLECHAR* newText);
STDAPI_(INT) SysReAllocStringLen(BSTR* text, const OLECHAR* newText, UINT length);
STDAPI_(void) SysFreeString(BSTR text);
STDAPI_(UINT) SysStringLen(BSTR text);
STDAPI_(UINT) SysStringByteLen(BSTR text);

#define VARIANT_NOVALUEPROP 0x01
#define VARIANT_ALPHABOOL 0x02
#define VARIANT_NOUSEROVERRIDE 0x04
#define VARIANT_LOCALBOOL 0x10

STDAPI_(void) VariantInit(VARIANTARG* variant);
STDAPI VariantClear(VARIANTARG* variant);
STDAPI VariantCopy(VARIANTARG* destination, const VARIANTARG* source);
STDAPI VariantCopyInd(VARIANT* destination, const VARIANTARG* source);
// The destination may be the source. It is unchanged after a failure: DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW,
// DISP_E_BADVARTYPE. Texts are read and written in the way of the locale's country.
STDAPI VariantChangeType(VARIANTARG* destination, const VARIANTARG* source, USHORT flags, VARTYPE vt);
STDAPI VariantChangeTypeEx(VARIANTARG* destination, const VARIANTARG* source, LCID lcid, USHORT flags,
                           VARTYPE vt);

STDAPI_(SAFEARRAY*) SafeArrayCreate(VARTYPE vt, UINT dimensions, SAFEARRAYBOUND* bounds);
STDAPI_(SAFEARRAY*) SafeArrayCreateVector(VARTYPE vt, LONG lowerBound, ULONG elements);
STDAPI SafeArrayDestroy(SAFEARRAY* array);
STDAPI SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy);
STDAPI_(UINT) SafeArrayGetDim(SAFEARRAY* array);
STDAPI_(UINT) SafeArrayGetElemsize(SAFEARRAY* array);
STDAPI SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound);
STDAPI SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound);
STDAPI SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* vt);
STDAPI SafeArrayLock(SAFEARRAY* array);
STDAPI SafeArrayUnlock(SAFEARRAY* array);
STDAPI SafeArrayAccessData(SAFEARRAY* array, void** data);
STDAPI SafeArrayUnaccessData(SAFEARRAY* array);
STDAPI SafeArrayPtrOfIndex(SAFEARRAY* array, LONG* indices, void** element);
STDAPI SafeArrayGetElement(SAFEARRAY* array, LONG* indices, void* element);
STDAPI SafeArrayPutElement(SAFEARRAY* array, LONG* indices, void* element);

// The error object of the calling thread. GetErrorInfo takes it away; S_FALSE when there is none.
STDAPI SetErrorInfo(ULONG reserved, IErrorInfo* errorInfo);
STDAPI GetErrorInfo(ULONG reserved, IErrorInfo** errorInfo);
STDAPI CreateErrorInfo(ICreateErrorInfo** errorInfo);
