#include "ftp/TextToNumber.h"

#include <clocale>

namespace zul::ftp {

NumberFormat localeNumberFormat()
{
    const std::lconv* locale = std::localeconv();
    NumberFormat format;
    if (locale->decimal_point != nullptr && *locale->decimal_point != '\0') {
        format.decimalSeparator = locale->decimal_point;
    }
    if (locale->thousands_sep != nullptr) {
        format.groupSeparator = locale->thousands_sep;
    }
    return format;
}

} // namespace zul::ftp
