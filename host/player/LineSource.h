// Where the lines of a scenario come from.
#pragma once

#include <QString>
#include <istream>
#include <optional>

namespace zul::host {
/// Reads UTF-8 text line by line, only when a line is asked for, so that a program at the other end of a pipe can
/// decide on the next command when it has seen what the last one did. A byte order mark and CR LF line ends are
/// taken.
class LineSource
{
public:
    /// Keeps a reference to the stream.
    explicit LineSource(std::istream& stream);

    /// The next line without its end; nothing at the end of the text.
    std::optional<QString> next();
    /// The number of the line that was given last, from 1.
    [[nodiscard]] int number() const { return m_number; }

private:
    std::istream& m_stream;
    int m_number = 0;
};
} // namespace zul::host
