#include "mainwindow/GridMemory.h"

#include "controls/report/ReportGrid.h"
#include "mainwindow/Pages.h"
#include "session/Remembered.h"

#include <QEvent>
#include <QSplitter>
#include <QStringList>
#include <utility>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

QString orderName()
{
    return u"frmSMS_Ordine"_s;
}

QString splitterName(bool touch)
{
    return touch ? u"frmSMS_DivisoreTouch"_s : u"frmSMS_Divisore"_s;
}

/// -1 for a field that the grid has not.
int columnOf(const ReportGrid& grid, const QString& field)
{
    for (int column = 0; column < grid.columnCount(); ++column) {
        if (grid.columnField(column).compare(field, Qt::CaseInsensitive) == 0) {
            return column;
        }
    }
    return -1;
}

/// "FIELD,1|GROUP|GROUP": the sort column, 1 for descending, and the columns that group.
QString orderText(const ReportGrid& grid)
{
    QStringList parts{grid.sortColumn() < 0 ? QString()
                                            : grid.columnField(grid.sortColumn()) +
                                                  (grid.isSortDescending() ? u",1"_s : u",0"_s)};
    for (const int column : grid.groupColumns()) {
        parts.append(grid.columnField(column));
    }
    return parts.join(u'|');
}

} // namespace

GridMemory::GridMemory(QWidget* window, ReportGrid* grid, QSplitter* splitter)
    : QObject(window)
    , m_window(window)
    , m_grid(grid)
    , m_splitter(splitter)
{
    window->installEventFilter(this);
}

bool GridMemory::restoreSplitter(bool touch)
{
    m_touch = touch;
    bool ok = false;
    const int left = remembered(splitterName(touch)).toInt(&ok);
    if (!ok || left <= 0) {
        return false;
    }
    m_splitter->setSizes({left, m_window->width() - left});
    return true;
}

void GridMemory::restoreOrder()
{
    if (std::exchange(m_restored, true)) {
        return;
    }
    const QStringList parts = remembered(orderName()).split(u'|');
    for (const QString& group : parts.mid(1)) {
        if (const int column = columnOf(*m_grid, group); column >= 0) {
            m_grid->groupBy(column);
        }
    }
    const QString& sorted = parts.first();
    if (const int column = columnOf(*m_grid, sorted.section(u',', 0, 0)); column >= 0) {
        m_grid->sortBy(column, sorted.section(u',', 1, 1) == u"1"_s);
    }
}

bool GridMemory::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Hide && !event->spontaneous()) {
        trapped(smsProcedure(u"GridMemory"_s), [&] { save(); });
    }
    return false;
}

void GridMemory::save() const
{
    remember(splitterName(m_touch), QString::number(m_splitter->sizes().first()));
    // A window in which nothing was searched leaves the order of the one before it.
    if (m_restored) {
        remember(orderName(), orderText(*m_grid));
    }
}

} // namespace zul
