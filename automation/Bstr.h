// A BSTR that is owned. A null BSTR and the empty text are the same thing.
#pragma once

#include <new>
#include <string>
#include <string_view>
#include <utility>

#include <oleauto.h>

#include "base/Utf8.h"

namespace zul {

// The characters of a BSTR that somebody else owns; empty for null. Zeros inside count.
inline std::u16string_view textOf(BSTR text) noexcept
{
    if (text == nullptr) {
        return {};
    }
    return {reinterpret_cast<const char16_t*>(text), SysStringLen(text)};
}

class Bstr
{
public:
    Bstr() noexcept = default;
    // Copies the text. Throws std::bad_alloc.
    explicit Bstr(std::u16string_view text)
        : m_text(SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                   static_cast<UINT>(text.size())))
    {
        if (m_text == nullptr) {
            throw std::bad_alloc();
        }
    }
    static Bstr fromUtf8(std::string_view text) { return Bstr(utf16FromUtf8(text)); }
    // Takes over a text that the caller owned.
    static Bstr adopt(BSTR text) noexcept
    {
        Bstr result;
        result.m_text = text;
        return result;
    }

    Bstr(const Bstr& other)
        : m_text(other.m_text != nullptr ? Bstr(other.view()).detach() : nullptr)
    {}
    Bstr(Bstr&& other) noexcept
        : m_text(other.detach())
    {}
    Bstr& operator=(Bstr other) noexcept
    {
        std::swap(m_text, other.m_text);
        return *this;
    }
    ~Bstr() { SysFreeString(m_text); }

    // Still owned by this object.
    BSTR get() const noexcept { return m_text; }
    // For an out-parameter: frees what is held and gives the place for the new text.
    BSTR* put() noexcept
    {
        SysFreeString(std::exchange(m_text, nullptr));
        return &m_text;
    }
    // For an in/out-parameter: the place, with the text left in it.
    BSTR* inOut() noexcept { return &m_text; }
    // Hands the text to the caller.
    BSTR detach() noexcept { return std::exchange(m_text, nullptr); }

    bool isEmpty() const noexcept { return SysStringLen(m_text) == 0; }
    std::u16string_view view() const noexcept { return textOf(m_text); }
    std::u16string toString() const { return std::u16string(view()); }
    std::string toUtf8() const { return utf8FromUtf16(view()); }

    friend bool operator==(const Bstr& a, std::u16string_view b) noexcept { return a.view() == b; }
    friend bool operator==(const Bstr& a, const Bstr& b) noexcept { return a.view() == b.view(); }

private:
    BSTR m_text = nullptr;
};

} // namespace zul
