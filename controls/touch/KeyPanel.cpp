#include "controls/touch/KeyPanel.h"

#include "controls/look/Icons.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

KeyPanel::KeyPanel(QWidget* parent)
    : QFrame(parent)
{
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setAttribute(Qt::WA_StyledBackground);
    hide();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focusChanged(now); });
}

void KeyPanel::setTouchMode(bool touch)
{
    m_touchMode = touch;
    if (!touch && m_openedItself) {
        hide();
    }
}

void KeyPanel::bind(QWidget* field)
{
    if (m_field) {
        m_field->removeEventFilter(this);
    }
    if (m_window) {
        m_window->removeEventFilter(this);
    }
    m_field = field;
    m_awayWithField = false;
    m_window = field != nullptr ? field->window() : nullptr;
    if (field == nullptr) {
        return;
    }
    field->installEventFilter(this);
    m_window->installEventFilter(this);
    if (parentWidget() != m_window) {
        // Only as a child of the window itself can the panel lie over every page of it.
        const bool wasVisible = isVisible();
        setParent(m_window);
        setVisible(wasVisible);
    }
    if (m_touchMode && !isVisible()) {
        m_openedItself = true;
        show();
    }
    raise();
    placeAll();
}

void KeyPanel::detach()
{
    bind(nullptr);
    if (m_openedItself) {
        hide();
    }
}

void KeyPanel::giveWayTo(const QObject* other)
{
    const bool openedItself = m_openedItself;
    hide();
    connect(other, &QObject::destroyed, this, [this, openedItself] {
        if (m_field != nullptr && !isVisible()) {
            m_openedItself = openedItself;
            show();
            raise();
        }
    });
}

bool KeyPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Resize) {
        placeAll();
    }
    if (watched == m_field) {
        if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
            placeAll();
        }
        if (event->type() == QEvent::Hide) {
            fieldHidden();
        }
        if (event->type() == QEvent::Show) {
            fieldShown();
        }
    }
    return QFrame::eventFilter(watched, event);
}

void KeyPanel::fieldHidden()
{
    // Hidden by a page, not for itself, nor with the whole window.
    const bool withItsPage = !m_field->isHidden() && window()->isVisible();
    const bool away = isVisible() && !m_openedItself && withItsPage;
    if (away || m_openedItself) {
        hide();
    }
    m_awayWithField = away;
}

void KeyPanel::fieldShown()
{
    if (!m_awayWithField) {
        return;
    }
    m_awayWithField = false;
    show();
    raise();
}

void KeyPanel::showEvent(QShowEvent* event)
{
    QFrame::showEvent(event);
    placeAll();
}

void KeyPanel::hideEvent(QHideEvent* event)
{
    if (!event->spontaneous()) {
        m_openedItself = false;
    }
    QFrame::hideEvent(event);
    placeAll(); // of those that are left
}

void KeyPanel::focusChanged(QWidget* now)
{
    if (!m_openedItself || now == nullptr || now->window() != window()) {
        return;
    }
    if (m_field == nullptr || (now != m_field && now != target() && !m_field->isAncestorOf(now))) {
        hide();
    }
}

QList<KeyPanel*> KeyPanel::shownIn(const QWidget* window)
{
    QList<KeyPanel*> shown = window->findChildren<KeyPanel*>();
    shown.removeIf([](const KeyPanel* panel) { return !panel->isVisible(); });
    return shown;
}

QRect KeyPanel::fieldRect() const
{
    return m_field ? QRect(m_field->mapTo(window(), QPoint(0, 0)), m_field->size()) : QRect(0, 0, 0, 0);
}

void KeyPanel::placeAll()
{
    QList<KeyPanel*> panels = shownIn(window());
    std::stable_partition(panels.begin(), panels.end(),
                          [](const KeyPanel* panel) { return panel->isLarge(); });
    QList<QRect> placedBefore;
    for (KeyPanel* panel : std::as_const(panels)) {
        QList<QRect> taken = placedBefore;
        for (const KeyPanel* other : std::as_const(panels)) {
            if (other != panel && other->m_field) {
                taken.append(other->fieldRect());
            }
        }
        panel->setGeometry(panel->placed(panel->fieldRect(), window()->rect(), taken));
        placedBefore.append(panel->geometry());
    }
}

QPushButton* KeyPanel::makeKey(const QString& name, const QString& caption, const QString& accessibleName)
{
    auto* key = new QPushButton(caption, this);
    key->setObjectName(name);
    key->setAccessibleName(accessibleName.isEmpty() ? caption : accessibleName);
    key->setFocusPolicy(Qt::NoFocus);
    key->setAutoDefault(false);
    key->setProperty("panelKey", true);
    key->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    return key;
}

QPushButton* KeyPanel::makeIconKey(const QString& name, IconId iconId, const QString& accessibleName)
{
    QPushButton* key = makeKey(name, {}, accessibleName);
    key->setIcon(icon(iconId));
    key->setIconSize(QSize(20, 20));
    key->setToolTip(accessibleName);
    return key;
}

QWidget* KeyPanel::target() const
{
    QWidget* widget = m_field;
    while (widget != nullptr && widget->focusProxy() != nullptr) {
        widget = widget->focusProxy();
    }
    return widget;
}

void KeyPanel::sendKey(Qt::Key key, const QString& text, Qt::KeyboardModifiers modifiers)
{
    // What a key does may destroy the field, or this panel with it.
    QPointer<QWidget> widget = target();
    if (!widget) {
        return;
    }
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(widget, &press);
    if (!widget) {
        return;
    }
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QCoreApplication::sendEvent(widget, &release);
}

void KeyPanel::sendText(const QString& text)
{
    if (text.isEmpty()) {
        return;
    }
    const QChar upper = text.at(0).toUpper();
    sendKey(text.size() == 1 && upper.unicode() < 0x100 ? static_cast<Qt::Key>(upper.unicode())
                                                        : Qt::Key_unknown,
            text);
}

void KeyPanel::clearField()
{
    const QPointer<KeyPanel> self(this);
    sendKey(Qt::Key_A, u"\u0001"_s, Qt::ControlModifier);
    if (self) {
        sendKey(Qt::Key_Delete);
    }
}

} // namespace zul
