// A pointer that owns one reference to an object.
#pragma once

#include <cstddef>
#include <utility>

#include "automation/Uuid.h"

namespace zul {

template <typename T>
class ComPtr
{
public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}
    // Takes a reference of its own.
    ComPtr(T* object) noexcept
        : m_object(object)
    {
        if (m_object != nullptr) {
            m_object->AddRef();
        }
    }
    ComPtr(const ComPtr& other) noexcept
        : ComPtr(other.m_object)
    {}
    ComPtr(ComPtr&& other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
    {}
    template <typename U>
    ComPtr(const ComPtr<U>& other) noexcept
        : ComPtr(static_cast<T*>(other.get()))
    {}
    ~ComPtr() { reset(); }

    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    // Takes over a reference that the caller owned.
    static ComPtr adopt(T* object) noexcept
    {
        ComPtr result;
        result.m_object = object;
        return result;
    }

    T* get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

    // For an out-parameter: releases what is held and gives the place for the new pointer.
    T** put() noexcept
    {
        reset();
        return &m_object;
    }
    void** putVoid() noexcept { return reinterpret_cast<void**>(put()); }

    void reset() noexcept
    {
        // Cleared first: the release may run code that looks at this pointer.
        if (T* const object = std::exchange(m_object, nullptr)) {
            object->Release();
        }
    }

    // Hands the reference to the caller.
    T* detach() noexcept { return std::exchange(m_object, nullptr); }

    // Hands out one more reference, as an out-parameter wants it. Null stays null.
    HRESULT copyTo(T** out) const noexcept
    {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = ComPtr(*this).detach();
        return S_OK;
    }

    // The same object's interface U, or null when it has none (or this is null).
    template <typename U>
    ComPtr<U> as() const noexcept
    {
        ComPtr<U> result;
        if (m_object != nullptr && FAILED(m_object->QueryInterface(iidOf<U>(), result.putVoid()))) {
            result.detach(); // what a failed query leaves behind is no reference
        }
        return result;
    }

    friend bool operator==(const ComPtr& a, const ComPtr& b) noexcept { return a.m_object == b.m_object; }
    friend bool operator==(const ComPtr& a, std::nullptr_t) noexcept { return a.m_object == nullptr; }

private:
    T* m_object = nullptr;
};

// The interface U of an object that somebody else holds, or null.
template <typename U, typename T>
ComPtr<U> queryFor(T* object) noexcept
{
    return ComPtr<T>(object).template as<U>();
}

} // namespace zul
