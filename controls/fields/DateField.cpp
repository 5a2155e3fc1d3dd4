#include "controls/fields/DateField.h"

#include "base/LocaleInput.h"
#include "controls/fields/CalendarPopup.h"
#include "controls/fields/FieldParts.h"
#include "controls/look/Icons.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

const QString calendarKeys = u"F4 o Alt+Giù: calendario."_s;

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
    m_textBox->setToolTip(calendarKeys);
    m_textBox->installEventFilter(this);
    QToolButton* button =
        makeFieldButton(this, IconId::Calendar, u"calendarButton"_s, u"Calendario"_s, u"F4 o Alt+Giù"_s);

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
    m_popup = new CalendarPopup(this, isDate() ? date() : QDate::currentDate());
    connect(m_popup, &CalendarPopup::picked, this, [this](const QDate& picked) {
        setDate(picked);
        m_textBox->setFocus(Qt::PopupFocusReason);
    });
    m_popup->open();
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
    lendAccessibleName(this, m_textBox, calendarKeys);
    QWidget::showEvent(event);
}

} // namespace zul
