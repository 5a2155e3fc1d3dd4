// The queue as a table.
#pragma once

#include "sender/Queue.h"

#include <QAbstractTableModel>

namespace zul::sender {
class QueueModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    void setQueue(std::vector<QueuedMessage> queue);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    std::vector<QueuedMessage> m_queue;
};
} // namespace zul::sender
