#include "host/player/EventPrinter.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace zul::host {
namespace {
void toStandardOutput(const QString& text)
{
    const QByteArray bytes = text.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}
} // namespace

EventPrinter::EventPrinter(Sink sink)
    : m_sink(sink ? std::move(sink) : Sink(toStandardOutput))
{}

void EventPrinter::line(const QString& text)
{
    flush();
    m_sink(text);
}

void EventPrinter::defer(const void* key, std::function<QString()> text)
{
    const auto waiting =
        std::find_if(m_waiting.begin(), m_waiting.end(), [key](const Waiting& w) { return w.key == key; });
    if (waiting != m_waiting.end()) {
        waiting->text = std::move(text);
        return;
    }
    m_waiting.push_back({key, std::move(text)});
}

bool EventPrinter::isDeferred(const void* key) const
{
    return std::any_of(m_waiting.begin(), m_waiting.end(), [key](const Waiting& w) { return w.key == key; });
}

void EventPrinter::flush()
{
    // A text that is asked for may defer another line: what waits is taken out first.
    while (!m_waiting.empty()) {
        const std::vector<Waiting> waiting = std::exchange(m_waiting, {});
        for (const Waiting& one : waiting) {
            const QString text = one.text();
            if (!text.isEmpty()) {
                m_sink(text);
            }
        }
    }
}
} // namespace zul::host
