#include "host/database/Secrets.h"

#include "host/database/Names.h"

#include <algorithm>
#include <array>

namespace zul::host {

namespace {

constexpr std::array<std::string_view, 2> passwordKeys{"pwd=", "password="};

// Behind a plain value.
std::size_t endOfPlain(std::string_view text, std::size_t at)
{
    return std::min(text.find_first_of(";\"'", at), text.size());
}

// Behind a value in braces, in which a closing one is doubled; behind a plain one. What stands between the closing
// brace and the end, against the rules, counts to the value with some readers.
std::size_t endOfValue(std::string_view text, std::size_t at)
{
    if (at >= text.size() || text[at] != '{') {
        return endOfPlain(text, at);
    }
    for (std::size_t i = at + 1; i < text.size(); ++i) {
        if (text[i] != '}') {
            continue;
        }
        if (i + 1 < text.size() && text[i + 1] == '}') {
            ++i;
            continue;
        }
        return endOfPlain(text, i + 1);
    }
    return text.size();
}

bool beginsWord(std::string_view text, std::size_t at)
{
    return at == 0 || std::string_view(";:\"' \t\r\n").find(text[at - 1]) != std::string_view::npos;
}

} // namespace

std::string withoutPasswords(std::string_view text)
{
    const std::string folded = foldedName(text);
    std::string result;
    std::size_t done = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        for (const std::string_view key : passwordKeys) {
            if (folded.compare(at, key.size(), key) != 0 || !beginsWord(text, at)) {
                continue;
            }
            const std::size_t value = at + key.size();
            result += text.substr(done, value - done);
            result += secretMark;
            done = endOfValue(text, value);
            at = done == text.size() ? done : done - 1;
            break;
        }
    }
    result += text.substr(std::min(done, text.size()));
    return result;
}

bool isSecretSetting(std::string_view name)
{
    constexpr std::string_view ending = "password";
    return foldedName(name).ends_with(ending);
}

} // namespace zul::host
