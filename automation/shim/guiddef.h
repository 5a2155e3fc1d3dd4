// GUIDs. DEFINE_GUID declares one; in the one file that defines INITGUID first it defines it.
#pragma once
#pragma GCC system_header
#include <stdint.h>
#include <string.h>

typedef struct _GUID
{
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
} GUID;

typedef GUID IID;
typedef GUID CLSID;
typedef GUID FMTID;
typedef GUID* LPGUID;
typedef IID* LPIID;
typedef CLSID* LPCLSID;

#ifdef __cplusplus
typedef const GUID& REFGUID;
typedef const IID& REFIID;
typedef const CLSID& REFCLSID;

inline bool operator==(const GUID& a, const GUID& b) noexcept { return memcmp(&a, &b, sizeof(GUID)) == 0; }
inline bool IsEqualGUID(const GUID& a, const GUID& b) noexcept { return a == b; }
inline bool IsEqualIID(const IID& a, const IID& b) noexcept { return a == b; }
inline bool IsEqualCLSID(const CLSID& a, const CLSID& b) noexcept { return a == b; }

// The interface id of a type. On Windows the operator is the compiler's, or its headers' as here.
template <typename T>
struct ZulUuid;
#define __uuidof(type) (ZulUuid<type>::value)

#define __CRT_UUID_DECL(type, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8)                                     \
    extern "C++" {                                                                                           \
    template <>                                                                                              \
    struct ZulUuid<type>                                                                                     \
    {                                                                                                        \
        static constexpr IID value{l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}};                              \
    };                                                                                                       \
    }

#define ZUL_C_LINKAGE extern "C"
#else
typedef const GUID* REFGUID;
typedef const IID* REFIID;
typedef const CLSID* REFCLSID;

static inline int IsEqualGUID(REFGUID a, REFGUID b) { return memcmp(a, b, sizeof(GUID)) == 0; }
#define IsEqualIID IsEqualGUID
#define IsEqualCLSID IsEqualGUID
#define __CRT_UUID_DECL(type, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8)
#define ZUL_C_LINKAGE extern
#endif

#ifdef INITGUID
#define DEFINE_GUID(name, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8)                                         \
    ZUL_C_LINKAGE const GUID name;                                                                           \
    const GUID name = {l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}};
#else
#define DEFINE_GUID(name, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8) ZUL_C_LINKAGE const GUID name;
#endif

DEFINE_GUID(GUID_NULL, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)
#define IID_NULL GUID_NULL
#define CLSID_NULL GUID_NULL
