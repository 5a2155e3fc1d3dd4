// The Windows build draws its icons by packaging/windows/svg where Qt Svg's source cannot be had: the same pictures.
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

// Both renderers have one name; the stand-in is compiled under another one here.
#define QSvgRenderer StandInSvgRenderer
#include "packaging/windows/svg/qsvgrenderer.h"
#undef QSvgRenderer

namespace {

template <typename Renderer>
QImage drawn(const QByteArray& drawing, QSize size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    Renderer renderer(drawing);
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    renderer.render(&painter, image.rect());
    return image;
}

/// The largest difference of one channel of one pixel, of 255.
int difference(const QImage& a, const QImage& b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb one = a.pixel(x, y);
            const QRgb other = b.pixel(x, y);
            largest =
                std::max({largest, std::abs(qAlpha(one) - qAlpha(other)), std::abs(qRed(one) - qRed(other)),
                          std::abs(qGreen(one) - qGreen(other)), std::abs(qBlue(one) - qBlue(other))});
        }
    }
    return largest;
}

} // namespace

TEST(SvgStandIn, DrawsEveryIconAsQtDoes)
{
    int icons = 0;
    QDirIterator files(QStringLiteral(ZUL_ICONS), {QStringLiteral("*.svg")});
    while (files.hasNext()) {
        QFile file(files.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray drawing = file.readAll();
        ++icons;
        EXPECT_EQ(StandInSvgRenderer(drawing).defaultSize(), QSvgRenderer(drawing).defaultSize());
        for (const QSize size : {QSize(16, 16), QSize(24, 24), QSize(48, 32), QSize(150, 150)}) {
            EXPECT_LE(
                difference(drawn<QSvgRenderer>(drawing, size), drawn<StandInSvgRenderer>(drawing, size)), 2)
                << qPrintable(file.fileName()) << " at " << size.width();
        }
    }
    EXPECT_GT(icons, 30);
}

TEST(SvgStandIn, WhatIsNoDrawingIsRefused)
{
    for (const char* const broken :
         {"", "<svg", "<html/>", "<svg viewBox='0 0 0 0'/>", "<svg viewBox='0 0 16 16'><g>"}) {
        const StandInSvgRenderer renderer{QByteArray(broken)};
        EXPECT_FALSE(renderer.isValid()) << broken;
        QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter, image.rect());
        EXPECT_EQ(image.pixel(1, 1), 0U) << broken;
    }
}
