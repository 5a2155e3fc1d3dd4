#include "options/FailedNumbers.h"

#include "hostlib/Error.h"
#include "session/Platform.h"

#include <algorithm>
#include <utility>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// A text that may stand between the apostrophes of a statement as it is.
const QString& sendable(const QString& number)
{
    if (number.contains(u'\'')) {
        throw Error(static_cast<long>(RunTime::InvalidCall),
                    u"A number with an apostrophe is not sent to the database"_s);
    }
    return number;
}

} // namespace

FailedNumbersReader::FailedNumbersReader(const QString& path)
    : FailedNumbersReader(path, Bounds{})
{}

FailedNumbersReader::FailedNumbersReader(const QString& path, Bounds bounds)
    : m_file(platform::nativePath(path))
    , m_bounds(bounds)
{
    if (!platform::fileExists(path)) {
        throw Error(RunTime::FileNotFound);
    }
    if (!m_file.open(QIODevice::ReadOnly)) {
        throw Error(75, u"Path/File access error"_s);
    }
}

std::optional<QString> FailedNumbersReader::next()
{
    qsizetype end = m_at;
    for (;; ++end) {
        if (end == m_buffer.size()) {
            end -= m_at; // where it stands once what is taken has gone
            if (!fill()) {
                if (end == 0) {
                    return std::nullopt;
                }
                break;
            }
        }
        const char c = m_buffer.at(end);
        if (std::exchange(m_passLineFeed, false) && c == '\n') {
            m_at = end + 1;
            continue;
        }
        if (c == '\n' || c == '\r') {
            break;
        }
        if (end - m_at >= m_bounds.longestLine) {
            throw Error(14, u"Out of string space"_s);
        }
    }
    const QString line = QString::fromUtf8(m_buffer.constData() + m_at, end - m_at);
    m_passLineFeed = end < m_buffer.size() && m_buffer.at(end) == '\r';
    m_at = std::min(end + 1, m_buffer.size());
    return line;
}

/// Reads on behind what is not taken yet, which then stands at the buffer's beginning. @return false at the end
bool FailedNumbersReader::fill()
{
    m_buffer.remove(0, m_at);
    m_at = 0;
    const qsizetype kept = m_buffer.size();
    m_buffer.resize(kept + m_bounds.piece);
    const qint64 got = m_file.read(m_buffer.data() + kept, m_bounds.piece);
    m_buffer.resize(kept + static_cast<qsizetype>(std::max<qint64>(got, 0)));
    if (got < 0) {
        throw Error(57, u"Device I/O error"_s);
    }
    return got > 0;
}

qint64 FailedNumbersReader::position() const
{
    return m_file.pos() - (m_buffer.size() - m_at);
}

qint64 FailedNumbersReader::size() const
{
    return m_file.size();
}

QString searchedNumber(const QString& line)
{
    if (!line.startsWith(u"39"_s)) {
        return line;
    }
    // Three less than the line: two for the prefix, one more that is meant.
    constexpr qsizetype Taken = 3;
    if (line.size() < Taken) {
        throw Error(RunTime::InvalidCall);
    }
    return line.mid(2, line.size() - Taken);
}

QString customersQuery(const QString& number)
{
    return u" select * from tabclienti where telefono2 like '%"_s + sendable(number) + u"%'"_s;
}

QString disableStatement(const QString& telefono2)
{
    return u"update tabclienti set notecliente = isnull(notecliente, '') + ' Numero non valido :' + '"_s +
           sendable(telefono2) + u"' , Telefono2='' where  telefono2 = '"_s + telefono2 + u"'"_s;
}

} // namespace zul
