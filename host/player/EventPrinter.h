// Where the lines of a played session go.
#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace zul::host {
/// Prints one line an event, in the order in which things happen, each at once.
///
/// Two kinds of line wait for what belongs to them: a window's "hidden" line for the tag, which a handler may
/// set right after it hid the window, and the wait indicator's "progress" line, so that a caption and a value
/// set together make one line. Such a line is printed before the next line of any kind, and at the latest when
/// flush is called.
class EventPrinter
{
public:
    // Takes a line without its line end. An empty one: standard output, in UTF-8, flushed after each line.
    using Sink = std::function<void(const QString& line)>;

    explicit EventPrinter(Sink sink = {});

    void line(const QString& text);

    /// A line whose text is asked for when it is printed; an empty text then prints nothing. A key stands in
    /// the queue once: what is deferred under a waiting key takes its place there.
    void defer(const void* key, std::function<QString()> text);
    [[nodiscard]] bool isDeferred(const void* key) const;

    /// Prints the waiting lines.
    void flush();

private:
    struct Waiting
    {
        const void* key;
        std::function<QString()> text;
    };

    Sink m_sink;
    std::vector<Waiting> m_waiting;
};
} // namespace zul::host
