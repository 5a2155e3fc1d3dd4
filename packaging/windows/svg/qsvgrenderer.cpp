#include <qsvgrenderer.h>

#include <QPainter>
#include <QXmlStreamReader>

QT_BEGIN_NAMESPACE

namespace {

struct Style
{
    QString fill = QStringLiteral("#000000");
    qreal fillOpacity = 1;
    QString stroke = QStringLiteral("none");
    qreal strokeWidth = 1;
    Qt::PenCapStyle cap = Qt::FlatCap;
    Qt::PenJoinStyle join = Qt::SvgMiterJoin;
};

Style styled(Style style, const QXmlStreamAttributes& attributes)
{
    for (const QXmlStreamAttribute& attribute : attributes) {
        const QStringView name = attribute.name();
        const QStringView value = attribute.value();
        if (name == QLatin1String("fill")) {
            style.fill = value.toString();
        } else if (name == QLatin1String("fill-opacity")) {
            style.fillOpacity = value.toDouble();
        } else if (name == QLatin1String("stroke")) {
            style.stroke = value.toString();
        } else if (name == QLatin1String("stroke-width")) {
            style.strokeWidth = value.toDouble();
        } else if (name == QLatin1String("stroke-linecap")) {
            style.cap = value == QLatin1String("round")    ? Qt::RoundCap
                        : value == QLatin1String("square") ? Qt::SquareCap
                                                           : Qt::FlatCap;
        } else if (name == QLatin1String("stroke-linejoin")) {
            style.join = value == QLatin1String("round")   ? Qt::RoundJoin
                         : value == QLatin1String("bevel") ? Qt::BevelJoin
                                                           : Qt::SvgMiterJoin;
        }
    }
    return style;
}

// The commands of a path's text one after another.
class PathReader
{
public:
    explicit PathReader(QStringView text)
        : m_text(text)
    {}

    QPainterPath read()
    {
        QChar command;
        for (skip(); m_at < m_text.size(); skip()) {
            if (m_text[m_at].isLetter()) {
                command = m_text[m_at++];
            } else if (command.toUpper() == u'M') {
                command = command.isUpper() ? u'L' : u'l'; // more points of a move are lines
            }
            if (!draw(command)) {
                break;
            }
        }
        return m_path;
    }

private:
    void skip()
    {
        while (m_at < m_text.size() && (m_text[m_at].isSpace() || m_text[m_at] == u',')) {
            ++m_at;
        }
    }

    bool atNumber() const
    {
        if (m_at >= m_text.size()) {
            return false;
        }
        const QChar c = m_text[m_at];
        return c.isDigit() || c == u'-' || c == u'+' || c == u'.';
    }

    // "-.5", "4", "1.2": the next one begins at its sign or its second point.
    qreal number()
    {
        skip();
        const qsizetype begin = m_at;
        bool point = false;
        while (atNumber()) {
            const QChar c = m_text[m_at];
            if ((m_at > begin && (c == u'-' || c == u'+')) || (c == u'.' && point)) {
                break;
            }
            point = point || c == u'.';
            ++m_at;
        }
        return m_text.mid(begin, m_at - begin).toDouble();
    }

    QPointF point(bool relative)
    {
        const qreal x = number();
        const qreal y = number();
        return QPointF(x, y) + (relative ? m_path.currentPosition() : QPointF());
    }

    bool draw(QChar command)
    {
        const bool relative = command.isLower();
        const QPointF here = m_path.currentPosition();
        const QPointF before = std::exchange(m_control, QPointF());
        const bool curved = std::exchange(m_curved, false);
        switch (command.toUpper().unicode()) {
        case u'M':
            m_path.moveTo(point(relative));
            return true;
        case u'L':
            m_path.lineTo(point(relative));
            return true;
        case u'H':
            m_path.lineTo(number() + (relative ? here.x() : 0), here.y());
            return true;
        case u'V':
            m_path.lineTo(here.x(), number() + (relative ? here.y() : 0));
            return true;
        case u'C':
        case u'S': {
            const QPointF mirrored = curved ? 2 * here - before : here;
            const QPointF first = command.toUpper() == u'C' ? point(relative) : mirrored;
            m_control = point(relative);
            m_curved = true;
            m_path.cubicTo(first, m_control, point(relative));
            return true;
        }
        case u'Z':
            m_path.closeSubpath();
            return true;
        default:
            return false;
        }
    }

    QStringView m_text;
    qsizetype m_at = 0;
    QPainterPath m_path;
    QPointF m_control; // of the last curve's end
    bool m_curved = false;
};

} // namespace

QSvgRenderer::QSvgRenderer(const QByteArray& contents)
{
    QXmlStreamReader xml(contents);
    QList<Style> styles{Style()};
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement) {
            styles.removeLast();
        }
        if (token != QXmlStreamReader::StartElement) {
            continue;
        }
        const QXmlStreamAttributes attributes = xml.attributes();
        const auto value = [&](const char* name) { return attributes.value(QLatin1String(name)); };
        const Style style = styled(styles.last(), attributes);
        styles.append(style);
        Shape shape;
        if (xml.name() == QLatin1String("svg")) {
            const QList<QStringView> view = value("viewBox").split(u' ', Qt::SkipEmptyParts);
            m_size = QSize(value("width").toInt(), value("height").toInt());
            m_view = view.size() == 4 ? QRectF(view[0].toDouble(), view[1].toDouble(), view[2].toDouble(),
                                               view[3].toDouble())
                                      : QRectF(QPointF(), QSizeF(m_size));
        } else if (xml.name() == QLatin1String("path")) {
            shape.path = PathReader(value("d")).read();
        } else if (xml.name() == QLatin1String("circle")) {
            const qreal radius = value("r").toDouble();
            shape.path.addEllipse(QPointF(value("cx").toDouble(), value("cy").toDouble()), radius, radius);
        }
        if (shape.path.isEmpty()) {
            continue;
        }
        if (style.fill != QLatin1String("none")) {
            QColor color(style.fill);
            color.setAlphaF(static_cast<float>(style.fillOpacity));
            shape.fill = color;
        }
        shape.stroke = style.stroke == QLatin1String("none") ? QPen(Qt::NoPen)
                                                             : QPen(QColor(style.stroke), style.strokeWidth,
                                                                    Qt::SolidLine, style.cap, style.join);
        m_shapes.append(shape);
    }
    m_valid = !xml.hasError() && !m_view.isEmpty();
}

void QSvgRenderer::render(QPainter* painter, const QRectF& bounds) const
{
    if (!m_valid) {
        return;
    }
    qreal x = bounds.width() / m_view.width();
    qreal y = bounds.height() / m_view.height();
    if (m_mode != Qt::IgnoreAspectRatio) {
        x = y = qMin(x, y);
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(bounds.center());
    painter->scale(x, y);
    painter->translate(-m_view.center());
    for (const Shape& shape : m_shapes) {
        painter->setBrush(shape.fill);
        painter->setPen(shape.stroke);
        painter->drawPath(shape.path);
    }
    painter->restore();
}

QT_END_NAMESPACE
