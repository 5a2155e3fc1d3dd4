#include "controls/report/ReportHeaderModel.h"

#include "controls/report/ReportGridModel.h"

namespace zul {

ReportHeaderModel::ReportHeaderModel(ReportGridModel* grid, QObject* parent)
    : QAbstractTableModel(parent)
    , m_grid(grid)
{}

int ReportHeaderModel::rowCount(const QModelIndex&) const
{
    return 0;
}

int ReportHeaderModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_columns;
}

QVariant ReportHeaderModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return m_grid->headerData(section, orientation, role);
}

QVariant ReportHeaderModel::data(const QModelIndex&, int) const
{
    return {};
}

void ReportHeaderModel::columnsChanged()
{
    // To nothing and back, so that the header forgets sizes and order.
    beginResetModel();
    m_columns = 0;
    endResetModel();
    const auto columns = static_cast<int>(m_grid->columns().size());
    if (columns > 0) {
        beginInsertColumns({}, 0, columns - 1);
        m_columns = columns;
        endInsertColumns();
    }
}

} // namespace zul
