#include "host/dialect/base/NumberText.h"

#include <charconv>
#include <cmath>

namespace zul::dialect {

std::variant<std::monostate, std::int64_t, double> parseNumber(std::string_view text)
{
    const std::size_t start = text.find_first_not_of(' ');
    if (start == std::string_view::npos) {
        return {};
    }
    text = text.substr(start, text.find_last_not_of(' ') - start + 1);
    if (text.front() == '+') {
        text.remove_prefix(1);
    }
    const std::size_t digits = text.find_first_of("0123456789.");
    if (digits > 1 || (digits == 1 && text.front() != '-')) {
        return {};
    }
    std::int64_t whole = 0;
    const char* end = text.data() + text.size();
    const auto asWhole = std::from_chars(text.data(), end, whole);
    if (asWhole.ec == std::errc() && asWhole.ptr == end) {
        return whole;
    }
    double real = 0;
    const auto asReal = std::from_chars(text.data(), end, real);
    if (asReal.ec == std::errc() && asReal.ptr == end && std::isfinite(real)) {
        return real;
    }
    return {};
}

} // namespace zul::dialect
