#include "host/database/Names.h"

#include "base/CaseFold.h"

namespace zul::host {

std::string bareName(std::string_view name)
{
    while (!name.empty() && name.front() == ' ') {
        name.remove_prefix(1);
    }
    while (!name.empty() && name.back() == ' ') {
        name.remove_suffix(1);
    }
    if (name.empty()) {
        return {};
    }
    const char last = name.back();
    if (last == ']' || last == '"') {
        const char open = last == ']' ? '[' : '"';
        // The opening mark of the last part: behind a dot or at the front.
        std::size_t from = name.size() - 1;
        do {
            from = name.rfind(open, from - 1);
        } while (from != std::string_view::npos && from > 0 && name[from - 1] != '.');
        if (from == std::string_view::npos) {
            return std::string(name);
        }
        std::string inner;
        for (std::size_t i = from + 1; i + 1 < name.size(); ++i) {
            inner += name[i];
            if (name[i] == last && i + 2 < name.size() && name[i + 1] == last) {
                ++i;
            }
        }
        return inner;
    }
    const std::size_t dot = name.rfind('.');
    return std::string(dot == std::string_view::npos ? name : name.substr(dot + 1));
}

std::string enclosed(std::string_view name, char open, char close)
{
    std::string text(1, open);
    for (const char c : name) {
        text += c;
        if (c == close) {
            text += c;
        }
    }
    return text + close;
}

std::string foldedName(std::string_view name)
{
    return foldAscii(name);
}

bool sameName(std::string_view a, std::string_view b)
{
    return equalAscii(a, b);
}

} // namespace zul::host
