#include "host/session/Offscreen.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace zul::host {
namespace {

using namespace Qt::StringLiterals;

TEST(OffscreenTest, TheScreenIsDescribedInAFile)
{
    const QTemporaryDir folder;
    EXPECT_EQ(offscreenPlatform(folder.path()),
              "offscreen:configfile=" + QFile::encodeName(folder.filePath(u"screens.json"_s)));
    QFile file(folder.filePath(u"screens.json"_s));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("\"width\": 1920, \"height\": 1080"));
}

TEST(OffscreenTest, AFileThatCannotBeWrittenWholeIsNotNamed)
{
    const QTemporaryDir folder;
    EXPECT_EQ(offscreenPlatform(folder.path() + u"/none"_s), "offscreen");
    EXPECT_EQ(offscreenPlatform(QString()), "offscreen");
    ASSERT_TRUE(QDir(folder.path()).mkpath(u"taken/screens.json"_s));
    EXPECT_EQ(offscreenPlatform(folder.path() + u"/taken"_s), "offscreen");
    if (QFile::exists(u"/dev/full"_s)) {
        ASSERT_TRUE(QDir(folder.path()).mkpath(u"full"_s));
        ASSERT_TRUE(QFile::link(u"/dev/full"_s, folder.path() + u"/full/screens.json"_s));
        EXPECT_EQ(offscreenPlatform(folder.path() + u"/full"_s), "offscreen");
    }
}

TEST(OffscreenTest, AColonWouldEndTheNameOfTheFile)
{
    const QTemporaryDir folder(QDir::tempPath() + u"/a:b-XXXXXX"_s);
    ASSERT_TRUE(folder.isValid());
    EXPECT_EQ(offscreenPlatform(folder.path()), "offscreen");
}

} // namespace
} // namespace zul::host
