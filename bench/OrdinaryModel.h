// What the grid is measured against: the rows of a store as an ordinary Qt model, for Qt's own sorting and filtering.
#pragma once

#include "grid/ColumnStore.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

#include <memory>
#include <vector>

namespace zul::bench {

/// The cells' texts, made ready once, so that the model answers as fast as a model can. The first column is hidden in
/// the grid and stays empty here.
class OrdinaryModel : public QAbstractTableModel
{
public:
    explicit OrdinaryModel(const ColumnStore& store);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    int m_rows = 0;
    std::vector<std::vector<QString>> m_texts;
};

/// Sorts and filters all columns without regard to case. Unlike the grid it compares characters by their numbers, not
/// as the user's language orders them, which is the faster way.
std::unique_ptr<QSortFilterProxyModel> ordinaryProxy(OrdinaryModel& model);

} // namespace zul::bench
