#include "session/DataFile.h"

#include "session/Platform.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

TEST(DataFileTest, StandsBesideTheLibraryWhereThatCanBeWritten)
{
    EXPECT_EQ(dataFile(u"x.ini"_s), platform::componentFolder() + u"\\x.ini"_s);
}

TEST(DataFileTest, TheFirstFolderThatCanBeWrittenServes)
{
    const QTemporaryDir open;
    const QTemporaryDir other;
    // Nobody makes files below a file.
    QFile file(other.filePath(u"file"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    const QString closed = file.fileName();
    EXPECT_EQ(firstWritableFolder({open.path(), closed}), open.path());
    EXPECT_EQ(firstWritableFolder({closed, open.path()}), open.path());
    EXPECT_EQ(firstWritableFolder({closed, closed + u"/none"_s}), closed + u"/none"_s)
        << "the errors come later";
    const QString missing = open.path() + u"/città 'b' 😀/zul"_s;
    EXPECT_EQ(firstWritableFolder({closed, missing}), missing);
    EXPECT_TRUE(QDir(missing).exists());
    EXPECT_TRUE(QDir(missing).isEmpty()) << "trying leaves nothing";
}

TEST(DataFileTest, TheUsersFolderIsTheSystemsForDataOfThisComputer)
{
    EXPECT_EQ(QDir::toNativeSeparators(platform::userFolder()),
              QDir::toNativeSeparators(qEnvironmentVariable("LOCALAPPDATA") + u"\\Zul_MessageBuilder"_s));
}

} // namespace
} // namespace zul
