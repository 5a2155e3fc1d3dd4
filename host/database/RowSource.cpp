#include "host/database/RowSource.h"

#include "host/database/Names.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <span>

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
    int depth = 0; // of parentheses around it
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
        if (sql[i] != close) {
            continue;
        }
        if (i + 1 < sql.size() && sql[i + 1] == close) {
            ++i;
        } else {
            return i + 1;
        }
    }
    return sql.size();
}

std::vector<Token> tokensOf(std::string_view sql)
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
            while (end < sql.size() && isWordCharacter(sql[end])) {
                ++end;
            }
        }
        // Both parentheses stand outside of what they hold.
        if (c == ')') {
            --depth;
        }
        tokens.push_back({kind, sql.substr(i, end - i), i, depth});
        if (c == '(') {
            ++depth;
        }
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
    if (i >= tokens.size() || !isName(tokens[i])) {
        return from;
    }
    ++i;
    while (i + 1 < tokens.size() && isSign(tokens[i], ".") && isName(tokens[i + 1])) {
        i += 2;
    }
    return i;
}

// The tokens outside parentheses; what is inside cannot change the shape. An opening parenthesis stands for all that it
// holds.
std::vector<Token> outerTokens(const std::vector<Token>& tokens)
{
    std::vector<Token> outer;
    std::copy_if(tokens.begin(), tokens.end(), std::back_inserter(outer),
                 [](const Token& token) { return token.depth == 0 && !isSign(token, ")"); });
    return outer;
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
        if (spoils) {
            return false;
        }
    }
    // A comma before WHERE or ORDER names a second table.
    for (std::size_t i = afterTable; i < tokens.size(); ++i) {
        if (isWord(tokens[i], "WHERE") || isWord(tokens[i], "ORDER")) {
            break;
        }
        if (isSign(tokens[i], ",")) {
            return false;
        }
    }
    return true;
}

// Behind SELECT, ALL and TOP (n) PERCENT WITH TIES.
std::size_t beginOfList(const std::vector<Token>& tokens)
{
    std::size_t at = 1;
    const auto skips = [&](std::string_view word) {
        const bool stands = at < tokens.size() && isWord(tokens[at], word);
        at += stands ? 1 : 0;
        return stands;
    };
    skips("ALL");
    if (skips("TOP")) {
        ++at;
        skips("PERCENT");
        if (skips("WITH")) {
            skips("TIES");
        }
    }
    return at;
}

SelectItem itemOf(std::span<const Token> tokens)
{
    SelectItem item;
    const std::vector<Token> all(tokens.begin(), tokens.end());
    const std::vector<Token> outer = outerTokens(all);
    if (outer.empty()) {
        item.renamed = true;
        return item;
    }
    if (isSign(outer.back(), "*") && (outer.size() == 1 || isSign(outer[outer.size() - 2], "."))) {
        item.everyColumn = true;
        return item;
    }
    const std::size_t end = nameEnd(outer, 0);
    std::size_t rest = outer.size() - end;
    if (rest > 0 && isWord(outer[end], "AS")) {
        --rest;
    }
    // A name, and perhaps another one for it. A lone number reads like a name.
    const bool isColumn = end > 0 && (rest == 0 || (rest == 1 && isName(outer.back()))) &&
                          std::isdigit(static_cast<unsigned char>(outer.front().text.front())) == 0;
    if (isColumn) {
        item.column = bareName(outer[end - 1].text);
    }
    item.renamed = !isColumn || end < outer.size();
    if (item.renamed) {
        for (const Token& token : all) {
            if (isName(token)) {
                item.names.push_back(bareName(token.text));
            }
        }
    }
    return item;
}

// Whether the rows are sums over the table's rows. An aggregate within a SELECT of its own is a value like any other.
bool hasAggregate(std::span<const Token> tokens)
{
    static constexpr std::array<std::string_view, 14> aggregates{
        "COUNT",  "COUNT_BIG", "SUM",  "AVG",          "MIN",        "MAX",      "STDEV",
        "STDEVP", "VAR",       "VARP", "CHECKSUM_AGG", "STRING_AGG", "GROUPING", "GROUPING_ID"};
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
        if (isSign(tokens[i], "(") && isWord(tokens[i + 1], "SELECT")) {
            const int depth = tokens[i].depth;
            while (i + 1 < tokens.size() && !(isSign(tokens[i], ")") && tokens[i].depth == depth)) {
                ++i;
            }
            continue;
        }
        if (isSign(tokens[i + 1], "(") && std::any_of(aggregates.begin(), aggregates.end(),
                                                      [&](auto word) { return isWord(tokens[i], word); })) {
            return true;
        }
    }
    return false;
}

// The items of a list, which are parted by commas outside parentheses.
std::vector<SelectItem> itemsOf(std::span<const Token> tokens)
{
    std::vector<SelectItem> items;
    while (!tokens.empty()) {
        const auto comma = std::find_if(tokens.begin(), tokens.end(), [](const Token& token) {
            return token.depth == 0 && isSign(token, ",");
        });
        const auto length = static_cast<std::size_t>(comma - tokens.begin());
        if (length > 0) {
            items.push_back(itemOf(tokens.first(length)));
        }
        tokens = tokens.subspan(std::min(length + 1, tokens.size()));
    }
    return items;
}

} // namespace

bool RowSource::lists(std::string_view column) const
{
    const auto is = [&](const std::string& name) { return sameName(name, column); };
    bool listed = false;
    for (const SelectItem& item : items) {
        if (item.renamed && std::any_of(item.names.begin(), item.names.end(), is)) {
            return false;
        }
        listed = listed || item.everyColumn || (!item.renamed && is(item.column));
    }
    return listed;
}

RowSource parseRowSource(std::string_view source)
{
    const std::vector<Token> all = tokensOf(source);
    const std::vector<Token> tokens = outerTokens(all);
    RowSource result;
    result.statement = std::string(source);
    if (tokens.empty()) {
        return result;
    }
    if (nameEnd(tokens, 0) == tokens.size()) {
        result.table = std::string(textOf(source, tokens, 0, tokens.size()));
        result.statement = "SELECT * FROM " + result.table;
        result.endOfColumns = 9;
        result.items.emplace_back().everyColumn = true;
        return result;
    }
    if (!isWord(tokens[0], "SELECT") || (tokens.size() > 1 && isWord(tokens[1], "DISTINCT"))) {
        return result;
    }
    const auto from =
        std::find_if(tokens.begin(), tokens.end(), [](const Token& token) { return isWord(token, "FROM"); });
    if (from == tokens.end()) {
        return result;
    }
    const auto table = static_cast<std::size_t>(from - tokens.begin()) + 1;
    const std::size_t end = nameEnd(tokens, table);
    if (end == table || !isSingleTable(tokens, end)) {
        return result;
    }
    result.table = std::string(textOf(source, tokens, table, end));
    const auto place = [&](const Token& token) {
        return std::lower_bound(all.begin(), all.end(), token.at,
                                [](const Token& other, std::size_t at) { return other.at < at; });
    };
    const std::size_t begin = beginOfList(tokens);
    if (begin >= table) {
        return result;
    }
    const std::span<const Token> list(place(tokens[begin]), place(*from));
    result.items = itemsOf(list);
    if (!hasAggregate(list)) {
        result.endOfColumns = from->at;
    }
    return result;
}

} // namespace zul::host
