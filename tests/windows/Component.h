// The component's library as hosts of another making use it: these tests link nothing of it.
#pragma once

#include <memory>
#include <string>

#include <Zul_MessageBuilder.h>
#include <oleauto.h>

#include "automation/ComPtr.h"

namespace zul::windows {

// "…\bin\Zul_MessageBuilder.dll"
std::wstring componentFile();

// An apartment of the thread's, for as long as it lives.
class Apartment
{
public:
    explicit Apartment(DWORD kind = COINIT_APARTMENTTHREADED)
        : m_result(CoInitializeEx(nullptr, kind))
    {}
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment()
    {
        if (SUCCEEDED(m_result)) {
            CoUninitialize();
        }
    }

private:
    HRESULT m_result;
};

// The component registered for as long as it lives: for all users, because Wine makes no objects of classes that are
// registered for one user.
class Registered
{
public:
    Registered();
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;
    ~Registered();
};

// DllInstall of the library; the command line is regsvr32's.
HRESULT install(bool on, const wchar_t* commandLine);
// DllRegisterServer or DllUnregisterServer.
HRESULT registerForAll(bool on);
// DllCanUnloadNow.
HRESULT canUnloadNow();

// All keys and values below a key, one a line, in order.
std::string dump(HKEY root, const std::wstring& path);

// An object of the class, made by its name.
ComPtr<_SmsCreator> makeCreator();

// The least of a connection object: every member fails.
ComPtr<_SqlConnection> makeConnection();

} // namespace zul::windows
