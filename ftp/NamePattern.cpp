#include "ftp/NamePattern.h"

#include "base/Utf8.h"

#include <cstddef>

namespace zul::ftp {

bool hasWildcards(std::string_view name)
{
    return name.find_first_of("*?") != std::string_view::npos;
}

bool matchesPattern(std::string_view name, std::string_view pattern)
{
    // At a mismatch only the last star needs to take one character more: the time is at most the product of
    // the two lengths, whatever a server or an operator thinks up.
    std::size_t n = 0;
    std::size_t p = 0;
    std::size_t afterStar = std::string_view::npos;
    std::size_t starAt = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            afterStar = ++p;
            starAt = n;
        } else if (p < pattern.size() && pattern[p] == '?') {
            ++p;
            n += characterSize(name, n);
        } else if (p < pattern.size() && pattern[p] == name[n]) {
            ++p;
            ++n;
        } else if (afterStar != std::string_view::npos) {
            starAt += characterSize(name, starAt);
            n = starAt;
            p = afterStar;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') {
        ++p;
    }
    return p == pattern.size();
}

} // namespace zul::ftp
