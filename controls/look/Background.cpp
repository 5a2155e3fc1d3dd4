#include "controls/look/Background.h"

#include "controls/look/CommonLook.h"

#include <QPushButton>
#include <QToolButton>
#include <QVariant>
#include <QWidget>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* colorProperty = "background";
constexpr const char* paintedProperty = "zulPainted";
const QString formMarker = u"/* painted */"_s;

/// Fields made of parts are painted where their text stands.
QWidget* paintedPart(QWidget* widget)
{
    QWidget* proxy = widget->focusProxy();
    return proxy != nullptr && widget->isAncestorOf(proxy) ? paintedPart(proxy) : widget;
}

/// The style sheet of the one control: its selector names the control's own property, because a rule without
/// it would reach the control's children. A colour for the text is only there when the palette's cannot be read: it
/// would make an input's placeholder a paler shade of it.
QString paintRule(const QColor& color)
{
    const QColor text = readableOn(color);
    const bool isOwn = text == commonPalette().color(QPalette::Text);
    return u"[zulPainted=\"true\"] { background-color: %1;%2 }"_s.arg(
        color.name(), isOwn ? QString() : u" color: %1;"_s.arg(text.name()));
}

void paint(QWidget* part, const QColor& color)
{
    QString rule = paintRule(color);
    part->setProperty(paintedProperty, true);
    part->setAttribute(Qt::WA_StyledBackground);
    // A form keeps the style sheet of the common look in front of its own rule.
    if (part->isWindow()) {
        rule.prepend(part->styleSheet().section(formMarker, 0, 0) + formMarker);
    }
    if (part->styleSheet() != rule) {
        part->setStyleSheet(rule);
    }
}

} // namespace

void setBackground(QWidget* widget, const QColor& color)
{
    if (widget == nullptr || !color.isValid()) {
        return;
    }
    QWidget* part = paintedPart(widget);
    widget->setProperty(colorProperty, color);
    part->setProperty(colorProperty, color);
    paint(part, color);
}

QColor effectiveBackground(const QWidget* widget)
{
    for (const QWidget* around = widget; around != nullptr; around = around->parentWidget()) {
        const QVariant set = around->property(colorProperty);
        if (set.isValid()) {
            return set.value<QColor>();
        }
        const QPalette::ColorRole role = around->backgroundRole();
        if (around->isWindow() || around->autoFillBackground() || role == QPalette::Base ||
            qobject_cast<const QPushButton*>(around) != nullptr ||
            qobject_cast<const QToolButton*>(around) != nullptr) {
            return around->palette().color(role);
        }
    }
    return {};
}

QColor readableOn(const QColor& background)
{
    // The weights of the eye for red, green and blue.
    const int brightness =
        (background.red() * 299 + background.green() * 587 + background.blue() * 114) / 1000;
    return brightness >= 128 ? QColor(0x1f, 0x29, 0x33) : QColor(0xf2, 0xf4, 0xf6);
}

} // namespace zul
