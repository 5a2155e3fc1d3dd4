#include "controls/notices/WaitNotice.h"

#include <QAccessible>
#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr int margin = 16;
constexpr int widest = 420;

QLabel* makeLabel(QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

} // namespace

WaitNotice* WaitNotice::open(QWidget* owner, const QString& heading, const QString& text, int duration)
{
    QWidget* window = owner != nullptr ? owner->window() : nullptr;
    if (window != nullptr) {
        const auto earlier = window->findChildren<WaitNotice*>(QString(), Qt::FindDirectChildrenOnly);
        for (WaitNotice* notice : earlier) {
            notice->hide();
        }
    }
    auto* notice = new WaitNotice(window);
    notice->setHeading(heading);
    notice->setText(text);
    notice->m_timer.setInterval(duration);
    notice->show();
    return notice;
}

WaitNotice::WaitNotice(QWidget* parent)
    : QFrame(parent)
    , m_heading(makeLabel(this))
    , m_text(makeLabel(this))
{
    setObjectName(u"waitNotice"_s);
    setProperty("zulNotice", true); // told apart by programs that do not link this code
    if (parent == nullptr) {
        setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
    }
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_StyledBackground);
    setFocusPolicy(Qt::NoFocus);
    setAutoFillBackground(true);
    setFrameShape(QFrame::StyledPanel);
    setCursor(Qt::PointingHandCursor);
    m_heading->setProperty("noticeHeading", true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 12, 16, 12);
    column->setSpacing(4);
    column->addWidget(m_heading);
    column->addWidget(m_text);
    m_timer.setSingleShot(true);
    m_timer.setInterval(defaultDuration);
    connect(&m_timer, &QTimer::timeout, this, &QWidget::hide);
    if (parent != nullptr) {
        parent->installEventFilter(this);
    }
    hide();
}

void WaitNotice::standAbove(const QWidget* control)
{
    m_above = control;
    place();
}

QString WaitNotice::heading() const
{
    return m_heading->text();
}

void WaitNotice::setHeading(const QString& heading)
{
    m_heading->setText(heading);
    setAccessibleName(heading);
}

QString WaitNotice::text() const
{
    return m_text->text();
}

void WaitNotice::setText(const QString& text)
{
    m_text->setText(text);
    setAccessibleDescription(text);
}

bool WaitNotice::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        place();
    }
    return QFrame::eventFilter(watched, event);
}

void WaitNotice::mousePressEvent(QMouseEvent* event)
{
    Q_UNUSED(event)
    hide();
}

void WaitNotice::showEvent(QShowEvent* event)
{
    QFrame::showEvent(event);
    place();
    raise();
    m_timer.start();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void WaitNotice::hideEvent(QHideEvent* event)
{
    QFrame::hideEvent(event);
    if (event->spontaneous()) {
        return; // only minimised
    }
    m_timer.stop();
    deleteLater();
}

int WaitNotice::lowerEdge() const
{
    const QWidget* around = parentWidget();
    const int edge = around->height();
    return m_above != nullptr ? qMin(edge, m_above->mapTo(around, QPoint(0, 0)).y()) : edge;
}

void WaitNotice::place()
{
    const QWidget* around = parentWidget();
    if (around == nullptr || isWindow() || !isVisible()) {
        return;
    }
    const int width = qMin(widest, qMax(1, around->width() - 2 * margin));
    const int height = qMin(qMax(layout()->totalHeightForWidth(width), layout()->totalMinimumSize().height()),
                            around->height());
    setGeometry((around->width() - width) / 2, qMax(0, lowerEdge() - height - margin), width, height);
}

} // namespace zul
