// What the component's library exports on Windows; Zul_MessageBuilder.def names it.
#include "automation/ClassFactory.h"
#include "automation/Module.h"
#include "component/ServerRegistration.h"
#include "component/SmsCreatorObject.h"
#include "component/modMain.h"

#include <cwctype>
#include <string>

namespace {

// "user" among the words that regsvr32 passes on (/i:user), in any case.
bool isForUser(const wchar_t* commandLine)
{
    std::wstring words = commandLine == nullptr ? L"" : commandLine;
    for (wchar_t& c : words) {
        c = static_cast<wchar_t>(std::towlower(c));
    }
    return words.find(L"user") != std::wstring::npos;
}

} // namespace

extern "C" {

HRESULT STDMETHODCALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** object)
{
    return zul::getClassObject<zul::SmsCreatorObject>(clsid, CLSID_SmsCreator, iid, object);
}

HRESULT STDMETHODCALLTYPE DllCanUnloadNow()
{
    // A library that has shown a window stays: the user interface keeps parts of it until the process ends.
    return zul::moduleReferences() == 0 && !zul::anyWindowShown() ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE DllRegisterServer()
{
    return zul::registerServer(zul::RegistryScope::Machine);
}

HRESULT STDMETHODCALLTYPE DllUnregisterServer()
{
    return zul::unregisterServer(zul::RegistryScope::Machine);
}

// regsvr32 /n /i:user for one user, without administrator's rights; /i alone for the machine.
HRESULT STDMETHODCALLTYPE DllInstall(BOOL install, const wchar_t* commandLine)
{
    const zul::RegistryScope scope =
        isForUser(commandLine) ? zul::RegistryScope::User : zul::RegistryScope::Machine;
    return install ? zul::registerServer(scope) : zul::unregisterServer(scope);
}

} // extern "C"
