// Draws what an SVG file of lines holds: groups, paths (M L H V C S Z in both cases) and circles, with their fill,
// fill-opacity, stroke, stroke-width, stroke-linecap and stroke-linejoin.
#ifndef ZUL_QSVGRENDERER_H
#define ZUL_QSVGRENDERER_H

#include <QByteArray>
#include <QList>
#include <QPainterPath>
#include <QPen>
#include <QRectF>
#include <QSize>

QT_BEGIN_NAMESPACE

class QPainter;

class QSvgRenderer
{
public:
    explicit QSvgRenderer(const QByteArray& contents);

    bool isValid() const { return m_valid; }
    QSize defaultSize() const { return m_size; }
    void setAspectRatioMode(Qt::AspectRatioMode mode) { m_mode = mode; }
    void render(QPainter* painter, const QRectF& bounds) const;

private:
    struct Shape
    {
        QPainterPath path;
        QBrush fill;
        QPen stroke;
    };

    bool m_valid = false;
    QSize m_size;
    QRectF m_view;
    Qt::AspectRatioMode m_mode = Qt::IgnoreAspectRatio;
    QList<Shape> m_shapes;
};

QT_END_NAMESPACE

#endif
