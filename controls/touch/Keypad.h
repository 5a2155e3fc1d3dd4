// The on-screen keypad for numbers and dates.
#pragma once

#include "controls/touch/KeyPanel.h"

namespace zul {

/// Digits, the locale's decimal separator, minus, backspace, clear, next field and hide. For a date field the
/// decimal separator's key types "/". It opens beside its field, inside the window.
/// The keys are named key0 to key9, keySeparator, keyMinus, keyBackspace, keyClear, keyNext and keyHide.
class Keypad : public KeyPanel
{
    Q_OBJECT

public:
    explicit Keypad(QWidget* parent = nullptr);

    /// Binds the keypad to a field; null binds it to none.
    void attach(QWidget* field, bool date = false);
    [[nodiscard]] bool forDate() const { return m_date; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    [[nodiscard]] QRect placed(const QRect& field, const QRect& window,
                               const QList<QRect>& taken) const override;
    [[nodiscard]] bool isLarge() const override { return false; }
    void changeEvent(QEvent* event) override;

private:
    void captionSeparator();

    QPushButton* m_separator;
    bool m_date = false;
};

} // namespace zul
