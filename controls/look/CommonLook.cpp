#include "controls/look/CommonLook.h"

#include "controls/look/Icons.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QPair>
#include <QStyle>
#include <QWidget>

#include <algorithm>

static void loadLook()
{
    Q_INIT_RESOURCE(icons);
}

namespace zul {

namespace {

// Every colour of the look, light and dark.
struct Colors
{
    const char* window;
    const char* panel;
    const char* base;
    const char* text;
    const char* quiet;
    const char* disabledText;
    const char* button;
    const char* disabledButton;
    const char* hover;
    const char* pressed;
    const char* frame;
    const char* mark;
    const char* scrollHandle;
    const char* accent;
    const char* accentHover;
    const char* accentPressed;
    const char* focusOnAccent;
};

constexpr Colors lightColors{
    "#ffffff", "#f7f8fa", "#ffffff", "#1f2933", "#55616d", "#9aa5b1", "#f5f7f9", "#f7f8fa", "#e9eff5",
    "#dde6ef", "#d8dce0", "#9aa5b1", "#c5ccd3", "#2f6fae", "#27609a", "#1f4f80", "#153a60",
};

constexpr Colors darkColors{
    "#22272e", "#2a3038", "#1b1f24", "#e6e9ec", "#aab4be", "#6b7681", "#2d333b", "#262b32", "#363e48",
    "#404a55", "#444c56", "#768390", "#545d68", "#3576b5", "#4085c6", "#2a6099", "#c3ddf5",
};

const Colors& colors()
{
    return isDark(QGuiApplication::palette()) ? darkColors : lightColors;
}

QColor named(const char* name)
{
    return QColor(QLatin1String(name));
}

QString pixels(int size)
{
    return QString::number(size) + QStringLiteral("px");
}

QString quoted(const QStringList& faces)
{
    return u'"' + faces.join(QStringLiteral("\", \"")) + u'"';
}

QString styleSheet(bool touch)
{
    loadLook();
    QFile file(QStringLiteral(":/zul/look.qss"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QString sheet = QString::fromUtf8(file.readAll());

    const Colors& c = colors();
    const int height = touch ? look::touchButtonHeight : look::buttonHeight;
    const int indicator = touch ? 24 : 14;
    QVector<QPair<QString, QString>> words{
        {QStringLiteral("@face"), u'"' + commonFont().family() + u'"'},
        {QStringLiteral("@fixedFace"), quoted(fixedFont().families())},
        {QStringLiteral("@window"), QLatin1String(c.window)},
        {QStringLiteral("@panel"), QLatin1String(c.panel)},
        {QStringLiteral("@base"), QLatin1String(c.base)},
        {QStringLiteral("@text"), QLatin1String(c.text)},
        {QStringLiteral("@quiet"), QLatin1String(c.quiet)},
        {QStringLiteral("@disabledText"), QLatin1String(c.disabledText)},
        {QStringLiteral("@button"), QLatin1String(c.button)},
        {QStringLiteral("@disabledButton"), QLatin1String(c.disabledButton)},
        {QStringLiteral("@hover"), QLatin1String(c.hover)},
        {QStringLiteral("@pressed"), QLatin1String(c.pressed)},
        {QStringLiteral("@frame"), QLatin1String(c.frame)},
        {QStringLiteral("@mark"), QLatin1String(c.mark)},
        {QStringLiteral("@scrollHandle"), QLatin1String(c.scrollHandle)},
        {QStringLiteral("@accent"), QLatin1String(c.accent)},
        {QStringLiteral("@accentHover"), QLatin1String(c.accentHover)},
        {QStringLiteral("@accentPressed"), QLatin1String(c.accentPressed)},
        {QStringLiteral("@focusOnAccent"), QLatin1String(c.focusOnAccent)},
        {QStringLiteral("@tone"), &c == &darkColors ? QStringLiteral("dark") : QStringLiteral("light")},
        // Sizes without a control's own border; its focus border is one pixel wider on both sides.
        {QStringLiteral("@inner"), pixels(height - 2)},
        {QStringLiteral("@innerFocus"), pixels(height - 4)},
        {QStringLiteral("@fieldButton"), pixels(touch ? look::touchButtonHeight - 2 : 26)},
        {QStringLiteral("@item"), pixels(touch ? 38 : 20)},
        {QStringLiteral("@check"), pixels(touch ? 38 : 18)},
        {QStringLiteral("@indicator"), pixels(indicator)},
        {QStringLiteral("@indicatorRadius"), pixels(indicator / 2 + 1)},
        {QStringLiteral("@scroll"), pixels(touch ? 20 : 12)},
    };
    // The longest word first: some words begin like others.
    std::sort(words.begin(), words.end(),
              [](const auto& left, const auto& right) { return left.first.size() > right.first.size(); });
    for (const auto& word : words)
        sheet.replace(word.first, word.second);
    return sheet;
}

QString firstInstalled(const QStringList& faces)
{
    const QStringList installed = QFontDatabase::families();
    for (const QString& face : faces) {
        if (installed.contains(face, Qt::CaseInsensitive))
            return face;
    }
    return {};
}

} // namespace

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

QPalette commonPalette()
{
    const Colors& c = colors();
    QPalette palette(named(c.button), named(c.window));
    palette.setColor(QPalette::Window, named(c.window));
    palette.setColor(QPalette::WindowText, named(c.text));
    palette.setColor(QPalette::Base, named(c.base));
    palette.setColor(QPalette::AlternateBase, named(c.panel));
    palette.setColor(QPalette::Text, named(c.text));
    palette.setColor(QPalette::Button, named(c.button));
    palette.setColor(QPalette::ButtonText, named(c.text));
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::ToolTipBase, named(c.base));
    palette.setColor(QPalette::ToolTipText, named(c.text));
    palette.setColor(QPalette::PlaceholderText, named(c.mark));
    palette.setColor(QPalette::Highlight, named(c.accent));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, named(c.accentHover));
    palette.setColor(QPalette::Light, named(c.panel));
    palette.setColor(QPalette::Midlight, named(c.hover));
    palette.setColor(QPalette::Mid, named(c.frame));
    palette.setColor(QPalette::Dark, named(c.mark));
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, named(c.disabledText));
    palette.setColor(QPalette::Disabled, QPalette::Base, named(c.disabledButton));
    palette.setColor(QPalette::Disabled, QPalette::Button, named(c.disabledButton));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, named(c.mark));
    return palette;
}

QFont commonFont()
{
    constexpr int points = 8;
    static const QString face =
        firstInstalled({QStringLiteral("Tahoma"), QStringLiteral("Wine Tahoma"), QStringLiteral("Segoe UI"),
                        QStringLiteral("DejaVu Sans Condensed"), QStringLiteral("Noto Sans"),
                        QStringLiteral("Open Sans"), QStringLiteral("DejaVu Sans")});
    QFont font = face.isEmpty() ? QApplication::font() : QFont(face);
    font.setPointSize(points);
    return font;
}

QFont fixedFont()
{
    constexpr int points = 10;
    QFont font(QStringList{QStringLiteral("Courier New"), QStringLiteral("Liberation Mono"),
                           QStringLiteral("Cousine"), QStringLiteral("DejaVu Sans Mono")},
               points);
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

QColor accentColor()
{
    return named(colors().accent);
}

QColor frameColor()
{
    return named(colors().frame);
}

void setPrimary(QWidget* button, bool primary)
{
    button->setProperty("primary", primary);
    button->style()->unpolish(button);
    button->style()->polish(button);
}

void applyCommonLook(QWidget* form, bool touch)
{
    form->setProperty("touch", touch);
    form->setProperty("zulForm", true);
    form->setAttribute(Qt::WA_StyledBackground);
    form->setPalette(commonPalette());
    form->setFont(commonFont());
    form->setStyleSheet(styleSheet(touch));
}

} // namespace zul
