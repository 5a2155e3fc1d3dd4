#include "ftp/TextToNumber.h"

#include "base/Utf8.h"

#include <windows.h>

namespace zul::ftp {

namespace {

std::string userText(LCTYPE what)
{
    // The C library's locale of a host is "C" unless it asked for another; the operator's is the system's to tell.
    wchar_t text[16] = L"";
    GetLocaleInfoW(LOCALE_USER_DEFAULT, what, text, 16);
    return utf8FromUtf16(reinterpret_cast<const char16_t*>(text));
}

} // namespace

NumberFormat localeNumberFormat()
{
    NumberFormat format;
    if (const std::string separator = userText(LOCALE_SDECIMAL); !separator.empty()) {
        format.decimalSeparator = separator;
    }
    format.groupSeparator = userText(LOCALE_STHOUSAND);
    return format;
}

} // namespace zul::ftp
