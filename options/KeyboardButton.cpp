#include "options/KeyboardButton.h"

#include "controls/look/Icons.h"
#include "controls/look/ScreenRoom.h"
#include "controls/touch/OnScreenKeyboard.h"

#include <QEvent>
#include <QLayout>
#include <QPushButton>
#include <algorithm>

namespace zul {

namespace {

void setLowerMargin(QWidget* window, int height)
{
    QMargins margins = window->layout()->contentsMargins();
    margins.setBottom(height);
    window->layout()->setContentsMargins(margins);
    // At once: the smallest size of the window goes by it.
    window->layout()->activate();
}

} // namespace

KeyboardButton::KeyboardButton(QPushButton* button, OnScreenKeyboard* keyboard)
    : QObject(button)
    , m_button(button)
    , m_keyboard(keyboard)
{
    button->setIcon(icon(IconId::Keyboard));
    button->setCheckable(true);
    // A click leaves the focus in the field that the keys are for.
    button->setFocusPolicy(Qt::TabFocus);
    keyboard->installEventFilter(this);
    connect(button, &QPushButton::clicked, this, [this](bool show) {
        m_keyboard->setVisible(show);
        m_keyboard->raise();
    });
}

bool KeyboardButton::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_keyboard || event->spontaneous()) {
        return false;
    }
    if (event->type() == QEvent::Show) {
        m_button->setChecked(true);
        makeRoom();
    } else if (event->type() == QEvent::Hide) {
        m_button->setChecked(false);
        takeRoomBack();
    }
    return false;
}

void KeyboardButton::makeRoom()
{
    QWidget* window = m_keyboard->window();
    if (window->layout()->contentsMargins().bottom() > 0) {
        return;
    }
    const QSize keys = m_keyboard->sizeHint();
    m_before = window->size();
    setLowerMargin(window, keys.height());
    window->resize(QSize(std::max(m_before.width(), keys.width() + 2 * KeyPanel::edge),
                         m_before.height() + keys.height())
                       .boundedTo(roomFor(window)));
    m_grown = window->size();
}

void KeyboardButton::takeRoomBack()
{
    if (!m_before.isValid()) {
        return;
    }
    QWidget* window = m_keyboard->window();
    setLowerMargin(window, 0);
    // A size that the operator gave it meanwhile stays.
    if (window->size() == m_grown) {
        window->resize(m_before);
    }
    m_before = QSize();
}

} // namespace zul
