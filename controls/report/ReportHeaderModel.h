// The columns of the report grid, as its header shows them.
#pragma once

#include <QAbstractTableModel>

namespace zul {

class ReportGridModel;

/// Only the columns, no rows: so the header has nothing to do when a million rows change.
class ReportHeaderModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    ReportHeaderModel(ReportGridModel* grid, QObject* parent);
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    void columnsChanged();

private:
    ReportGridModel* m_grid;
    int m_columns = 0;
};

} // namespace zul
