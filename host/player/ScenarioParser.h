// The words of a scenario line, and the quoting that commands and output share.
#pragma once

#include <QString>
#include <variant>
#include <vector>

namespace zul::host {
/// One word of a line. A quoted word is always a text, also when it looks like a number.
struct Word
{
    QString text;
    bool quoted = false;

    bool operator==(const Word&) const = default;
};

/// Why a line cannot be read.
struct ParseError
{
    QString why;
};

using ParsedLine = std::variant<std::vector<Word>, ParseError>;

/// Splits a line into its words. A blank line and a line that begins with "#" have none. Words are separated by
/// blanks (tabs count); a word that begins with a double quote ends at the next one that no backslash escapes,
/// and knows the escapes \" \\ \n \r \t. A backslash outside quotes is an ordinary character.
ParsedLine splitWords(const QString& line);

/// The text in double quotes, with the same escapes.
QString quoted(const QString& text);

/// The texts, each quoted, joined by commas without blanks.
QString quotedList(const QStringList& texts);
} // namespace zul::host
