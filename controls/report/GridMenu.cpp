#include "controls/report/GridMenu.h"

#include "controls/report/ReportGrid.h"

#include <QMenu>

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// A column's name as a menu shows it.
QString nameOf(const ReportGrid& grid, int column)
{
    const QString caption =
        grid.columnCaption(column).isEmpty() ? grid.columnField(column) : grid.columnCaption(column);
    return QString(caption).replace(u'&', u"&&"_s);
}

bool isGrouped(const ReportGrid& grid, int column)
{
    const std::vector<int> groups = grid.groupColumns();
    return std::find(groups.begin(), groups.end(), column) != groups.end();
}

/// An action that changes order or groups, and tells it.
template <typename Change>
QAction* addChange(QMenu& menu, const QString& text, ReportGrid& grid, Change change)
{
    return menu.addAction(text, &grid, [&grid, change] {
        change();
        Q_EMIT grid.columnLayoutChanged(ReportGrid::SortChanged);
    });
}

void addOwnOrder(QMenu& menu, ReportGrid& grid, int column)
{
    addChange(menu, u"Ordina in modo crescente"_s, grid, [&grid, column] { grid.sortBy(column, false); });
    addChange(menu, u"Ordina in modo decrescente"_s, grid, [&grid, column] { grid.sortBy(column, true); });
    addChange(menu, u"Raggruppa per questa colonna"_s, grid, [&grid, column] { grid.groupBy(column); });
}

void addCopies(QMenu& menu, ReportGrid& grid)
{
    const bool highlighted = grid.hasSelection();
    // The shortcut is named only: the rows take the key themselves.
    menu.addAction(u"Copia\tCtrl+C"_s, &grid, [&grid] { grid.copySelection(CopyHeaders::No); })
        ->setEnabled(highlighted);
    menu.addAction(u"Copia con intestazioni"_s, &grid, [&grid] { grid.copySelection(CopyHeaders::Yes); })
        ->setEnabled(highlighted);
    menu.addSeparator();
}

void addTicks(QMenu& menu, ReportGrid& grid)
{
    if (grid.checkColumn() < 0) {
        return;
    }
    menu.addAction(u"Inverti selezione"_s, &grid, &ReportGrid::invertChecked)
        ->setEnabled(grid.recordCount() > 0);
    menu.addAction(u"Annulla l'ultima selezione\tCtrl+Z"_s, &grid, &ReportGrid::undoChecked)
        ->setEnabled(grid.canUndoChecked());
    menu.addSeparator();
}

/// What the window has to offer for its rows.
void addOwnersCommands(QMenu& menu, const ReportGrid& grid)
{
    if (!grid.actions().isEmpty()) {
        menu.addActions(grid.actions());
        menu.addSeparator();
    }
}

void addOrders(QMenu& menu, ReportGrid& grid)
{
    QMenu* sort = menu.addMenu(u"Ordina per"_s);
    QMenu* group = menu.addMenu(u"Raggruppa per"_s);
    for (int column = 0; column < grid.columnCount(); ++column) {
        if (!grid.isColumnShown(column)) {
            continue;
        }
        const QString name = nameOf(grid, column);
        QAction* by = addChange(*sort, name, grid, [&grid, column] {
            grid.sortBy(column, column == grid.sortColumn() && !grid.isSortDescending());
        });
        by->setCheckable(true);
        by->setChecked(column == grid.sortColumn());
        const bool grouped = isGrouped(grid, column);
        QAction* with = addChange(*group, name, grid, [&grid, column, grouped] {
            if (grouped) {
                grid.ungroup(column);
            } else {
                grid.groupBy(column);
            }
        });
        with->setCheckable(true);
        with->setChecked(grouped);
    }
}

void addGroupCommands(QMenu& menu, ReportGrid& grid)
{
    const bool groups = !grid.groupColumns().empty();
    menu.addAction(u"Non raggruppare"_s, &grid, &ReportGrid::ungroupAll)->setEnabled(groups);
    menu.addAction(u"Apri tutti i gruppi"_s, &grid, [&grid] { grid.setAllGroupsClosed(false); })
        ->setEnabled(groups);
    menu.addAction(u"Chiudi tutti i gruppi"_s, &grid, [&grid] { grid.setAllGroupsClosed(true); })
        ->setEnabled(groups);
}

void addColumns(QMenu& menu, ReportGrid& grid)
{
    QMenu* columns = menu.addMenu(u"Colonne"_s);
    int shownColumns = 0;
    for (int column = 0; column < grid.columnCount(); ++column) {
        const bool counts = grid.isColumnOffered(column) && !isGrouped(grid, column);
        shownColumns += counts && grid.isColumnShown(column) ? 1 : 0;
    }
    for (int column = 0; column < grid.columnCount(); ++column) {
        if (!grid.isColumnOffered(column)) {
            continue;
        }
        const bool isShown = grid.isColumnShown(column);
        QAction* show = columns->addAction(nameOf(grid, column), &grid, [&grid, column](bool visible) {
            grid.setColumnShown(column, visible);
            Q_EMIT grid.columnLayoutChanged(ReportGrid::ColumnShown);
        });
        show->setCheckable(true);
        show->setChecked(isShown);
        // The last column shown stays, or there would be nothing left to see, nor a header to open this menu on.
        show->setEnabled(!isGrouped(grid, column) && (!isShown || shownColumns > 1));
    }
    columns->addSeparator();
    columns->addAction(u"Ripristina colonne"_s, &grid, [&grid] {
        grid.resetColumns();
        Q_EMIT grid.columnLayoutChanged(ReportGrid::ColumnShown);
    });
}

} // namespace

QMenu* makeGridMenu(ReportGrid& grid, int column)
{
    auto* menu = new QMenu(&grid);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (column >= 0) {
        addOwnOrder(*menu, grid, column);
    } else {
        addCopies(*menu, grid);
        addTicks(*menu, grid);
        addOwnersCommands(*menu, grid);
        addOrders(*menu, grid);
    }
    addGroupCommands(*menu, grid);
    menu->addSeparator();
    addColumns(*menu, grid);
    return menu;
}

} // namespace zul
