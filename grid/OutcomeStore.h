// Lines of text, kept closely.
#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace zul {

/// A million outcome lines cost what their UTF-8 text costs and 16 bytes each: the texts stand one behind the
/// other in large blocks, with no object per line.
class OutcomeStore
{
public:
    void append(QStringView line);
    void clear();

    [[nodiscard]] int count() const { return static_cast<int>(m_lines.size()); }
    /// Empty for an index out of range.
    [[nodiscard]] QString line(int index) const;

    /// The length of the longest line so far, in character cells of a monospaced font; characters outside of
    /// the Western scripts count as two.
    [[nodiscard]] int widest() const { return m_widest; }

private:
    struct Line
    {
        quint32 block;
        quint32 offset;
        quint32 length;
    };

    std::vector<QByteArray> m_blocks;
    std::vector<Line> m_lines;
    int m_widest = 0;
};

} // namespace zul
