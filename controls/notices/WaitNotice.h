// A short notice that takes no answer.
#pragma once

#include <QFrame>
#include <QPointer>
#include <QTimer>

QT_FORWARD_DECLARE_CLASS(QLabel)

namespace zul {

/// A heading and a text at the lower edge of the window that owns the notice. It stops nothing, takes no focus
/// and goes away by itself, when it is clicked, or with its owner.
class WaitNotice : public QFrame
{
    Q_OBJECT
    Q_PROPERTY(QString heading READ heading WRITE setHeading)
    Q_PROPERTY(QString text READ text WRITE setText)

public:
    static constexpr int defaultDuration = 5000; // milliseconds

    /// Shows a notice over the owner's window, in the place of one that is still there. The notice belongs to
    /// that window and deletes itself when it has gone away.
    static WaitNotice* open(QWidget* owner, const QString& heading, const QString& text,
                            int duration = defaultDuration);

    explicit WaitNotice(QWidget* parent = nullptr);

    // Stands above a control of its window, such as the row of buttons, instead of at the window's lower edge.
    void standAbove(const QWidget* control);

    [[nodiscard]] QString heading() const;
    void setHeading(const QString& heading);
    [[nodiscard]] QString text() const;
    void setText(const QString& text);

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void place();

    [[nodiscard]] int lowerEdge() const;

    QPointer<const QWidget> m_above;
    QLabel* m_heading;
    QLabel* m_text;
    QTimer m_timer;
};

} // namespace zul
