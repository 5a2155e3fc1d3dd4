#include "controls/report/ReportGridView.h"

#include "controls/report/ReportGridColors.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportHeader.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <QScroller>

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr int leastRowHeight = 24;
constexpr int touchRowHeight = 44;
constexpr int indent = 18; // of a group level
constexpr int expander = 18;
constexpr qsizetype longestShown = 512; // characters of a cell that can be seen at once, at most

/// A cell's text on one line.
QString oneLine(QString text)
{
    text.truncate(longestShown);
    for (QChar& c : text) {
        if (c.unicode() < 0x20 || c == QChar::LineSeparator || c == QChar::ParagraphSeparator) {
            c = u' ';
        }
    }
    return text;
}

} // namespace

ReportGridView::ReportGridView(ReportGridModel* grid, QWidget* parent)
    : QAbstractItemView(parent)
    , m_grid(grid)
    , m_header(new ReportHeader(grid, this))
{
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
    for (int visual = 0; visual < m_header->count(); ++visual) {
        const int column = m_header->logicalIndex(visual);
        if (!m_header->isSectionHidden(column)) {
            return column;
        }
    }
    return 0;
}

QRect ReportGridView::rowRect(int row) const
{
    if (row < 0 || row >= m_grid->rowCount()) {
        return {};
    }
    const qint64 top = static_cast<qint64>(row) * m_rowHeight - verticalOffset();
    return {0, static_cast<int>(top), viewport()->width(), m_rowHeight};
}

QRect ReportGridView::checkCellRect(int row) const
{
    const int column = m_grid->checkColumn();
    if (column < 0 || m_header->isSectionHidden(column) || m_grid->record(row) < 0) {
        return {};
    }
    const QRect line = rowRect(row);
    return {m_header->sectionViewportPosition(column), line.top(), m_header->sectionSize(column),
            line.height()};
}

QRect ReportGridView::checkRect(int row) const
{
    const QRect cell = checkCellRect(row);
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
    const QRect line = rowRect(row);
    return {m_grid->groupLevel(row) * indent + 2 - horizontalOffset(), line.top(), expander, line.height()};
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
    const QRect line = rowRect(index.row());
    if (m_grid->isGroup(index.row())) {
        return line;
    }
    if (m_header->isSectionHidden(index.column())) {
        return {};
    }
    return {m_header->sectionViewportPosition(index.column()), line.top(),
            m_header->sectionSize(index.column()), line.height()};
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
}

void ReportGridView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QAbstractItemView::selectionChanged(selected, deselected);
    viewport()->update();
    Q_EMIT highlightChanged();
}

void ReportGridView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QAbstractItemView::currentChanged(current, previous);
    viewport()->update();
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

void ReportGridView::keyboardSearch(const QString& search)
{
    // Typed letters look in the sort column, where the next match is near; else in the first text column.
    int column = m_grid->sorting().column;
    if (column < 0 || column == m_grid->checkColumn() || m_header->isSectionHidden(column)) {
        column = -1;
        for (int visual = 0; visual < m_header->count() && column < 0; ++visual) {
            const int shown = m_header->logicalIndex(visual);
            column = m_header->isSectionHidden(shown) || shown == m_grid->checkColumn() ? -1 : shown;
        }
    }
    const int rows = m_grid->rowCount();
    if (column < 0 || rows == 0 || search.trimmed().isEmpty()) {
        return;
    }
    if (!m_typedAt.isValid() || m_typedAt.elapsed() > 1000) {
        m_typed.clear();
    }
    m_typedAt.start();
    const bool next = m_typed.isEmpty();
    m_typed += search;
    const int start = currentIndex().isValid() ? currentIndex().row() + (next ? 1 : 0) : 0;
    for (int i = 0; i < rows; ++i) {
        const int row = (start + i) % rows;
        const int record = m_grid->record(row);
        if (record >= 0 && m_grid->store()
                               .text(static_cast<uint32_t>(record), column)
                               .startsWith(m_typed, Qt::CaseInsensitive)) {
            setCurrentIndex(m_grid->index(row, column));
            return;
        }
    }
}

// --- Mouse and keys

bool ReportGridView::pressesCheck(const QPoint& position, int& row) const
{
    row = rowAt(position.y());
    return row >= 0 && checkCellRect(row).contains(position);
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
        selectionModel()->setCurrentIndex(m_grid->index(row, m_grid->checkColumn()),
                                          QItemSelectionModel::NoUpdate);
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
            toggle(row);
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

void ReportGridView::keyPressEvent(QKeyEvent* event)
{
    const QPointer<ReportGridView> self(this);
    Q_EMIT keyPressed(event->key());
    if (!self) {
        return; // the key closed the window
    }
    const int row = currentIndex().isValid() ? currentIndex().row() : -1;
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    switch (event->key()) {
    case Qt::Key_Space:
        if (plain) {
            if (m_grid->isGroup(row)) {
                m_grid->setGroupClosed(row, !m_grid->isGroupClosed(row));
            } else if (m_grid->checkColumn() >= 0) {
                toggleRows();
            }
            return;
        }
        break;
    case Qt::Key_Left:
    case Qt::Key_Minus:
        if (plain && m_grid->isGroup(row) && !m_grid->isGroupClosed(row)) {
            m_grid->setGroupClosed(row, true);
            return;
        }
        if (plain && event->key() == Qt::Key_Left) {
            const int above = m_grid->groupRowAbove(row);
            if (horizontalScrollBar()->value() > 0) {
                horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
            } else if (above >= 0) {
                setCurrentIndex(m_grid->index(above, firstShownColumn()));
            }
            return;
        }
        break;
    case Qt::Key_Right:
    case Qt::Key_Plus:
        if (plain && m_grid->isGroup(row) && m_grid->isGroupClosed(row)) {
            m_grid->setGroupClosed(row, false);
            return;
        }
        if (plain && event->key() == Qt::Key_Right) {
            horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
            return;
        }
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (plain && row >= 0 && !selectionModel()->hasSelection()) {
            // The focus stands on a row that is not highlighted: the first key highlights it.
            selectionModel()->select(currentIndex(),
                                     QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
            scrollToRow(row);
            return;
        }
        break;
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        event->ignore(); // the window's
        return;
    default:
        break;
    }
    QAbstractItemView::keyPressEvent(event);
}

void ReportGridView::toggle(int row)
{
    const int record = m_grid->record(row);
    if (record < 0) {
        return;
    }
    const auto own = static_cast<uint32_t>(record);
    const QModelIndex index = m_grid->index(row, m_grid->checkColumn());
    m_grid->setData(index, m_grid->isChecked(own) ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    Q_EMIT checkToggled(record);
}

/// Space: the highlighted rows all get the state that the row with the focus does not have.
void ReportGridView::toggleRows()
{
    const int record = m_grid->record(currentIndex().row());
    if (record < 0) {
        return;
    }
    const QItemSelection highlighted = selectionModel()->selection();
    if (highlighted.isEmpty() || (highlighted.size() == 1 && highlighted.first().height() == 1 &&
                                  highlighted.first().top() == currentIndex().row())) {
        toggle(currentIndex().row());
        return;
    }
    const bool checked = !m_grid->isChecked(static_cast<uint32_t>(record));
    for (const QItemSelectionRange& range : highlighted) {
        m_grid->setRowsChecked(range.top(), range.bottom(), checked);
    }
    m_grid->checksChanged();
    Q_EMIT checkToggled(-1);
}

// --- Painting

QPalette::ColorGroup ReportGridView::colorGroup() const
{
    if (!isEnabled()) {
        return QPalette::Disabled;
    }
    return isActiveWindow() && hasFocus() ? QPalette::Active : QPalette::Inactive;
}

void ReportGridView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    const QColor base = palette().color(colorGroup(), QPalette::Base);
    painter.fillRect(event->rect(), base);
    const int rows = m_grid->rowCount();
    if (rows == 0) {
        painter.setPen(gridcolors::quietText(palette()));
        painter.drawText(viewport()->rect().adjusted(8, 8, -8, -8),
                         static_cast<int>(Qt::AlignCenter) | Qt::TextWordWrap, m_emptyText);
        return;
    }
    const bool active = colorGroup() == QPalette::Active;
    const double strength = (active ? 0.26 : 0.14) + (gridcolors::isDark(palette()) ? 0.2 : 0.0);
    const QColor selectedColor = gridcolors::blend(base, accentColor(), strength);
    const QColor line = gridcolors::rowLine(palette());
    const int first = std::max(0, rowAt(std::max(0, event->rect().top())));
    for (int row = first; row < rows; ++row) {
        const QRect rect = rowRect(row);
        if (rect.top() > event->rect().bottom()) {
            break;
        }
        const bool selected = selectionModel()->isSelected(m_grid->index(row, 0));
        if (selected) {
            painter.fillRect(rect, selectedColor);
        }
        if (m_grid->isGroup(row)) {
            paintGroup(painter, row, rect, selected);
        } else {
            paintRecord(painter, row, rect, selected);
        }
        if (m_rowLines) {
            painter.fillRect(rect.left(), rect.bottom(), rect.width(), 1, line);
        }
        if (row == currentIndex().row() && hasFocus()) {
            painter.setPen(accentColor());
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(rect.adjusted(0, 0, -1, -1));
        }
    }
}

void ReportGridView::paintGroup(QPainter& painter, int row, const QRect& rect, bool selected) const
{
    if (!selected) {
        painter.fillRect(rect, gridcolors::groupRow(palette()));
    }
    painter.save();
    const QPointF middle = QRectF(expanderRect(row)).center();
    QPolygonF arrow;
    if (m_grid->isGroupClosed(row)) {
        arrow << middle + QPointF(-2, -4) << middle + QPointF(2.5, 0) << middle + QPointF(-2, 4);
    } else {
        arrow << middle + QPointF(-4, -2) << middle + QPointF(0, 2.5) << middle + QPointF(4, -2);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(gridcolors::quietText(palette()), 1.6));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(arrow);
    QFont bold = font();
    bold.setBold(true);
    const QRect text = rect.adjusted(expanderRect(row).right() + 4, 0, -4, 0);
    const QFontMetrics metrics(bold);
    const QString count = u" (%1)"_s.arg(m_grid->groupCount(row));
    const int countWidth = fontMetrics().horizontalAdvance(count) + 2;
    const QString caption =
        metrics.elidedText(oneLine(m_grid->groupCaption(row)), Qt::ElideRight, text.width() - countWidth);
    painter.setPen(palette().color(colorGroup(), QPalette::Text));
    painter.setFont(bold);
    painter.drawText(text, static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine, caption);
    painter.setFont(font());
    painter.setPen(gridcolors::quietText(palette()));
    painter.drawText(text.adjusted(metrics.horizontalAdvance(caption), 0, 0, 0),
                     static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine, count);
    painter.restore();
}

void ReportGridView::paintRecord(QPainter& painter, int row, const QRect& rect, bool selected) const
{
    const auto record = static_cast<uint32_t>(m_grid->record(row));
    const int padding = m_header->padding() + 2;
    const QFontMetrics metrics = fontMetrics();
    painter.setPen(palette().color(colorGroup(), QPalette::Text));
    for (int visual = 0; visual < m_header->count(); ++visual) {
        const int column = m_header->logicalIndex(visual);
        if (m_header->isSectionHidden(column)) {
            continue;
        }
        const QRect cell(m_header->sectionViewportPosition(column), rect.top(), m_header->sectionSize(column),
                         rect.height());
        if (cell.right() < 0 || cell.left() > viewport()->width()) {
            continue;
        }
        if (column == m_grid->checkColumn()) {
            paintCheck(painter, checkRect(row), m_grid->isChecked(record), selected);
            painter.setPen(palette().color(colorGroup(), QPalette::Text));
            continue;
        }
        const QString text = m_grid->store().text(record, column);
        const QRect inner = cell.adjusted(padding, 0, -padding, 0);
        if (text.isEmpty() || inner.width() <= 0) {
            continue;
        }
        const bool right = m_grid->store().holdsNumbers(column);
        painter.drawText(inner,
                         static_cast<int>((right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter) |
                             Qt::TextSingleLine,
                         metrics.elidedText(oneLine(text), Qt::ElideRight, inner.width()));
    }
}

void ReportGridView::paintCheck(QPainter& painter, const QRect& box, bool checked, bool selected) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = isEnabled() ? accentColor() : gridcolors::quietText(palette());
    const QRectF shape = QRectF(box).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(checked ? accent : gridcolors::shade(palette(), selected ? 0.6 : 0.45));
    painter.setBrush(checked ? accent : palette().color(QPalette::Base));
    painter.drawRoundedRect(shape, 2, 2);
    if (checked) {
        const double side = shape.width();
        const QPointF corner = shape.topLeft();
        QPolygonF tick;
        tick << corner + QPointF(side * 0.22, side * 0.52) << corner + QPointF(side * 0.42, side * 0.72)
             << corner + QPointF(side * 0.78, side * 0.28);
        painter.setPen(QPen(Qt::white, side / 7.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(tick);
    }
    painter.restore();
}

} // namespace zul
