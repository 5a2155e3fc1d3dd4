#include "controls/report/ReportGridView.h"

#include "controls/access/GridAccessible.h"
#include "controls/report/CellToolTip.h"
#include "controls/report/ReportGridColors.h"
#include "controls/report/ReportGridKeys.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportHeader.h"
#include "controls/report/ReportRowPainter.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QScroller>
#include <QToolTip>

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr int leastRowHeight = 24;
constexpr int touchRowHeight = 44;
constexpr int indent = 18; // of a group level
constexpr int expander = 18;

} // namespace

ReportGridView::ReportGridView(ReportGridModel* grid, QWidget* parent)
    : QAbstractItemView(parent)
    , m_grid(grid)
    , m_header(new ReportHeader(grid, this))
{
    installGridAccessibility();
    setModel(grid);
    setFrameShape(QFrame::NoFrame);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setAccessibleName(u"Elenco"_s);
    connect(m_header, &QHeaderView::sectionResized, this, &ReportGridView::layoutChanged);
    connect(m_header, &QHeaderView::sectionMoved, viewport(), qOverload<>(&QWidget::update));
    connect(grid, &QAbstractItemModel::rowsRemoved, this, &ReportGridView::layoutChanged);
    measure();
}

// --- Look

void ReportGridView::setEmptyText(const QString& text)
{
    m_emptyText = text;
    viewport()->update();
}

void ReportGridView::setRowLines(bool lines)
{
    m_rowLines = lines;
    viewport()->update();
}

void ReportGridView::setCellPadding(int pixels)
{
    m_header->setPadding(std::clamp(pixels, 0, 32));
    layoutChanged();
}

void ReportGridView::setRowPadding(int pixels)
{
    m_rowPadding = std::clamp(pixels, 0, 32);
    measure();
    layoutChanged();
}

void ReportGridView::setTouch(bool touch)
{
    m_touch = touch;
    m_header->setTouch(touch);
    if (touch) {
        QScroller::grabGesture(viewport(), QScroller::TouchGesture);
    } else {
        QScroller::ungrabGesture(viewport());
    }
    measure();
    layoutChanged();
}

void ReportGridView::measure()
{
    const int height = fontMetrics().height() + 2 * m_rowPadding + 1;
    m_rowHeight = std::max(height, m_touch ? touchRowHeight : leastRowHeight);
}

void ReportGridView::layoutChanged()
{
    updateGeometries();
    viewport()->update();
}

void ReportGridView::changeEvent(QEvent* event)
{
    QAbstractItemView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        measure();
        layoutChanged();
    }
}

QSize ReportGridView::sizeHint() const
{
    return {480, m_header->headerHeight() + 10 * m_rowHeight};
}

// --- Places

void ReportGridView::updateGeometries()
{
    if (m_updatingGeometries) {
        return;
    }
    m_updatingGeometries = true;
    const int headerHeight = m_header->headerHeight();
    setViewportMargins(0, headerHeight, 0, 0);
    const QRect body = viewport()->geometry();
    m_header->setGeometry(body.left(), body.top() - headerHeight, body.width(), headerHeight);
    m_header->shareWidths(body.width());

    const qint64 height = static_cast<qint64>(m_grid->rowCount()) * m_rowHeight;
    const qint64 hidden =
        std::clamp<qint64>(height - viewport()->height(), 0, std::numeric_limits<int>::max());
    verticalScrollBar()->setRange(0, static_cast<int>(hidden));
    verticalScrollBar()->setPageStep(std::max(m_rowHeight, viewport()->height() - m_rowHeight));
    verticalScrollBar()->setSingleStep(m_rowHeight);
    horizontalScrollBar()->setRange(0, std::max(0, m_header->length() - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(24);
    m_header->setOffset(horizontalScrollBar()->value());
    m_updatingGeometries = false;
    QAbstractItemView::updateGeometries();
}

void ReportGridView::resizeEvent(QResizeEvent* event)
{
    QAbstractItemView::resizeEvent(event);
    updateGeometries();
}

int ReportGridView::horizontalOffset() const
{
    return m_header->offset();
}

int ReportGridView::verticalOffset() const
{
    return verticalScrollBar()->value();
}

void ReportGridView::scrollContentsBy(int dx, int dy)
{
    if (dx != 0) {
        m_header->setOffset(horizontalScrollBar()->value());
    }
    // The list's text in the middle and lines that run the whole width do not scroll along.
    scrollDirtyRegion(dx, dy);
    viewport()->update();
}

bool ReportGridView::isIndexHidden(const QModelIndex& index) const
{
    return m_header->isSectionHidden(index.column()) && !m_grid->isGroup(index.row());
}

int ReportGridView::firstShownColumn() const
{
    const std::vector<int> columns = m_header->shownColumns();
    return columns.empty() ? 0 : columns.front();
}

QRect ReportGridView::rowRect(int row) const
{
    if (row < 0 || row >= m_grid->rowCount()) {
        return {};
    }
    const qint64 top = static_cast<qint64>(row) * m_rowHeight - verticalOffset();
    return {0, static_cast<int>(top), viewport()->width(), m_rowHeight};
}

QRect ReportGridView::cellRect(int row, int column) const
{
    if (column < 0 || m_header->isSectionHidden(column) || m_grid->record(row) < 0) {
        return {};
    }
    const QRect line = rowRect(row);
    return {m_header->sectionViewportPosition(column), line.top(), m_header->sectionSize(column),
            line.height()};
}

QRect ReportGridView::textRect(int row, int column) const
{
    const int padding = m_header->padding() + 2;
    return cellRect(row, column).adjusted(padding, 0, -padding, 0);
}

QRect ReportGridView::checkRect(int row) const
{
    QRect cell = cellRect(row, m_grid->checkColumn());
    if (m_grid->checkColumn() >= 0 && m_grid->isGroup(row)) {
        const QRect beside = expanderRect(row);
        cell = QRect(beside.right() + 1, beside.top(), m_touch ? touchRowHeight : expander, beside.height());
    }
    if (cell.isEmpty()) {
        return {};
    }
    const int side = std::min({m_touch ? 22 : 14, cell.width(), cell.height() - 4});
    QRect box(0, 0, side, side);
    box.moveCenter(cell.center());
    return box;
}

QRect ReportGridView::expanderRect(int row) const
{
    // Which group it is, is to be read whatever column is in sight.
    const QRect line = rowRect(row);
    return {m_grid->groupLevel(row) * indent + 2, line.top(), expander, line.height()};
}

int ReportGridView::rowAt(int y) const
{
    const qint64 row = (static_cast<qint64>(y) + verticalOffset()) / m_rowHeight;
    return y + verticalOffset() >= 0 && row < m_grid->rowCount() ? static_cast<int>(row) : -1;
}

QRect ReportGridView::visualRect(const QModelIndex& index) const
{
    if (!index.isValid()) {
        return {};
    }
    return m_grid->isGroup(index.row()) ? rowRect(index.row()) : cellRect(index.row(), index.column());
}

QModelIndex ReportGridView::indexAt(const QPoint& point) const
{
    const int row = rowAt(point.y());
    if (row < 0 || m_grid->columnCount() == 0) {
        return {};
    }
    // A row reaches over the whole width, also right of the last column.
    const int column = m_grid->isGroup(row) ? -1 : m_header->logicalIndexAt(point.x());
    return m_grid->index(row, column < 0 ? firstShownColumn() : column);
}

void ReportGridView::scrollToRow(int row)
{
    const QRect line = rowRect(row);
    if (line.isNull()) {
        return;
    }
    QScrollBar* bar = verticalScrollBar();
    if (line.top() < 0) {
        bar->setValue(bar->value() + line.top());
    } else if (line.bottom() >= viewport()->height()) {
        bar->setValue(bar->value() + std::min(line.top(), line.bottom() + 1 - viewport()->height()));
    }
}

void ReportGridView::scrollToColumn(int column)
{
    if (column < 0 || column >= m_header->count() || m_header->isSectionHidden(column)) {
        return;
    }
    const int left = m_header->sectionViewportPosition(column);
    const int right = left + m_header->sectionSize(column);
    QScrollBar* bar = horizontalScrollBar();
    if (left < 0) {
        bar->setValue(bar->value() + left);
    } else if (right > viewport()->width()) {
        bar->setValue(bar->value() + std::min(left, right - viewport()->width()));
    }
}

void ReportGridView::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    // Only up and down: whole rows are highlighted, so moving to another one is no reason to move sideways.
    if (!index.isValid()) {
        return;
    }
    if (hint == PositionAtCenter || hint == PositionAtTop || hint == PositionAtBottom) {
        const int free = viewport()->height() - m_rowHeight;
        const int above = hint == PositionAtCenter ? free / 2 : hint == PositionAtTop ? 0 : free;
        verticalScrollBar()->setValue(verticalScrollBar()->value() + rowRect(index.row()).top() - above);
        return;
    }
    scrollToRow(index.row());
}

int ReportGridView::fittingWidth(int column) const
{
    const int padding = 2 * (m_header->padding() + 3);
    const QFontMetrics metrics = fontMetrics();
    int width = metrics.horizontalAdvance(m_grid->columns()[static_cast<size_t>(column)].caption) + 14;
    const int first = std::max(0, rowAt(0));
    const int last = std::min(m_grid->rowCount() - 1, first + viewport()->height() / m_rowHeight);
    for (int row = first; row <= last; ++row) {
        const int record = m_grid->record(row);
        if (record >= 0 && column != m_grid->checkColumn()) {
            const QString text = oneLine(m_grid->store().text(static_cast<uint32_t>(record), column));
            width = std::max(width, metrics.horizontalAdvance(text));
        }
    }
    return std::min(width + padding, std::max(200, viewport()->width()));
}

// --- Highlighting

void ReportGridView::reset()
{
    m_pressedCheck = -1;
    QAbstractItemView::reset();
    layoutChanged();
    tellRowsAnew(*this);
    Q_EMIT highlightChanged();
}

void ReportGridView::rowsInserted(const QModelIndex& parent, int start, int end)
{
    QAbstractItemView::rowsInserted(parent, start, end);
    layoutChanged();
}

void ReportGridView::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                                 const QList<int>& roles)
{
    // The base class asks for the place of every cell that changed: only those in sight matter.
    const int first = std::max(topLeft.row(), std::max(0, rowAt(0)));
    const int last = std::min(bottomRight.row(), first + viewport()->height() / m_rowHeight + 1);
    if (topLeft.isValid() && bottomRight.isValid() && first <= last) {
        QAbstractItemView::dataChanged(topLeft.siblingAtRow(first), bottomRight.siblingAtRow(last), roles);
    }
    viewport()->update();
    tellCells(*this, topLeft, bottomRight);
}

void ReportGridView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QAbstractItemView::selectionChanged(selected, deselected);
    viewport()->update();
    tellHighlights(*this);
    Q_EMIT highlightChanged();
}

void ReportGridView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QAbstractItemView::currentChanged(current, previous);
    viewport()->update();
    tellCurrentCell(*this);
}

void ReportGridView::focusInEvent(QFocusEvent* event)
{
    QAbstractItemView::focusInEvent(event);
    tellCurrentCell(*this);
}

void ReportGridView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command)
{
    if (!selectionModel() || m_grid->rowCount() == 0 || m_grid->columnCount() == 0) {
        return;
    }
    const auto rowFor = [this](int y) {
        const qint64 row = (static_cast<qint64>(y) + verticalOffset()) / m_rowHeight;
        return static_cast<int>(std::clamp<qint64>(row, 0, m_grid->rowCount() - 1));
    };
    const QRect area = rect.normalized();
    const QModelIndex first = m_grid->index(rowFor(area.top()), 0);
    const QModelIndex last = m_grid->index(rowFor(area.bottom()), m_grid->columnCount() - 1);
    selectionModel()->select(QItemSelection(first, last), command);
}

QRegion ReportGridView::visualRegionForSelection(const QItemSelection& selection) const
{
    QRegion region;
    const int first = std::max(0, rowAt(0));
    const int last = first + viewport()->height() / m_rowHeight + 1;
    for (const QItemSelectionRange& range : selection) {
        const int top = std::max(range.top(), first);
        const int bottom = std::min(range.bottom(), last);
        if (top <= bottom) {
            region += rowRect(top).united(rowRect(bottom));
        }
    }
    return region;
}

QModelIndex ReportGridView::moveCursor(CursorAction action, Qt::KeyboardModifiers)
{
    const int rows = m_grid->rowCount();
    if (rows == 0 || m_grid->columnCount() == 0) {
        return {};
    }
    const QModelIndex current = currentIndex();
    const int page = std::max(1, viewport()->height() / m_rowHeight - 1);
    int row = current.isValid() ? current.row() : -1;
    switch (action) {
    case MoveUp:
    case MovePrevious:
        row = row < 0 ? 0 : row - 1;
        break;
    case MoveDown:
    case MoveNext:
        row = row + 1;
        break;
    case MovePageUp:
        row = row < 0 ? 0 : row - page;
        break;
    case MovePageDown:
        row = row < 0 ? 0 : row + page;
        break;
    case MoveHome:
        row = 0;
        break;
    case MoveEnd:
        row = rows - 1;
        break;
    case MoveLeft:
    case MoveRight:
        break;
    }
    const int column = current.isValid() && !m_header->isSectionHidden(current.column()) ? current.column()
                                                                                         : firstShownColumn();
    return m_grid->index(std::clamp(row, 0, rows - 1), column);
}

/// Typed letters look in the sort column, where the next match is near; else in the first text column.
int ReportGridView::searchedColumn() const
{
    const auto fits = [this](int column) {
        return column >= 0 && column != m_grid->checkColumn() && !m_header->isSectionHidden(column);
    };
    if (fits(m_grid->sorting().column)) {
        return m_grid->sorting().column;
    }
    const std::vector<int> columns = m_header->shownColumns();
    const auto found = std::find_if(columns.begin(), columns.end(), fits);
    return found == columns.end() ? -1 : *found;
}

void ReportGridView::keyboardSearch(const QString& search)
{
    const int column = searchedColumn();
    const int row = m_typedSearch.find(*m_grid, column, currentIndex().row(), search);
    if (row >= 0) {
        setCurrentIndex(m_grid->index(row, column));
    }
}

// --- Mouse and keys

bool ReportGridView::pressesCheck(const QPoint& position, int& row) const
{
    row = rowAt(position.y());
    if (row >= 0 && m_grid->isGroup(row)) {
        const QRect box = checkRect(row);
        const int around = (m_touch ? touchRowHeight - box.width() : 4) / 2;
        return !box.isEmpty() && position.x() >= box.left() - around && position.x() <= box.right() + around;
    }
    return row >= 0 && cellRect(row, m_grid->checkColumn()).contains(position);
}

void ReportGridView::mousePressEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    int row = -1;
    m_pressedCheck = -1;
    m_pressedExpander = false;
    if (event->button() == Qt::LeftButton && pressesCheck(position, row)) {
        // Ticking leaves the highlighted rows alone: they may be what the operator ticks next.
        m_pressedCheck = row;
        const int column = m_grid->isGroup(row) ? firstShownColumn() : m_grid->checkColumn();
        selectionModel()->setCurrentIndex(m_grid->index(row, column), QItemSelectionModel::NoUpdate);
        setFocus(Qt::MouseFocusReason);
        return;
    }
    if (event->button() == Qt::LeftButton && m_grid->isGroup(row) && expanderRect(row).contains(position)) {
        m_pressedExpander = true;
        m_grid->setGroupClosed(row, !m_grid->isGroupClosed(row));
        return;
    }
    QAbstractItemView::mousePressEvent(event);
}

void ReportGridView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_pressedCheck >= 0 || m_pressedExpander) {
        return;
    }
    QAbstractItemView::mouseMoveEvent(event);
}

void ReportGridView::mouseReleaseEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    const int pressedCheck = m_pressedCheck;
    const bool pressedExpander = m_pressedExpander;
    m_pressedCheck = -1;
    m_pressedExpander = false;
    if (pressedCheck >= 0) {
        int row = -1;
        if (pressesCheck(position, row) && row == pressedCheck) {
            toggleCheck(row);
        }
    } else if (!pressedExpander) {
        QAbstractItemView::mouseReleaseEvent(event);
    }
    if (event->button() == Qt::LeftButton && viewport()->rect().contains(position)) {
        Q_EMIT mouseReleasedOn(m_grid->record(rowAt(position.y())));
    }
}

void ReportGridView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    int row = -1;
    if (event->button() != Qt::LeftButton || pressesCheck(position, row)) {
        mousePressEvent(event); // two quick ticks are two ticks
        return;
    }
    if (m_grid->isGroup(row)) {
        m_pressedExpander = true;
        m_grid->setGroupClosed(row, !m_grid->isGroupClosed(row));
        return;
    }
    QAbstractItemView::mouseDoubleClickEvent(event);
    const int record = m_grid->record(row);
    if (record >= 0) {
        Q_EMIT recordDoubleClicked(static_cast<uint32_t>(record));
    }
}

void ReportGridView::contextMenuEvent(QContextMenuEvent* event)
{
    QPoint at = event->globalPos();
    if (event->reason() == QContextMenuEvent::Keyboard) {
        const QRect line = rowRect(std::max(0, currentIndex().row()));
        at = viewport()->mapToGlobal(QPoint(24, std::clamp(line.bottom(), 0, viewport()->height())));
    }
    Q_EMIT menuRequested(-1, at);
}

bool ReportGridView::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip) {
        return QAbstractItemView::viewportEvent(event);
    }
    const auto* help = static_cast<QHelpEvent*>(event);
    const QString text = cutTextAt(*this, help->pos());
    if (text.isEmpty()) {
        QToolTip::hideText();
    } else {
        QToolTip::showText(help->globalPos(), asToolTip(text), viewport(), visualRect(indexAt(help->pos())));
    }
    return true;
}

void ReportGridView::keyPressEvent(QKeyEvent* event)
{
    const QPointer<ReportGridView> self(this);
    Q_EMIT keyPressed(event->key());
    if (!self) {
        return; // the key closed the window
    }
    if (!pressGridKey(*this, *event)) {
        QAbstractItemView::keyPressEvent(event);
    }
}

void ReportGridView::setGroupClosed(int row, bool closed)
{
    m_grid->setGroupClosed(row, closed);
}

void ReportGridView::toggleCheck(int row)
{
    if (m_grid->checkColumn() < 0) {
        return;
    }
    if (m_grid->isGroup(row)) {
        m_grid->rememberChecks();
        m_grid->setGroupChecked(row, m_grid->rowTick(row) != Qt::Checked);
        Q_EMIT checkToggled(-1);
        return;
    }
    const int record = m_grid->record(row);
    if (record < 0) {
        return;
    }
    const auto own = static_cast<uint32_t>(record);
    const QModelIndex index = m_grid->index(row, m_grid->checkColumn());
    m_grid->rememberChecks();
    m_grid->setData(index, m_grid->isChecked(own) ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    Q_EMIT checkToggled(record);
}

void ReportGridView::toggleHighlighted()
{
    const int record = m_grid->record(currentIndex().row());
    if (record < 0 || m_grid->checkColumn() < 0) {
        return;
    }
    const QItemSelection highlighted = selectionModel()->selection();
    if (highlighted.isEmpty() || (highlighted.size() == 1 && highlighted.first().height() == 1 &&
                                  highlighted.first().top() == currentIndex().row())) {
        toggleCheck(currentIndex().row());
        return;
    }
    const bool checked = !m_grid->isChecked(static_cast<uint32_t>(record));
    m_grid->rememberChecks();
    for (const QItemSelectionRange& range : highlighted) {
        m_grid->setRowsChecked(range.top(), range.bottom(), checked);
    }
    m_grid->checksChanged();
    Q_EMIT checkToggled(-1);
}

void ReportGridView::undoChecks()
{
    if (m_grid->canUndoChecks()) {
        m_grid->undoChecks();
        Q_EMIT checkToggled(-1);
    }
}

void ReportGridView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    ReportRowPainter(*this, painter).paintRows(event->rect());
    if (m_grid->rowCount() == 0) {
        painter.setPen(gridcolors::quietText(palette()));
        painter.drawText(viewport()->rect().adjusted(8, 8, -8, -8),
                         static_cast<int>(Qt::AlignCenter) | Qt::TextWordWrap, m_emptyText);
    }
}

} // namespace zul
