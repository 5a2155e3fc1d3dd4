#include "host/database/OneStatement.h"

#include "host/database/EngineError.h"
#include "host/database/Names.h"
#include "host/dialect/Dialect.h"

#include <algorithm>
#include <array>
#include <string>

namespace zul::host {

namespace {

// Those that also stand within other statements (SELECT, SET, BEGIN …) tell nothing.
constexpr std::array<std::string_view, 20> firstWords{
    "alter",  "backup", "create", "dbcc",  "declare", "delete", "drop",     "exec",     "execute", "grant",
    "insert", "kill",   "merge",  "print", "restore", "revoke", "shutdown", "truncate", "update",  "waitfor"};

bool isWordCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '@' || c == '#' || c == '$' || static_cast<unsigned char>(c) >= 0x80U;
}

// Behind a quoted text or name, or a comment, that begins at a place; the place itself when none does.
std::size_t behindQuoted(std::string_view sql, std::size_t at)
{
    const std::string_view rest = sql.substr(at);
    if (rest.starts_with("--")) {
        return std::min(sql.find('\n', at), sql.size());
    }
    if (rest.starts_with("/*")) {
        int depth = 0;
        for (std::size_t i = at; i + 1 < sql.size(); ++i) {
            if (sql.substr(i, 2) == "/*") {
                ++depth;
                ++i;
            } else if (sql.substr(i, 2) == "*/") {
                ++i;
                if (--depth == 0) {
                    return i + 1;
                }
            }
        }
        return sql.size();
    }
    const char open = sql[at];
    if (open != '\'' && open != '"' && open != '[') {
        return at;
    }
    // A doubled mark ends one text and begins the next, which comes to the same.
    const std::size_t end = sql.find(open == '[' ? ']' : open, at + 1);
    return end == std::string_view::npos ? sql.size() : end + 1;
}

bool seemsToHoldSeveral(std::string_view sql)
{
    bool ended = false;
    int depth = 0;
    std::string first;
    std::string before;
    for (std::size_t i = 0; i < sql.size();) {
        if (const std::size_t next = behindQuoted(sql, i); next != i) {
            i = next;
            continue;
        }
        const char c = sql[i];
        if (!isWordCharacter(c)) {
            depth += c == '(' ? 1 : c == ')' ? -1 : 0;
            ended = ended || (c == ';' && !first.empty());
            ++i;
            continue;
        }
        const std::size_t start = i;
        while (i < sql.size() && isWordCharacter(sql[i])) {
            ++i;
        }
        const std::string word = foldedName(sql.substr(start, i - start));
        if (ended) {
            return true;
        }
        const bool begins = std::find(firstWords.begin(), firstWords.end(), word) != firstWords.end();
        const bool isName = start > 0 && sql[start - 1] == '.';
        if (!first.empty() && begins && depth <= 0 && !isName && first != "with" && before != "on" &&
            before != "for") {
            return true;
        }
        if (first.empty() || (first == "with" && begins)) {
            first = word;
        }
        before = word;
    }
    return false;
}

} // namespace

void requireOneStatement(std::string_view sql)
{
    bool several = false;
    try {
        several = dialect::countStatements(sql) > 1;
    } catch (const dialect::DialectError&) {
        several = seemsToHoldSeveral(sql);
    }
    if (several) {
        throw EngineError(ErrorCode::Statement,
                          "one statement a call: the text holds more than one, and none of it was run");
    }
}

} // namespace zul::host
