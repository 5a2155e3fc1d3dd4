#include "mainwindow/FieldNote.h"

#include <QEvent>
#include <QMetaObject>
#include <QScopedValueRollback>
#include <QStyle>
#include <QWidget>

namespace zul {

namespace {

constexpr const char* UnusableProperty = "unusable";

} // namespace

QWidget* FieldNote::textBox(QWidget* field)
{
    while (field->focusProxy() != nullptr) {
        field = field->focusProxy();
    }
    return field;
}

FieldNote::FieldNote(QWidget* field)
    : QObject(field)
    , m_box(textBox(field))
    , m_ownToolTip(m_box->toolTip())
    , m_ownDescription(m_box->accessibleDescription())
{
    m_box->installEventFilter(this);
}

void FieldNote::set(const QString& text, bool unusable)
{
    if (m_box->property(UnusableProperty).toBool() != unusable) {
        m_box->setProperty(UnusableProperty, unusable);
        m_box->style()->unpolish(m_box);
        m_box->style()->polish(m_box);
    }
    if (m_text == text) {
        return;
    }
    m_text = text;
    apply();
}

bool FieldNote::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_box || m_applying) {
        return false;
    }
    if (event->type() == QEvent::ToolTipChange) {
        m_ownToolTip = m_box->toolTip();
        apply();
    }
    // A field of parts describes its text box when it shows.
    if (event->type() == QEvent::Show) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_box->accessibleDescription() != noted(m_ownDescription)) {
                    m_ownDescription = m_box->accessibleDescription();
                    apply();
                }
            },
            Qt::QueuedConnection);
    }
    return false;
}

void FieldNote::apply()
{
    const QScopedValueRollback applying(m_applying, true);
    m_box->setToolTip(noted(m_ownToolTip));
    m_box->setAccessibleDescription(noted(m_ownDescription));
}

QString FieldNote::noted(const QString& own) const
{
    if (m_text.isEmpty() || own.isEmpty()) {
        return own + m_text;
    }
    return own + QLatin1Char('\n') + m_text;
}

} // namespace zul
