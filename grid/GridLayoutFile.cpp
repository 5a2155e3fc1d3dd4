#include "grid/GridLayoutFile.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>

namespace zul {

namespace {

constexpr qint64 largestFile = 1 << 20; // a layout is a few lines; a larger file is not ours
constexpr int mostColumns = 4096;
constexpr int widestColumn = 32767;

/// The file's lines with their ends; an unreadable or absurd file has none.
QList<QByteArray> linesOf(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() > largestFile || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray content = file.read(largestFile);
    QList<QByteArray> lines;
    for (qsizetype begin = 0; begin < content.size();) {
        qsizetype end = content.indexOf('\n', begin);
        end = end < 0 ? content.size() : end + 1;
        lines.append(content.mid(begin, end - begin));
        begin = end;
    }
    if (!lines.isEmpty() && lines.first().startsWith("\xEF\xBB\xBF")) {
        lines.first().remove(0, 3);
    }
    return lines;
}

bool isSectionLine(const QByteArray& line)
{
    const QByteArray text = line.trimmed();
    return text.startsWith('[') && text.endsWith(']');
}

bool isSectionLine(const QByteArray& line, const QByteArray& section)
{
    const QByteArray text = line.trimmed();
    return isSectionLine(line) &&
           text.mid(1, text.size() - 2).trimmed().compare(section, Qt::CaseInsensitive) == 0;
}

std::optional<ColumnLayout> columnFrom(const QByteArray& value)
{
    const QList<QByteArray> parts = value.split(',');
    if (parts.size() != 4) {
        return std::nullopt;
    }
    bool positionOk = false;
    bool widthOk = false;
    ColumnLayout column;
    column.position = parts[0].trimmed().toInt(&positionOk);
    column.width = parts[1].trimmed().toInt(&widthOk);
    const QByteArray visible = parts[2].trimmed();
    column.visible = visible == "1";
    column.field = QString::fromUtf8(QByteArray::fromPercentEncoding(parts[3].trimmed()));
    const bool ok = positionOk && widthOk && column.position >= 0 && column.position < mostColumns &&
                    column.width >= 0 && column.width <= widestColumn && (visible == "1" || visible == "0");
    return ok ? std::optional(column) : std::nullopt;
}

} // namespace

std::optional<std::vector<ColumnLayout>> GridLayoutFile::read(const QString& section) const
{
    std::vector<ColumnLayout> columns;
    QSet<int> positions;
    bool inside = false;
    bool known = false;
    for (const QByteArray& line : linesOf(m_path)) {
        if (isSectionLine(line)) {
            if (inside) {
                break;
            }
            inside = isSectionLine(line, section.toUtf8());
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (!inside || equals < 0) {
            continue;
        }
        const QByteArray key = line.left(equals).trimmed();
        const QByteArray value = line.mid(equals + 1);
        if (key == "Layout") {
            known = value.trimmed() == "1";
        } else if (key.startsWith("Column")) {
            const std::optional<ColumnLayout> column = columnFrom(value);
            if (!column || positions.contains(column->position) || columns.size() >= mostColumns) {
                return std::nullopt;
            }
            positions.insert(column->position);
            columns.push_back(*column);
        }
    }
    return known && !columns.empty() ? std::optional(columns) : std::nullopt;
}

bool GridLayoutFile::write(const QString& section, const std::vector<ColumnLayout>& columns) const
{
    const QFileInfo info(m_path);
    if (info.exists() && (!info.isFile() || !info.isReadable() || info.size() > largestFile)) {
        return false; // what we cannot read we would lose
    }
    QByteArray own = '[' + section.toUtf8() + "]\nLayout=1\n";
    int number = 0;
    for (const ColumnLayout& column : columns) {
        own += "Column" + QByteArray::number(++number) + '=' + QByteArray::number(column.position) + ',' +
               QByteArray::number(column.width) + ',' + (column.visible ? "1," : "0,") +
               column.field.toUtf8().toPercentEncoding() + '\n';
    }
    QByteArray content;
    bool inside = false;
    bool written = false;
    for (const QByteArray& line : linesOf(m_path)) {
        if (isSectionLine(line)) {
            inside = isSectionLine(line, section.toUtf8());
            if (inside && !written) {
                content += own;
                written = true;
            }
        }
        if (!inside) {
            content += line;
        }
    }
    if (!written) {
        if (!content.isEmpty() && !content.endsWith('\n')) {
            content += '\n';
        }
        content += own;
    }
    QSaveFile file(m_path);
    // A folder in which the operator may not make files may still hold a layout file that he may write.
    file.setDirectWriteFallback(true);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit();
}

} // namespace zul
