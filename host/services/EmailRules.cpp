#include "host/services/EmailRules.h"

#include <algorithm>

namespace zul::host {

namespace {

bool isLetterOrDigit(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           static_cast<unsigned char>(c) >= 0x80U;
}

bool isLocalPart(std::string_view local)
{
    if (local.empty() || local.size() > 64 || local.front() == '.' || local.back() == '.' ||
        local.find("..") != std::string_view::npos) {
        return false;
    }
    return std::all_of(local.begin(), local.end(), [](char c) {
        return isLetterOrDigit(c) ||
               std::string_view("!#$%&'*+-/=?^_`{|}~.").find(c) != std::string_view::npos;
    });
}

bool isLabel(std::string_view label)
{
    return !label.empty() && label.size() <= 63 && label.front() != '-' && label.back() != '-' &&
           std::all_of(label.begin(), label.end(), [](char c) { return isLetterOrDigit(c) || c == '-'; });
}

bool isDomain(std::string_view domain)
{
    std::size_t labels = 0;
    std::string_view last;
    while (true) {
        const std::size_t dot = domain.find('.');
        last = domain.substr(0, dot);
        if (!isLabel(last)) {
            return false;
        }
        ++labels;
        if (dot == std::string_view::npos) {
            break;
        }
        domain.remove_prefix(dot + 1);
    }
    // A top-level domain is not a number.
    const bool digitsOnly =
        std::all_of(last.begin(), last.end(), [](char c) { return c >= '0' && c <= '9'; });
    return labels >= 2 && last.size() >= 2 && !digitsOnly;
}

} // namespace

bool isPlausibleEmail(std::string_view address)
{
    const std::size_t at = address.find('@');
    return address.size() <= 254 && at != std::string_view::npos && isLocalPart(address.substr(0, at)) &&
           isDomain(address.substr(at + 1));
}

} // namespace zul::host
