#include "session/ScreenFit.h"

#include "controls/look/ScreenRoom.h"

#include <QEvent>
#include <QLayout>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// Nearest place at which a rectangle stands in the area; at its upper left corner when it is larger.
QPoint placeInside(const QRect& rectangle, const QRect& area)
{
    return {std::max(area.left(), std::min(rectangle.left(), area.right() + 1 - rectangle.width())),
            std::max(area.top(), std::min(rectangle.top(), area.bottom() + 1 - rectangle.height()))};
}

} // namespace

ScreenFit::ScreenFit(QWidget* window)
    : QObject(window)
    , m_window(window)
{
    window->installEventFilter(this);
}

bool ScreenFit::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_window) {
        return false;
    }
    switch (event->type()) {
    case QEvent::Show:
        if (!event->spontaneous()) {
            m_frameUnknown = true;
            fit();
        }
        watchScreen();
        break;
    case QEvent::WindowActivate:
        if (m_frameUnknown) {
            m_frameUnknown = false;
            fit();
        }
        break;
    case QEvent::ScreenChangeInternal:
        watchScreen();
        fit();
        break;
    default:
        break;
    }
    return false;
}

void ScreenFit::watchScreen()
{
    if (m_screen == m_window->screen()) {
        return;
    }
    if (m_screen) {
        m_screen->disconnect(this);
    }
    m_screen = m_window->screen();
    connect(m_screen, &QScreen::availableGeometryChanged, this, &ScreenFit::fit);
}

void ScreenFit::fit()
{
    if (m_window->isMaximized() || m_window->isFullScreen()) {
        return;
    }
    const auto contents = m_window->findChildren<QScrollArea*>();
    for (QScrollArea* content : contents) {
        content->updateGeometry(); // its smallest size depends on the screen
    }
    const QSize room = roomFor(m_window);
    // A smallest size of the window's own gives way as well.
    if (const QSize least = m_window->minimumSize(); least != least.boundedTo(room)) {
        m_window->setMinimumSize(least.boundedTo(room));
    }
    m_window->resize(m_window->size().boundedTo(room));
    if (!m_window->isVisible() || m_frameUnknown) {
        return;
    }
    const QRect frame = m_window->frameGeometry();
    const QPoint inside = placeInside(frame, m_window->screen()->availableGeometry());
    if (inside != frame.topLeft()) {
        m_window->move(inside);
    }
}

FormScroll* FormScroll::wrap(QWidget* host)
{
    auto* content = new QWidget;
    content->setObjectName(u"formContent"_s);
    content->setLayout(host->layout());
    auto* all = new QVBoxLayout(host);
    all->setContentsMargins(0, 0, 0, 0);
    auto* scroll = new FormScroll(host);
    scroll->setWidget(content);
    all->addWidget(scroll);
    return scroll;
}

FormScroll::FormScroll(QWidget* parent)
    : QScrollArea(parent)
{
    setObjectName(u"formScroll"_s);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
}

QSize FormScroll::sizeHint() const
{
    return widget()->sizeHint();
}

QSize FormScroll::minimumSizeHint() const
{
    const QSize smallest = smallestContent(width());
    const QLayout* outside = window()->layout();
    if (outside == nullptr) {
        return smallest;
    }
    const QMargins margins = outside->contentsMargins();
    const QSize room =
        roomFor(window()) - QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
    return smallest.boundedTo(room.expandedTo(QSize(0, 0)));
}

bool FormScroll::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == widget() && event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        fitContent();
    }
    return QScrollArea::eventFilter(watched, event);
}

void FormScroll::resizeEvent(QResizeEvent* event)
{
    fitContent();
    QScrollArea::resizeEvent(event);
}

// The area's own way to size its content takes wrapped texts for a reason to make it as high as it would like to
// be; here it gets what room there is, and no less than it can do with.
void FormScroll::fitContent()
{
    QSize room = maximumViewportSize();
    QSize smallest = smallestContent(room.width());
    if (smallest.height() > room.height()) {
        room.rwidth() -= verticalScrollBar()->sizeHint().width();
        smallest = smallestContent(room.width());
    }
    if (smallest.width() > room.width()) {
        room.rheight() -= horizontalScrollBar()->sizeHint().height();
    }
    widget()->resize(smallest.expandedTo(room));
}

QSize FormScroll::smallestContent(int width) const
{
    QSize smallest = widget()->minimumSizeHint().expandedTo(widget()->minimumSize());
    const QLayout* layout = widget()->layout();
    if (layout->hasHeightForWidth()) {
        smallest.setHeight(
            std::max(smallest.height(), layout->minimumHeightForWidth(std::max(width, smallest.width()))));
    }
    return smallest;
}

} // namespace zul
