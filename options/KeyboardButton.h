// The small button that shows a form's on-screen keyboard and puts it away.
#pragma once

#include <QObject>
#include <QSize>

QT_FORWARD_DECLARE_CLASS(QPushButton)

namespace zul {

class OnScreenKeyboard;

/// The button is pressed in while the keyboard is to be seen, however that came about. Where the form has no room
/// kept for the keyboard (in touch mode it has), the window grows downwards for it, so that it covers nothing, and
/// back again; as far as the screen allows.
class KeyboardButton : public QObject
{
    Q_OBJECT

public:
    /// Owned by the button; both stand in one window.
    KeyboardButton(QPushButton* button, OnScreenKeyboard* keyboard);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeRoom();
    void takeRoomBack();

    QPushButton* m_button;
    OnScreenKeyboard* m_keyboard;
    QSize m_before; ///< of the window, before it grew; invalid when it did not
    QSize m_grown;
};

} // namespace zul
