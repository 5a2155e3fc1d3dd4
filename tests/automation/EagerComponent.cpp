// A component that makes an object of another one while it is being loaded: in its initialiser itself and on a
// thread that it waits for. Its class object is the other one's.
#include <thread>

#include <objbase.h>

#include <Zul_Host.h>

#include "automation/ComPtr.h"
#include "tests/automation/SampleComponent.h"

namespace {

HRESULT makeSample()
{
    zul::ComPtr<IEmailCheck> object;
    return CoCreateInstance(sampleClass, nullptr, CLSCTX_INPROC_SERVER, zul::iidOf<IEmailCheck>(),
                            object.putVoid());
}

HRESULT makeSampleOnAThread()
{
    HRESULT result = E_UNEXPECTED;
    std::thread([&] {
        CoInitialize(nullptr);
        result = makeSample();
        CoUninitialize();
    }).join();
    return result;
}

const HRESULT made = makeSample();
const HRESULT madeOnAThread = makeSampleOnAThread();

} // namespace

STDAPI DllGetClassObject(REFCLSID, REFIID iid, LPVOID* object)
{
    if (FAILED(made) || FAILED(madeOnAThread)) {
        *object = nullptr;
        return FAILED(made) ? made : madeOnAThread;
    }
    return CoGetClassObject(sampleClass, CLSCTX_INPROC_SERVER, nullptr, iid, object);
}

STDAPI DllCanUnloadNow()
{
    return S_OK;
}
