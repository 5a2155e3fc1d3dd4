#include "controls/fields/DateField.h"

#include "base/LocaleInput.h"
#include "controls/fields/FieldParts.h"
#include "controls/look/CommonLook.h"
#include "controls/look/Icons.h"

#include <QCalendarWidget>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QTextCharFormat>
#include <QToolButton>
#include <QVBoxLayout>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// The dates that the database can hold.
const QDate earliestDate(1753, 1, 1);
const QDate latestDate(9999, 12, 31);

bool opensCalendar(const QKeyEvent& key)
{
    return (key.key() == Qt::Key_F4 && key.modifiers() == Qt::NoModifier) ||
           (key.key() == Qt::Key_Down && key.modifiers() == Qt::AltModifier);
}

} // namespace

DateField::DateField(QWidget* parent)
    : QWidget(parent)
    , m_textBox(new QLineEdit(this))
{
    m_textBox->setObjectName(u"textBox"_s);
    m_textBox->setPlaceholderText(datePlaceholder(locale()));
    m_textBox->setProperty("joinedField", true);
    m_textBox->installEventFilter(this);
    QToolButton* button = makeFieldButton(this, IconId::Calendar, u"calendarButton"_s, u"Calendario"_s);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(m_textBox, 1);
    row->addWidget(button);

    setFocusProxy(m_textBox);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);

    connect(button, &QToolButton::clicked, this, &DateField::openCalendar);
    connect(m_textBox, &QLineEdit::textChanged, this, &DateField::valueChanged);
}

QString DateField::text() const
{
    return m_textBox->text();
}

void DateField::setText(const QString& text)
{
    m_textBox->setText(text);
}

void DateField::setDate(const QDate& date)
{
    setText(dateText(date, locale()));
}

bool DateField::isDate() const
{
    return zul::isDate(text(), locale());
}

QDate DateField::date() const
{
    return toDate(text(), locale()).value_or(QDate());
}

bool DateField::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_textBox && isEnabled() && event->type() == QEvent::KeyPress &&
        opensCalendar(*static_cast<QKeyEvent*>(event))) {
        openCalendar();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void DateField::openCalendar()
{
    m_textBox->setFocus(Qt::PopupFocusReason);
    if (m_popup) {
        return;
    }
    m_popup = new QFrame(this, Qt::Popup);
    m_popup->setObjectName(u"calendarPopup"_s);
    m_popup->setAttribute(Qt::WA_DeleteOnClose);
    m_popup->setFrameShape(QFrame::StyledPanel);
    auto* calendar = new QCalendarWidget(m_popup);
    calendar->setObjectName(u"calendar"_s);
    calendar->setLocale(locale());
    calendar->setDateRange(earliestDate, latestDate);
    calendar->setFirstDayOfWeek(locale().firstDayOfWeek());
    calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    calendar->setSelectedDate(isDate() ? date() : QDate::currentDate());
    QTextCharFormat rest;
    rest.setForeground(QColor(0xb7, 0x1c, 0x1c));
    calendar->setWeekdayTextFormat(Qt::Saturday, rest);
    calendar->setWeekdayTextFormat(Qt::Sunday, rest);
    auto* box = new QVBoxLayout(m_popup);
    box->setContentsMargins(1, 1, 1, 1);
    box->addWidget(calendar);

    const auto take = [this](const QDate& picked) {
        setDate(picked);
        if (m_popup) {
            m_popup->close();
        }
        m_textBox->setFocus(Qt::PopupFocusReason);
    };
    connect(calendar, &QCalendarWidget::clicked, this, take);
    connect(calendar, &QCalendarWidget::activated, this, take);

    m_popup->adjustSize();
    QPoint at = mapToGlobal(QPoint(0, height()));
    if (const QScreen* where = screen()) {
        const QRect room = where->availableGeometry();
        if (at.y() + m_popup->height() > room.bottom()) {
            at.setY(mapToGlobal(QPoint(0, 0)).y() - m_popup->height());
        }
        at.setX(qBound(room.left(), at.x(), qMax(room.left(), room.right() - m_popup->width())));
        at.setY(qMax(room.top(), at.y()));
    }
    m_popup->move(at);
    m_popup->show();
    calendar->setFocus(Qt::PopupFocusReason);
}

void DateField::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::LocaleChange) {
        m_textBox->setPlaceholderText(datePlaceholder(locale()));
    }
    QWidget::changeEvent(event);
}

void DateField::showEvent(QShowEvent* event)
{
    lendAccessibleName(this, m_textBox);
    QWidget::showEvent(event);
}

} // namespace zul
