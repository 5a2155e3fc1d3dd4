// The field for a date that is typed, or picked in a calendar.
#pragma once

#include <QDate>
#include <QPointer>
#include <QWidget>

QT_FORWARD_DECLARE_CLASS(QLineEdit)

namespace zul {

class CalendarPopup;

/// The value is the text as typed: the field accepts any text and judges it only when asked. It is empty at
/// first and may be emptied again. Numbers and order of a date follow the widget's locale, see LocaleInput.h.
/// Keys: F4 or Alt+Down open the calendar.
class DateField : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY valueChanged)

public:
    explicit DateField(QWidget* parent = nullptr);

    [[nodiscard]] QString text() const;
    void setText(const QString& text);
    void setEmpty() { setText({}); }
    void setDate(const QDate& date); // an invalid date empties the field

    [[nodiscard]] bool isDate() const;
    /// The date that the text tells, or an invalid one.
    [[nodiscard]] QDate date() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

    void openCalendar();

Q_SIGNALS:
    /// After every change of the text, whoever made it.
    void valueChanged();

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    QLineEdit* m_textBox;
    QPointer<CalendarPopup> m_popup;
};

} // namespace zul
