// What the component's library exports: these four functions and nothing else.
#include "automation/ClassFactory.h"
#include "automation/Module.h"
#include "automation/Registration.h"
#include "component/SmsCreatorObject.h"
#include "component/modMain.h"

#define ZUL_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

constexpr const char16_t* ProgId = u"Zul_MessageBuilder.SmsCreator";
constexpr const char16_t* Description = u"Zul_MessageBuilder SmsCreator";

} // namespace

ZUL_EXPORT HRESULT STDMETHODCALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** object)
{
    return zul::getClassObject<zul::SmsCreatorObject>(clsid, CLSID_SmsCreator, iid, object);
}

ZUL_EXPORT HRESULT STDMETHODCALLTYPE DllCanUnloadNow()
{
    // A library that has shown a window stays: the user interface keeps parts of it until the process ends.
    return zul::moduleReferences() == 0 && !zul::anyWindowShown() ? S_OK : S_FALSE;
}

ZUL_EXPORT HRESULT STDMETHODCALLTYPE DllRegisterServer()
{
    return zul::registerClass(CLSID_SmsCreator, ProgId, Description);
}

ZUL_EXPORT HRESULT STDMETHODCALLTYPE DllUnregisterServer()
{
    return zul::unregisterClass(CLSID_SmsCreator);
}
