// The line under a grid: how many rows there are, and what can be done with them.
#pragma once

#include "grid/GridCounts.h"

#include <QWidget>

QT_FORWARD_DECLARE_CLASS(QAction)
QT_FORWARD_DECLARE_CLASS(QToolButton)

namespace zul {

class FactsLabel;
class ReportGrid;

/// Always tells how many records there are, ticked and highlighted, and how many a filter leaves. Its buttons find, turn
/// the ticks round and export; they are for the mouse and for assistive tools: the keyboard has Ctrl+F, Ctrl+E (exports
/// what is shown) and the rows' menu, where all of it stands too.
class GridTools : public QWidget
{
    Q_OBJECT

public:
    explicit GridTools(QWidget* parent = nullptr);

    /// The grid that it is for, which gets a find bar. The grid is not owned and lives at least as long.
    void setGrid(ReportGrid* grid, const GridNoun& noun);

    enum class Rows
    {
        Shown, ///< in their order on the screen, those of closed groups included
        Ticked ///< in the same order, those that a filter hides included
    };
    /// Asks for a file and writes the columns shown into it, the check column left out.
    void exportRows(Rows rows);

private:
    void countLater();
    void count();
    QAction* addCommand(const QString& text, Rows rows);
    void fillExportMenu();

    ReportGrid* m_grid = nullptr;
    GridNoun m_noun;
    FactsLabel* m_counts;
    QToolButton* m_find;
    QToolButton* m_invert;
    QToolButton* m_export;
    QAction* m_exportShown = nullptr; ///< of the rows' menu
    QAction* m_exportTicked = nullptr;
    bool m_counting = false; ///< a count is on its way
};

} // namespace zul
