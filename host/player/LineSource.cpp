#include "host/player/LineSource.h"

#include "host/player/ScenarioParser.h"

#include <QFileInfo>

#include <fstream>
#include <iostream>
#include <string>

namespace zul::host {

using namespace Qt::StringLiterals;

std::unique_ptr<std::istream> openScenario(const QString& path)
{
    if (path == u"-"_s) {
        // Apart from the C library's own input, which does not tell an error from the end.
        std::ios::sync_with_stdio(false);
        return std::make_unique<std::istream>(std::cin.rdbuf());
    }
    // A folder can be opened, and is only refused when it is read.
    if (QFileInfo(path).isDir()) {
        throw ScenarioError{u"the scenario %1 is a folder"_s.arg(quoted(path))};
    }
    auto file = std::make_unique<std::ifstream>(QFileInfo(path).filesystemFilePath());
    if (!*file) {
        throw ScenarioError{u"the scenario %1 cannot be read"_s.arg(quoted(path))};
    }
    return file;
}

LineSource::LineSource(std::istream& stream, LineLimits limits)
    : m_stream(stream)
    , m_limits(limits)
{}

std::optional<QString> LineSource::next()
{
    if (!m_error.isEmpty()) {
        return std::nullopt;
    }
    ++m_number;
    std::string bytes;
    char byte = 0;
    bool ended = false;
    while (!ended && m_stream.get(byte)) {
        ended = byte == '\n';
        if (!ended) {
            bytes += byte;
        }
        if (++m_taken > m_limits.text) {
            m_error = u"the scenario is longer than %1 bytes"_s.arg(m_limits.text);
            return std::nullopt;
        }
        if (static_cast<qint64>(bytes.size()) > m_limits.line) {
            m_error = u"the line is longer than %1 bytes"_s.arg(m_limits.line);
            return std::nullopt;
        }
    }
    if (m_stream.bad()) {
        m_error = u"the scenario cannot be read"_s;
        return std::nullopt;
    }
    if (!ended && bytes.empty()) {
        return std::nullopt;
    }
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
