#include "controls/Background.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QVariant>
#include <QWidget>

namespace zul {

namespace {

constexpr const char* colorProperty = "background";
constexpr const char* paintedProperty = "zulPainted";

// Fields made of parts are painted where their text stands.
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

void paint(QWidget* part, const QColor& color)
{
    const QColor text = readableOn(color);
    // The selector names the one control by its own property: a rule without it would reach its children.
    QString rule = QStringLiteral("[zulPainted=\"true\"] { background-color: %1;").arg(color.name());
    if (isTextInput(part))
        rule += QStringLiteral(" color: %1;").arg(text.name());
    rule += QStringLiteral(" }");
    part->setProperty(paintedProperty, true);
    part->setAttribute(Qt::WA_StyledBackground);
    if (!isTextInput(part)) {
        // Labels and captions upon it take their colour from the palette.
        QPalette palette = part->palette();
        palette.setColor(QPalette::Window, color);
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
            palette.setColor(group, QPalette::WindowText, text);
        part->setPalette(palette);
    }
    if (part->styleSheet() != rule)
        part->setStyleSheet(rule);
}

} // namespace

void setBackground(QWidget* widget, const QColor& color)
{
    if (widget == nullptr || !color.isValid())
        return;
    QWidget* part = paintedPart(widget);
    widget->setProperty(colorProperty, color);
    part->setProperty(colorProperty, color);
    paint(part, color);
}

void resetBackground(QWidget* widget)
{
    if (widget == nullptr)
        return;
    QWidget* part = paintedPart(widget);
    widget->setProperty(colorProperty, QVariant());
    part->setProperty(colorProperty, QVariant());
    part->setProperty(paintedProperty, QVariant());
    part->setPalette(QPalette());
    part->setStyleSheet(QString());
}

QColor effectiveBackground(const QWidget* widget)
{
    for (const QWidget* around = widget; around != nullptr; around = around->parentWidget()) {
        const QVariant set = around->property(colorProperty);
        if (set.isValid())
            return set.value<QColor>();
        const QPalette::ColorRole role = around->backgroundRole();
        if (around->isWindow() || around->autoFillBackground() || role == QPalette::Base ||
            (role == QPalette::Button && qobject_cast<const QAbstractButton*>(around) != nullptr))
            return around->palette().color(role);
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
