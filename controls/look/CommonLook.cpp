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

using namespace Qt::StringLiterals;

namespace {

/// Every colour of the look, light and dark.
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
    return QString::number(size) + u"px"_s;
}

QString quoted(const QStringList& faces)
{
    return u'"' + faces.join(u"\", \""_s) + u'"';
}

QString styleSheet(bool touch)
{
    loadLook();
    QFile file(u":/zul/look.qss"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QString sheet = QString::fromUtf8(file.readAll());

    const Colors& c = colors();
    const int height = touch ? look::touchButtonHeight : look::buttonHeight;
    const int indicator = touch ? 24 : 14;
    QVector<QPair<QString, QString>> words{
        {u"@face"_s, u'"' + commonFont().family() + u'"'},
        {u"@fixedFace"_s, quoted(fixedFont().families())},
        {u"@window"_s, QLatin1String(c.window)},
        {u"@panel"_s, QLatin1String(c.panel)},
        {u"@base"_s, QLatin1String(c.base)},
        {u"@text"_s, QLatin1String(c.text)},
        {u"@quiet"_s, QLatin1String(c.quiet)},
        {u"@disabledText"_s, QLatin1String(c.disabledText)},
        {u"@button"_s, QLatin1String(c.button)},
        {u"@disabledButton"_s, QLatin1String(c.disabledButton)},
        {u"@hover"_s, QLatin1String(c.hover)},
        {u"@pressed"_s, QLatin1String(c.pressed)},
        {u"@frame"_s, QLatin1String(c.frame)},
        {u"@mark"_s, QLatin1String(c.mark)},
        {u"@scrollHandle"_s, QLatin1String(c.scrollHandle)},
        {u"@accent"_s, QLatin1String(c.accent)},
        {u"@accentHover"_s, QLatin1String(c.accentHover)},
        {u"@accentPressed"_s, QLatin1String(c.accentPressed)},
        {u"@focusOnAccent"_s, QLatin1String(c.focusOnAccent)},
        {u"@tone"_s, &c == &darkColors ? u"dark"_s : u"light"_s},
        // Sizes without a control's own border; its focus border is one pixel wider on both sides.
        {u"@inner"_s, pixels(height - 2)},
        {u"@innerFocus"_s, pixels(height - 4)},
        {u"@fieldButton"_s, pixels(touch ? look::touchButtonHeight - 2 : 26)},
        {u"@item"_s, pixels(touch ? 38 : 20)},
        {u"@check"_s, pixels(touch ? 38 : 18)},
        {u"@indicator"_s, pixels(indicator)},
        {u"@indicatorRadius"_s, pixels(indicator / 2 + 1)},
        {u"@scroll"_s, pixels(touch ? 20 : 12)},
    };
    // The longest word first: some words begin like others.
    std::sort(words.begin(), words.end(),
              [](const auto& left, const auto& right) { return left.first.size() > right.first.size(); });
    for (const auto& word : words) {
        sheet.replace(word.first, word.second);
    }
    return sheet;
}

QString firstInstalled(const QStringList& faces)
{
    const QStringList installed = QFontDatabase::families();
    for (const QString& face : faces) {
        if (installed.contains(face, Qt::CaseInsensitive)) {
            return face;
        }
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
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, named(c.disabledText));
    }
    palette.setColor(QPalette::Disabled, QPalette::Base, named(c.disabledButton));
    palette.setColor(QPalette::Disabled, QPalette::Button, named(c.disabledButton));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, named(c.mark));
    return palette;
}

QFont commonFont()
{
    constexpr int points = 8;
    static const QString face =
        firstInstalled({u"Tahoma"_s, u"Wine Tahoma"_s, u"Segoe UI"_s, u"DejaVu Sans Condensed"_s,
                        u"Noto Sans"_s, u"Open Sans"_s, u"DejaVu Sans"_s});
    QFont font = face.isEmpty() ? QApplication::font() : QFont(face);
    font.setPointSize(points);
    return font;
}

QFont fixedFont()
{
    constexpr int points = 10;
    QFont font(QStringList{u"Courier New"_s, u"Liberation Mono"_s, u"Cousine"_s, u"DejaVu Sans Mono"_s},
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
