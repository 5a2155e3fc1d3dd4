// Texts and values between Qt and automation.
#pragma once

#include "automation/Bstr.h"
#include "automation/Variant.h"

#include <QString>

namespace zul::host {
inline QString toQString(std::u16string_view text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

inline Bstr toBstr(const QString& text)
{
    return Bstr(std::u16string_view(reinterpret_cast<const char16_t*>(text.utf16()),
                                    static_cast<std::size_t>(text.size())));
}

// What a late-bound call returned, as "call" prints it: true, false, a number, a quoted text, or empty.
QString resultText(const VARIANT& value);
} // namespace zul::host
