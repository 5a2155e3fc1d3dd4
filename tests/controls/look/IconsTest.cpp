#include "controls/look/Icons.h"

#include <QImage>
#include <gtest/gtest.h>

#include <set>

namespace {

QImage drawn(const QIcon& icon, int side, QIcon::Mode mode = QIcon::Normal)
{
    return icon.pixmap(QSize(side, side), 1.0, mode).toImage();
}

bool isBlank(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 100) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

TEST(Icons, EveryIconDrawsSomethingOfItsOwnAtEverySize)
{
    std::set<QByteArray> pictures;
    const int last = static_cast<int>(zul::IconId::Preview);
    for (int id = 0; id <= last; ++id) {
        const QIcon icon = zul::icon(static_cast<zul::IconId>(id));
        EXPECT_FALSE(isBlank(drawn(icon, 16))) << id;
        const QImage large = drawn(icon, 64);
        EXPECT_EQ(large.width(), 64);
        EXPECT_FALSE(isBlank(large)) << id;
        pictures.insert(QByteArray(reinterpret_cast<const char*>(large.constBits()), large.sizeInBytes()));
    }
    EXPECT_EQ(pictures.size(), static_cast<std::size_t>(last) + 1);
}

TEST(Icons, ADisabledIconIsPalerAndOneOnTheAccentIsWhite)
{
    const QIcon plain = zul::icon(zul::IconId::Dots);
    const QPoint dot(32, 32);
    const int normal = drawn(plain, 64).pixelColor(dot).lightness();
    EXPECT_GT(drawn(plain, 64, QIcon::Disabled).pixelColor(dot).lightness(), normal + 40);
    const QIcon onAccent = zul::icon(zul::IconId::Dots, zul::IconTone::OnAccent);
    EXPECT_EQ(drawn(onAccent, 64).pixelColor(dot), QColor(Qt::white));
}

TEST(Icons, TheSharedImageListHasThreeNumbers)
{
    EXPECT_FALSE(zul::imageListIcon(1).isNull());
    EXPECT_FALSE(zul::imageListIcon(3).isNull());
    EXPECT_FALSE(zul::imageListIcon(9).isNull());
    EXPECT_TRUE(zul::imageListIcon(0).isNull());
    EXPECT_TRUE(zul::imageListIcon(2).isNull());
    EXPECT_EQ(drawn(zul::imageListIcon(9), 16), drawn(zul::icon(zul::IconId::Confirm), 16));
    EXPECT_EQ(drawn(zul::imageListIcon(3), 16), drawn(zul::icon(zul::IconId::NewText), 16));
}
