#include "session/KeyTable.h"

#include <QFile>
#include <QStringList>

// A static library's resources are only there when somebody asks for them by name, outside of any namespace.
static void loadGuide()
{
    Q_INIT_RESOURCE(guide);
}

namespace zul {

using namespace Qt::StringLiterals;

namespace {

QString plain(QString cell)
{
    return cell.remove(u"**"_s).remove(u'`').trimmed();
}

/// "| keys | action |" as a row; nothing for the line under a table's head.
bool readRow(const QString& line, KeyTableRow& row)
{
    const QStringList cells = line.split(u'|');
    constexpr int Cells = 4; // with what stands before the first bar and behind the last
    if (cells.size() != Cells || cells[1].contains(u"---"_s)) {
        return false;
    }
    row = {plain(cells[1]), plain(cells[2])};
    return true;
}

} // namespace

std::vector<KeyTableSection> readKeyTable(const QString& guide)
{
    std::vector<KeyTableSection> sections;
    bool inChapter = false;
    bool inTable = false;
    const QStringList lines = guide.split(u'\n');
    for (const QString& line : lines) {
        if (line.startsWith(u"## "_s)) {
            inChapter = line.trimmed() == u"## Tasti"_s;
        }
        if (!inChapter) {
            continue;
        }
        if (line.startsWith(u"### "_s)) {
            sections.push_back({line.mid(4).trimmed(), {}});
        }
        const bool isRow = line.startsWith(u'|');
        KeyTableRow row;
        // The first row of a table is its head.
        if (isRow && inTable && !sections.empty() && readRow(line, row)) {
            sections.back().rows.push_back(row);
        }
        inTable = isRow;
    }
    return sections;
}

std::vector<KeyTableSection> keyTable()
{
    loadGuide();
    QFile guide(u":/zul/operatore.md"_s);
    if (!guide.open(QIODevice::ReadOnly)) {
        return {};
    }
    return readKeyTable(QString::fromUtf8(guide.readAll()));
}

} // namespace zul
