// Icons out of files of the format "svg": sharp in every size.
#include <qsvgrenderer.h>

#include <QFile>
#include <QIconEngine>
#include <QIconEnginePlugin>
#include <QPainter>
#include <QPixmap>

QT_BEGIN_NAMESPACE

class SvgIcon : public QIconEngine
{
public:
    void addFile(const QString& name, const QSize&, QIcon::Mode, QIcon::State) override
    {
        QFile file(name);
        if (file.open(QIODevice::ReadOnly)) {
            m_drawing = file.readAll();
        }
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override
    {
        QSvgRenderer renderer(m_drawing);
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        renderer.render(painter, rect);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap image(size);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return image;
    }

    QIconEngine* clone() const override { return new SvgIcon(*this); }

private:
    QByteArray m_drawing;
};

class SvgIconPlugin : public QIconEnginePlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QIconEngineFactoryInterface_iid FILE "svg.json")

public:
    QIconEngine* create(const QString& name) override
    {
        auto* icon = new SvgIcon;
        if (!name.isEmpty()) {
            icon->addFile(name, QSize(), QIcon::Normal, QIcon::Off);
        }
        return icon;
    }
};

QT_END_NAMESPACE

#include "iconplugin.moc"
