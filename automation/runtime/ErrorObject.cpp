// Error objects, one per thread at most.
#include <string>

#include <oleauto.h>

#include "automation/ComObject.h"

namespace {

// Both sides of an error object: written through ICreateErrorInfo, read through IErrorInfo.
class ErrorObject final : public zul::ComObject<ICreateErrorInfo, IErrorInfo>
{
public:
    HRESULT STDMETHODCALLTYPE SetGUID(REFGUID guid) override
    {
        m_guid = guid;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetSource(LPOLESTR text) override { return keep(text, m_source); }
    HRESULT STDMETHODCALLTYPE SetDescription(LPOLESTR text) override { return keep(text, m_description); }
    HRESULT STDMETHODCALLTYPE SetHelpFile(LPOLESTR text) override { return keep(text, m_helpFile); }
    HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD context) override
    {
        m_helpContext = context;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetGUID(GUID* guid) override
    {
        if (guid == nullptr) {
            return E_POINTER;
        }
        *guid = m_guid;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetSource(BSTR* text) override { return give(m_source, text); }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* text) override { return give(m_description, text); }
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* text) override { return give(m_helpFile, text); }
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* context) override
    {
        if (context == nullptr) {
            return E_POINTER;
        }
        *context = m_helpContext;
        return S_OK;
    }

private:
    static HRESULT keep(LPCOLESTR text, std::u16string& place) noexcept
    {
        try {
            place = text == nullptr ? std::u16string() : std::u16string(text);
            return S_OK;
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }
    static HRESULT give(const std::u16string& text, BSTR* out) noexcept
    {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = text.empty() ? nullptr : SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        return text.empty() || *out != nullptr ? S_OK : E_OUTOFMEMORY;
    }

    GUID m_guid{};
    std::u16string m_source;
    std::u16string m_description;
    std::u16string m_helpFile;
    DWORD m_helpContext = 0;
};

zul::ComPtr<IErrorInfo>& current() noexcept
{
    thread_local zul::ComPtr<IErrorInfo> error;
    return error;
}

} // namespace

HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* errorInfo)
{
    if (reserved != 0) {
        return E_INVALIDARG;
    }
    current() = zul::ComPtr<IErrorInfo>(errorInfo);
    return S_OK;
}

HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** errorInfo)
{
    if (errorInfo == nullptr) {
        return E_POINTER;
    }
    *errorInfo = nullptr;
    if (reserved != 0) {
        return E_INVALIDARG;
    }
    *errorInfo = current().detach();
    return *errorInfo != nullptr ? S_OK : S_FALSE;
}

HRESULT CreateErrorInfo(ICreateErrorInfo** errorInfo)
{
    if (errorInfo == nullptr) {
        return E_POINTER;
    }
    *errorInfo = nullptr;
    try {
        *errorInfo = zul::makeCom<ErrorObject>().detach();
        return S_OK;
    } catch (...) {
        return E_OUTOFMEMORY;
    }
}
