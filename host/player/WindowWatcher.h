// Sees the windows of the process come and go, prints them, and knows which one is on top.
#pragma once

#include <QEvent>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QTimer>

QT_FORWARD_DECLARE_CLASS(QMessageBox)
QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul::host {
class EventPrinter;

/// Watches every top-level window of the application from its construction on, and knows them only through Qt's
/// own interface and the dynamic properties that the windows carry:
///  - a window whose name begins with "frm" prints "window NAME shown" and "window NAME hidden tag=…";
///  - a QMessageBox prints "message …" when it is shown and "answer …" when it is answered;
///  - a widget with the property zulNotice prints "notice …" and is no window for commands;
///  - a widget named WaitPlease prints "progress …" when it is shown, hidden, or changes caption or value.
class WindowWatcher : public QObject
{
    Q_OBJECT

public:
    explicit WindowWatcher(EventPrinter& printer, QObject* parent = nullptr);

    /// The window that a person's hands reach: the modal one opened last, else the window opened last; null when
    /// none is open. Message boxes count.
    [[nodiscard]] QWidget* topmost() const;
    /// The same without message boxes.
    [[nodiscard]] QWidget* topmostForm() const;
    /// The message box on top, null when another window is there, or none.
    [[nodiscard]] QMessageBox* messageBox() const;

    /// QThread::loopLevel() as it was when the window was last shown: the window's own event loop, if it has
    /// one, runs one level above.
    [[nodiscard]] int levelWhenShown(const QWidget* window) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// A window was shown that may have an event loop of its own, which is not running yet: a modal one, a message box,
    /// a menu.
    void shownWithLoop();

private Q_SLOTS:
    void progressChanged();

private:
    struct Open
    {
        QPointer<QWidget> window;
        int level = 0;
    };

    QWidget* topmostThat(bool (*counts)(const QWidget*)) const;
    void noticeEvent(QWidget* notice, QEvent::Type type);
    void noticeGone(QWidget* notice);
    void shown(QWidget* window);
    void hidden(QWidget* window);
    void deferHidden(QWidget* window);
    void messageShown(QMessageBox* box);
    void watchProgress(QWidget* indicator);
    void deferProgress(QWidget* indicator);

    EventPrinter& m_printer;
    QList<Open> m_open;       // in the order in which they were shown
    QSet<QWidget*> m_notices; // that are shown
    QString m_lastProgress;
    QTimer m_flush; // runs when the component yields
};
} // namespace zul::host
