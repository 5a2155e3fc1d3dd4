#include "tests/windows/Component.h"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "automation/ModuleHandle.h"
#include "base/Utf8.h"
#include "tests/support/fake/DeadConnection.h"

namespace zul::windows {

namespace {

// A host made with a run-time library of its own has that in its process before it loads any other.
void loadAHostsRunTime()
{
    const wchar_t* const name = _wgetenv(L"ZUL_HOST_RUN_TIME");
    if (name == nullptr) {
        return;
    }
    std::wstring file = name;
    std::replace(file.begin(), file.end(), L'/', L'\\');
    if (LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH) == nullptr) {
        throw std::runtime_error("the host's run-time library cannot be loaded");
    }
}

HMODULE library()
{
    static const bool ready = (loadAHostsRunTime(), true);
    static_cast<void>(ready);
    static const HMODULE loaded =
        LoadLibraryExW(componentFile().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (loaded == nullptr) {
        throw std::runtime_error("the component cannot be loaded, error " + std::to_string(GetLastError()));
    }
    return loaded;
}

template <typename Function>
Function* exported(const char* name)
{
    auto* const found = reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library(), name)));
    if (found == nullptr) {
        throw std::runtime_error(std::string("the component does not export ") + name);
    }
    return found;
}

std::string utf8(const std::wstring& text)
{
    return utf8FromUtf16({reinterpret_cast<const char16_t*>(text.data()), text.size()});
}

void dumpInto(std::vector<std::string>& lines, HKEY root, const std::wstring& path)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
        return;
    }
    lines.push_back(utf8(path));
    wchar_t name[512];
    for (DWORD i = 0;; ++i) {
        DWORD length = 512;
        BYTE data[2048] = {};
        DWORD bytes = sizeof data;
        if (RegEnumValueW(key, i, name, &length, nullptr, nullptr, data, &bytes) != ERROR_SUCCESS) {
            break;
        }
        lines.push_back(utf8(path + L" | " + name + L" = " + reinterpret_cast<const wchar_t*>(data)));
    }
    for (DWORD i = 0;; ++i) {
        DWORD length = 512;
        if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
            break;
        }
        dumpInto(lines, root, path + L"\\" + name);
    }
    RegCloseKey(key);
}

class DeadConnection final : public test::DeadConnection<Dispatching<_SqlConnection>>
{
private:
    const DispTable<_SqlConnection>& dispTable() const override
    {
        using namespace zul::dispatch;
        static const DispTable<_SqlConnection> table{
            propget("Connection", 1, &_SqlConnection::get_Connection),
            propget("UserName", 2, &_SqlConnection::get_UserName),
            method("LookupValue", 3, &_SqlConnection::LookupValue, {"field", "table", "condition"}),
        };
        return table;
    }
};

} // namespace

std::wstring componentFile()
{
    const std::wstring program = moduleFile();
    const std::wstring tests = program.substr(0, program.rfind(L'\\'));
    return tests.substr(0, tests.rfind(L'\\')) + L"\\bin\\Zul_MessageBuilder.dll";
}

Registered::Registered()
{
    if (FAILED(registerForAll(true))) {
        throw std::runtime_error("the component cannot be registered");
    }
}

Registered::~Registered()
{
    registerForAll(false);
}

HRESULT install(bool on, const wchar_t* commandLine)
{
    return exported<HRESULT WINAPI(BOOL, const wchar_t*)>("DllInstall")(on, commandLine);
}

HRESULT registerForAll(bool on)
{
    return exported<HRESULT WINAPI()>(on ? "DllRegisterServer" : "DllUnregisterServer")();
}

HRESULT canUnloadNow()
{
    return exported<HRESULT WINAPI()>("DllCanUnloadNow")();
}

std::string dump(HKEY root, const std::wstring& path)
{
    std::vector<std::string> lines;
    dumpInto(lines, root, path);
    std::sort(lines.begin(), lines.end());
    std::string text;
    for (const std::string& line : lines) {
        text += line + "\n";
    }
    return text;
}

ComPtr<_SmsCreator> makeCreator()
{
    CLSID clsid{};
    ComPtr<_SmsCreator> creator;
    if (FAILED(CLSIDFromProgID(L"Zul_MessageBuilder.SmsCreator", &clsid)) ||
        FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, iidOf<_SmsCreator>(),
                                creator.putVoid()))) {
        throw std::runtime_error("no SmsCreator can be made");
    }
    return creator;
}

ComPtr<_SqlConnection> makeConnection()
{
    return makeCom<DeadConnection>().as<_SqlConnection>();
}

} // namespace zul::windows
