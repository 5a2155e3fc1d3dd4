// No window is larger than the screen has room for.
#pragma once

#include <QObject>
#include <QPointer>
#include <QScrollArea>

QT_FORWARD_DECLARE_CLASS(QScreen)

namespace zul {

/// Keeps a window within the free area of its screen: when it shows, when it comes to another screen, and when the
/// free area or the scale changes. A size that the operator or a program gives it later is left alone.
class ScreenFit : public QObject
{
public:
    /// Owned by the window.
    explicit ScreenFit(QWidget* window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watchScreen();
    void fit();

    QWidget* m_window;
    QPointer<QScreen> m_screen;
    bool m_frameUnknown = true; ///< the window manager has not framed it yet
};

/// Holds the content of a form. The form gets no smaller than its content can be, unless the screen has no room for
/// that: then the content scrolls.
class FormScroll : public QScrollArea
{
public:
    /// Moves what the layout of a widget holds into an area that fills the widget instead.
    static FormScroll* wrap(QWidget* host);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    explicit FormScroll(QWidget* parent);
    void fitContent();
    QSize smallestContent(int width) const;
};

} // namespace zul
