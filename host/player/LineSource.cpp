#include "host/player/LineSource.h"

#include <string>

namespace zul::host {
LineSource::LineSource(std::istream& stream)
    : m_stream(stream)
{}

std::optional<QString> LineSource::next()
{
    std::string bytes;
    if (!std::getline(m_stream, bytes)) {
        return std::nullopt;
    }
    ++m_number;
    if (!bytes.empty() && bytes.back() == '\r') {
        bytes.pop_back();
    }
    QString line = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (m_number == 1 && line.startsWith(QChar(0xfeff))) {
        line.remove(0, 1);
    }
    return line;
}
} // namespace zul::host
