// Where the lines of a scenario come from.
#pragma once

#include <QString>
#include <istream>
#include <limits>
#include <memory>
#include <optional>

namespace zul::host {
/// How much a scenario may hold. A text that never ends, or a line that never does, is no scenario.
struct LineLimits
{
    static constexpr qint64 none = std::numeric_limits<qint64>::max();

    qint64 line = qint64{1} << 20; ///< bytes of one line
    qint64 text = qint64{1} << 26; ///< bytes of all lines
};

/// Why a scenario cannot be opened.
struct ScenarioError
{
    QString why;
};

/// Opens the text of a scenario: a file, or standard input for "-". Throws ScenarioError for a folder and for what
/// cannot be read.
std::unique_ptr<std::istream> openScenario(const QString& path);

/// Reads UTF-8 text line by line, only when a line is asked for, so that a program at the other end of a pipe can
/// decide on the next command when it has seen what the last one did. A byte order mark and CR LF line ends are
/// taken.
class LineSource
{
public:
    /// Keeps a reference to the stream.
    explicit LineSource(std::istream& stream, LineLimits limits = {});

    /// The next line without its end; nothing at the end of the text, and where it cannot be read on.
    std::optional<QString> next();
    /// Why the text cannot be read on; empty as long as it can, and at its end.
    [[nodiscard]] const QString& error() const { return m_error; }
    /// The number of the line that was asked for last, from 1.
    [[nodiscard]] int number() const { return m_number; }

private:
    std::istream& m_stream;
    LineLimits m_limits;
    qint64 m_taken = 0; // bytes
    int m_number = 0;
    QString m_error;
};
} // namespace zul::host
