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
    for (const char c : name) {
        text += c == '`' ? std::string("``") : std::string(1, c);
    }
    return "`" + text + "`";
}

std::string quotedText(std::string_view text)
{
    std::string quoted = "'";
    quoted.reserve(text.size() + 2);
    for (const char c : text) {
        if (c == '\'') {
            quoted += c;
        }
        quoted += c;
    }
    return quoted + "'";
}

std::string quotedNames(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + quotedName(name);
    }
    return text;
}

static std::string joined(const std::vector<std::string>& operands, std::size_t from, std::size_t to,
                          const std::string& op)
{
    if (to - from <= flatChain) {
        std::string text = operands[from];
        for (std::size_t i = from + 1; i < to; ++i) {
            text += op + operands[i];
        }
        return text;
    }
    const std::size_t middle = from + (to - from) / 2;
    return "(" + joined(operands, from, middle, op) + ")" + op + "(" + joined(operands, middle, to, op) + ")";
}

std::string joined(const std::vector<std::string>& operands, const std::string& op)
{
    return joined(operands, 0, operands.size(), op);
}

} // namespace zul::dialect
