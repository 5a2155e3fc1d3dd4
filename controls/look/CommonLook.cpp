#include "controls/look/CommonLook.h"

#include "controls/look/OwnPalette.h"

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
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

/// Every colour of the look.
namespace color {
constexpr QRgb window = 0xffffffff;
constexpr QRgb panel = 0xfff7f8fa;
constexpr QRgb text = 0xff1f2933;
constexpr QRgb quiet = 0xff55616d; // also placeholders: 4.5:1 and more, on white and on yellow
constexpr QRgb disabledText = 0xff9aa5b1;
constexpr QRgb button = 0xfff5f7f9;
constexpr QRgb disabledButton = 0xfff7f8fa;
constexpr QRgb hover = 0xffe9eff5;
constexpr QRgb pressed = 0xffdde6ef;
constexpr QRgb frame = 0xffd8dce0;
constexpr QRgb mark = 0xff9aa5b1;
constexpr QRgb box = 0xff6b7681;
constexpr QRgb scrollHandle = 0xffc5ccd3;
constexpr QRgb accent = 0xff2f6fae;
constexpr QRgb accentHover = 0xff27609a;
constexpr QRgb accentPressed = 0xff1f4f80;
constexpr QRgb focusOnAccent = 0xff153a60;
constexpr QRgb white = 0xffffffff;
constexpr QRgb black = 0xff000000;
} // namespace color

QString named(QRgb rgb)
{
    return QColor(rgb).name();
}

QString pixels(int size)
{
    return QString::number(size) + u"px"_s;
}

// Sizes in points at a system font of the usual size.
constexpr qreal textPoints = 8;
constexpr qreal headingPoints = 11;
constexpr qreal fixedPoints = 10;
// The heading stands in a strip whose height is given.
constexpr qreal widestHeading = 19;

QString points(qreal size)
{
    return QString::number(size) + u"pt"_s;
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

    const int height = touch ? look::touchButtonHeight : look::buttonHeight;
    const int indicator = touch ? 24 : 14;
    QVector<QPair<QString, QString>> words{
        {u"@face"_s, u'"' + commonFont().family() + u'"'},
        {u"@fixedFace"_s, quoted(fixedFont().families())},
        {u"@points"_s, points(systemSized(textPoints))},
        {u"@headingPoints"_s, points(qMin(systemSized(headingPoints), widestHeading))},
        {u"@fixedPoints"_s, points(systemSized(fixedPoints))},
        {u"@keyPoints"_s, points(systemSized(fixedPoints))},
        {u"@window"_s, named(color::window)},
        {u"@panel"_s, named(color::panel)},
        {u"@text"_s, named(color::text)},
        {u"@quiet"_s, named(color::quiet)},
        {u"@disabledText"_s, named(color::disabledText)},
        {u"@button"_s, named(color::button)},
        {u"@disabledButton"_s, named(color::disabledButton)},
        {u"@hover"_s, named(color::hover)},
        {u"@pressed"_s, named(color::pressed)},
        {u"@frame"_s, named(color::frame)},
        {u"@mark"_s, named(color::mark)},
        {u"@box"_s, named(color::box)},
        {u"@scrollHandle"_s, named(color::scrollHandle)},
        {u"@accent"_s, named(color::accent)},
        {u"@accentHover"_s, named(color::accentHover)},
        {u"@accentPressed"_s, named(color::accentPressed)},
        {u"@focusOnAccent"_s, named(color::focusOnAccent)},
        // Sizes without a control's own border; its focus border is one pixel wider on both sides.
        {u"@inner"_s, pixels(height - 2)},
        {u"@innerFocus"_s, pixels(height - 4)},
        {u"@toolInner"_s, pixels(height - 5)},
        {u"@toolInnerFocus"_s, pixels(height - 7)},
        {u"@fieldButton"_s, pixels(touch ? look::touchButtonHeight - 2 : 26)},
        {u"@calendarButton"_s, pixels(touch ? look::touchButtonHeight : 24)},
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

const QPalette& commonPalette()
{
    static const QPalette palette = [] {
        QPalette made;
        const std::pair<QPalette::ColorRole, QRgb> roles[] = {
            {QPalette::WindowText, color::text},     {QPalette::Button, color::button},
            {QPalette::Light, color::panel},         {QPalette::Midlight, color::hover},
            {QPalette::Dark, color::mark},           {QPalette::Mid, color::frame},
            {QPalette::Text, color::text},           {QPalette::BrightText, color::white},
            {QPalette::ButtonText, color::text},     {QPalette::Base, color::window},
            {QPalette::Window, color::window},       {QPalette::Shadow, color::black},
            {QPalette::Highlight, color::accent},    {QPalette::HighlightedText, color::white},
            {QPalette::Link, color::accentHover},    {QPalette::LinkVisited, color::accentPressed},
            {QPalette::AlternateBase, color::panel}, {QPalette::ToolTipBase, color::window},
            {QPalette::ToolTipText, color::text},    {QPalette::PlaceholderText, color::quiet},
        };
        for (const auto& [role, rgb] : roles) {
            made.setColor(QPalette::All, role, QColor(rgb));
        }
        const std::pair<QPalette::ColorRole, QRgb> disabled[] = {
            {QPalette::WindowText, color::disabledText}, {QPalette::Text, color::disabledText},
            {QPalette::ButtonText, color::disabledText}, {QPalette::PlaceholderText, color::disabledText},
            {QPalette::Base, color::disabledButton},     {QPalette::Button, color::disabledButton},
            {QPalette::Highlight, color::mark},
        };
        for (const auto& [role, rgb] : disabled) {
            made.setColor(QPalette::Disabled, role, QColor(rgb));
        }
        return made;
    }();
    return palette;
}

qreal systemSized(qreal points)
{
    // What desktops begin with; at this size, and at smaller ones, the look has its own.
    constexpr qreal usual = 9;
    const QFont font = QApplication::font();
    const qreal system = font.pointSizeF() > 0 ? font.pointSizeF() : QFontInfo(font).pointSizeF();
    return qMax(1.0, system / usual) * points;
}

QFont commonFont()
{
    static const QString face =
        firstInstalled({u"Tahoma"_s, u"Wine Tahoma"_s, u"Segoe UI"_s, u"DejaVu Sans Condensed"_s,
                        u"Noto Sans"_s, u"Open Sans"_s, u"DejaVu Sans"_s});
    QFont font = face.isEmpty() ? QApplication::font() : QFont(face);
    font.setPointSizeF(systemSized(textPoints));
    return font;
}

QFont fixedFont()
{
    QFont font(QStringList{u"Courier New"_s, u"Liberation Mono"_s, u"Cousine"_s, u"DejaVu Sans Mono"_s});
    font.setPointSizeF(systemSized(fixedPoints));
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

QColor accentColor()
{
    return QColor(color::accent);
}

QColor frameColor()
{
    return QColor(color::frame);
}

QColor boxColor()
{
    return QColor(color::box);
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
    OwnPalette::keep(form);
    form->setFont(commonFont());
    form->setStyleSheet(styleSheet(touch));
}

} // namespace zul
