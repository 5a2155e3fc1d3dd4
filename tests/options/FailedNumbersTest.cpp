#include "options/FailedNumbers.h"

#include "hostlib/Error.h"
#include "tests/support/ComponentTest.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;
using test::errorOf;

class FailedNumbersTest : public ::testing::Test
{
protected:
    QStringList read(const QByteArray& content)
    {
        write(content);
        FailedNumbersReader report = open(u"export.txt"_s);
        QStringList lines = linesOf(report);
        EXPECT_EQ(report.position(), content.size());
        EXPECT_EQ(report.size(), content.size());
        return lines;
    }

    void write(const QByteArray& content)
    {
        QFile file(folder.filePath(u"export.txt"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    static QStringList linesOf(FailedNumbersReader& report)
    {
        QStringList lines;
        while (const std::optional<QString> line = report.next()) {
            lines.append(*line);
        }
        return lines;
    }

    FailedNumbersReader open(const QString& name) const
    {
        return FailedNumbersReader(folder.path() + u'\\' + name);
    }

    QTemporaryDir folder;
};

TEST_F(FailedNumbersTest, LinesEndAtEveryKindOfBreakAndTheLastMayLackIt)
{
    const QStringList two{u"1"_s, u"2"_s};
    EXPECT_EQ(read("1\r\n2\r\n"), two);
    EXPECT_EQ(read("1\n2\n"), two);
    EXPECT_EQ(read("1\r2\r"), two);
    EXPECT_EQ(read("1\r\n2"), two);
    EXPECT_EQ(read("1\n\n2"), (QStringList{u"1"_s, u""_s, u"2"_s}));
    EXPECT_EQ(read("1\n\n"), (QStringList{u"1"_s, u""_s}));
    EXPECT_EQ(read("\n"), QStringList{u""_s});
    EXPECT_EQ(read(""), QStringList());
}

TEST_F(FailedNumbersTest, WholeLinesAreKept)
{
    EXPECT_EQ(read(" 333;x\ty \n\xC3\xA0 'q' %\n"), (QStringList{u" 333;x\ty "_s, u"à 'q' %"_s}));
    EXPECT_EQ(read(QByteArray(10000, '3')).first().size(), 10000);
    EXPECT_EQ(read("\xFF\xFE\n1\n").last(), u"1"_s) << "bytes that are no text do not end the reading";
}

TEST_F(FailedNumbersTest, LinesAreWholeWhereverTheReadingIsCut)
{
    // Pieces of the file end in the midst of a line, of a character and of a line break.
    for (int before = 65'526; before <= 65'536; ++before) {
        const QByteArray first(before, '3');
        EXPECT_EQ(read(first + "\r\n\xC3\xA0\r\n4"),
                  (QStringList{QString::fromLatin1(first), u"à"_s, u"4"_s}))
            << before;
    }
    write("12\r\n\xE2\x82\xAC\r\r\n\n34");
    const QString path = folder.path() + u"\\export.txt"_s;
    for (qsizetype piece = 1; piece < 16; ++piece) {
        FailedNumbersReader wide(path, {4, piece});
        EXPECT_EQ(linesOf(wide), (QStringList{u"12"_s, u"€"_s, u""_s, u""_s, u"34"_s})) << piece;
        FailedNumbersReader narrow(path, {2, piece});
        EXPECT_EQ(errorOf([&] { linesOf(narrow); }), 14) << piece;
    }
    QByteArray many;
    QStringList expected;
    for (int i = 0; i < 20'000; ++i) {
        many += QByteArray::number(i) + "\r\n";
        expected.append(QString::number(i));
    }
    EXPECT_EQ(read(many), expected);
}

TEST_F(FailedNumbersTest, ALineWithoutEndIsAnErrorBeforeItIsInMemory)
{
    QFile file(folder.filePath(u"export.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("1\n");
    constexpr qint64 Gigabyte = 1'073'741'824;
    ASSERT_TRUE(file.resize(Gigabyte)) << "a file with a hole";
    file.close();
    FailedNumbersReader report = open(u"export.txt"_s);
    EXPECT_EQ(report.next(), u"1"_s);
    EXPECT_EQ(errorOf([&] { report.next(); }), 14);
    EXPECT_LT(report.position(), 1'000'000) << "the rest was not read";

    const QByteArray longest(FailedNumbersReader::Bounds{}.longestLine, '3');
    EXPECT_EQ(read(longest + "\n1").size(), 2);
    EXPECT_EQ(errorOf([&] { read(longest + "3\n1"); }), 14);
}

TEST_F(FailedNumbersTest, AMissingFileIsFileNotFound)
{
    EXPECT_EQ(errorOf([&] { open(u"manca.txt"_s); }), 53);
    QDir(folder.path()).mkdir(u"export.txt"_s);
    EXPECT_EQ(errorOf([&] { open(u"export.txt"_s); }), 53);
}

TEST_F(FailedNumbersTest, ThePrefix39TakesTheLastDigitAlong)
{
    EXPECT_EQ(searchedNumber(u"393331234567"_s), u"333123456"_s);
    EXPECT_EQ(searchedNumber(u"3912"_s), u"1"_s);
}

TEST_F(FailedNumbersTest, ANumberWithoutThePrefixIsSearchedAsItStands)
{
    EXPECT_EQ(searchedNumber(u"3331234567"_s), u"3331234567"_s);
    EXPECT_EQ(searchedNumber(u"+39333"_s), u"+39333"_s);
    EXPECT_EQ(searchedNumber(u" 39333"_s), u" 39333"_s);
    EXPECT_EQ(searchedNumber(u"3"_s), u"3"_s);
    EXPECT_EQ(searchedNumber(u""_s), u""_s);
}

TEST_F(FailedNumbersTest, Line391BecomesAnEmptySearchAndLine39FailsTheSubstring)
{
    EXPECT_EQ(searchedNumber(u"391"_s), u""_s);
    EXPECT_EQ(errorOf([] { searchedNumber(u"39"_s); }), 5);
}

TEST_F(FailedNumbersTest, StatementsToTheLetter)
{
    EXPECT_EQ(customersQuery(u"333\"%_x"_s),
              u" select * from tabclienti where telefono2 like '%333\"%_x%'"_s);
    EXPECT_EQ(customersQuery(u""_s), u" select * from tabclienti where telefono2 like '%%'"_s);
    EXPECT_EQ(
        disableStatement(u"333"_s),
        u"update tabclienti set notecliente = isnull(notecliente, '') + ' Numero non valido :' + '333' , "
        "Telefono2='' where  telefono2 = '333'"_s);
}

TEST_F(FailedNumbersTest, ANumberWithAnApostropheGoesIntoNoStatement)
{
    for (const QString& number : {u"'"_s, u"33'3"_s, u"3'; delete from tabClienti --"_s}) {
        EXPECT_EQ(errorOf([&] { customersQuery(number); }), 5);
        EXPECT_EQ(errorOf([&] { disableStatement(number); }), 5);
    }
}

} // namespace
} // namespace zul
