#include "host/dialect/syntax/TokenReader.h"

#include "host/dialect/base/Words.h"

#include <charconv>

namespace zul::dialect {

bool TokenReader::takeSymbol(std::string_view symbol)
{
    if (!peek().is(symbol)) {
        return false;
    }
    skip();
    return true;
}

bool TokenReader::takeWord(std::string_view keyword)
{
    if (!peek().isWord(keyword)) {
        return false;
    }
    skip();
    return true;
}

bool TokenReader::takeAnyWord(std::initializer_list<std::string_view> keywords)
{
    for (const std::string_view keyword : keywords) {
        if (takeWord(keyword)) {
            return true;
        }
    }
    return false;
}

void TokenReader::expectSymbol(std::string_view symbol)
{
    if (!takeSymbol(symbol)) {
        unexpected("'" + std::string(symbol) + "'");
    }
}

void TokenReader::expectWord(std::string_view keyword)
{
    if (!takeWord(keyword)) {
        unexpected(std::string(keyword));
    }
}

void TokenReader::unexpected(const std::string& expected) const
{
    const Token& token = peek();
    if (token.kind == TokenKind::End) {
        fail(token.offset, "the statement ends where " + expected + " is expected");
    }
    fail(token.offset, "incorrect syntax near '" + written(token) + "': expected " + expected);
}

void TokenReader::unsupported(const Token& token, const std::string& what) const
{
    fail(token.offset, what + " is not supported (near '" + written(token) + "')");
}

// The token as it stands in the text; a long literal is cut at a character's border.
std::string TokenReader::written(const Token& token) const
{
    std::size_t length = token.length;
    if (length <= 60) {
        return std::string(m_text.substr(token.offset, length));
    }
    length = 57;
    while (length > 0 && (static_cast<unsigned char>(m_text[token.offset + length]) & 0xC0U) == 0x80U) {
        --length;
    }
    return std::string(m_text.substr(token.offset, length)) + "...";
}

bool TokenReader::atName(std::size_t ahead) const
{
    const Token& token = peek(ahead);
    return token.kind == TokenKind::Name || (token.kind == TokenKind::Word && !isReserved(token.text));
}

std::string TokenReader::name(const std::string& expected)
{
    if (!atName()) {
        unexpected(expected);
    }
    return take().text;
}

std::vector<std::string> TokenReader::qualifiedName(const std::string& expected)
{
    std::vector<std::string> parts{name(expected)};
    while (peek().is(".") && !peek(1).is("*")) {
        skip();
        if (peek().is(".")) {
            continue;
        }
        // After a dot a reserved word is a name too.
        if (peek().kind != TokenKind::Name && peek().kind != TokenKind::Word) {
            unexpected("a name after '.'");
        }
        parts.push_back(take().text);
        if (parts.size() > 5) {
            unexpected("a name of at most five parts");
        }
    }
    return parts;
}

std::vector<std::string> TokenReader::nameList()
{
    expectSymbol("(");
    std::vector<std::string> names;
    do {
        names.push_back(qualifiedName("a column name").back());
    } while (takeSymbol(","));
    expectSymbol(")");
    return names;
}

void TokenReader::skipParentheses()
{
    expectSymbol("(");
    for (int open = 1; open > 0;) {
        if (peek().kind == TokenKind::End) {
            unexpected("')'");
        }
        const Token& token = take();
        if (token.is("(")) {
            ++open;
        } else if (token.is(")")) {
            --open;
        }
    }
}

int TokenReader::smallNumber(const std::string& expected)
{
    if (peek().kind != TokenKind::Integer) {
        unexpected(expected);
    }
    int number = 0;
    const std::string& digits = peek().text;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (result.ec != std::errc()) {
        unexpected(expected);
    }
    skip();
    return number;
}

} // namespace zul::dialect
