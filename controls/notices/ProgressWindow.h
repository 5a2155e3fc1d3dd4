// The progress of a task that the operator waits for and may break off.
#pragma once

#include <QDialog>
#include <QElapsedTimer>

QT_FORWARD_DECLARE_CLASS(QProgressBar)

namespace zul {

/// A caption, a bar and "Annulla", modal to the owner's window. It shows itself once the task has lasted a while; a short
/// task shows nothing. Qt's own window for this is not among the parts of Qt that the Windows build has.
class ProgressWindow : public QDialog
{
    Q_OBJECT

public:
    static constexpr int untilShown = 400; // milliseconds

    /// @param steps how many there will be
    ProgressWindow(QWidget* owner, const QString& caption, int steps);

    /// To be called as the task goes on; lets the operator's clicks and keys through while the window is shown. False once
    /// the operator has broken the task off.
    [[nodiscard]] bool advance(int done);

private:
    QProgressBar* m_bar;
    QElapsedTimer m_since;
    bool m_cancelled = false;
};

} // namespace zul
