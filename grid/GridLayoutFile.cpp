#include "grid/GridLayoutFile.h"

#include "grid/Utf8Text.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>

namespace zul {

namespace {

constexpr qint64 largestFile = 1 << 20; // a layout is a few lines; a larger file is not ours
constexpr size_t mostColumns = 4096;
constexpr int widestColumn = 32767;

/// What the file holds. A file that is not there has no lines.
struct Content
{
    QString error;           // why it cannot be read
    QByteArray mark;         // that some editors put before UTF-8
    QList<QByteArray> lines; // with their ends
};

Content contentOf(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return {};
    }
    if (!info.isFile()) {
        return {QStringLiteral("it is not a file"), {}, {}};
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {file.errorString(), {}, {}};
    }
    // Piece by piece: as a rule the file is a thousandth of the largest one.
    constexpr qint64 pieceSize = 16384;
    QByteArray bytes;
    for (QByteArray piece; bytes.size() <= largestFile && !(piece = file.read(pieceSize)).isEmpty();) {
        bytes += piece;
    }
    if (file.error() != QFileDevice::NoError) {
        return {file.errorString(), {}, {}};
    }
    if (bytes.size() > largestFile) {
        return {QStringLiteral("it is too large for a layout file"), {}, {}};
    }
    Content content;
    content.mark = bytes.startsWith("\xEF\xBB\xBF") ? bytes.left(3) : QByteArray();
    for (qsizetype begin = content.mark.size(); begin < bytes.size();) {
        qsizetype end = bytes.indexOf('\n', begin);
        end = end < 0 ? bytes.size() : end + 1;
        content.lines.append(bytes.mid(begin, end - begin));
        begin = end;
    }
    return content;
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
    column.field = textFromUtf8(QByteArray::fromPercentEncoding(parts[3].trimmed()));
    const bool ok = positionOk && widthOk && column.position >= 0 &&
                    column.position < static_cast<int>(mostColumns) && column.width >= 0 &&
                    column.width <= widestColumn && (visible == "1" || visible == "0");
    return ok ? std::optional(column) : std::nullopt;
}

QByteArray sectionOf(const QString& section, const std::vector<ColumnLayout>& columns)
{
    QByteArray lines = '[' + section.toUtf8() + "]\nLayout=1\n";
    int number = 0;
    for (const ColumnLayout& column : columns) {
        lines += "Column" + QByteArray::number(++number) + '=' + QByteArray::number(column.position) + ',' +
                 QByteArray::number(qBound(0, column.width, widestColumn)) + ',' +
                 (column.visible ? "1," : "0,") + column.field.toUtf8().toPercentEncoding() + '\n';
    }
    return lines;
}

} // namespace

std::optional<std::vector<ColumnLayout>> GridLayoutFile::read(const QString& section) const
{
    std::vector<ColumnLayout> columns;
    QSet<int> positions;
    bool inside = false;
    bool known = false;
    for (const QByteArray& line : contentOf(m_path).lines) {
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

LayoutSaved GridLayoutFile::write(const QString& section, const std::vector<ColumnLayout>& columns) const
{
    const QString error = tryWrite(section, columns);
    return {error.isEmpty()
                ? QString()
                : QStringLiteral("The column layout cannot be saved in \"%1\": %2").arg(m_path, error)};
}

QString GridLayoutFile::tryWrite(const QString& section, const std::vector<ColumnLayout>& columns) const
{
    if (section.trimmed() != section || section.contains(QLatin1Char('\n')) || columns.size() > mostColumns) {
        return QStringLiteral("it could not be read again");
    }
    const Content before = contentOf(m_path);
    if (!before.error.isEmpty()) {
        return before.error; // what we cannot read we would lose
    }
    const QByteArray own = sectionOf(section, columns);
    QByteArray content = before.mark;
    bool inside = false;
    bool written = false;
    for (const QByteArray& line : before.lines) {
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
        if (!before.lines.isEmpty() && !content.endsWith('\n')) {
            content += '\n';
        }
        content += own;
    }
    if (content.size() > largestFile) {
        return QStringLiteral("the file would become too large");
    }
    QSaveFile file(m_path);
    // A folder in which the operator may not make files may still hold a layout file that he may write.
    file.setDirectWriteFallback(true);
    bool saved = file.open(QIODevice::WriteOnly);
    if (saved) {
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
    saved = saved && file.write(content) == content.size() && file.commit();
    return saved ? QString() : file.errorString();
}

} // namespace zul
