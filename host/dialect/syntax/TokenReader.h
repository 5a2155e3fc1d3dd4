#pragma once
// The tokens of a text, looked at and taken one after the other; what every part of the grammar begins with.

#include "host/dialect/base/DialectError.h"
#include "host/dialect/syntax/Lexer.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace zul::dialect {

/// How deep parentheses, sub-selects, CASE and the like may stand inside each other. The engine's own parser
/// gives up near this depth too; a text that goes deeper is refused with its place.
inline constexpr int deepestNesting = 90;

class TokenReader
{
public:
    /// The text must outlive the reader. Throws DialectError, as everything here does.
    explicit TokenReader(std::string_view text)
        : m_text(text)
        , m_tokens(tokenize(text))
    {}
    TokenReader(const TokenReader&) = delete;
    TokenReader& operator=(const TokenReader&) = delete;

protected:
    ~TokenReader() = default;

    /// The next token, or one behind it; the last one stays for ever. Tokens live as long as the reader.
    const Token& peek(std::size_t ahead = 0) const
    {
        const std::size_t at = m_at + ahead;
        return at < m_tokens.size() ? m_tokens[at] : m_tokens.back();
    }
    const Token& take()
    {
        const Token& token = peek();
        skip();
        return token;
    }
    void skip(std::size_t count = 1) { m_at = std::min(m_at + count, m_tokens.size() - 1); }

    bool takeSymbol(std::string_view symbol);
    bool takeWord(std::string_view keyword); ///< the keyword in capitals
    bool takeAnyWord(std::initializer_list<std::string_view> keywords);
    void expectSymbol(std::string_view symbol);
    void expectWord(std::string_view keyword);

    /// The next token is none of what may stand here.
    [[noreturn]] void unexpected(const std::string& expected) const;
    [[noreturn]] void unsupported(const Token& token, const std::string& what) const;
    [[noreturn]] void fail(std::size_t offset, const std::string& message) const
    {
        failAt(m_text, offset, message);
    }

    bool atName(std::size_t ahead = 0) const;
    std::string name(const std::string& expected = "a name");
    /// [server.][database.][schema.]name; a part between two dots may be missing (database..table).
    std::vector<std::string> qualifiedName(const std::string& expected);
    /// (column, …); of qualified names the last part.
    std::vector<std::string> nameList();
    /// Passes over "( … )" with whatever stands in it.
    void skipParentheses();
    int smallNumber(const std::string& expected);

    /// Stands where the grammar goes one level deeper.
    class Nesting
    {
    public:
        explicit Nesting(TokenReader& reader)
            : m_reader(reader)
        {
            if (++m_reader.m_depth > deepestNesting) {
                m_reader.fail(m_reader.peek().offset, "the statement is nested too deep: at most " +
                                                          std::to_string(deepestNesting) + " levels");
            }
        }
        ~Nesting() { --m_reader.m_depth; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

    private:
        TokenReader& m_reader;
    };

private:
    std::string written(const Token& token) const;

    std::string_view m_text;
    std::vector<Token> m_tokens;
    std::size_t m_at = 0;
    int m_depth = 0;
};

} // namespace zul::dialect
