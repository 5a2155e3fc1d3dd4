#include "host/dialect/writer/Sql.h"

namespace zul::dialect {

std::string quotedName(std::string_view name)
{
    std::string text;
    if (name.find(']') == std::string_view::npos) {
        text = "[";
        text += name;
        return text + "]";
    }
    for (const char c : name)
        text += c == '`' ? std::string("``") : std::string(1, c);
    return "`" + text + "`";
}

std::string quotedText(std::string_view text)
{
    std::string quoted = "'";
    quoted.reserve(text.size() + 2);
    for (const char c : text) {
        if (c == '\'')
            quoted += c;
        quoted += c;
    }
    return quoted + "'";
}

std::string quotedNames(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + quotedName(name);
    return text;
}

} // namespace zul::dialect
