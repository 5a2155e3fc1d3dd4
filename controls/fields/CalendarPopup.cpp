#include "controls/fields/CalendarPopup.h"

#include "controls/look/CommonLook.h"
#include "controls/touch/KeyPanel.h"
#include "controls/touch/Placement.h"

#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QPointer>
#include <QScreen>
#include <QTextCharFormat>
#include <QVBoxLayout>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// The dates that the database can hold.
const QDate earliestDate(1753, 1, 1);
const QDate latestDate(9999, 12, 31);

QRect onScreen(const QWidget* widget)
{
    return {widget->mapToGlobal(QPoint(0, 0)), widget->size()};
}

} // namespace

CalendarPopup::CalendarPopup(QWidget* field, const QDate& date)
    : QFrame(field, Qt::Popup)
    , m_field(field)
{
    setObjectName(u"calendarPopup"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setFrameShape(QFrame::StyledPanel);
    auto* calendar = new QCalendarWidget(this);
    calendar->setObjectName(u"calendar"_s);
    calendar->setLocale(locale());
    calendar->setDateRange(earliestDate, latestDate);
    calendar->setFirstDayOfWeek(locale().firstDayOfWeek());
    calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    calendar->setSelectedDate(date);
    QTextCharFormat rest;
    rest.setForeground(QColor(0xb7, 0x1c, 0x1c));
    calendar->setWeekdayTextFormat(Qt::Saturday, rest);
    calendar->setWeekdayTextFormat(Qt::Sunday, rest);
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(1, 1, 1, 1);
    box->addWidget(calendar);
    setFocusProxy(calendar);
    if (field->window()->property("touch").toBool()) {
        sizeForFingers();
    }

    const auto take = [this](const QDate& day) {
        close();
        Q_EMIT picked(day);
    };
    connect(calendar, &QCalendarWidget::clicked, this, take);
    connect(calendar, &QCalendarWidget::activated, this, take);
}

void CalendarPopup::sizeForFingers()
{
    // Seven days across; down, the names of the days and six weeks. They share what there is evenly.
    constexpr int days = 7;
    constexpr int lines = 7;
    auto* view = findChild<QAbstractItemView*>(u"qt_calendar_calendarview"_s);
    view->setMinimumSize(days * look::touchButtonHeight, lines * look::touchButtonHeight);
    // A calendar reckons its size from its font alone: what its parts need has to be asked for.
    auto* calendar = findChild<QCalendarWidget*>();
    const QList<QWidget*> parts = calendar->findChildren<QWidget*>();
    for (QWidget* part : parts) {
        part->ensurePolished();
    }
    calendar->setMinimumSize(calendar->layout()->totalMinimumSize());
}

void CalendarPopup::open()
{
    place();
    show();
    setFocus(Qt::PopupFocusReason);
}

void CalendarPopup::place()
{
    adjustSize();
    const QScreen* where = m_field->screen();
    const QRect room = where != nullptr ? where->availableGeometry() : m_field->window()->frameGeometry();
    const QRect field = onScreen(m_field);
    const QList<KeyPanel*> panels = KeyPanel::shownIn(m_field->window());
    QList<QRect> taken;
    for (const KeyPanel* panel : panels) {
        taken.append(onScreen(panel));
    }
    const std::optional<QRect> free = freePlace(field, size(), room, taken);
    setGeometry(free ? *free : placeBeside(field, size(), room));
    if (free) {
        return;
    }
    for (KeyPanel* panel : panels) {
        panel->giveWayTo(this);
    }
}

} // namespace zul
