#include "controls/report/ReportHeader.h"

#include "controls/look/CommonLook.h"
#include "controls/report/GridMarks.h"
#include "controls/report/ReportGridColors.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportHeaderModel.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr int leastShare = 72;
constexpr int leastWidth = 16;
constexpr int arrowWidth = 12;

} // namespace

ReportHeader::ReportHeader(ReportGridModel* grid, QWidget* parent)
    : QHeaderView(Qt::Horizontal, parent)
    , m_grid(grid)
    , m_columns(new ReportHeaderModel(grid, this))
{
    setModel(m_columns);
    setSectionsClickable(true);
    setSectionsMovable(false); // dragging is done here, because a drag may also end in the group box
    setHighlightSections(false);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setMinimumSectionSize(leastWidth);
    setStretchLastSection(false);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setMouseTracking(true);
    setAccessibleName(u"Intestazioni di colonna"_s);
    connect(this, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (width > 0 && !m_showing && static_cast<size_t>(column) < m_widths.size()) {
            m_widths[static_cast<size_t>(column)] = width;
        }
    });
}

void ReportHeader::setFlat(bool flat)
{
    m_flat = flat;
    viewport()->update();
}

void ReportHeader::setPadding(int pixels)
{
    m_padding = pixels;
    viewport()->update();
}

void ReportHeader::setTouch(bool touch)
{
    m_touch = touch;
    updateGeometry();
}

void ReportHeader::columnsChanged()
{
    m_drag.end();
    m_press = Press::None;
    m_columns->columnsChanged();
    m_sharesWidths = true;
    m_widths.assign(static_cast<size_t>(count()), leastWidth);
    const std::vector<ReportColumn>& columns = m_grid->columns();
    for (int column = 0; column < count(); ++column) {
        const ReportColumn& own = columns[static_cast<size_t>(column)];
        setSectionResizeMode(column, own.sizable ? QHeaderView::Interactive : QHeaderView::Fixed);
        setWidthOf(column, shareOf(column));
        setColumnShown(column, own.visible);
    }
}

void ReportHeader::setColumnShown(int column, bool shown)
{
    // The base class sizes a column to nothing before it counts as hidden; sharing must not size it back.
    m_showing = true;
    setSectionHidden(column, !shown);
    m_showing = false;
}

void ReportHeader::setSortMark(int column, bool descending)
{
    m_sortColumn = column;
    m_sortDescending = descending;
    viewport()->update();
}

/// The width a column begins with: its own, which is meant for a font of the usual size, or for one of width 0 the least
/// of its share.
int ReportHeader::shareOf(int column) const
{
    const ReportColumn& own = m_grid->columns()[static_cast<size_t>(column)];
    if (own.width > 0) {
        return std::max(qRound(systemSized(own.width)), leastWidth);
    }
    const int caption = fontMetrics().horizontalAdvance(own.caption) + 2 * (m_padding + 2) + arrowWidth;
    return own.check ? std::max(caption, 36) : leastShare;
}

void ReportHeader::shareWidths(int free)
{
    if (!m_sharesWidths || m_showing) {
        return;
    }
    std::vector<int> sharing;
    for (int column = 0; column < count(); ++column) {
        if (isSectionHidden(column)) {
            continue;
        }
        if (isShared(column)) {
            sharing.push_back(column);
        } else {
            free -= sectionSize(column);
        }
    }
    for (size_t i = 0; i < sharing.size(); ++i) {
        const int left = static_cast<int>(sharing.size() - i);
        const int width = std::max(free / left, leastShare);
        resizeSection(sharing[i], width);
        free -= width;
    }
    viewport()->update();
}

bool ReportHeader::isShared(int column) const
{
    const ReportColumn& own = m_grid->columns()[static_cast<size_t>(column)];
    return m_sharesWidths && own.width == 0 && !own.check;
}

int ReportHeader::widthOf(int column) const
{
    return m_widths[static_cast<size_t>(column)];
}

void ReportHeader::setWidthOf(int column, int width)
{
    width = std::max(width, leastWidth);
    m_widths[static_cast<size_t>(column)] = width;
    resizeSection(column, width);
}

int ReportHeader::headerHeight() const
{
    const int height = fontMetrics().height() + 2 * 4 + 2;
    return std::max(height, m_touch ? 44 : 26);
}

QSize ReportHeader::sizeHint() const
{
    return {QHeaderView::sizeHint().width(), headerHeight()};
}

std::vector<int> ReportHeader::shownColumns() const
{
    std::vector<int> columns;
    for (int visual = 0; visual < count(); ++visual) {
        if (!isSectionHidden(logicalIndex(visual))) {
            columns.push_back(logicalIndex(visual));
        }
    }
    return columns;
}

int ReportHeader::visiblePosition(int column) const
{
    const std::vector<int> columns = shownColumns();
    const auto found = std::find(columns.begin(), columns.end(), column);
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

// --- Painting

void ReportHeader::paintSection(QPainter* painter, const QRect& rect, int column) const
{
    if (!rect.isValid() || column < 0) {
        return;
    }
    const bool pressed = m_press != Press::None && m_press != Press::Resize && column == m_pressed;
    const QColor frame = frameColor();
    painter->save();
    if (m_flat) {
        const bool lit = pressed || (column == m_hovered && m_press == Press::None);
        painter->fillRect(rect, lit ? gridcolors::hovered(palette()) : gridcolors::header(palette()));
        painter->fillRect(rect.right(), rect.top() + 5, 1, rect.height() - 10, frame);
        painter->fillRect(rect.left(), rect.bottom(), rect.width(), 1, frame);
    } else {
        QStyleOptionHeader option;
        initStyleOption(&option);
        option.rect = rect;
        option.section = column;
        option.text.clear();
        option.state |= QStyle::State_Raised | (pressed ? QStyle::State_Sunken : QStyle::State_None);
        style()->drawControl(QStyle::CE_HeaderSection, &option, painter, this);
    }
    QRect inner = rect.adjusted(m_padding + 2, 0, -(m_padding + 2), -1);
    if (column == m_sortColumn) {
        paintSortMark(*painter, QPointF(inner.right() - arrowWidth + 8.5, inner.center().y() + 0.5),
                      QSizeF(8, 5), m_sortDescending, accentColor());
        inner.setRight(inner.right() - arrowWidth);
    }
    const ReportColumn& own = m_grid->columns()[static_cast<size_t>(column)];
    const bool right = m_grid->store().holdsNumbers(column);
    painter->setPen(palette().color(QPalette::Text));
    painter->drawText(inner,
                      static_cast<int>((right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter) |
                          Qt::TextSingleLine,
                      fontMetrics().elidedText(own.caption, Qt::ElideRight, inner.width()));
    if (column == m_drag.markedColumn()) {
        // The edge at which the dragged column will stand.
        const bool after = visualIndex(m_pressed) < visualIndex(column);
        const int x = after ? rect.right() - 1 : rect.left();
        painter->fillRect(x, rect.top(), 2, rect.height(), accentColor());
    }
    painter->restore();
}

void ReportHeader::paintEvent(QPaintEvent* event)
{
    if (m_flat) {
        QPainter painter(viewport());
        painter.fillRect(viewport()->rect(), gridcolors::header(palette()));
        painter.fillRect(0, viewport()->height() - 1, viewport()->width(), 1, frameColor());
    }
    QHeaderView::paintEvent(event);
}

// --- Mouse

/// The column whose edge is under the pointer, as the base class finds it when it begins to size.
int ReportHeader::sizedColumnAt(int x) const
{
    const int visual = visualIndexAt(x);
    if (visual < 0) {
        return -1;
    }
    const int column = logicalIndex(visual);
    const int begin = sectionViewportPosition(column);
    const int grip = style()->pixelMetric(QStyle::PM_HeaderGripMargin, nullptr, this);
    bool atLeft = x < begin + grip;
    bool atRight = x > begin + sectionSize(column) - grip;
    if (isRightToLeft()) {
        std::swap(atLeft, atRight);
    }
    int found = -1;
    if (atLeft) {
        for (int before = visual - 1; before >= 0 && found < 0; --before) {
            found = isSectionHidden(logicalIndex(before)) ? -1 : logicalIndex(before);
        }
    } else if (atRight) {
        found = column;
    }
    return found >= 0 && sectionResizeMode(found) == QHeaderView::Interactive ? found : -1;
}

void ReportHeader::mousePressEvent(QMouseEvent* event)
{
    QHeaderView::mousePressEvent(event);
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const QPoint position = event->position().toPoint();
    m_pressedAt = position;
    m_pressed = sizedColumnAt(position.x());
    m_press = Press::Resize;
    if (m_pressed < 0) {
        m_pressed = logicalIndexAt(position);
        m_press = m_pressed < 0 ? Press::None : Press::Click;
    }
    viewport()->update();
}

void ReportHeader::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    if (m_press == Press::Click && (event->buttons() & Qt::LeftButton) &&
        (position - m_pressedAt).manhattanLength() >= QApplication::startDragDistance()) {
        m_press = Press::Drag;
        m_hovered = -1;
        m_drag.begin(m_pressed, m_grid->columns()[static_cast<size_t>(m_pressed)].caption, position);
    }
    if (m_press == Press::Drag) {
        m_drag.follow(position);
        return;
    }
    if (m_press == Press::Resize && position != m_pressedAt) {
        // From here on widths are the operator's: sharing them anew at each move would undo the move.
        m_sharesWidths = false;
    }
    const int hovered = event->buttons() == Qt::NoButton ? logicalIndexAt(position) : -1;
    if (hovered != m_hovered) {
        m_hovered = hovered;
        viewport()->update();
    }
    QHeaderView::mouseMoveEvent(event);
}

void ReportHeader::mouseReleaseEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    const Press press = m_press;
    const int pressed = m_pressed;
    if (event->button() != Qt::LeftButton || press == Press::None) {
        QHeaderView::mouseReleaseEvent(event);
        return;
    }
    const int dropped = press == Press::Drag ? m_drag.dropColumnAt(position) : -1;
    const bool grouped = press == Press::Drag && m_drag.overGroupBox(position);
    m_drag.end();
    m_press = Press::None;
    m_pressed = -1;
    if (press == Press::Drag) {
        // The base class must not take the end of the drag for a click on a section.
        const QPointF outside(-1, -1);
        QMouseEvent release(QEvent::MouseButtonRelease, outside, event->globalPosition(), event->button(),
                            event->buttons(), event->modifiers());
        QHeaderView::mouseReleaseEvent(&release);
    } else {
        QHeaderView::mouseReleaseEvent(event);
    }
    viewport()->update();
    if (grouped) {
        Q_EMIT groupRequested(pressed);
    } else if (dropped >= 0 && dropped != pressed) {
        moveSection(visualIndex(pressed), visualIndex(dropped));
        Q_EMIT columnMoved();
    } else if (press == Press::Click && logicalIndexAt(position) == pressed) {
        Q_EMIT sortRequested(pressed);
    } else if (press == Press::Resize && position != m_pressedAt) {
        Q_EMIT columnResized();
    }
}

void ReportHeader::mouseDoubleClickEvent(QMouseEvent* event)
{
    const int column = sizedColumnAt(event->position().toPoint().x());
    if (event->button() == Qt::LeftButton && column >= 0) {
        Q_EMIT fitRequested(column);
        return;
    }
    // The second click of two quick ones turns the order again.
    mousePressEvent(event);
}

void ReportHeader::contextMenuEvent(QContextMenuEvent* event)
{
    Q_EMIT menuRequested(logicalIndexAt(event->pos()), event->globalPos());
}

void ReportHeader::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && m_press == Press::Drag) {
        m_drag.end();
        m_press = Press::None;
        viewport()->update();
        return;
    }
    QHeaderView::keyPressEvent(event);
}

bool ReportHeader::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::Leave && m_hovered >= 0) {
        m_hovered = -1;
        viewport()->update();
    }
    return QHeaderView::viewportEvent(event);
}

} // namespace zul
