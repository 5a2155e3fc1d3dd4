#include "automation/ErrorInfo.h"

#include <cstdio>
#include <cstring>

#include <olectl.h>

#include "automation/Bstr.h"
#include "automation/ComPtr.h"

namespace zul {

namespace {

struct KnownResult
{
    HRESULT code;
    const char* words;
};

// Not an array of the codes' range: they are few and scattered.
constexpr KnownResult knownResults[] = {
    {E_NOTIMPL, "Not implemented"},
    {E_NOINTERFACE, "No such interface supported"},
    {E_POINTER, "Invalid pointer"},
    {E_ABORT, "Operation aborted"},
    {E_FAIL, "Unspecified error"},
    {E_UNEXPECTED, "Catastrophic failure"},
    {E_ACCESSDENIED, "Access is denied"},
    {E_OUTOFMEMORY, "Not enough memory"},
    {E_INVALIDARG, "One or more arguments are invalid"},
    {DISP_E_UNKNOWNINTERFACE, "Unknown interface"},
    {DISP_E_MEMBERNOTFOUND, "Member not found"},
    {DISP_E_PARAMNOTFOUND, "Parameter not found"},
    {DISP_E_TYPEMISMATCH, "Type mismatch"},
    {DISP_E_UNKNOWNNAME, "Unknown name"},
    {DISP_E_NONAMEDARGS, "No named arguments"},
    {DISP_E_BADVARTYPE, "Bad variable type"},
    {DISP_E_EXCEPTION, "Exception occurred"},
    {DISP_E_OVERFLOW, "Out of present range"},
    {DISP_E_BADINDEX, "Invalid index"},
    {DISP_E_BADPARAMCOUNT, "Invalid number of parameters"},
    {DISP_E_PARAMNOTOPTIONAL, "Parameter not optional"},
    {CLASS_E_NOAGGREGATION, "The class does not support aggregation"},
    {CLASS_E_CLASSNOTAVAILABLE, "The library does not supply the class"},
    {REGDB_E_READREGDB, "The registration cannot be read"},
    {REGDB_E_WRITEREGDB, "The registration cannot be written"},
    {REGDB_E_CLASSNOTREG, "Class not registered"},
    {CO_E_NOTINITIALIZED, "CoInitialize has not been called"},
    {CO_E_CLASSSTRING, "Invalid class string"},
    {CO_E_DLLNOTFOUND, "The library of the class is not found"},
    {CO_E_ERRORINDLL, "The library of the class is no component"},
    {CONNECT_E_NOCONNECTION, "There is no connection for this id"},
    {CONNECT_E_CANNOTCONNECT, "The sink cannot be connected"},
};

std::u16string textFrom(IErrorInfo& info, HRESULT (STDMETHODCALLTYPE IErrorInfo::*read)(BSTR*))
{
    Bstr text;
    return SUCCEEDED((info.*read)(text.put())) ? text.toString() : std::u16string();
}

LPOLESTR oleText(std::u16string& text) noexcept
{
    return reinterpret_cast<LPOLESTR>(text.data());
}

} // namespace

ComError::ComError(ErrorDetails details)
    : std::runtime_error(utf8FromUtf16(details.description))
    , m_details(std::move(details))
{}

ComError::ComError(HRESULT code, std::u16string_view description, std::u16string_view source)
    : ComError(ErrorDetails{code, std::u16string(description), std::u16string(source)})
{}

std::u16string describeResult(HRESULT code)
{
    const char* words = "Automation error";
    for (const KnownResult& known : knownResults) {
        if (known.code == code) {
            words = known.words;
            break;
        }
    }
    char number[16];
    std::snprintf(number, sizeof number, "0x%08X", static_cast<unsigned>(code));
    return utf16FromUtf8(std::string(words) + " (" + number + ")");
}

HRESULT reportError(HRESULT code, std::u16string_view description, std::u16string_view source,
                    const IID& iid) noexcept
{
    try {
        ComPtr<ICreateErrorInfo> creator;
        if (FAILED(CreateErrorInfo(creator.put()))) {
            return code;
        }
        std::u16string descriptionCopy(description);
        std::u16string sourceCopy(source);
        creator->SetGUID(iid);
        creator->SetDescription(oleText(descriptionCopy));
        creator->SetSource(oleText(sourceCopy));
        SetErrorInfo(0, creator.as<IErrorInfo>().get());
    } catch (...) {
        // Without memory for the text the code alone has to do.
        SetErrorInfo(0, nullptr);
    }
    return code;
}

ErrorDetails takeErrorDetails(HRESULT code)
{
    ErrorDetails details;
    details.code = code;
    ComPtr<IErrorInfo> info;
    if (GetErrorInfo(0, info.put()) == S_OK && info) {
        details.description = textFrom(*info, &IErrorInfo::GetDescription);
        details.source = textFrom(*info, &IErrorInfo::GetSource);
    }
    if (details.description.empty()) {
        details.description = describeResult(code);
    }
    return details;
}

ErrorDetails takeErrorDetails(HRESULT result, EXCEPINFO& exception)
{
    if (exception.pfnDeferredFillIn != nullptr) {
        exception.pfnDeferredFillIn(&exception);
    }
    const Bstr description = Bstr::adopt(exception.bstrDescription);
    const Bstr source = Bstr::adopt(exception.bstrSource);
    const Bstr helpFile = Bstr::adopt(exception.bstrHelpFile);
    const HRESULT scode = exception.scode;
    const WORD wCode = exception.wCode;
    exception = EXCEPINFO{};

    if (result != DISP_E_EXCEPTION) {
        return takeErrorDetails(result);
    }
    const HRESULT code = FAILED(scode) ? scode
                         : wCode != 0  ? MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, wCode)
                                       : DISP_E_EXCEPTION;
    ErrorDetails details{code, description.toString(), source.toString()};
    if (details.description.empty()) {
        return takeErrorDetails(code);
    }
    return details;
}

HRESULT throwIfFailed(HRESULT result)
{
    if (FAILED(result)) {
        throw ComError(takeErrorDetails(result));
    }
    return result;
}

HRESULT reportCurrentException(std::u16string_view source, const IID& iid) noexcept
{
    try {
        throw;
    } catch (const ComError& error) {
        const ErrorDetails& details = error.details();
        const HRESULT code = FAILED(details.code) ? details.code : E_FAIL;
        return reportError(code, details.description, details.source.empty() ? source : details.source, iid);
    } catch (const std::bad_alloc&) {
        return reportError(E_OUTOFMEMORY, u"Not enough memory", source, iid);
    } catch (const std::exception& error) {
        try {
            return reportError(E_FAIL, utf16FromUtf8(error.what()), source, iid);
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    } catch (...) {
        return reportError(E_UNEXPECTED, u"Unknown error", source, iid);
    }
}

} // namespace zul
