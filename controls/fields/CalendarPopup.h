// The calendar that opens beside a date field.
#pragma once

#include <QDate>
#include <QFrame>

namespace zul {

/// A calendar beside its field, or where else the screen has room: it covers neither the field nor a keypad or
/// keyboard of the field's window. Where no place is free for that, those are away as long as it is open. In a window
/// in touch mode its days are of a finger's size. It deletes itself when it closes.
class CalendarPopup : public QFrame
{
    Q_OBJECT

public:
    /// Shows the month of the date, which is selected.
    CalendarPopup(QWidget* field, const QDate& date);

    /// Opens it and gives it the keyboard.
    void open();

Q_SIGNALS:
    /// The operator has picked a date; the popup is closed.
    void picked(const QDate& date);

private:
    void sizeForFingers();
    void place();

    QWidget* m_field;
};

} // namespace zul
