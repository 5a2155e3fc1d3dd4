#include "controls/look/Icons.h"

#include <QFile>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

/// A static library's resources are only there when somebody asks for them by name, outside of any namespace.
static void loadIconFiles()
{
    Q_INIT_RESOURCE(icons);
}

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* lineColor = "#3a4a5a"; // what the drawings use

const char* fileName(IconId id)
{
    switch (id) {
    case IconId::Search:
        return "search";
    case IconId::Advanced:
        return "advanced";
    case IconId::Cancel:
        return "cancel";
    case IconId::Close:
        return "close";
    case IconId::NewText:
        return "new-text";
    case IconId::Confirm:
        return "confirm";
    case IconId::Folder:
        return "folder";
    case IconId::Clear:
        return "clear";
    case IconId::Dots:
        return "dots";
    case IconId::Calendar:
        return "calendar";
    case IconId::Keyboard:
        return "keyboard";
    case IconId::Send:
        return "send";
    case IconId::SelectAll:
        return "select-all";
    case IconId::DeselectAll:
        return "deselect-all";
    case IconId::SelectHighlighted:
        return "select-highlighted";
    case IconId::DeselectHighlighted:
        return "deselect-highlighted";
    case IconId::Next:
        return "next";
    case IconId::Start:
        return "start";
    case IconId::Disable:
        return "disable";
    case IconId::Save:
        return "save";
    case IconId::Customer:
        return "customer";
    case IconId::Backspace:
        return "backspace";
    case IconId::Shift:
        return "shift";
    case IconId::Enter:
        return "enter";
    case IconId::HideKeyboard:
        return "hide-keyboard";
    case IconId::Preview:
        return "preview";
    case IconId::Previous:
        return "previous";
    }
    return "";
}

/// Draws an icon's file at the size that is asked for, in the colour of its tone and mode.
class LineIconEngine : public QIconEngine
{
public:
    LineIconEngine(IconId id, IconTone tone)
        : m_id(id)
        , m_tone(tone)
    {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        Q_UNUSED(state)
        QFile file(u":/zul/icons/%1.svg"_s.arg(QLatin1String(fileName(m_id))));
        if (!file.open(QIODevice::ReadOnly)) {
            return;
        }
        QByteArray drawing = file.readAll();
        drawing.replace(lineColor, color(mode).name().toLatin1());
        QSvgRenderer renderer(drawing);
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        renderer.render(painter, rect);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap image(size);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return image;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new LineIconEngine(*this); }

private:
    [[nodiscard]] QColor color(QIcon::Mode mode) const
    {
        if (mode == QIcon::Disabled) {
            return {0xb4, 0xbc, 0xc4};
        }
        return m_tone == IconTone::OnAccent || mode == QIcon::Selected ? QColor(Qt::white)
                                                                       : QColor(QLatin1String(lineColor));
    }

    IconId m_id;
    IconTone m_tone;
};

} // namespace

QIcon icon(IconId id, IconTone tone)
{
    loadIconFiles();
    return QIcon(new LineIconEngine(id, tone));
}

QIcon imageListIcon(int number, IconTone tone)
{
    constexpr int cancelImage = 1;
    constexpr int newTextImage = 3;
    constexpr int confirmImage = 9;
    switch (number) {
    case cancelImage:
        return icon(IconId::Cancel, tone);
    case newTextImage:
        return icon(IconId::NewText, tone);
    case confirmImage:
        return icon(IconId::Confirm, tone);
    default:
        return {};
    }
}

} // namespace zul
