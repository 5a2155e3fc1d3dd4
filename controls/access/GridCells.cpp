#include "controls/access/GridCells.h"

#include "controls/access/GridAccessible.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridView.h"
#include "controls/report/ReportHeader.h"

#include <QItemSelectionModel>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

using Actions = QAccessibleActionInterface;

QRect onScreen(const QWidget& widget, const QRect& place)
{
    return {widget.mapToGlobal(place.topLeft()), place.size()};
}

} // namespace

// --- Cells

GridCellAccessible::GridCellAccessible(ReportGridView* view, int row, int column)
    : m_view(view)
    , m_row(row)
    , m_column(column)
{}

void* GridCellAccessible::interface_cast(QAccessible::InterfaceType type)
{
    switch (type) {
    case QAccessible::TableCellInterface:
        return static_cast<QAccessibleTableCellInterface*>(this);
    case QAccessible::ActionInterface:
        return static_cast<QAccessibleActionInterface*>(this);
    default:
        return nullptr;
    }
}

bool GridCellAccessible::isValid() const
{
    return m_view && m_row < m_view->grid().rowCount() && m_column < m_view->grid().columnCount();
}

bool GridCellAccessible::isGroup() const
{
    return isValid() && m_view->grid().isGroup(m_row);
}

bool GridCellAccessible::ticks() const
{
    return isValid() && m_view->grid().checkColumn() >= 0 &&
           (isGroup() || m_column == m_view->grid().checkColumn());
}

Qt::CheckState GridCellAccessible::tick() const
{
    return m_view->grid().rowTick(m_row);
}

QAccessible::Role GridCellAccessible::role() const
{
    return isGroup() ? QAccessible::TreeItem : QAccessible::Cell;
}

QAccessible::State GridCellAccessible::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    const ReportGridView& view = *m_view;
    state.disabled = !view.isEnabled();
    state.focusable = true;
    state.selectable = true;
    state.multiSelectable = true;
    state.selected = isSelected();
    state.readOnly = true;
    state.invisible = !view.isVisible();
    const QRect place = isGroup() ? view.rowRect(m_row) : view.cellRect(m_row, m_column);
    state.offscreen = !view.viewport()->rect().intersects(place);
    const QModelIndex current = view.currentIndex();
    const bool currentColumn = isGroup() || m_column == (view.header()->visiblePosition(current.column()) < 0
                                                             ? view.firstShownColumn()
                                                             : current.column());
    state.focused = view.hasFocus() && current.isValid() && current.row() == m_row && currentColumn;
    state.active = state.focused;
    if (view.grid().checkColumn() >= 0) {
        // The row's tick is to be heard wherever in the row the reader stands; it is changed in its column.
        state.checkable = ticks();
        state.checked = tick() == Qt::Checked;
        state.checkStateMixed = tick() == Qt::PartiallyChecked;
    }
    if (isGroup()) {
        state.expandable = true;
        state.expanded = !view.grid().isGroupClosed(m_row);
        state.collapsed = view.grid().isGroupClosed(m_row);
    }
    return state;
}

/// "Gruppo di livello 2, 14 righe, chiuso". The level stands in words: Qt 6.4 has no attributes of an object that a platform
/// would be told it by.
QString GridCellAccessible::groupDescription() const
{
    const ReportGridModel& grid = m_view->grid();
    const QString whether = grid.isGroupClosed(m_row) ? u"chiuso"_s : u"aperto"_s;
    const int rows = grid.groupCount(m_row);
    return u"Gruppo di livello %1, %2, %3"_s.arg(grid.groupLevel(m_row) + 1)
        .arg(rows == 1 ? u"1 riga"_s : u"%1 righe"_s.arg(rows), whether);
}

QString GridCellAccessible::text(QAccessible::Text kind) const
{
    if (!isValid()) {
        return {};
    }
    const ReportGridModel& grid = m_view->grid();
    if (isGroup()) {
        return kind == QAccessible::Name          ? grid.groupCaption(m_row)
               : kind == QAccessible::Description ? groupDescription()
                                                  : QString();
    }
    if (kind == QAccessible::Name || kind == QAccessible::Value) {
        return grid.shownText(static_cast<uint32_t>(grid.record(m_row)), m_column);
    }
    return {};
}

QRect GridCellAccessible::rect() const
{
    if (!isValid()) {
        return {};
    }
    return onScreen(*m_view->viewport(),
                    isGroup() ? m_view->rowRect(m_row) : m_view->cellRect(m_row, m_column));
}

QAccessibleInterface* GridCellAccessible::parent() const
{
    return QAccessible::queryAccessibleInterface(m_view);
}

QWindow* GridCellAccessible::window() const
{
    return m_view ? m_view->window()->windowHandle() : nullptr;
}

bool GridCellAccessible::isSelected() const
{
    return isValid() &&
           m_view->selectionModel()->isSelected(m_view->grid().index(m_row, m_view->firstShownColumn()));
}

QList<QAccessibleInterface*> GridCellAccessible::columnHeaderCells() const
{
    const auto* table = dynamic_cast<const GridAccessible*>(parent());
    QAccessibleInterface* header =
        table == nullptr || isGroup() || !isValid() ? nullptr : table->header(columnIndex());
    return header == nullptr ? QList<QAccessibleInterface*>() : QList<QAccessibleInterface*>{header};
}

int GridCellAccessible::columnIndex() const
{
    return isGroup() || !isValid() ? 0 : m_view->header()->visiblePosition(m_column);
}

int GridCellAccessible::columnExtent() const
{
    return isGroup() ? static_cast<int>(m_view->header()->shownColumns().size()) : 1;
}

QStringList GridCellAccessible::actionNames() const
{
    QStringList names;
    if (!isValid() || !m_view->isEnabled()) {
        return names;
    }
    if (isGroup()) {
        names << Actions::pressAction();
    }
    if (ticks()) {
        names << Actions::toggleAction();
    }
    return names << Actions::setFocusAction();
}

QString GridCellAccessible::localizedActionDescription(const QString& action) const
{
    if (action == Actions::pressAction()) {
        return u"Apre o chiude il gruppo"_s;
    }
    if (action == Actions::toggleAction()) {
        return isGroup() ? u"Spunta le righe del gruppo, o ne toglie le spunte"_s
                         : u"Spunta la riga, o ne toglie la spunta"_s;
    }
    return u"Porta qui il cursore"_s;
}

void GridCellAccessible::doAction(const QString& action)
{
    if (!actionNames().contains(action)) {
        return;
    }
    if (action == Actions::pressAction()) {
        m_view->setGroupClosed(m_row, !m_view->grid().isGroupClosed(m_row));
    } else if (action == Actions::toggleAction()) {
        m_view->toggleCheck(m_row);
    } else {
        m_view->setFocus(Qt::OtherFocusReason);
        m_view->setCurrentIndex(m_view->grid().index(m_row, m_column));
    }
}

QStringList GridCellAccessible::keyBindingsForAction(const QString& action) const
{
    const bool space = action == (isGroup() ? Actions::pressAction() : Actions::toggleAction());
    return space ? QStringList(QKeySequence(Qt::Key_Space).toString(QKeySequence::NativeText))
                 : QStringList();
}

// --- Headers

GridHeaderAccessible::GridHeaderAccessible(ReportGridView* view, int column)
    : m_view(view)
    , m_column(column)
{}

void* GridHeaderAccessible::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

bool GridHeaderAccessible::isValid() const
{
    return m_view && m_column < m_view->grid().columnCount();
}

QAccessible::State GridHeaderAccessible::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    state.disabled = !m_view->isEnabled();
    state.invisible = !m_view->isVisible() || m_view->header()->visiblePosition(m_column) < 0;
    return state;
}

QString GridHeaderAccessible::text(QAccessible::Text kind) const
{
    if (!isValid()) {
        return {};
    }
    const ReportGridModel& grid = m_view->grid();
    if (kind == QAccessible::Name) {
        return grid.headerData(m_column, Qt::Horizontal, Qt::AccessibleTextRole).toString();
    }
    if (kind != QAccessible::Description) {
        return {};
    }
    QString field = grid.headerData(m_column, Qt::Horizontal, Qt::AccessibleDescriptionRole).toString();
    if (grid.sorting().column != m_column) {
        return field;
    }
    return (grid.sorting().descending ? u"Ordinata in modo decrescente. "_s
                                      : u"Ordinata in modo crescente. "_s) +
           field;
}

QRect GridHeaderAccessible::rect() const
{
    if (!isValid() || m_view->header()->visiblePosition(m_column) < 0) {
        return {};
    }
    const ReportHeader& header = *m_view->header();
    return onScreen(*header.viewport(), QRect(header.sectionViewportPosition(m_column), 0,
                                              header.sectionSize(m_column), header.height()));
}

QAccessibleInterface* GridHeaderAccessible::parent() const
{
    return QAccessible::queryAccessibleInterface(m_view);
}

QWindow* GridHeaderAccessible::window() const
{
    return m_view ? m_view->window()->windowHandle() : nullptr;
}

QStringList GridHeaderAccessible::actionNames() const
{
    return isValid() && m_view->isEnabled() ? QStringList{Actions::pressAction(), Actions::showMenuAction()}
                                            : QStringList();
}

QString GridHeaderAccessible::localizedActionDescription(const QString& action) const
{
    return action == Actions::pressAction() ? u"Ordina per questa colonna"_s
                                            : u"Apre il menu della colonna"_s;
}

void GridHeaderAccessible::doAction(const QString& action)
{
    if (!actionNames().contains(action)) {
        return;
    }
    ReportHeader* header = m_view->header();
    if (action == Actions::pressAction()) {
        Q_EMIT header->sortRequested(m_column);
    } else {
        const QRect place = rect();
        Q_EMIT header->menuRequested(m_column, place.bottomLeft());
    }
}

} // namespace zul
