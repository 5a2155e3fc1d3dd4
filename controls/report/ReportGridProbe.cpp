#include "controls/report/ReportGridProbe.h"

#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridView.h"
#include "controls/report/ReportGroupBox.h"
#include "controls/report/ReportHeader.h"

namespace zul {

ReportGridProbe::ReportGridProbe(ReportGrid* grid)
    : QObject(grid)
    , m_grid(grid)
    , m_view(grid->findChild<ReportGridView*>(QString(), Qt::FindDirectChildrenOnly))
    , m_header(m_view->header())
    , m_groupBox(grid->findChild<ReportGroupBox*>(QString(), Qt::FindDirectChildrenOnly))
    , m_model(static_cast<const ReportGridModel*>(m_view->model()))
{}

int ReportGridProbe::visibleRowCount() const
{
    return m_model->rowCount();
}

int ReportGridProbe::columnCount() const
{
    return m_grid->columnCount();
}

int ReportGridProbe::checkColumn() const
{
    return m_grid->checkColumn();
}

QWidget* ReportGridProbe::bodyViewport() const
{
    return m_view->viewport();
}

QRect ReportGridProbe::rowRect(int row)
{
    m_view->scrollToRow(row);
    return m_view->rowRect(row);
}

QRect ReportGridProbe::checkRect(int row)
{
    m_view->scrollToRow(row);
    m_view->scrollToColumn(checkColumn());
    return m_view->checkRect(row);
}

QWidget* ReportGridProbe::headerViewport() const
{
    return m_header->viewport();
}

QRect ReportGridProbe::headerRect(int column)
{
    if (visiblePosition(column) < 0) {
        return {};
    }
    m_view->scrollToColumn(column);
    return {m_header->sectionViewportPosition(column), 0, m_header->sectionSize(column),
            m_header->viewport()->height()};
}

int ReportGridProbe::visiblePosition(int column) const
{
    return m_header->visiblePosition(column);
}

QWidget* ReportGridProbe::groupBoxWidget() const
{
    return m_groupBox;
}

void ReportGridProbe::ungroupAll()
{
    m_grid->ungroupAll();
}

QStringList ReportGridProbe::rowTexts(int row) const
{
    QStringList texts;
    const int record = m_model->record(row);
    for (int column = 0; record >= 0 && column < columnCount(); ++column) {
        texts.append(m_model->store().text(static_cast<uint32_t>(record), column));
    }
    return texts;
}

QVariantList ReportGridProbe::rowCells(int row) const
{
    QVariantList cells;
    const int record = m_model->record(row);
    for (int column = 0; record >= 0 && column < columnCount(); ++column) {
        const auto own = static_cast<uint32_t>(record);
        cells.append(m_model->store().isNull(own, column) ? QVariant()
                                                          : QVariant(m_model->store().text(own, column)));
    }
    return cells;
}

int ReportGridProbe::rowCheck(int row) const
{
    const int record = m_model->record(row);
    if (record < 0 || checkColumn() < 0) {
        return -1;
    }
    return m_grid->isChecked(static_cast<uint32_t>(record)) ? 1 : 0;
}

bool ReportGridProbe::rowIsGroup(int row) const
{
    return m_model->isGroup(row);
}

QString ReportGridProbe::groupCaption(int row) const
{
    return m_model->groupCaption(row);
}

int ReportGridProbe::groupCount(int row) const
{
    return m_model->groupCount(row);
}

ReportGridProbe* probeOf(ReportGrid* grid)
{
    return static_cast<ReportGridProbe*>(grid->probe());
}

} // namespace zul
