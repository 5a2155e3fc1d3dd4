// The field that holds a record chosen in a lookup dialog.
#pragma once

#include <QWidget>

QT_FORWARD_DECLARE_CLASS(QLineEdit)
QT_FORWARD_DECLARE_CLASS(QToolButton)

namespace zul {

/// A read-only text box with a choose button and a clear button. The field itself chooses nothing and clears
/// nothing: it asks for it, and the form that owns it writes the outcome into its two properties. Writing them
/// raises no signal, and each is independent of the other.
/// Keys: F4, Alt+Down, Space or Enter ask to choose; Delete or Backspace ask to clear.
class SelectorField : public QWidget
{
    Q_OBJECT
    /// The chosen record's id; less than 1 means that nothing is chosen.
    Q_PROPERTY(int selectedId READ selectedId WRITE setSelectedId)
    Q_PROPERTY(QString text READ text WRITE setText)

public:
    explicit SelectorField(QWidget* parent = nullptr);

    [[nodiscard]] int selectedId() const { return m_selectedId; }
    void setSelectedId(int id) { m_selectedId = id; }

    [[nodiscard]] QString text() const;
    void setText(const QString& text);

    /// Both at once.
    void setSelection(int id, const QString& text);

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void selectionRequested();
    void clearRequested();

protected:
    void showEvent(QShowEvent* event) override;

private:
    bool handleKey(int key, Qt::KeyboardModifiers modifiers);

    QLineEdit* m_textBox;
    int m_selectedId = -1;
};

} // namespace zul
