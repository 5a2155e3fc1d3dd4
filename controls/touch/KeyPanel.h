// What the on-screen keypad and keyboard have in common.
#pragma once

#include <QFrame>
#include <QPointer>

QT_FORWARD_DECLARE_CLASS(QAbstractButton)
QT_FORWARD_DECLARE_CLASS(QPushButton)

namespace zul {

enum class IconId;

/// A panel of keys inside a window, bound to one field of that window. Its keys never take the keyboard focus:
/// they send the field real key events. It begins hidden. In touch mode it opens by itself when a field is
/// attached and closes when the focus goes elsewhere; otherwise it only remembers the field, and whoever shows
/// it hides it. While another page covers the field's it is away, and comes back with the field. Panels of one window
/// cover neither each other nor each other's fields, as far as the window has room.
class KeyPanel : public QFrame
{
    Q_OBJECT

public:
    static constexpr int fingerSize = 44; // pixels
    static constexpr int edge = 4;        // pixels left free at the window's edges

    explicit KeyPanel(QWidget* parent = nullptr);

    void setTouchMode(bool touch);

    /// The field that the keys work on, or null. It is not owned and may be destroyed at any time.
    [[nodiscard]] QWidget* attachedField() const { return m_field; }
    void detach();
    /// Is away until the other object is gone, then there again if it still has a field.
    void giveWayTo(const QObject* other);

    /// The panels that are to be seen in a window.
    [[nodiscard]] static QList<KeyPanel*> shownIn(const QWidget* window);

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void bind(QWidget* field);
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

    /// Where the panel stands beside what is taken; all in the window's coordinates.
    [[nodiscard]] virtual QRect placed(const QRect& field, const QRect& window,
                                       const QList<QRect>& taken) const = 0;
    /// A large panel has few places where it can stand; small ones stand around it.
    [[nodiscard]] virtual bool isLarge() const = 0;

    QPushButton* makeKey(const QString& name, const QString& caption, const QString& accessibleName = {});
    QPushButton* makeIconKey(const QString& name, IconId icon, const QString& accessibleName);

    /// Key press and release at the field's text box.
    void sendKey(Qt::Key key, const QString& text = {}, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void sendText(const QString& text);
    void clearField();

private:
    /// Puts the panels of the window where they belong.
    void placeAll();
    [[nodiscard]] QRect fieldRect() const;

    void focusChanged(QWidget* now);
    void fieldHidden();
    void fieldShown();
    [[nodiscard]] QWidget* target() const;

    QPointer<QWidget> m_field;
    QPointer<QWidget> m_window;
    bool m_touchMode = false;
    bool m_openedItself = false;
    bool m_awayWithField = false;
};

} // namespace zul
