#include "bench/OrdinaryModel.h"

namespace zul::bench {

OrdinaryModel::OrdinaryModel(const ColumnStore& store)
    : m_rows(static_cast<int>(store.rowCount()))
    , m_texts(static_cast<std::size_t>(store.columnCount()))
{
    for (int column = 1; column < store.columnCount(); ++column) {
        std::vector<QString>& texts = m_texts[static_cast<std::size_t>(column)];
        texts.reserve(store.rowCount());
        for (uint32_t row = 0; row < store.rowCount(); ++row) {
            texts.push_back(store.text(row, column));
        }
    }
}

int OrdinaryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

int OrdinaryModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_texts.size());
}

QVariant OrdinaryModel::data(const QModelIndex& index, int role) const
{
    return role == Qt::DisplayRole && index.column() > 0
               ? m_texts[static_cast<std::size_t>(index.column())][static_cast<std::size_t>(index.row())]
               : QVariant();
}

std::unique_ptr<QSortFilterProxyModel> ordinaryProxy(OrdinaryModel& model)
{
    auto proxy = std::make_unique<QSortFilterProxyModel>();
    proxy->setSortCaseSensitivity(Qt::CaseInsensitive);
    proxy->setFilterCaseSensitivity(Qt::CaseInsensitive);
    proxy->setFilterKeyColumn(-1);
    proxy->setSourceModel(&model);
    return proxy;
}

} // namespace zul::bench
