// The image format "svg".
#include <qsvgrenderer.h>

#include <QImage>
#include <QImageIOPlugin>
#include <QPainter>

QT_BEGIN_NAMESPACE

class SvgHandler : public QImageIOHandler
{
public:
    bool canRead() const override
    {
        setFormat("svg");
        return device() != nullptr && !device()->atEnd();
    }

    bool read(QImage* image) override
    {
        const QSvgRenderer renderer(device()->readAll());
        *image =
            QImage(m_size.isValid() ? m_size : renderer.defaultSize(), QImage::Format_ARGB32_Premultiplied);
        image->fill(Qt::transparent);
        QPainter painter(image);
        renderer.render(&painter, image->rect());
        return renderer.isValid();
    }

    bool supportsOption(ImageOption option) const override { return option == Size || option == ScaledSize; }

    QVariant option(ImageOption option) const override
    {
        return option == Size ? QVariant(QSvgRenderer(device()->peek(device()->size())).defaultSize())
                              : QVariant();
    }

    void setOption(ImageOption option, const QVariant& value) override
    {
        if (option == ScaledSize) {
            m_size = value.toSize();
        }
    }

private:
    QSize m_size;
};

class SvgPlugin : public QImageIOPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QImageIOHandlerFactoryInterface" FILE "svg.json")

public:
    Capabilities capabilities(QIODevice* device, const QByteArray& format) const override
    {
        const bool fits =
            format == "svg" || (format.isEmpty() && device != nullptr && device->peek(4) == "<svg");
        return fits ? CanRead : Capabilities();
    }

    QImageIOHandler* create(QIODevice* device, const QByteArray& format) const override
    {
        auto* handler = new SvgHandler;
        handler->setDevice(device);
        handler->setFormat(format);
        return handler;
    }
};

QT_END_NAMESPACE

#include "imageplugin.moc"
