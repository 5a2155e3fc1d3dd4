#include "controls/report/ReportGridKeys.h"

#include "controls/report/GridClipboard.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridView.h"

#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QScrollBar>

namespace zul {

namespace {

/// False when the row is no group, or is so already.
bool turnGroup(ReportGridView& view, int row, bool closed)
{
    if (!view.grid().isGroup(row) || view.grid().isGroupClosed(row) == closed) {
        return false;
    }
    view.setGroupClosed(row, closed);
    return true;
}

void goLeft(ReportGridView& view, int row)
{
    const int above = view.grid().groupRowAbove(row);
    if (view.horizontalScrollBar()->value() > 0) {
        view.horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
    } else if (above >= 0) {
        view.setCurrentIndex(view.grid().index(above, view.firstShownColumn()));
    }
}

/// The focus may stand on a row that is not highlighted: the first key highlights it. False when it need not.
bool highlightFocused(ReportGridView& view, int row)
{
    if (row < 0 || view.selectionModel()->hasSelection()) {
        return false;
    }
    view.selectionModel()->select(view.currentIndex(),
                                  QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    view.scrollToRow(row);
    return true;
}

bool pressPlainKey(ReportGridView& view, int key, int row)
{
    switch (key) {
    case Qt::Key_Space:
        if (view.grid().isGroup(row)) {
            view.setGroupClosed(row, !view.grid().isGroupClosed(row));
        } else {
            view.toggleHighlighted();
        }
        return true;
    case Qt::Key_Insert:
        if (view.grid().isGroup(row)) {
            view.toggleCheck(row);
        } else {
            view.toggleHighlighted();
        }
        return true;
    case Qt::Key_Left:
        if (!turnGroup(view, row, true)) {
            goLeft(view, row);
        }
        return true;
    case Qt::Key_Right:
        if (!turnGroup(view, row, false)) {
            view.horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        }
        return true;
    case Qt::Key_Minus:
        return turnGroup(view, row, true);
    case Qt::Key_Plus:
        return turnGroup(view, row, false);
    case Qt::Key_Up:
    case Qt::Key_Down:
        return highlightFocused(view, row);
    default:
        return false;
    }
}

} // namespace

bool pressGridKey(ReportGridView& view, QKeyEvent& event)
{
    if (event.matches(QKeySequence::Copy)) {
        copyHighlighted(view, CopyHeaders::No);
        return true;
    }
    if (event.matches(QKeySequence::Find)) {
        Q_EMIT view.findRequested();
        return true;
    }
    if (event.matches(QKeySequence::Undo)) {
        view.undoChecks();
        return true;
    }
    switch (event.key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        event.ignore();
        return true;
    default:
        break;
    }
    const bool plain = (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const int row = view.currentIndex().isValid() ? view.currentIndex().row() : -1;
    return plain && pressPlainKey(view, event.key(), row);
}

} // namespace zul
