#include "controls/access/GridAccessible.h"

#include "controls/access/GridCells.h"
#include "controls/report/GridHighlights.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridView.h"
#include "controls/report/ReportHeader.h"

#include <QItemSelectionModel>

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr int groupColumn = -1;

QAccessibleInterface* makeGridAccessible(const QString& className, QObject* object)
{
    if (className != QLatin1String(ReportGridView::staticMetaObject.className())) {
        return nullptr;
    }
    auto* view = qobject_cast<ReportGridView*>(object);
    return view != nullptr ? new GridAccessible(view) : nullptr;
}

const GridCellAccessible* asCell(const QAccessibleInterface* interface)
{
    return dynamic_cast<const GridCellAccessible*>(interface);
}

AccessibilityListener otherListener = nullptr;

bool somebodyListens()
{
    return otherListener != nullptr || QAccessible::isActive();
}

void tell(QAccessibleEvent& event)
{
    if (otherListener != nullptr) {
        otherListener(event);
    } else {
        QAccessible::updateAccessibility(&event);
    }
}

GridAccessible* accessibleOf(ReportGridView& view)
{
    return somebodyListens() ? dynamic_cast<GridAccessible*>(QAccessible::queryAccessibleInterface(&view))
                             : nullptr;
}

void tellState(QAccessibleInterface* cell, void (*change)(QAccessible::State&))
{
    QAccessible::State changed;
    change(changed);
    QAccessibleStateChangeEvent event(cell, changed);
    tell(event);
}

} // namespace

void installGridAccessibility()
{
    static const bool installed = [] {
        QAccessible::installFactory(makeGridAccessible);
        return true;
    }();
    Q_UNUSED(installed)
}

GridAccessible::GridAccessible(ReportGridView* view)
    : QAccessibleWidget(view, QAccessible::Table)
{
    const QAbstractItemModel* rows = view->model();
    m_connections = {
        QObject::connect(rows, &QAbstractItemModel::modelReset, view, [this] { forget(m_cells); }),
        QObject::connect(
            rows, &QAbstractItemModel::rowsInserted, view,
            [this](const QModelIndex&, int first, int last) { moveRows(first, last - first + 1); }),
        QObject::connect(
            rows, &QAbstractItemModel::rowsRemoved, view,
            [this](const QModelIndex&, int first, int last) { moveRows(first, first - last - 1); }),
        // Headers outlive another order of the rows: their own action may be what sorts.
        QObject::connect(view->header(), &QHeaderView::sectionCountChanged, view,
                         [this] { forget(m_headers); }),
    };
}

GridAccessible::~GridAccessible()
{
    for (const QMetaObject::Connection& connection : m_connections) {
        QObject::disconnect(connection);
    }
    forget(m_cells);
    forget(m_headers);
}

ReportGridView& GridAccessible::view() const
{
    return *static_cast<ReportGridView*>(widget());
}

void GridAccessible::forget(QHash<Key, QAccessible::Id>& kept)
{
    const QHash<Key, QAccessible::Id> gone = std::exchange(kept, {});
    for (const QAccessible::Id id : gone) {
        QAccessible::deleteAccessibleInterface(id);
    }
}

/// Rows came (count above 0) or went at a row: the cells below it stand elsewhere now.
void GridAccessible::moveRows(int first, int count)
{
    const QHash<Key, QAccessible::Id> before = std::exchange(m_cells, {});
    for (auto kept = before.begin(); kept != before.end(); ++kept) {
        Key key = kept.key();
        if (key.first >= first) {
            if (key.first < first - count) {
                QAccessible::deleteAccessibleInterface(kept.value());
                continue;
            }
            key.first += count;
            static_cast<GridCellAccessible*>(QAccessible::accessibleInterface(kept.value()))
                ->setRow(key.first);
        }
        m_cells.insert(key, kept.value());
    }
}

QAccessibleInterface* GridAccessible::cell(int row, int column) const
{
    const Key key(row, view().grid().isGroup(row) ? groupColumn : column);
    const auto known = m_cells.constFind(key);
    if (known != m_cells.cend()) {
        return QAccessible::accessibleInterface(*known);
    }
    auto* made = new GridCellAccessible(&view(), row, column);
    m_cells.insert(key, QAccessible::registerAccessibleInterface(made));
    return made;
}

QAccessibleInterface* GridAccessible::header(int column) const
{
    const std::vector<int> shown = view().header()->shownColumns();
    if (static_cast<size_t>(column) >= shown.size()) {
        return nullptr;
    }
    const Key key(0, shown[static_cast<size_t>(column)]);
    const auto known = m_headers.constFind(key);
    if (known != m_headers.cend()) {
        return QAccessible::accessibleInterface(*known);
    }
    auto* made = new GridHeaderAccessible(&view(), key.second);
    m_headers.insert(key, QAccessible::registerAccessibleInterface(made));
    return made;
}

// --- QAccessibleInterface

void* GridAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface*>(this)
                                               : QAccessibleWidget::interface_cast(type);
}

QString GridAccessible::text(QAccessible::Text kind) const
{
    const ReportGridModel& grid = view().grid();
    if (kind == QAccessible::Name) {
        const QWidget* owner = view().parentWidget();
        return owner != nullptr && !owner->accessibleName().isEmpty() ? owner->accessibleName()
                                                                      : view().accessibleName();
    }
    if (kind == QAccessible::Description) {
        QString counts = u"Righe: %1"_s.arg(grid.recordsInOrder().size());
        if (grid.checkColumn() >= 0) {
            counts += u", spuntate: %1"_s.arg(grid.checkedCount());
        }
        return counts + u", evidenziate: %1"_s.arg(highlightedCount(view()));
    }
    return QAccessibleWidget::text(kind);
}

QAccessible::State GridAccessible::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.multiSelectable = true;
    return state;
}

int GridAccessible::childCount() const
{
    return (rowCount() + 1) * columnCount();
}

QAccessibleInterface* GridAccessible::child(int index) const
{
    const int columns = columnCount();
    if (index < 0 || index >= childCount()) {
        return nullptr;
    }
    return index < columns ? header(index) : cellAt(index / columns - 1, index % columns);
}

QAccessibleInterface* GridAccessible::childAt(int x, int y) const
{
    const ReportHeader* header = view().header();
    const QPoint inHeader = header->mapFromGlobal(QPoint(x, y));
    if (header->isVisible() && header->rect().contains(inHeader)) {
        return this->header(header->visiblePosition(header->logicalIndexAt(inHeader)));
    }
    const QPoint inRows = view().viewport()->mapFromGlobal(QPoint(x, y));
    const QModelIndex at =
        view().viewport()->rect().contains(inRows) ? view().indexAt(inRows) : QModelIndex();
    return at.isValid() ? cell(at.row(), at.column()) : nullptr;
}

QAccessibleInterface* GridAccessible::focusChild() const
{
    const QModelIndex current = view().currentIndex();
    if (!view().hasFocus() || !current.isValid()) {
        return nullptr;
    }
    const bool hidden = view().header()->visiblePosition(current.column()) < 0;
    return cell(current.row(), hidden ? view().firstShownColumn() : current.column());
}

int GridAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    if (const auto* header = dynamic_cast<const GridHeaderAccessible*>(child)) {
        return header->isOf(&view()) ? view().header()->visiblePosition(header->column()) : -1;
    }
    const GridCellAccessible* cell = asCell(child);
    if (cell == nullptr || !cell->isOf(&view()) || !cell->isValid() || cell->columnIndex() < 0) {
        return -1;
    }
    return (cell->rowIndex() + 1) * columnCount() + cell->columnIndex();
}

// --- QAccessibleTableInterface

QAccessibleInterface* GridAccessible::cellAt(int row, int column) const
{
    const std::vector<int> shown = view().header()->shownColumns();
    if (row < 0 || row >= rowCount() || static_cast<size_t>(column) >= shown.size()) {
        return nullptr;
    }
    return cell(row, shown[static_cast<size_t>(column)]);
}

int GridAccessible::rowCount() const
{
    return view().grid().rowCount();
}

int GridAccessible::columnCount() const
{
    return static_cast<int>(view().header()->shownColumns().size());
}

QString GridAccessible::columnDescription(int column) const
{
    const QAccessibleInterface* own = header(column);
    return own != nullptr ? own->text(QAccessible::Name) : QString();
}

/// What stands for the whole row: the first text of a record, the caption of a group.
QString GridAccessible::rowDescription(int row) const
{
    const ReportGridModel& grid = view().grid();
    if (grid.isGroup(row)) {
        return grid.groupCaption(row);
    }
    const int record = grid.record(row);
    const std::vector<int> shown = view().header()->shownColumns();
    const auto first =
        std::find_if(shown.begin(), shown.end(), [&](int column) { return column != grid.checkColumn(); });
    return record < 0 || first == shown.end() ? QString()
                                              : grid.shownText(static_cast<uint32_t>(record), *first);
}

int GridAccessible::selectedCellCount() const
{
    return selectedRowCount() * columnCount();
}

QList<QAccessibleInterface*> GridAccessible::selectedCells() const
{
    QList<QAccessibleInterface*> cells;
    for (const int row : selectedRows()) {
        for (int column = 0; column < columnCount(); ++column) {
            cells.append(cellAt(row, column));
        }
    }
    return cells;
}

int GridAccessible::selectedRowCount() const
{
    int count = 0;
    const QItemSelection highlighted = view().selectionModel()->selection();
    for (const QItemSelectionRange& range : highlighted) {
        count += range.height();
    }
    return count;
}

QList<int> GridAccessible::selectedRows() const
{
    QList<int> rows;
    const QItemSelection highlighted = view().selectionModel()->selection();
    for (const QItemSelectionRange& range : highlighted) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.append(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

bool GridAccessible::isRowSelected(int row) const
{
    return row >= 0 && row < rowCount() &&
           view().selectionModel()->isSelected(view().grid().index(row, view().firstShownColumn()));
}

bool GridAccessible::selectRow(int row)
{
    if (row < 0 || row >= rowCount() || !view().isEnabled()) {
        return false;
    }
    const QModelIndex index = view().grid().index(row, view().firstShownColumn());
    view().selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    view().selectionModel()->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    return true;
}

bool GridAccessible::unselectRow(int row)
{
    if (!isRowSelected(row) || !view().isEnabled()) {
        return false;
    }
    view().selectionModel()->select(view().grid().index(row, view().firstShownColumn()),
                                    QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
    return true;
}

// --- What the list tells

void setAccessibilityListener(AccessibilityListener listener)
{
    otherListener = listener;
}

void tellCurrentCell(ReportGridView& view)
{
    const GridAccessible* table = accessibleOf(view);
    QAccessibleInterface* cell = table != nullptr ? table->focusChild() : nullptr;
    if (cell != nullptr) {
        QAccessibleEvent event(cell, QAccessible::Focus);
        tell(event);
    }
}

void tellCells(ReportGridView& view, const QModelIndex& topLeft, const QModelIndex& bottomRight)
{
    const GridAccessible* table = accessibleOf(view);
    if (table == nullptr || !topLeft.isValid()) {
        return;
    }
    const ReportGridModel& grid = view.grid();
    if (topLeft.row() == bottomRight.row()) {
        QAccessibleInterface* cell =
            table->cellAt(topLeft.row(), std::max(0, view.header()->visiblePosition(topLeft.column())));
        if (cell != nullptr && grid.isGroup(topLeft.row())) {
            tellState(cell, [](QAccessible::State& changed) { changed.expanded = true; });
        } else if (cell != nullptr && topLeft.column() == grid.checkColumn()) {
            tellState(cell, [](QAccessible::State& changed) { changed.checked = true; });
        }
    }
    QAccessibleEvent event(&view, QAccessible::DescriptionChanged);
    tell(event);
}

void tellHighlights(ReportGridView& view)
{
    if (somebodyListens()) {
        QAccessibleEvent event(&view, QAccessible::SelectionWithin);
        tell(event);
    }
}

void tellRowsAnew(ReportGridView& view)
{
    if (!somebodyListens()) {
        return;
    }
    QAccessibleTableModelChangeEvent rows(&view, QAccessibleTableModelChangeEvent::ModelReset);
    tell(rows);
    QAccessibleEvent event(&view, QAccessible::DescriptionChanged);
    tell(event);
}

} // namespace zul
