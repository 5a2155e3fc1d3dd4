#include "host/database/RowSource.h"

#include "host/database/Names.h"

#include <algorithm>
#include <array>
#include <vector>

namespace zul::host {

namespace {

struct Token
{
    enum class Kind
    {
        Word,
        Quoted,
        Sign
    };

    Kind kind = Kind::Sign;
    std::string_view text;
    std::size_t at = 0;
};

bool isWordCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '@' || c == '#' || c == '$' || static_cast<unsigned char>(c) >= 0x80U;
}

// The end of a text, bracketed or quoted name that begins at `from`; a doubled closing mark does not end it.
std::size_t quotedEnd(std::string_view sql, std::size_t from, char close)
{
    for (std::size_t i = from + 1; i < sql.size(); ++i) {
        if (sql[i] != close)
            continue;
        if (i + 1 < sql.size() && sql[i + 1] == close)
            ++i;
        else
            return i + 1;
    }
    return sql.size();
}

// The tokens outside parentheses; what is inside cannot change the shape.
std::vector<Token> outerTokens(std::string_view sql)
{
    std::vector<Token> tokens;
    int depth = 0;
    std::size_t i = 0;
    while (i < sql.size()) {
        const char c = sql[i];
        std::size_t end = i + 1;
        Token::Kind kind = Token::Kind::Sign;
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') {
            ++i;
            continue;
        }
        if (sql.substr(i, 2) == "--") {
            i = std::min(sql.find('\n', i), sql.size());
            continue;
        }
        if (sql.substr(i, 2) == "/*") {
            const std::size_t close = sql.find("*/", i + 2);
            i = close == std::string_view::npos ? sql.size() : close + 2;
            continue;
        }
        if (c == '\'') {
            end = quotedEnd(sql, i, '\'');
        } else if (c == '[' || c == '"') {
            kind = Token::Kind::Quoted;
            end = quotedEnd(sql, i, c == '[' ? ']' : '"');
        } else if (isWordCharacter(c)) {
            kind = Token::Kind::Word;
            while (end < sql.size() && isWordCharacter(sql[end]))
                ++end;
        } else if (c == '(') {
            ++depth;
        } else if (c == ')') {
            --depth;
        }
        // An opening parenthesis stands for all that it holds.
        if ((depth == 0 && c != ')') || (depth == 1 && c == '('))
            tokens.push_back({kind, sql.substr(i, end - i), i});
        i = end;
    }
    return tokens;
}

bool isWord(const Token& token, std::string_view word)
{
    return token.kind == Token::Kind::Word && sameName(token.text, word);
}

bool isName(const Token& token)
{
    return token.kind != Token::Kind::Sign;
}

bool isSign(const Token& token, std::string_view sign)
{
    return token.kind == Token::Kind::Sign && token.text == sign;
}

// The index behind the dotted name that begins at `from`; `from` itself when there is none.
std::size_t nameEnd(const std::vector<Token>& tokens, std::size_t from)
{
    std::size_t i = from;
    if (i >= tokens.size() || !isName(tokens[i]))
        return from;
    ++i;
    while (i + 1 < tokens.size() && isSign(tokens[i], ".") && isName(tokens[i + 1]))
        i += 2;
    return i;
}

std::string_view textOf(std::string_view sql, const std::vector<Token>& tokens, std::size_t from,
                        std::size_t end)
{
    const std::size_t last = tokens[end - 1].at + tokens[end - 1].text.size();
    return sql.substr(tokens[from].at, last - tokens[from].at);
}

bool isSingleTable(const std::vector<Token>& tokens, std::size_t afterTable)
{
    static constexpr std::array<std::string_view, 9> spoilers{
        "JOIN", "GROUP", "HAVING", "UNION", "EXCEPT", "APPLY", "INTERSECT", "CROSS", "INTO"};
    for (std::size_t i = afterTable; i < tokens.size(); ++i) {
        const bool spoils =
            std::any_of(spoilers.begin(), spoilers.end(), [&](auto word) { return isWord(tokens[i], word); });
        if (spoils)
            return false;
    }
    // A comma before WHERE or ORDER names a second table.
    for (std::size_t i = afterTable; i < tokens.size(); ++i) {
        if (isWord(tokens[i], "WHERE") || isWord(tokens[i], "ORDER"))
            break;
        if (isSign(tokens[i], ","))
            return false;
    }
    return true;
}

} // namespace

RowSource parseRowSource(std::string_view source)
{
    const std::vector<Token> tokens = outerTokens(source);
    RowSource result;
    result.statement = std::string(source);
    if (tokens.empty())
        return result;
    if (nameEnd(tokens, 0) == tokens.size()) {
        result.table = std::string(textOf(source, tokens, 0, tokens.size()));
        result.statement = "SELECT * FROM " + result.table;
        result.endOfColumns = 9;
        return result;
    }
    if (!isWord(tokens[0], "SELECT") || (tokens.size() > 1 && isWord(tokens[1], "DISTINCT")))
        return result;
    const auto from =
        std::find_if(tokens.begin(), tokens.end(), [](const Token& token) { return isWord(token, "FROM"); });
    if (from == tokens.end())
        return result;
    const auto table = static_cast<std::size_t>(from - tokens.begin()) + 1;
    const std::size_t end = nameEnd(tokens, table);
    if (end == table || !isSingleTable(tokens, end))
        return result;
    result.table = std::string(textOf(source, tokens, table, end));
    result.endOfColumns = from->at;
    return result;
}

} // namespace zul::host
