#include "component/ClassInfo.h"

#include "automation/ComPtr.h"
#include "automation/TypeInfo.h"
#include "automation/Uuid.h"

#include <Zul_MessageBuilder.h>
#include <ocidl.h>

#include <atomic>
#include <new>

namespace zul {

namespace {

// Interfaces have no destructor of their own; the object is destroyed by its last Release, as what it is.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// Part of the object whose identity it has: it keeps the object alive and answers every other interface through it.
class ClassInfo final : public IProvideClassInfo2
{
public:
    explicit ClassInfo(IUnknown& object) noexcept
        : m_object(&object)
    {}
    virtual ~ClassInfo() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** answer) override
    {
        return m_object->QueryInterface(riid, answer);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override
    {
        return typeInfo(CLSID_SmsCreator, 0, info);
    }

    HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* id) override
    {
        if (id == nullptr) {
            return E_POINTER;
        }
        *id = GUID_NULL;
        if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) {
            return E_INVALIDARG;
        }
        *id = DIID___SmsCreator;
        return S_OK;
    }

private:
    std::atomic<ULONG> m_references{1};
    ComPtr<IUnknown> m_object;
};

#pragma GCC diagnostic pop

} // namespace

HRESULT provideClassInfo(IUnknown& object, REFIID riid, void** answer) noexcept
{
    if (!(riid == iidOf<IProvideClassInfo>() || riid == iidOf<IProvideClassInfo2>()) ||
        typeInfoCount(CLSID_SmsCreator) == 0) {
        return E_NOINTERFACE;
    }
    auto* const info = new (std::nothrow) ClassInfo(object);
    *answer = info;
    return info != nullptr ? S_OK : E_OUTOFMEMORY;
}

} // namespace zul
