#include "host/dialect/syntax/Lexer.h"

#include "base/Utf8.h"
#include "host/dialect/base/DialectError.h"
#include "host/dialect/base/Words.h"

#include <algorithm>
#include <array>

namespace zul::dialect {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool startsName(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '#' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool continuesName(char c)
{
    return startsName(c) || isDigit(c) || c == '$' || c == '@';
}

class Scanner
{
public:
    explicit Scanner(std::string_view text)
        : m_text(text)
    {}

    std::vector<Token> run()
    {
        checkCharacters();
        if (m_text.substr(0, 3) == "\xEF\xBB\xBF") {
            m_at = 3;
        }
        std::vector<Token> tokens;
        while (true) {
            skipBlanks();
            Token token;
            token.offset = m_at;
            next(token);
            token.length = m_at - token.offset;
            const bool last = token.kind == TokenKind::End;
            tokens.push_back(std::move(token));
            if (last) {
                return tokens;
            }
        }
    }

private:
    char peek(std::size_t ahead = 0) const
    {
        return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : '\0';
    }

    void checkCharacters() const
    {
        const std::size_t nul = m_text.find('\0');
        const std::size_t broken = firstInvalidUtf8(m_text);
        if (nul != std::string_view::npos && nul < broken) {
            failAt(m_text, nul, "a NUL character cannot stand in a statement");
        }
        if (broken != std::string_view::npos) {
            failAt(m_text, broken, "the statement is not valid UTF-8");
        }
    }

    void skipBlanks()
    {
        while (m_at < m_text.size()) {
            const char c = m_text[m_at];
            if (c == ' ' || (c >= '\t' && c <= '\r')) {
                ++m_at;
            } else if (m_text.substr(m_at, 2) == "\xC2\xA0") { // no-break space, as pasted from documents
                m_at += 2;
            } else if (c == '-' && peek(1) == '-') {
                const std::size_t end = m_text.find_first_of("\r\n", m_at);
                m_at = end == std::string_view::npos ? m_text.size() : end;
            } else if (c == '/' && peek(1) == '*') {
                skipComment();
            } else {
                return;
            }
        }
    }

    void skipComment()
    {
        const std::size_t start = m_at;
        std::size_t open = 0;
        while (m_at < m_text.size()) {
            if (m_text[m_at] == '/' && peek(1) == '*') {
                ++open;
                m_at += 2;
            } else if (m_text[m_at] == '*' && peek(1) == '/') {
                m_at += 2;
                if (--open == 0) {
                    return;
                }
            } else {
                ++m_at;
            }
        }
        failAt(m_text, start, "the comment that starts here is not closed: expected '*/'");
    }

    void next(Token& token)
    {
        if (m_at >= m_text.size()) {
            return;
        }
        const char c = m_text[m_at];
        if (c == '\'') {
            return quoted(token, TokenKind::Text, '\'');
        }
        if ((c == 'N' || c == 'n') && peek(1) == '\'') {
            ++m_at;
            return quoted(token, TokenKind::Text, '\'');
        }
        if (c == '"') {
            return name(token, '"');
        }
        if (c == '[') {
            return name(token, ']');
        }
        if (isDigit(c) || (c == '.' && isDigit(peek(1)))) {
            return number(token);
        }
        if (c == '@') {
            return variable(token);
        }
        if (startsName(c)) {
            while (m_at < m_text.size() && continuesName(m_text[m_at]) &&
                   m_text.substr(m_at, 2) != "\xC2\xA0") {
                ++m_at;
            }
            token.kind = TokenKind::Word;
            token.text = m_text.substr(token.offset, m_at - token.offset);
            return;
        }
        symbol(token);
    }

    void name(Token& token, char close)
    {
        const std::size_t start = m_at;
        quoted(token, TokenKind::Name, close);
        if (token.text.empty()) {
            failAt(m_text, start, "a name cannot be empty");
        }
    }

    // A doubled closing quote stands for itself.
    void quoted(Token& token, TokenKind kind, char close)
    {
        token.kind = kind;
        ++m_at;
        while (true) {
            const std::size_t end = m_text.find(close, m_at);
            if (end == std::string_view::npos) {
                failAt(m_text, token.offset,
                       std::string(kind == TokenKind::Text ? "the text" : "the name") +
                           " that starts here is not closed: expected " + close);
            }
            token.text += m_text.substr(m_at, end - m_at);
            m_at = end + 1;
            if (peek() != close) {
                return;
            }
            token.text += close;
            ++m_at;
        }
    }

    void digits(std::string& into)
    {
        while (isDigit(peek())) {
            into += m_text[m_at++];
        }
    }

    void number(Token& token)
    {
        token.kind = TokenKind::Integer;
        if (peek() == '0' && (peek(1) == 'x' || peek(1) == 'X')) {
            token.kind = TokenKind::Hex;
            m_at += 2;
            while (isHexDigit(peek())) {
                token.text += m_text[m_at++];
            }
            return;
        }
        digits(token.text);
        if (token.text.empty()) {
            token.text = "0";
        }
        if (peek() == '.') {
            token.kind = TokenKind::Decimal;
            ++m_at;
            token.text += '.';
            digits(token.text);
            if (token.text.back() == '.') {
                token.text += '0';
            }
        }
        if (peek() == 'e' || peek() == 'E') {
            exponent(token);
        }
    }

    void exponent(Token& token)
    {
        const std::size_t sign = peek(1) == '+' || peek(1) == '-' ? 1 : 0;
        if (!isDigit(peek(1 + sign))) {
            return;
        }
        token.kind = TokenKind::Real;
        token.text += 'e';
        ++m_at;
        if (sign != 0) {
            token.text += m_text[m_at++];
        }
        digits(token.text);
    }

    void variable(Token& token)
    {
        token.kind = TokenKind::Variable;
        while (peek() == '@') {
            ++m_at;
        }
        while (m_at < m_text.size() && continuesName(m_text[m_at])) {
            ++m_at;
        }
        token.text = m_text.substr(token.offset, m_at - token.offset);
    }

    void symbol(Token& token)
    {
        static constexpr std::array<std::string_view, 9> doubles = {
            "<=", ">=", "<>", "!=", "+=", "-=", "*=", "/=", "%="};
        token.kind = TokenKind::Symbol;
        const std::string_view two = m_text.substr(m_at, 2);
        if (std::find(doubles.begin(), doubles.end(), two) != doubles.end()) {
            token.text = two;
            m_at += 2;
            return;
        }
        static constexpr std::string_view singles = "()+-*/%&|=<>,.;?";
        if (singles.find(m_text[m_at]) == std::string_view::npos) {
            failAt(m_text, m_at, std::string("the character '") + m_text[m_at] + "' has no meaning here");
        }
        token.text = m_text.substr(m_at, 1);
        ++m_at;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

} // namespace

bool Token::isWord(std::string_view keyword) const
{
    return kind == TokenKind::Word && sameWord(text, keyword);
}

std::vector<Token> tokenize(std::string_view tsql)
{
    return Scanner(tsql).run();
}

} // namespace zul::dialect
