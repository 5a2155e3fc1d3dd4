// Inputs that turn yellow while they have the keyboard focus.
#pragma once

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QVector>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

inline constexpr QColor focusedInputColor()
{
    return QColor(255, 255, 0);
}
inline constexpr QColor idleInputColor()
{
    return QColor(255, 255, 255);
}

enum class FocusSelect
{
    Nothing,
    First100 // the selection becomes start 0, length 100
};

/// The two halves by hand, for a form that paints outside of a focus change.
void paintFocusIn(QWidget* input, FocusSelect select = FocusSelect::Nothing);
void paintFocusOut(QWidget* input);

/// Watches the inputs of one form. An input is entered when it gets the focus and left when another control of
/// the same window gets it; a menu, a message box or another program in between changes nothing.
class FocusPaint : public QObject
{
    Q_OBJECT

public:
    explicit FocusPaint(QObject* parent = nullptr);

    enum class Paint
    {
        No, // only the signals
        Yes
    };

    /// The input is not owned and may be destroyed at any time. Watching it again changes its settings.
    void watch(QWidget* input, FocusSelect select = FocusSelect::Nothing, Paint paint = Paint::Yes);

    /// The watched input that has the focus of the form, or null.
    [[nodiscard]] QWidget* current() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void entered(QWidget* input);
    void left(QWidget* input);

private:
    struct Input
    {
        QPointer<QWidget> widget;
        FocusSelect select = FocusSelect::Nothing;
        Paint paint = Paint::Yes;
    };

    void focusChanged(QWidget* now);
    [[nodiscard]] const Input* find(const QWidget* widget) const;
    [[nodiscard]] const Input* findAround(QWidget* widget) const;
    void leaveCurrent();

    QVector<Input> m_inputs;
    QPointer<QWidget> m_current;
    bool m_mouseEntry = false; // the selection is set again when the button is released
};

} // namespace zul
