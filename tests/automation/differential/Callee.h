// The object that is called. Its members answer with what they were given.
#pragma once

#include <string>

#include <oleauto.h>

#include <Differential.h>

namespace differential {

// Everything but the late-bound calls themselves, which a file for each platform answers. Lives on the stack.
class Callee : public ICalls
{
public:
    virtual ~Callee() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override;

    HRESULT STDMETHODCALLTYPE get_Item(LONG Index, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE put_Item(LONG Index, BSTR value) override;
    HRESULT STDMETHODCALLTYPE get_Number(LONG* result) override;
    HRESULT STDMETHODCALLTYPE put_Number(LONG NewNumber) override;
    HRESULT STDMETHODCALLTYPE TakeLong(LONG value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeShort(SHORT value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeBoolean(VARIANT_BOOL value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeByte(unsigned char value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeLarge(hyper value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeFloat(FLOAT value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeDouble(DOUBLE value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeDate(DATE value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeText(BSTR value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeColour(CallColour value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeVariant(VARIANT value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeDispatch(IDispatch* value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeUnknown(IUnknown* value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE TakeCalls(ICalls* value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE ReadLong(LONG* value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE ReadBoolean(VARIANT_BOOL* value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE ReadDouble(DOUBLE* value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE ReadDate(DATE* value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE ReadText(BSTR* value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE ReadVariant(VARIANT* value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE ReadDispatch(IDispatch** value, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE Subtract(DOUBLE a, DOUBLE b, DOUBLE c, DOUBLE* result) override;
    HRESULT STDMETHODCALLTYPE Add(VARIANT item, VARIANT key, VARIANT before, BSTR* result) override;
    HRESULT STDMETHODCALLTYPE Send(BSTR to, BSTR* errorText, VARIANT_BOOL* result) override;
    HRESULT STDMETHODCALLTYPE Nothing() override;
    HRESULT STDMETHODCALLTYPE Fail(LONG code) override;
    HRESULT STDMETHODCALLTYPE ResultVariant(VARIANT* result) override;
    HRESULT STDMETHODCALLTYPE ResultDate(DATE* result) override;
    HRESULT STDMETHODCALLTYPE ResultObject(IDispatch** result) override;
    HRESULT STDMETHODCALLTYPE ResultBoolean(VARIANT_BOOL* result) override;

private:
    LONG m_number = 0;
};

// Where the last argument by reference stood.
const void* placeOfLastReference() noexcept;

// The callee with its late-bound calls; null where the folder holds no type library that one is needed for.
Callee* makeCallee(const std::string& folder);

} // namespace differential
