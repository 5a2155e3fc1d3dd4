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
        QFile file(folder.filePath(u"export.txt"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return readFailedNumbers(folder.path() + u"\\export.txt"_s);
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

TEST_F(FailedNumbersTest, AMissingFileIsFileNotFound)
{
    EXPECT_EQ(errorOf([&] { readFailedNumbers(folder.path() + u"\\manca.txt"_s); }), 53);
    QDir(folder.path()).mkdir(u"export.txt"_s);
    EXPECT_EQ(errorOf([&] { readFailedNumbers(folder.path() + u"\\export.txt"_s); }), 53);
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
    EXPECT_EQ(customersQuery(u"333'x"_s), u" select * from tabclienti where telefono2 like '%333'x%'"_s);
    EXPECT_EQ(customersQuery(u""_s), u" select * from tabclienti where telefono2 like '%%'"_s);
    EXPECT_EQ(
        disableStatement(u"333"_s),
        u"update tabclienti set notecliente = isnull(notecliente, '') + ' Numero non valido :' + '333' , "
        "Telefono2='' where  telefono2 = '333'"_s);
}

} // namespace
} // namespace zul
