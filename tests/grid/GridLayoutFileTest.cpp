#include "grid/GridLayoutFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <random>

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
    const QString odd = QStringLiteral("\uFEFFa=b;[c], à €😀 '%\"\n\\");
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

TEST_F(GridLayoutFileTest, SaysWhyItCannotWrite)
{
    const std::vector<ColumnLayout> columns = {{QStringLiteral("A"), 0, 50, true}};
    const QString nowhere = folder.filePath(QStringLiteral("no/such/folder.ini"));
    EXPECT_TRUE(GridLayoutFile(nowhere).write(section, columns).error.contains(nowhere));
    EXPECT_FALSE(GridLayoutFile(folder.path()).write(section, columns));
    EXPECT_TRUE(
        GridLayoutFile(folder.path()).write(section, columns).error.contains(QStringLiteral("not a file")));
    EXPECT_FALSE(GridLayoutFile(QStringLiteral("/dev/null")).write(section, columns));
    EXPECT_FALSE(GridLayoutFile(path()).write(QStringLiteral("a\nb"), columns));
    EXPECT_FALSE(GridLayoutFile(path()).write(section, std::vector<ColumnLayout>(5000)));
    EXPECT_TRUE(GridLayoutFile(path()).write(section, columns).error.isEmpty());
}

TEST_F(GridLayoutFileTest, LosesNothingThatItCannotReadAgain)
{
    const std::vector<ColumnLayout> columns = {{QStringLiteral("A"), 0, 50, true}};
    writeFile(QByteArray(2 << 20, 'x'));
    EXPECT_FALSE(GridLayoutFile(path()).write(section, columns)) << "a file too large to be read is not lost";
    EXPECT_EQ(readFile().size(), 2 << 20);
    // One that is read still, but would not be with the section added.
    const QByteArray largest = "[Other]\n" + QByteArray((1 << 20) - 20, 'x') + '\n';
    writeFile(largest);
    EXPECT_FALSE(GridLayoutFile(path()).write(section, columns));
    EXPECT_EQ(readFile(), largest);
#ifdef Q_OS_LINUX
    // A file whose content cannot be read although it can be opened.
    const QString unreadable = folder.filePath(QStringLiteral("unreadable.ini"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/proc/self/mem"), unreadable));
    EXPECT_FALSE(GridLayoutFile(unreadable).read(section));
    EXPECT_TRUE(GridLayoutFile(unreadable).write(section, columns).error.contains(unreadable));
#endif
}

TEST_F(GridLayoutFileTest, WritesAWidthThatItReadsAgain)
{
    ASSERT_TRUE(GridLayoutFile(path()).write(
        section, {{QStringLiteral("A"), 0, 100000, true}, {QStringLiteral("B"), 1, -5, true}}));
    const auto read = GridLayoutFile(path()).read(section);
    ASSERT_TRUE(read);
    EXPECT_EQ((*read)[0].width, 32767);
    EXPECT_EQ((*read)[1].width, 0);
}

TEST_F(GridLayoutFileTest, TakesWhatAnyoneMayHaveWritten)
{
    const QByteArray good = "\xEF\xBB\xBF; by hand\r\n[Other]\r\nKey=C:\\Temp\\\r\n[ZUL]\nLayout=1\n"
                            "Column1=0,180,1,Cliente\nColumn2=1,0,0,a%5Cb%00%C3%A0\\n\n[Third]\nx=[y]\nlast";
    static constexpr char oddBytes[] = "[]=,%\\\"'\0\r\n0129-Zz\xFF\xC3\xA0;";
    const QByteArray odd(oddBytes, sizeof oddBytes - 1);
    const std::vector<ColumnLayout> columns = {{QStringLiteral("New\\\n]"), 0, 60, true}};
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        QByteArray content = good;
        for (auto changes = random() % 12; changes > 0; --changes) {
            const auto at = static_cast<qsizetype>(random() % static_cast<size_t>(content.size()));
            const char byte = odd[static_cast<qsizetype>(random() % static_cast<size_t>(odd.size()))];
            switch (random() % 4) {
            case 0:
                content[at] = byte;
                break;
            case 1:
                content.insert(at, byte);
                break;
            case 2:
                content.remove(at, 1 + static_cast<qsizetype>(random() % 5));
                break;
            default:
                content.insert(at, content.mid(at, static_cast<qsizetype>(random() % 40)));
            }
            content += 'x';
        }
        writeFile(content);
        if (const auto read = GridLayoutFile(path()).read(section)) {
            for (const ColumnLayout& column : *read) {
                EXPECT_TRUE(column.position >= 0 && column.width >= 0 && column.width <= 32767);
            }
        }
        // Whatever it was, a layout can be saved into it and is found again.
        ASSERT_TRUE(GridLayoutFile(path()).write(section, columns));
        const auto read = GridLayoutFile(path()).read(section);
        ASSERT_TRUE(read) << content.toPercentEncoding().constData();
        ASSERT_EQ(read->size(), 1U);
        EXPECT_EQ(read->front().field, columns.front().field);
        if (round % 8 == 0) {
            const QByteArray first = readFile();
            ASSERT_TRUE(GridLayoutFile(path()).write(section, columns));
            ASSERT_EQ(readFile(), first) << "saved again it is the same";
        }
    }
}
