#include "controls/report/ReportGroupBox.h"

#include "controls/report/GridMarks.h"
#include "controls/report/ReportGridColors.h"
#include "controls/report/ReportGridModel.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr int margin = 6;
constexpr int chipPadding = 8;
constexpr int crossSize = 16;
constexpr int arrowSize = 12;
constexpr int chipGap = 6;

QString quoted(const QString& caption)
{
    return u'"' + caption + u'"';
}

} // namespace

ReportGroupBox::ReportGroupBox(ReportGridModel* grid, QWidget* parent)
    : QWidget(parent)
    , m_grid(grid)
{
    setAccessibleName(u"Raggruppamento"_s);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setMouseTracking(true);
}

void ReportGroupBox::setHint(const QString& hint)
{
    m_hint = hint;
    groupsChanged();
}

void ReportGroupBox::setSortCaptionPrefix(const QString& prefix)
{
    m_sortPrefix = prefix;
    groupsChanged();
}

void ReportGroupBox::setTouch(bool touch)
{
    m_touch = touch;
    updateGeometry();
}

void ReportGroupBox::setDropTarget(bool target)
{
    if (target != m_dropTarget) {
        m_dropTarget = target;
        update();
    }
}

void ReportGroupBox::groupsChanged()
{
    const std::vector<Chip> all = chips();
    // Without chips there is nothing to do here by key, so Tab passes the box by.
    setFocusPolicy(all.empty() ? Qt::NoFocus : Qt::TabFocus);
    m_focused = std::clamp(m_focused, 0, std::max(0, static_cast<int>(all.size()) - 1));
    m_pressed = -1;
    m_dragging = false;
    QStringList captions;
    for (const Chip& chip : all) {
        captions.append(m_grid->columns()[static_cast<size_t>(chip.column)].caption);
    }
    QString description = captions.isEmpty() ? m_hint : captions.join(u", "_s);
    if (!sortCaption().isEmpty()) {
        description += u". "_s + sortCaption();
    }
    setAccessibleDescription(description);
    update();
}

QSize ReportGroupBox::sizeHint() const
{
    const int height = fontMetrics().height() + 2 * (margin + 4);
    return {200, std::max(height, m_touch ? 52 : 34)};
}

QSize ReportGroupBox::minimumSizeHint() const
{
    return {0, sizeHint().height()};
}

QString ReportGroupBox::sortCaption() const
{
    const ReportSort sort = m_grid->sorting();
    if (sort.column < 0 || static_cast<size_t>(sort.column) >= m_grid->columns().size()) {
        return {};
    }
    return m_sortPrefix + m_grid->columns()[static_cast<size_t>(sort.column)].caption;
}

std::vector<ReportGroupBox::Chip> ReportGroupBox::chips() const
{
    std::vector<Chip> result;
    int x = margin;
    for (const ReportSort& group : m_grid->groupColumns()) {
        if (static_cast<size_t>(group.column) >= m_grid->columns().size()) {
            continue;
        }
        Chip chip;
        chip.column = group.column;
        const QString caption = m_grid->columns()[static_cast<size_t>(group.column)].caption;
        const int text = std::min(fontMetrics().horizontalAdvance(caption), 220);
        const int width = chipPadding + text + 4 + arrowSize + crossSize + 4;
        chip.rect = QRect(x, margin, width, height() - 2 * margin);
        chip.cross = QRect(chip.rect.right() - crossSize - 1, chip.rect.top(), crossSize, chip.rect.height());
        x += width + chipGap;
        result.push_back(chip);
    }
    return result;
}

int ReportGroupBox::chipAt(const QPoint& position) const
{
    const std::vector<Chip> all = chips();
    for (size_t i = 0; i < all.size(); ++i) {
        if (all[i].rect.contains(position)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

bool ReportGroupBox::event(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* help = static_cast<QHelpEvent*>(event);
        const std::vector<Chip> all = chips();
        const int at = chipAt(help->pos());
        if (at >= 0) {
            const Chip& chip = all[static_cast<size_t>(at)];
            const QString caption = quoted(m_grid->columns()[static_cast<size_t>(chip.column)].caption);
            QToolTip::showText(help->globalPos(),
                               chip.cross.contains(help->pos())
                                   ? u"Non raggruppare più per "_s + caption
                                   : u"Invertire l'ordine dei gruppi per "_s + caption,
                               this);
        } else {
            QToolTip::hideText();
        }
        return true;
    }
    return QWidget::event(event);
}

void ReportGroupBox::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = accentColor();
    const QColor base = palette().color(QPalette::Base);
    painter.fillRect(rect(), m_dropTarget ? gridcolors::blend(base, accent, 0.12) : base);
    painter.fillRect(QRect(0, height() - 1, width(), 1), frameColor());

    const std::vector<Chip> all = chips();
    int used = all.empty() ? margin + 2 : all.back().rect.right() + chipGap;
    const ReportSort sort = m_grid->sorting();
    const QString sorted = sortCaption();
    const int hintWidth = all.empty() ? fontMetrics().horizontalAdvance(m_hint) : 0;
    const int sortedWidth = sorted.isEmpty() ? 0 : fontMetrics().horizontalAdvance(sorted) + arrowSize + 4;
    const QRect inner = rect().adjusted(used, 0, -margin - 2, -1);
    const QColor quiet = gridcolors::quietText(palette());
    painter.setPen(quiet);
    int right = inner.right();
    // The hint says how to begin, so it goes before the sort caption when there is no room for both.
    if (sortedWidth > 0 && inner.width() - hintWidth - 16 >= sortedWidth) {
        QRect place = inner;
        place.setLeft(right - sortedWidth);
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, sorted);
        paintSortMark(painter, QPointF(right - 4.5, inner.center().y() + 0.5), QSizeF(8, 5), sort.descending,
                      quiet);
        right = place.left() - 16;
    }
    if (all.empty()) {
        QRect place = inner;
        place.setRight(right);
        if (m_dropTarget) {
            painter.setPen(palette().color(QPalette::Text));
        }
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         fontMetrics().elidedText(m_hint, Qt::ElideRight, place.width()));
        return;
    }
    for (size_t i = 0; i < all.size(); ++i) {
        const Chip& chip = all[i];
        const bool focused = hasFocus() && static_cast<int>(i) == m_focused;
        painter.setPen(QPen(focused ? accent : frameColor(), focused ? 2 : 1));
        painter.setBrush(gridcolors::hovered(palette()));
        painter.drawRoundedRect(QRectF(chip.rect).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
        painter.setPen(palette().color(QPalette::Text));
        QRect text = chip.rect.adjusted(chipPadding, 0, 0, 0);
        text.setRight(chip.cross.left() - arrowSize - 2);
        painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         fontMetrics().elidedText(m_grid->columns()[static_cast<size_t>(chip.column)].caption,
                                                  Qt::ElideRight, text.width() + 2));
        const QPointF mark(chip.cross.left() - arrowSize / 2.0, chip.rect.center().y() + 0.5);
        paintSortMark(painter, mark, QSizeF(7, 4), m_grid->groupColumns()[i].descending, quiet);
        paintCross(painter, QRectF(chip.cross).center(), quiet);
    }
}

void ReportGroupBox::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    m_pressedAt = event->position().toPoint();
    m_pressed = chipAt(m_pressedAt);
    m_pressedCross = m_pressed >= 0 && chips()[static_cast<size_t>(m_pressed)].cross.contains(m_pressedAt);
    m_dragging = false;
    if (m_pressed >= 0) {
        m_focused = m_pressed;
        update();
    }
}

void ReportGroupBox::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    if (m_pressed >= 0 && (position - m_pressedAt).manhattanLength() >= QApplication::startDragDistance()) {
        m_dragging = true;
    }
    if (m_dragging) {
        // The pointer says what letting go does: outside the box takes the column out.
        setCursor(rect().contains(position) ? Qt::ClosedHandCursor : Qt::ForbiddenCursor);
    }
}

void ReportGroupBox::mouseReleaseEvent(QMouseEvent* event)
{
    const QPoint position = event->position().toPoint();
    const std::vector<Chip> all = chips();
    const int pressed = m_pressed;
    const bool dragged = m_dragging;
    const bool cross = m_pressedCross;
    m_pressed = -1;
    m_dragging = false;
    unsetCursor();
    if (event->button() != Qt::LeftButton || pressed < 0 || static_cast<size_t>(pressed) >= all.size()) {
        return;
    }
    const Chip& chip = all[static_cast<size_t>(pressed)];
    if (!dragged) {
        if (cross) {
            Q_EMIT removeRequested(chip.column);
        } else {
            Q_EMIT turnRequested(chip.column);
        }
        return;
    }
    if (!rect().contains(position)) {
        Q_EMIT removeRequested(chip.column);
        return;
    }
    int target = 0;
    for (const Chip& other : all) {
        target += other.column != chip.column && other.rect.center().x() < position.x() ? 1 : 0;
    }
    if (target != pressed) {
        Q_EMIT moveRequested(chip.column, target);
    }
}

void ReportGroupBox::keyPressEvent(QKeyEvent* event)
{
    const std::vector<Chip> all = chips();
    const int count = static_cast<int>(all.size());
    if (count == 0 || m_focused >= count) {
        QWidget::keyPressEvent(event);
        return;
    }
    const int column = all[static_cast<size_t>(m_focused)].column;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const int step = event->key() == Qt::Key_Left ? -1 : 1;
        const int next = std::clamp(m_focused + step, 0, count - 1);
        if ((event->modifiers() & Qt::ControlModifier) && next != m_focused) {
            m_focused = next;
            Q_EMIT moveRequested(column, next);
        } else {
            m_focused = next;
        }
        update();
        return;
    }
    case Qt::Key_Space:
        Q_EMIT turnRequested(column);
        return;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        Q_EMIT removeRequested(column);
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void ReportGroupBox::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    update();
}

void ReportGroupBox::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    update();
}

} // namespace zul
