// The menu of the report grid.
#pragma once

#include <QtGlobal>

QT_FORWARD_DECLARE_CLASS(QMenu)

namespace zul {

class ReportGrid;

/// Everything that the mouse does with headers, by key too: order, groups, which columns are shown; for the rows also copying. `column` is the one
/// whose header was asked; -1 stands for the rows. The menu belongs to the grid and deletes itself when it closes.
QMenu* makeGridMenu(ReportGrid& grid, int column);

} // namespace zul
