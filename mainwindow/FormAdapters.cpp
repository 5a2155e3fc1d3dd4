#include "mainwindow/FormAdapters.h"

#include "controls/notices/OutcomeList.h"
#include "controls/notices/WaitIndicator.h"
#include "controls/report/ReportGrid.h"
#include "hostlib/Error.h"
#include "selection/ResultGridQuery.h"

#include <QCoreApplication>
#include <algorithm>
#include <limits>

namespace zul {

namespace {

constexpr qint64 PaintShare = 50; ///< at most one part in so many of the time goes into painting

} // namespace

GridRecipients::GridRecipients(ReportGrid& grid)
    : m_grid(grid)
    , m_records(grid.allRecordsInScreenOrder())
{}

bool GridRecipients::isMarked(int row) const
{
    return m_grid.isChecked(record(row));
}

void GridRecipients::clearMark(int row)
{
    m_grid.setChecked(record(row), false);
}

QString GridRecipients::text(int row, int column) const
{
    return m_grid.cellText(record(row), column);
}

bool GridRecipients::isNumeric(int row, int column) const
{
    return m_grid.cellIsNumeric(record(row), column);
}

qint32 GridRecipients::idCliente(int row) const
{
    const ColumnStore& cells = m_grid.store();
    bool ok = cells.kind(record(row), ColumnIdCliente) == CellKind::Integer;
    const qlonglong id =
        ok ? cells.integer(record(row), ColumnIdCliente) : text(row, ColumnIdCliente).toLongLong(&ok);
    if (!ok) {
        throw Error(RunTime::TypeMismatch);
    }
    if (id < std::numeric_limits<qint32>::min() || id > std::numeric_limits<qint32>::max()) {
        throw Error(RunTime::Overflow);
    }
    return static_cast<qint32>(id);
}

ListOutcomes::ListOutcomes(OutcomeList& list)
    : m_list(list)
{
    m_sincePainted.start();
}

ListOutcomes::~ListOutcomes()
{
    m_list.flush();
}

void ListOutcomes::append(const QString& line)
{
    m_list.append(line);
    if (m_sincePainted.elapsed() < m_untilPaint) {
        return;
    }
    m_sincePainted.restart();
    m_list.flush();
    m_list.viewport()->repaint();
    // The longer the list, the longer it takes to lay out: painting stays a small part of the run.
    m_untilPaint = std::max(PaintEveryMilliseconds, PaintShare * m_sincePainted.elapsed());
    m_sincePainted.restart();
}

WaitPleaseProgress::WaitPleaseProgress(WaitIndicator& control)
    : m_control(control)
    , m_input(control.window())
{}

void WaitPleaseProgress::GestWaitPlease(bool show, qint32 value, const QString& caption)
{
    // The visible state is kept in the control's tag as "1" or "0".
    const bool wasShown = m_control.property("tag").toString() == QLatin1String("1");
    m_control.setCaption(caption);
    m_control.setValue(value);
    m_control.setVisible(show);
    m_control.setProperty("tag", show ? QStringLiteral("1") : QStringLiteral("0"));
    if (!show) {
        return;
    }
    if (!wasShown) {
        m_control.raise();
    }
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

} // namespace zul
