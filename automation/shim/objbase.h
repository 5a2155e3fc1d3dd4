// What the runtime exports for objects: task memory, class ids, loading of components.
#pragma once
#pragma GCC system_header
#include <unknwn.h>

#define COINIT_APARTMENTTHREADED 0x2
#define COINIT_MULTITHREADED 0x0
#define INFINITE 0xffffffffu

STDAPI_(LPVOID) CoTaskMemAlloc(SIZE_T size);
STDAPI_(LPVOID) CoTaskMemRealloc(LPVOID memory, SIZE_T size);
STDAPI_(void) CoTaskMemFree(LPVOID memory);

// Once per thread that uses objects, balanced by CoUninitialize; S_FALSE when the thread has it already,
// RPC_E_CHANGED_MODE (not to be balanced) when it has the other kind of apartment.
STDAPI CoInitialize(LPVOID reserved);
STDAPI CoInitializeEx(LPVOID reserved, DWORD coInit);
STDAPI_(void) CoUninitialize(void);

// Finds the library of a class in the registration file, loads it and asks it for the class.
// CO_E_NOTINITIALIZED, REGDB_E_CLASSNOTREG (unknown class), CO_E_DLLNOTFOUND (its library is gone or does not
// load), CO_E_ERRORINDLL (no component), REGDB_E_READREGDB (the file cannot be read), or what the library's
// DllGetClassObject answers. The error object says more.
STDAPI CoGetClassObject(REFCLSID clsid, DWORD clsContext, LPVOID reserved, REFIID iid, LPVOID* object);
STDAPI CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD clsContext, REFIID iid, LPVOID* object);
// Unloads the libraries whose DllCanUnloadNow answers S_OK: at once where no other thread is initialised, else
// those that have answered so for ten minutes, because another thread may still be on its way out of the code.
STDAPI_(void) CoFreeUnusedLibraries();
// The same with a delay in milliseconds: 0 unloads at once, INFINITE is CoFreeUnusedLibraries.
STDAPI_(void) CoFreeUnusedLibrariesEx(DWORD delay, DWORD reserved);

STDAPI CLSIDFromProgID(LPCOLESTR progId, CLSID* clsid);
// The text is freed with CoTaskMemFree.
STDAPI ProgIDFromCLSID(REFCLSID clsid, LPOLESTR* progId);
// "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}"; CLSIDFromString takes a registered ProgID as well.
STDAPI CLSIDFromString(LPCOLESTR text, CLSID* clsid);
STDAPI IIDFromString(LPCOLESTR text, IID* iid);
STDAPI StringFromCLSID(REFCLSID clsid, LPOLESTR* text);
STDAPI StringFromIID(REFIID iid, LPOLESTR* text);
// 39 with the end mark, 0 when the room (in characters) is too small.
STDAPI_(int) StringFromGUID2(REFGUID guid, LPOLESTR text, int room);
STDAPI CoCreateGuid(GUID* guid);
