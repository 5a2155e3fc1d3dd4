// A window opens as its user left it.
#pragma once

#include <QObject>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

/// Gives a window the size, and where it stands alone the place, that it had when it was last hidden. A place that is
/// on no screen any more counts for nothing, and a size that the screen has no room for is cut (see ScreenFit).
class WindowMemory : public QObject
{
public:
    enum class Keeps
    {
        Size, ///< a dialog, which opens over its window
        SizeAndPlace,
    };

    /// Owned by the window, whose object name it goes by; made before the window shows.
    WindowMemory(QWidget* window, Keeps keeps);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void restore();
    void save() const;

    QWidget* m_window;
    Keeps m_keeps;
    QString m_name;
};

} // namespace zul
