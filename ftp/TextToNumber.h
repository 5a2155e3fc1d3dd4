// The classic conversion of a text to a 16-bit number.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zul::ftp {

struct NumberFormat
{
    std::string decimalSeparator = ".";
    std::string groupSeparator; ///< empty: none
};

/// The separators of the process's locale; on Windows those of the user's settings.
NumberFormat localeNumberFormat();

/// What the classic conversion takes: blanks around, a sign in front, digits with the format's separators, an
/// exponent (E or D), or &H and &O with hexadecimal or octal digits. A fraction is rounded, half to even.
/// Throws RunTimeError 13 when @p text is no number (the empty text is none), 6 when it is outside -32768 to
/// 32767.
std::int16_t textToInt16(std::string_view text, const NumberFormat& format);

} // namespace zul::ftp
