#include "session/WritableFolder.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using zul::firstWritableFolder;
using namespace Qt::StringLiterals;

TEST(WritableFolder, TheFirstOneInWhichAFileCanBeMade)
{
    const QTemporaryDir first;
    const QTemporaryDir second;
    EXPECT_EQ(firstWritableFolder({first.path(), second.path()}), first.path());
    EXPECT_EQ(firstWritableFolder({first.filePath(u"no such folder"_s), second.path()}), second.path());
    EXPECT_TRUE(QDir(first.path()).isEmpty()) << "nothing stays of the trial";
    EXPECT_FALSE(QDir(first.filePath(u"no such folder"_s)).exists()) << "only the last one is made";
}

TEST(WritableFolder, TheLastOneIsMadeWithNamesOfAnyKind)
{
    const QTemporaryDir folder;
    const QString own = folder.filePath(u"Città à è € 😀/Zul_MessageBuilder"_s);
    EXPECT_EQ(firstWritableFolder({folder.filePath(u"none"_s), own}), own);
    EXPECT_TRUE(QDir(own).exists());
    EXPECT_EQ(firstWritableFolder({}), QString());
}
