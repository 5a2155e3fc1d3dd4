// Script hosts: the system's own for VBScript and JScript files, and one that runs a script in its process and hands it
// the component's events by name, as a page or an office program does.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <windows.h>

#include <activscp.h>
#include <ocidl.h>

#include "automation/Bstr.h"
#include "automation/ComObject.h"
#include "automation/ConnectionPoints.h"
#include "automation/Variant.h"
#include "tests/windows/Component.h"

using namespace zul;
using namespace zul::windows;

namespace {

#ifdef _WIN64
using ScriptParser = IActiveScriptParse64;
#else
using ScriptParser = IActiveScriptParse32;
#endif

constexpr CLSID clsidVBScript{0xB54F3741, 0x5B07, 0x11CF, {0xA4, 0xB0, 0x00, 0xAA, 0x00, 0x4A, 0x55, 0xE8}};

/// Runs "cscript //nologo FILE" on a file with these lines; what it wrote, with a line's end for each "\r\n".
std::string runScriptFile(const std::string& name, const std::string& script)
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path();
    const std::filesystem::path file = folder / name;
    std::ofstream(file, std::ios::binary) << script;
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE output = nullptr;
    HANDLE input = nullptr;
    CreatePipe(&output, &input, &inherited, 0);
    SetHandleInformation(output, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = input;
    start.hStdError = input;
    std::wstring command = L"cscript.exe //nologo \"" + file.wstring() + L"\"";
    PROCESS_INFORMATION process{};
    const bool started = CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                        &start, &process);
    CloseHandle(input);
    std::string text = started ? "" : "cscript was not started";
    char part[256];
    for (DWORD count = 0; ReadFile(output, part, sizeof part, &count, nullptr) && count > 0;) {
        text.append(part, count);
    }
    CloseHandle(output);
    if (started) {
        WaitForSingleObject(process.hProcess, 60'000);
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
    std::filesystem::remove(file);
    std::erase(text, '\r');
    return text;
}

/// The least of a site: it knows one object by name and keeps what went wrong.
class Site final : public ComObject<IActiveScriptSite>
{
public:
    ComPtr<IUnknown> object;
    std::u16string error;

    HRESULT STDMETHODCALLTYPE GetLCID(LCID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR, DWORD wanted, IUnknown** item, ITypeInfo** info) override
    {
        if ((wanted & SCRIPTINFO_ITYPEINFO) != 0) {
            *info = nullptr;
        }
        if ((wanted & SCRIPTINFO_IUNKNOWN) != 0) {
            object->AddRef();
            *item = object.get();
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* what) override
    {
        EXCEPINFO info{};
        what->GetExceptionInfo(&info);
        error = textOf(info.bstrDescription);
        SysFreeString(info.bstrSource);
        SysFreeString(info.bstrDescription);
        SysFreeString(info.bstrHelpFile);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }
};

/// Hands each event of an object to the procedure OBJECT_EVENT of a script; the names come from the class information.
class NamedEvents final : public ComObject<IDispatch>
{
public:
    NamedEvents(ComPtr<IDispatch> script, ComPtr<ITypeInfo> events, std::wstring object)
        : m_script(std::move(script))
        , m_events(std::move(events))
        , m_object(std::move(object))
    {}

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override
    {
        *info = nullptr;
        return DISP_E_BADINDEX;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD, DISPPARAMS* params, VARIANT*,
                                     EXCEPINFO*, UINT*) override
    {
        BSTR name = nullptr;
        UINT count = 0;
        if (FAILED(m_events->GetNames(id, &name, 1, &count))) {
            return DISP_E_MEMBERNOTFOUND;
        }
        std::wstring procedure = m_object + L"_" + Bstr::adopt(name).get();
        LPOLESTR names[] = {procedure.data()};
        DISPID found = DISPID_UNKNOWN;
        const HRESULT known = m_script->GetIDsOfNames(GUID_NULL, names, 1, locale, &found);
        return FAILED(known) ? known
                             : m_script->Invoke(found, GUID_NULL, locale, DISPATCH_METHOD, params, nullptr,
                                                nullptr, nullptr);
    }

private:
    ComPtr<IDispatch> m_script;
    ComPtr<ITypeInfo> m_events;
    std::wstring m_object;
};

/// The description of a class's default source interface.
ComPtr<ITypeInfo> sourceOf(IUnknown& object)
{
    ComPtr<IProvideClassInfo> provider;
    ComPtr<ITypeInfo> type;
    ComPtr<ITypeInfo> source;
    TYPEATTR* attributes = nullptr;
    if (FAILED(object.QueryInterface(iidOf<IProvideClassInfo>(), provider.putVoid())) ||
        FAILED(provider->GetClassInfo(type.put())) || FAILED(type->GetTypeAttr(&attributes))) {
        return source;
    }
    for (UINT i = 0; i < attributes->cImplTypes; ++i) {
        INT flags = 0;
        HREFTYPE reference = 0;
        constexpr INT wanted = IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE;
        if (SUCCEEDED(type->GetImplTypeFlags(i, &flags)) && (flags & wanted) == wanted &&
            SUCCEEDED(type->GetRefTypeOfImplType(i, &reference))) {
            type->GetRefTypeInfo(reference, source.put());
        }
    }
    type->ReleaseTypeAttr(attributes);
    return source;
}

class Script : public testing::Test
{
protected:
    const Apartment apartment;
    const Registered registered;
};

} // namespace

TEST_F(Script, AVBScriptFileDrivesTheComponent)
{
    EXPECT_EQ(runScriptFile("zul_host.vbs",
                            "Option Explicit\r\n"
                            "Dim creator\r\n"
                            "Set creator = CreateObject(\"Zul_MessageBuilder.SmsCreator\")\r\n"
                            "WScript.Echo creator.idUtente\r\n"
                            "creator.idUtente = 7\r\n"
                            "WScript.Echo creator.idutente + 1\r\n"
                            "creator.idUtente = \"42\"\r\n"
                            "WScript.Echo TypeName(creator.idUtente), creator.idUtente\r\n"
                            "creator.InitWhatToShow True, False, True\r\n"
                            "WScript.Echo CInt(creator.isOkPressed), VarType(creator.isOkPressed)\r\n"
                            "WScript.Echo \"[\" & creator.GetFormChoice & \"]\"\r\n"
                            "On Error Resume Next\r\n"
                            "creator.idUtente = \"x\"\r\n"
                            "WScript.Echo Err.Number\r\n"
                            "Err.Clear\r\n"
                            "creator.NoSuchMember\r\n"
                            "WScript.Echo Err.Number\r\n"),
              "0\n8\nLong 42\n0 11\n[]\n13\n438\n");
}

TEST_F(Script, AJScriptFileDrivesTheComponent)
{
    EXPECT_EQ(runScriptFile("zul_host.js",
                            "var creator = new ActiveXObject('Zul_MessageBuilder.SmsCreator.1');\r\n"
                            "creator.idUtente = 7;\r\n"
                            "creator.InitWhatToSearch(true, 0);\r\n"
                            "WScript.Echo(creator.idUtente + 1);\r\n"
                            "WScript.Echo(typeof creator.isOkPressed());\r\n"),
              "8\nboolean\n");
}

TEST_F(Script, AScriptTakesTheEventByItsName)
{
    ComPtr<IActiveScript> engine;
    ASSERT_EQ(CoCreateInstance(clsidVBScript, nullptr, CLSCTX_INPROC_SERVER, iidOf<IActiveScript>(),
                               engine.putVoid()),
              S_OK);
    const ComPtr<_SmsCreator> creator = makeCreator();
    const ComPtr<Site> site = makeCom<Site>();
    site->object = creator.as<IUnknown>();
    const ComPtr<ScriptParser> parser = engine.as<ScriptParser>();
    ASSERT_EQ(parser->InitNew(), S_OK);
    ASSERT_EQ(engine->SetScriptSite(site.get()), S_OK);
    ASSERT_EQ(engine->AddNamedItem(L"creator", SCRIPTITEM_ISVISIBLE), S_OK);
    const wchar_t* const text =
        L"Dim seen\r\n"
        L"Sub creator_CaricaGriglia(grid, sql, visibility, icons, masks, sizable, buttons, "
        L"formats, quantities, colours, captions)\r\n"
        L"  seen = sql & \"|\" & colours & \"|\" & CInt(captions Is Nothing)\r\n"
        L"End Sub\r\n"
        L"Sub go\r\n"
        L"  creator.EventoGrd_CaricaGrd Nothing, \"SELECT 'àè€'\", \"1\", \"2\", \"3\", "
        L"\"4\", \"5\", \"6\", \"7\", \"8\", Nothing\r\n"
        L"End Sub\r\n";
    ASSERT_EQ(parser->ParseScriptText(text, nullptr, nullptr, nullptr, 0, 0, 0, nullptr, nullptr), S_OK);
    ASSERT_EQ(engine->SetScriptState(SCRIPTSTATE_CONNECTED), S_OK);
    ComPtr<IDispatch> script;
    ASSERT_EQ(engine->GetScriptDispatch(nullptr, script.put()), S_OK);

    const ComPtr<ITypeInfo> events = sourceOf(*creator.get());
    ASSERT_TRUE(events);
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(creator.as<IConnectionPointContainer>()->FindConnectionPoint(DIID___SmsCreator, point.put()),
              S_OK);
    const ComPtr<NamedEvents> sink = makeCom<NamedEvents>(script, events, L"creator");
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(sink.get(), &cookie), S_OK);

    wchar_t go[] = L"go";
    LPOLESTR names[] = {go};
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(script->GetIDsOfNames(GUID_NULL, names, 1, 0, &id), S_OK);
    DISPPARAMS none{};
    EXPECT_EQ(script->Invoke(id, GUID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr), S_OK);
    EXPECT_EQ(site->error, u"");

    wchar_t seen[] = L"seen";
    names[0] = seen;
    ASSERT_EQ(script->GetIDsOfNames(GUID_NULL, names, 1, 0, &id), S_OK);
    Variant result;
    EXPECT_EQ(script->Invoke(id, GUID_NULL, 0, DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr), S_OK);
    ASSERT_EQ(result.vt, VT_BSTR);
    EXPECT_EQ(textOf(result.bstrVal), u"SELECT 'àè€'|8|-1");

    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    engine->Close();
}
