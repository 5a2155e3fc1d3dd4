#include "controls/look/Background.h"

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

bool isTextInput(const QWidget* widget)
{
    return widget->inherits("QLineEdit") || widget->inherits("QTextEdit") ||
           widget->inherits("QPlainTextEdit") || widget->inherits("QComboBox");
}

/// The style sheet of the one control: its selector names the control's own property, because a rule without
/// it would reach the control's children.
QString paintRule(const QWidget* part, const QColor& color)
{
    const QString self = u"[zulPainted=\"true\"]"_s;
    const QString text = readableOn(color).name();
    QString rule = u"%1 { background-color: %2; color: %3; }"_s.arg(self, color.name(), text);
    if (isTextInput(part) ||
        readableOn(color) == readableOn(part->window()->palette().color(QPalette::Window))) {
        return rule;
    }
    // A light frame in a dark window, or the reverse: the captions upon it have to be readable, too.
    for (const char* caption : {"QLabel", "QCheckBox", "QRadioButton"}) {
        rule += u" %1 %2 { color: %3; }"_s.arg(self, QLatin1String(caption), text);
    }
    return rule + u" %1::title { color: %2; background-color: %3; }"_s.arg(self, text, color.name());
}

void paint(QWidget* part, const QColor& color)
{
    QString rule = paintRule(part, color);
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
