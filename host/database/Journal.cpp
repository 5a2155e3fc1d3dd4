#include "host/database/Journal.h"

#include "base/DateText.h"
#include "base/Utf8.h"
#include "host/database/Secrets.h"

#include <array>
#include <charconv>
#include <cmath>
#include <filesystem>

namespace zul::host {

namespace {

void appendJson(std::string& out, std::string_view text)
{
    static constexpr std::array<char, 16> hex{'0', '1', '2', '3', '4', '5', '6', '7',
                                              '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};
    out += '"';
    while (!text.empty()) {
        const char c = text.front();
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20U) {
                out += "\\u00";
                out += hex[static_cast<unsigned char>(c) >> 4U];
                out += hex[static_cast<unsigned char>(c) & 15U];
            } else {
                const Utf8Character character = utf8CharacterAt(text, 0);
                appendUtf8(out, character.value);
                text.remove_prefix(character.isWellFormed ? character.bytes : 1);
                continue;
            }
        }
        text.remove_prefix(1);
    }
    out += '"';
}

struct AppendValue
{
    std::string& out;

    void operator()(std::monostate) const { out += "null"; }
    void operator()(bool value) const { out += value ? "true" : "false"; }
    void operator()(std::int64_t value) const { out += std::to_string(value); }
    void operator()(double value) const
    {
        if (!std::isfinite(value)) {
            out += "null";
            return;
        }
        std::array<char, 32> buffer{};
        const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
        out.append(buffer.data(), end);
    }
    void operator()(const std::string& value) const { appendJson(out, withoutPasswords(value)); }
    void operator()(const DateValue& value) const { appendJson(out, formatDate(value.days)); }
    void operator()(const DecimalValue& value) const { out += value.text; }
};

void appendMember(std::string& line, std::string_view name, std::string_view text)
{
    line += ",\"";
    line += name;
    line += "\":";
    appendJson(line, withoutPasswords(text));
}

std::string begun(std::string_view operation)
{
    std::string line = "{\"op\":\"";
    line += operation;
    line += '"';
    return line;
}

} // namespace

std::string jsonText(std::string_view text)
{
    std::string out;
    appendJson(out, text);
    return out;
}

std::string jsonValue(const Value& value)
{
    std::string out;
    std::visit(AppendValue{out}, value);
    return out;
}

bool Journal::open(const std::string& path)
{
    m_file.reset(std::fopen(path.c_str(), "wb"));
    // It holds names and numbers of customers. A pipe or a terminal stays as it is.
    std::error_code ignored;
    if (isOpen() && std::filesystem::is_regular_file(path, ignored)) {
        std::filesystem::permissions(
            path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write, ignored);
    }
    return isOpen();
}

void Journal::execute(std::string_view sql, std::string_view error)
{
    if (!isOpen()) {
        return;
    }
    std::string line = begun("execute");
    appendMember(line, "sql", sql);
    finish(line, error);
}

void Journal::openRows(std::string_view sql, std::string_view cursor, std::string_view lock,
                       std::string_view error)
{
    if (!isOpen()) {
        return;
    }
    std::string line = begun("open");
    appendMember(line, "sql", sql);
    appendMember(line, "cursor", cursor);
    appendMember(line, "lock", lock);
    finish(line, error);
}

void Journal::insert(std::string_view table, const ColumnValues& values, std::string_view error)
{
    change("insert", table, values, error);
}

void Journal::update(std::string_view table, const ColumnValues& values, std::string_view error)
{
    change("update", table, values, error);
}

void Journal::change(std::string_view operation, std::string_view table, const ColumnValues& values,
                     std::string_view error)
{
    if (!isOpen()) {
        return;
    }
    std::string line = begun(operation);
    appendMember(line, "table", table);
    line += ",\"values\":[";
    for (std::size_t i = 0; i < values.size(); ++i) {
        line += i == 0 ? "[" : ",[";
        appendJson(line, values[i].first);
        line += ',';
        std::visit(AppendValue{line}, values[i].second);
        line += ']';
    }
    line += ']';
    finish(line, error);
}

void Journal::lookup(std::string_view field, std::string_view table, std::string_view condition,
                     std::string_view error)
{
    if (!isOpen()) {
        return;
    }
    std::string line = begun("lookup");
    appendMember(line, "field", field);
    appendMember(line, "table", table);
    appendMember(line, "condition", condition);
    finish(line, error);
}

void Journal::nextId(std::string_view table, std::string_view key, std::int64_t id, std::string_view error)
{
    if (!isOpen()) {
        return;
    }
    std::string line = begun("nextid");
    appendMember(line, "table", table);
    appendMember(line, "key", key);
    if (error.empty()) {
        line += ",\"id\":";
        line += std::to_string(id);
    }
    finish(line, error);
}

void Journal::transaction(std::string_view operation, std::string_view error)
{
    if (!isOpen()) {
        return;
    }
    std::string line = begun(operation);
    finish(line, error);
}

void Journal::finish(std::string& line, std::string_view error)
{
    if (!error.empty()) {
        appendMember(line, "error", error);
    }
    line += "}\n";
    const bool written = std::fwrite(line.data(), 1, line.size(), m_file.get()) == line.size();
    m_isWhole = std::fflush(m_file.get()) == 0 && written && m_isWhole;
}

} // namespace zul::host
