// Any text: the translation ends in a result or a DialectError, the result's quotes are closed, nothing of it
// stands outside of one statement, and every literal that went in comes out as it was.
#include "host/dialect/Dialect.h"
#include "host/dialect/base/DateTime.h"
#include "host/dialect/base/Like.h"
#include "host/dialect/base/NumberText.h"
#include "host/dialect/base/Words.h"
#include "host/dialect/syntax/Lexer.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

using namespace zul::dialect;

namespace {

[[noreturn]] void broken(const char* what, const std::string& sql)
{
    std::fprintf(stderr, "%s: %s\n", what, sql.c_str());
    std::abort();
}

// The texts and names of an SQLite statement.
std::vector<std::string> quotedPieces(const std::string& sql)
{
    std::vector<std::string> pieces;
    for (std::size_t i = 0; i < sql.size(); ++i) {
        const char open = sql[i];
        const std::string_view two = std::string_view(sql).substr(i, 2);
        if (open == ';' || open == '"' || two == "--" || two == "/*") {
            broken("outside of quotes", sql);
        }
        if (open != '\'' && open != '[' && open != '`') {
            continue;
        }
        const char close = open == '[' ? ']' : open;
        std::string piece;
        for (++i;; ++i) {
            if (i >= sql.size()) {
                broken("a quote is not closed", sql);
            }
            if (sql[i] != close) {
                piece += sql[i];
            } else if (close != ']' && i + 1 < sql.size() && sql[i + 1] == close) {
                piece += sql[i++];
            } else {
                break;
            }
        }
        pieces.push_back(piece);
    }
    return pieces;
}

// A literal that may rightly come out in another form: a date, a number, a flag.
bool mayChange(const std::string& text)
{
    return parseMoment(text).has_value() || !std::holds_alternative<std::monostate>(parseNumber(text)) ||
           text.find_first_not_of(' ') == std::string::npos || sameWord(text, "true") ||
           sameWord(text, "false");
}

void checkLiterals(std::string_view tsql, const std::vector<Translation>& translations)
{
    std::vector<std::string> out;
    for (const Translation& translation : translations) {
        for (std::string& piece : quotedPieces(translation.sql)) {
            out.push_back(std::move(piece));
        }
    }
    const std::vector<Token> tokens = tokenize(tsql);
    for (const Token& token : tokens) {
        // Advice in parentheses is passed over with whatever stands in it.
        if (token.isWord("OPTION") || token.isWord("WITH") || token.isWord("NOLOCK")) {
            return;
        }
    }
    for (const Token& token : tokens) {
        if (token.kind == TokenKind::Text && !mayChange(token.text)) {
            const auto found = std::find(out.begin(), out.end(), token.text);
            if (found == out.end()) {
                broken("a literal was lost", token.text);
            }
            out.erase(found);
        }
    }
}

void run(std::string_view tsql, const ColumnTypes& types)
{
    try {
        const std::vector<Translation> translations = translateBatch(tsql, types);
        checkLiterals(tsql, translations);
    } catch (const DialectError& error) {
        if (error.offset() > tsql.size() || error.line() == 0 || error.column() == 0) {
            broken("a place outside of the text", error.what());
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    run(text, {});
    run(text, [](std::string_view, std::string_view column) {
        return static_cast<ColumnType>(column.empty() ? 0U
                                                      : static_cast<unsigned char>(column.front()) % 10U);
    });
    const std::size_t half = size / 2;
    likeMatch(text.substr(0, half), text.substr(half), U'!');
    patternIndex(text.substr(0, half), text.substr(half));
    if (const auto moment = parseMoment(text); moment && parseMoment(formatMoment(*moment)) != moment) {
        broken("a date does not read back", std::string(text));
    }
    return 0;
}
