// Errors at the boundary: an exception inside becomes a result code and an error object; a failed call on the
// other side becomes an exception.
#pragma once

#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include <oleauto.h>

namespace zul {

// What is known of a failed call.
struct ErrorDetails
{
    HRESULT code = S_OK;
    std::u16string description; // never empty when read by takeErrorDetails
    std::u16string source;      // who reports it; may be empty
};

// A failed call, as an exception. what() is the description in UTF-8.
class ComError : public std::runtime_error
{
public:
    explicit ComError(ErrorDetails details);
    ComError(HRESULT code, std::u16string_view description, std::u16string_view source = {});

    HRESULT code() const noexcept { return m_details.code; }
    const ErrorDetails& details() const noexcept { return m_details; }

private:
    ErrorDetails m_details;
};

// A few words on a result code, for when nobody left a description: "Type mismatch (0x80020005)".
std::u16string describeResult(HRESULT code);

// Leaves an error object for the caller and gives the code back: return reportError(E_FAIL, u"…");
HRESULT reportError(HRESULT code, std::u16string_view description, std::u16string_view source = {},
                    const IID& iid = GUID_NULL) noexcept;

// Takes the thread's error object away and reads it; without one the description is describeResult's.
// Call it straight after the failed call.
ErrorDetails takeErrorDetails(HRESULT code);

// Reads what a failed Invoke left, runs its deferred fill-in, and frees and clears the structure. The code is
// the scode (or the wCode as a control's error) when the result is DISP_E_EXCEPTION, else the result.
ErrorDetails takeErrorDetails(HRESULT result, EXCEPINFO& exception);

// Throws ComError with the thread's error object when the result is a failure; otherwise gives it back.
HRESULT throwIfFailed(HRESULT result);

// Reports the exception being handled: ComError with its code, std::bad_alloc as E_OUTOFMEMORY, any other as
// E_FAIL with its text.
HRESULT reportCurrentException(std::u16string_view source = {}, const IID& iid = GUID_NULL) noexcept;

// Runs the body of a member that others call; nothing is thrown past it. The body returns an HRESULT or nothing.
//   return comGuard(u"Zul_SQL.Connection", [&] { … });
template <typename Body>
HRESULT comGuard(std::u16string_view source, Body&& body) noexcept
{
    try {
        if constexpr (std::is_void_v<std::invoke_result_t<Body&>>) {
            body();
            return S_OK;
        } else {
            return body();
        }
    } catch (...) {
        return reportCurrentException(source);
    }
}

} // namespace zul
