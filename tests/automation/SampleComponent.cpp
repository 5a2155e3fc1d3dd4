// A small component: an object that says whether a text is empty.
#include "tests/automation/SampleComponent.h"

#include <Zul_Host.h>

#include "automation/Bstr.h"
#include "automation/ClassFactory.h"
#include "automation/Dispatch.h"
#include "automation/Registration.h"
#include "tests/automation/SampleHooks.h"

#include <atomic>

namespace {

std::atomic<SampleHook> sampleHook{nullptr};

void callHook(SampleEntry entry)
{
    if (const SampleHook hook = sampleHook.load()) {
        hook(entry);
    }
}

class EmailCheck final : public zul::ComObject<zul::Dispatching<IEmailCheck>>
{
public:
    HRESULT STDMETHODCALLTYPE IsValid(BSTR email, VARIANT_BOOL* valid) override
    {
        if (valid == nullptr) {
            return E_POINTER;
        }
        *valid = zul::textOf(email).empty() ? VARIANT_FALSE : VARIANT_TRUE;
        return S_OK;
    }

private:
    const zul::DispTable<IEmailCheck>& dispTable() const override
    {
        static const zul::DispTable table{
            zul::dispatch::method("IsValid", 1, &IEmailCheck::IsValid, {"email"})};
        return table;
    }
};

} // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* object)
{
    callHook(SampleEntry::GetClassObject);
    return zul::getClassObject<EmailCheck>(clsid, sampleClass, iid, object);
}

STDAPI DllCanUnloadNow()
{
    const HRESULT answer = zul::moduleReferences() == 0 ? S_OK : S_FALSE;
    callHook(SampleEntry::CanUnloadNow);
    return answer;
}

STDAPI DllRegisterServer()
{
    return zul::registerClass(sampleClass, u"Zul_Sample.EmailCheck", u"A sample for the tests");
}

STDAPI DllUnregisterServer()
{
    return zul::unregisterClass(sampleClass);
}

extern "C" __attribute__((visibility("default"))) void zulSetSampleHook(SampleHook hook);

extern "C" void zulSetSampleHook(SampleHook hook)
{
    sampleHook = hook;
}
