// What DllGetClassObject hands out.
#pragma once

#include <new>
#include <utility>

#include "automation/ComObject.h"

namespace zul {

// Makes objects of class T, which is default-constructible. Objects cannot be aggregated.
template <typename T>
class ClassFactory final : public ComObject<IClassFactory>
{
public:
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID riid, void** object) override
    {
        if (object == nullptr) {
            return E_POINTER;
        }
        *object = nullptr;
        if (outer != nullptr) {
            return CLASS_E_NOAGGREGATION;
        }
        try {
            return makeCom<T>()->QueryInterface(riid, object);
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (...) {
            return E_UNEXPECTED;
        }
    }

    HRESULT STDMETHODCALLTYPE LockServer(int lock) override
    {
        if (lock != 0) {
            moduleAddRef();
        } else {
            moduleRelease();
        }
        return S_OK;
    }
};

// The body of DllGetClassObject for a library with one class:
// CLASS_E_CLASSNOTAVAILABLE for any other class, E_NOINTERFACE for an interface that a factory lacks.
template <typename T>
HRESULT getClassObject(REFCLSID wanted, REFCLSID published, REFIID riid, void** object) noexcept
{
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (!(wanted == published)) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    try {
        return makeCom<ClassFactory<T>>()->QueryInterface(riid, object);
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}

} // namespace zul
