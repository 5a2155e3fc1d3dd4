// The basic automation types, with the sizes they have on 64-bit Windows: LONG and HRESULT are 32 bits,
// texts are UTF-16.
#pragma once
#pragma GCC system_header
#include <stddef.h>
#ifndef __cplusplus
#include <assert.h>
#include <uchar.h>
#endif
#include <guiddef.h>

#define interface struct
#define STDMETHODCALLTYPE
#define STDMETHODVCALLTYPE
#define STDAPICALLTYPE
#define WINAPI
#define __RPC_USER
#define __RPC_FAR
#define __RPC_STUB
#define BEGIN_INTERFACE
#define END_INTERFACE
#define CONST_VTBL const
#define FORCEINLINE inline
#define DECLSPEC_UUID(x)
#define DECLSPEC_NOVTABLE
#define DECLSPEC_SELECTANY __attribute__((weak))
#define MIDL_INTERFACE(x) struct
#define DECLSPEC_EXPORT __attribute__((visibility("default")))
#define EXTERN_C ZUL_C_LINKAGE
// A function of the runtime, or an entry point of a component: exported, and not mangled.
#define STDAPI ZUL_C_LINKAGE DECLSPEC_EXPORT HRESULT STDAPICALLTYPE
#define STDAPI_(type) ZUL_C_LINKAGE DECLSPEC_EXPORT type STDAPICALLTYPE
#define STDMETHODIMP HRESULT STDMETHODCALLTYPE
#define STDMETHODIMP_(type) type STDMETHODCALLTYPE

typedef char CHAR;
typedef unsigned char BYTE;
typedef short SHORT;
typedef unsigned short USHORT;
typedef unsigned short WORD;
typedef int32_t LONG;
typedef uint32_t ULONG;
typedef uint32_t DWORD;
typedef long long LONGLONG;
typedef unsigned long long ULONGLONG;
typedef long long hyper;
typedef int32_t INT;
typedef uint32_t UINT;
typedef float FLOAT;
typedef double DOUBLE;
typedef void* LPVOID;
typedef size_t SIZE_T;
typedef intptr_t INT_PTR;
typedef uintptr_t UINT_PTR;

typedef LONG HRESULT;
typedef LONG SCODE;
typedef DWORD LCID;
typedef LONG DISPID;
typedef DISPID MEMBERID;
typedef DWORD HREFTYPE;

typedef char16_t OLECHAR;
typedef OLECHAR* LPOLESTR;
typedef const OLECHAR* LPCOLESTR;
typedef OLECHAR* BSTR;
typedef double DATE;
typedef short VARIANT_BOOL;
typedef unsigned short VARTYPE;
#define VARIANT_TRUE ((VARIANT_BOOL)-1)
#define VARIANT_FALSE ((VARIANT_BOOL)0)

typedef union tagCY
{
    __extension__ struct
    {
        ULONG Lo;
        LONG Hi;
    };
    LONGLONG int64;
} CY;

// Hi32:Mid32:Lo32 times ten to the power of -scale. The first two bytes are the type of the VARIANT that
// holds the number in place.
typedef struct tagDEC
{
    USHORT wReserved;
    __extension__ union {
        __extension__ struct
        {
            BYTE scale;
            BYTE sign;
        };
        USHORT signscale;
    };
    ULONG Hi32;
    __extension__ union {
        __extension__ struct
        {
            ULONG Lo32;
            ULONG Mid32;
        };
        ULONGLONG Lo64;
    };
} DECIMAL;
#define DECIMAL_NEG ((BYTE)0x80)

enum VARENUM
{
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_DECIMAL = 14,
    VT_I1 = 16,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_VOID = 24,
    VT_HRESULT = 25,
    VT_PTR = 26,
    VT_SAFEARRAY = 27,
    VT_USERDEFINED = 29,
    VT_RECORD = 36,
    VT_INT_PTR = 37,
    VT_UINT_PTR = 38,
    VT_ARRAY = 0x2000,
    VT_BYREF = 0x4000,
    VT_TYPEMASK = 0xfff
};

typedef enum tagCLSCTX
{
    CLSCTX_INPROC_SERVER = 0x1,
    CLSCTX_INPROC_HANDLER = 0x2,
    CLSCTX_LOCAL_SERVER = 0x4,
    CLSCTX_REMOTE_SERVER = 0x10,
    CLSCTX_ALL = 0x17
} CLSCTX;

#define LOCALE_USER_DEFAULT 0x0400
#define LOCALE_SYSTEM_DEFAULT 0x0800
#define LOCALE_INVARIANT 0x007f

// An interface in C: a structure whose first member leads to the table of its functions.
#ifndef __cplusplus
#define ZUL_C_INTERFACE(name)                                                                                \
    typedef struct name##Vtbl name##Vtbl;                                                                    \
    struct name                                                                                              \
    {                                                                                                        \
        const name##Vtbl* lpVtbl;                                                                            \
    };                                                                                                       \
    struct name##Vtbl
#define ZUL_C_UNKNOWN(name)                                                                                  \
    HRESULT(STDMETHODCALLTYPE* QueryInterface)(name*, REFIID riid, void** ppvObject);                        \
    ULONG(STDMETHODCALLTYPE* AddRef)(name*);                                                                 \
    ULONG(STDMETHODCALLTYPE* Release)(name*);
#endif

#include <winerror.h>
