#pragma once
// Cuts Transact-SQL into tokens. Comments (-- and nested /* */) and blanks fall away here.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zul::dialect {

enum class TokenKind
{
    End,
    Word,     ///< a bare name or keyword, as written
    Name,     ///< [bracketed] or "quoted": never a keyword; text without the quotes
    Integer,  ///< 12
    Decimal,  ///< 1.5, .5
    Real,     ///< 1e5
    Hex,      ///< 0x01; text holds the digits only
    Text,     ///< 'text' or N'text'; text holds the value
    Variable, ///< @name, @@NAME
    Symbol    ///< operators and punctuation
};

struct Token
{
    TokenKind kind = TokenKind::End;
    std::string text;
    std::size_t offset = 0; ///< of its first byte in the statement
    std::size_t length = 0; ///< in bytes, quotes included

    bool is(std::string_view symbol) const { return kind == TokenKind::Symbol && text == symbol; }
    /// A bare word, compared without regard to case; the keyword is given in capitals.
    bool isWord(std::string_view keyword) const;
};

/// The tokens of a text, the last one of kind End. Throws DialectError (text not valid UTF-8, a NUL character,
/// a quote or comment that is not closed, a character that starts nothing).
std::vector<Token> tokenize(std::string_view tsql);

} // namespace zul::dialect
