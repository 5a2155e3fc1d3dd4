#include "controls/notices/WaitIndicator.h"

#include <QAccessible>
#include <QEvent>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

namespace zul {

using namespace Qt::StringLiterals;

WaitIndicator::WaitIndicator(QWidget* parent)
    : QFrame(parent)
    , m_caption(new QLabel(this))
    , m_bar(new QProgressBar(this))
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setAttribute(Qt::WA_StyledBackground);
    m_caption->setTextFormat(Qt::PlainText);
    m_caption->setWordWrap(true);
    m_caption->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    m_bar->setRange(0, 100);
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(u"Avanzamento"_s);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(24, 16, 24, 16);
    column->setSpacing(8);
    column->addWidget(m_caption, 1);
    column->addWidget(m_bar);
    watchParent();
    hide();
}

QString WaitIndicator::caption() const
{
    return m_caption->text();
}

void WaitIndicator::setCaption(const QString& caption)
{
    if (caption == m_caption->text()) {
        return;
    }
    m_caption->setText(caption);
    setAccessibleName(caption);
    if (isVisible()) {
        QAccessibleEvent alert(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
    Q_EMIT captionChanged(caption);
}

void WaitIndicator::setValue(int value)
{
    if (value == m_value) {
        return;
    }
    m_value = value;
    m_bar->setValue(qBound(0, value, m_bar->maximum()));
    Q_EMIT valueChanged(value);
}

int WaitIndicator::maximum() const
{
    return m_bar->maximum();
}

void WaitIndicator::setMaximum(int maximum)
{
    m_bar->setMaximum(qMax(1, maximum));
    m_bar->setValue(qBound(0, m_value, m_bar->maximum()));
}

QSize WaitIndicator::sizeHint() const
{
    return {360, 96};
}

bool WaitIndicator::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        centre();
    }
    return QFrame::eventFilter(watched, event);
}

bool WaitIndicator::event(QEvent* event)
{
    if (event->type() == QEvent::ParentAboutToChange && parentWidget() != nullptr) {
        parentWidget()->removeEventFilter(this);
    }
    if (event->type() == QEvent::ParentChange) {
        watchParent();
    }
    return QFrame::event(event);
}

void WaitIndicator::showEvent(QShowEvent* event)
{
    QFrame::showEvent(event);
    centre();
    raise();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void WaitIndicator::watchParent()
{
    if (parentWidget() != nullptr) {
        parentWidget()->installEventFilter(this);
    }
}

void WaitIndicator::centre()
{
    const QWidget* around = parentWidget();
    if (around == nullptr || isWindow() || !isVisible()) {
        return;
    }
    const QSize size = sizeHint().boundedTo(around->size());
    setGeometry(
        QRect(QPoint((around->width() - size.width()) / 2, (around->height() - size.height()) / 2), size));
}

} // namespace zul
