#include "grid/OutcomeStore.h"

#include "grid/Utf8Text.h"

namespace zul {

namespace {

constexpr qsizetype blockSize = 1 << 20;
constexpr char16_t lastNarrow = 0x2000;

int cells(QStringView text)
{
    int count = 0;
    for (const QChar character : text) {
        count += character.unicode() < lastNarrow ? 1 : 2;
    }
    return count;
}

} // namespace

void OutcomeStore::append(QStringView line)
{
    const QByteArray bytes = line.toUtf8();
    if (m_blocks.empty() || m_blocks.back().size() + bytes.size() > blockSize) {
        m_blocks.emplace_back();
        m_blocks.back().reserve(qMax(blockSize, bytes.size()));
    }
    QByteArray& block = m_blocks.back();
    m_lines.push_back({static_cast<quint32>(m_blocks.size() - 1), static_cast<quint32>(block.size()),
                       static_cast<quint32>(bytes.size())});
    block.append(bytes);
    m_widest = qMax(m_widest, cells(line));
}

void OutcomeStore::clear()
{
    m_blocks.clear();
    m_blocks.shrink_to_fit();
    m_lines.clear();
    m_lines.shrink_to_fit();
    m_widest = 0;
}

QString OutcomeStore::line(int index) const
{
    if (index < 0 || index >= count()) {
        return {};
    }
    const Line& line = m_lines[static_cast<std::size_t>(index)];
    return textFromUtf8(
        QByteArrayView(m_blocks[line.block].constData() + line.offset, static_cast<qsizetype>(line.length)));
}

} // namespace zul
