// The order, the groups and the splitter of the main window, as its user left them.
#pragma once

#include <QObject>

QT_FORWARD_DECLARE_CLASS(QSplitter)

namespace zul {

class ReportGrid;

/// What the last window was closed with is applied to the first search of the next one; a further search forgets order
/// and groups, as ever. The layout file of the columns has no part in it.
class GridMemory : public QObject
{
public:
    /// Owned by the window.
    GridMemory(QWidget* window, ReportGrid* grid, QSplitter* splitter);

    /// Gives the splitter its remembered place. Touch mode has one of its own. False when there is none.
    bool restoreSplitter(bool touch);
    /// After a search has filled the grid.
    void restoreOrder();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void save() const;

    QWidget* m_window;
    ReportGrid* m_grid;
    QSplitter* m_splitter;
    bool m_touch = false;
    bool m_restored = false; ///< a search has been made in this window
};

} // namespace zul
