#include "grid/GridLayoutFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace zul;

namespace {

class GridLayoutFileTest : public ::testing::Test
{
protected:
    QString path() const { return folder.filePath(QStringLiteral("Zul_MessageBuilderGrd.ini")); }

    void writeFile(const QByteArray& content) const
    {
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }

    QByteArray readFile() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    const QString section = QStringLiteral("ZUL");
    QTemporaryDir folder;
};

} // namespace

TEST_F(GridLayoutFileTest, ReadsWhatItWrote)
{
    const QString odd = QStringLiteral("a=b;[c], à €😀 '%\"\n\\");
    ASSERT_TRUE(GridLayoutFile(path()).write(
        section, {{odd, 1, 120, true}, {QString(), 0, 0, false}, {QStringLiteral("Paese"), 2, 32767, true}}));
    const auto read = GridLayoutFile(path()).read(section);
    ASSERT_TRUE(read);
    ASSERT_EQ(read->size(), 3U);
    EXPECT_EQ((*read)[0].field, odd);
    EXPECT_EQ((*read)[0].position, 1);
    EXPECT_EQ((*read)[0].width, 120);
    EXPECT_TRUE((*read)[0].visible);
    EXPECT_EQ((*read)[1].field, QString());
    EXPECT_FALSE((*read)[1].visible);
    EXPECT_EQ((*read)[2].width, 32767);
}

TEST_F(GridLayoutFileTest, KeepsOtherSections)
{
    const QByteArray before = "; by hand\r\n[Other]\r\nKey=value\r\n";
    const QByteArray after = "[Third]\nx=[y]\nlast";
    writeFile(before + "[zul]\nLayout=1\nColumn1=0,50,1,Old\n" + after);
    ASSERT_TRUE(GridLayoutFile(path()).write(section, {{QStringLiteral("New"), 0, 60, true}}));
    EXPECT_EQ(readFile(), before + "[ZUL]\nLayout=1\nColumn1=0,60,1,New\n" + after);
    ASSERT_TRUE(GridLayoutFile(path()).write(QStringLiteral("More"), {{QStringLiteral("A"), 0, 1, true}}));
    EXPECT_EQ(GridLayoutFile(path()).read(section)->front().field, QStringLiteral("New"));
    EXPECT_EQ(GridLayoutFile(path()).read(QStringLiteral("more"))->front().field, QStringLiteral("A"));
}

TEST_F(GridLayoutFileTest, AMissingFileOrSectionIsNone)
{
    EXPECT_FALSE(GridLayoutFile(path()).read(section));
    EXPECT_FALSE(GridLayoutFile(QString()).read(section));
    EXPECT_FALSE(GridLayoutFile(folder.path()).read(section)) << "a folder is no file";
    writeFile("[Other]\nLayout=1\nColumn1=0,50,1,A\n");
    EXPECT_FALSE(GridLayoutFile(path()).read(section));
}

TEST_F(GridLayoutFileTest, ADamagedSectionIsNone)
{
    for (const QByteArray& content :
         {QByteArray("[ZUL]\n"), QByteArray("[ZUL]\nLayout=1\n"),
          QByteArray("[ZUL]\nLayout=2\nColumn1=0,50,1,A\n"), QByteArray("[ZUL]\nColumn1=0,50,1,A\n"),
          QByteArray("[ZUL]\nLayout=1\nColumn1=0,50,1\n"), QByteArray("[ZUL]\nLayout=1\nColumn1=x,50,1,A\n"),
          QByteArray("[ZUL]\nLayout=1\nColumn1=-1,50,1,A\n"),
          QByteArray("[ZUL]\nLayout=1\nColumn1=0,-50,1,A\n"),
          QByteArray("[ZUL]\nLayout=1\nColumn1=0,99999999999999999999,1,A\n"),
          QByteArray("[ZUL]\nLayout=1\nColumn1=0,50,2,A\n"),
          QByteArray("[ZUL]\nLayout=1\nColumn1=0,5,1,A\nColumn2=0,5,1,B\n"),
          QByteArray("\0\xFF\xFE[ZUL]\0", 9), QByteArray(2 << 20, '[')}) {
        writeFile(content);
        EXPECT_FALSE(GridLayoutFile(path()).read(section)) << content.left(60).constData();
    }
}

TEST_F(GridLayoutFileTest, SaysWhenItCannotWrite)
{
    const std::vector<ColumnLayout> columns = {{QStringLiteral("A"), 0, 50, true}};
    EXPECT_FALSE(
        GridLayoutFile(folder.filePath(QStringLiteral("no/such/folder.ini"))).write(section, columns));
    EXPECT_FALSE(GridLayoutFile(folder.path()).write(section, columns));
    writeFile(QByteArray(2 << 20, 'x'));
    EXPECT_FALSE(GridLayoutFile(path()).write(section, columns)) << "a file too large to be read is not lost";
    EXPECT_EQ(readFile().size(), 2 << 20);
}
