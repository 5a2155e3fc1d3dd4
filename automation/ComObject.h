// The life and the interfaces of an object: AddRef, Release and QueryInterface over a list of interfaces.
//
//   class Row final : public zul::ComObject<IRowSink, ISupportErrorInfo> { … };
//   zul::ComPtr<Row> row = zul::makeCom<Row>(…);
#pragma once

#include <atomic>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include <oaidl.h>

#include "automation/ComPtr.h"
#include "automation/Module.h"
#include "automation/UnknownInterface.h"

namespace zul {

// The interface that a base of ComObject stands for: itself, or what a class that implements an interface
// names as its ComInterface (Dispatching, ConnectionPointContainer).
template <typename T, typename = void>
struct InterfaceOf
{
    using type = T;
};
template <typename T>
struct InterfaceOf<T, std::void_t<typename T::ComInterface>>
{
    using type = typename T::ComInterface;
};

// Interfaces have no destructor of their own; an object is destroyed by its last Release, as what it is.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

// Answers IUnknown (by the first interface), IDispatch (by the first dual one) and every interface of the list;
// other ids are noted (see UnknownInterface.h). Counts as a reference to its module while it lives. Destroyed by
// the last Release; references may be taken and given back on any thread.
template <typename... Interfaces>
class ComObject : public Interfaces...
{
public:
    ComObject() noexcept { moduleAddRef(); }
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;
    virtual ~ComObject() { moduleRelease(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override
    {
        if (object == nullptr) {
            return E_POINTER;
        }
        *object = nullptr;
        (void)(... || answer<Interfaces>(riid, object));
        if (*object == nullptr) {
            noteUnknownInterface(riid, typeid(*this).name());
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() override
    {
        return m_references.fetch_add(1, std::memory_order_relaxed) + 1;
    }

    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = m_references.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if (left == 0) {
            // A destructor that hands the object out for a moment must not destroy it a second time.
            m_references.store(dying, std::memory_order_relaxed);
#ifndef __clang_analyzer__ // which cannot follow the count and takes every release for the last one
            delete this;
#endif
        }
        return left;
    }

private:
    static constexpr ULONG dying = 0x40000000;

    template <typename Base>
    bool answer(REFIID riid, void** object) noexcept
    {
        using Interface = typename InterfaceOf<Base>::type;
        if (riid == iidOf<Interface>() || riid == iidOf<IUnknown>()) {
            *object = static_cast<Interface*>(static_cast<Base*>(this));
            return true;
        }
        if constexpr (std::is_base_of_v<IDispatch, Interface>) {
            if (riid == iidOf<IDispatch>()) {
                *object = static_cast<IDispatch*>(static_cast<Base*>(this));
                return true;
            }
        }
        return false;
    }

    std::atomic<ULONG> m_references{1};
};

#pragma GCC diagnostic pop

// A new object with one reference, which the pointer owns.
template <typename T, typename... Args>
ComPtr<T> makeCom(Args&&... args)
{
    return ComPtr<T>::adopt(new T(std::forward<Args>(args)...));
}

} // namespace zul
