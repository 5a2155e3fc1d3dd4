// The progress of a long task, shown inside the window that does it.
#pragma once

#include <QFrame>

QT_FORWARD_DECLARE_CLASS(QLabel)
QT_FORWARD_DECLARE_CLASS(QProgressBar)

namespace zul {

/// A caption over a progress bar, in the middle of its parent. It begins hidden; show, hide, raise and
/// isVisible are QWidget's own.
class WaitIndicator : public QFrame
{
    Q_OBJECT
    Q_PROPERTY(QString caption READ caption WRITE setCaption NOTIFY captionChanged)
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)

public:
    explicit WaitIndicator(QWidget* parent = nullptr);

    [[nodiscard]] QString caption() const;
    void setCaption(const QString& caption);

    /// Kept as given; the bar is empty at 0 or less, and full at the maximum (100 at first) or more.
    [[nodiscard]] int value() const { return m_value; }
    void setValue(int value);
    [[nodiscard]] int maximum() const;
    void setMaximum(int maximum); // at least 1

    bool eventFilter(QObject* watched, QEvent* event) override;
    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    void captionChanged(const QString& caption);
    void valueChanged(int value);

protected:
    void showEvent(QShowEvent* event) override;
    bool event(QEvent* event) override;

private:
    void watchParent();
    void centre();

    QLabel* m_caption;
    QProgressBar* m_bar;
    int m_value = 0;
};

} // namespace zul
