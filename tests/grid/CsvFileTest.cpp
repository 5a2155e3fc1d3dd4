#include "grid/CsvFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <numeric>

using namespace zul;
using namespace Qt::StringLiterals;

namespace {

struct FieldCase
{
    std::string_view shown;
    bool text;
    std::string_view written;
};

class CsvFileTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(folder.isValid());
        path = folder.filePath(u"clienti.csv"_s);
        store.addColumn();
        store.addColumn();
        store.addColumn();
        store.setLocale(QLocale(QLocale::Italian, QLocale::Italy));
    }

    void add(const std::string& name, double amount)
    {
        store.appendInteger(0, store.rowCount());
        store.appendText(1, name.data(), name.size());
        store.appendReal(2, amount);
        store.endRow();
        records.push_back(store.rowCount() - 1);
    }

    CsvResult write(const CsvProgress& progress = {})
    {
        return writeCsv(path, {store, {{1, u"Cliente"_s}, {2, u"Importo; netto"_s}}, records}, progress);
    }

    QByteArray content() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
    }

    QTemporaryDir folder;
    QString path;
    ColumnStore store;
    std::vector<uint32_t> records;
};

} // namespace

TEST(CsvField, IsQuotedWhenItMustBeAndNeverRunAsAFormula)
{
    for (const FieldCase& c : std::initializer_list<FieldCase>{
             {"", true, ""},
             {"Rossi Mario", true, "Rossi Mario"},
             {"a;b", true, "\"a;b\""},
             {"detto \"il Gatto\"", true, "\"detto \"\"il Gatto\"\"\""},
             {"due\r\nrighe", true, "\"due\r\nrighe\""},
             {"una\nriga", true, "\"una\nriga\""},
             {"dell'Orto 100%", true, "dell'Orto 100%"},
             {"1,5", true, "1,5"},
             {"perché è 😀", true, "perché è 😀"},
             {"=1+1", true, "'=1+1"},
             {"+39 333 1234567", true, "'+39 333 1234567"},
             {"-3", true, "'-3"},
             {"@SUM(A1)", true, "'@SUM(A1)"},
             {"\t=1+1", true, "'\t=1+1"},
             {"\r=1+1", true, "\"'\r=1+1\""},
             {"=A1;\"x\"", true, "\"'=A1;\"\"x\"\"\""},
             {" =1+1", true, " =1+1"},
             {"a=1", true, "a=1"},
             {"-3", false, "-3"},
             {"-1234,5", false, "-1234,5"},
         }) {
        std::string line;
        appendCsvField(line, c.shown, c.text);
        EXPECT_EQ(line, c.written) << c.shown;
    }
}

TEST_F(CsvFileTest, WritesCaptionsAndRowsInTheirOrder)
{
    add("Rossi; Mario", 1234.5);
    add("Neri", -2);
    store.appendText(1, "", 0);
    store.endRow();
    records = {1, 0, 2};
    const CsvResult result = write();
    EXPECT_TRUE(result.written) << result.why.toStdString();
    EXPECT_EQ(content(), QByteArray("\xEF\xBB\xBF"
                                    "Cliente;\"Importo; netto\"\r\n"
                                    "Neri;-2\r\n"
                                    "\"Rossi; Mario\";1234,5\r\n"
                                    ";\r\n"));
}

TEST_F(CsvFileTest, TakesThePlaceOfAnEarlierFileAndLeavesNothingElse)
{
    QFile earlier(path);
    ASSERT_TRUE(earlier.open(QIODevice::WriteOnly));
    earlier.write("vecchio");
    earlier.close();
    add("Rossi", 1);
    EXPECT_TRUE(write().written);
    EXPECT_TRUE(content().endsWith("Rossi;1\r\n"));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"clienti.csv"_s});
}

TEST_F(CsvFileTest, ACancelledExportLeavesTheEarlierFileAndNothingElse)
{
    add("Rossi", 1);
    EXPECT_TRUE(write().written);
    const QByteArray before = content();
    records.assign(100'000, 0);
    size_t told = 0;
    const CsvResult result = write([&told](size_t done) {
        told = done;
        return done < 50'000;
    });
    EXPECT_FALSE(result.written);
    EXPECT_EQ(result.why, QString());
    EXPECT_GE(told, 50'000U);
    EXPECT_LT(told, 60'000U);
    EXPECT_EQ(content(), before);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(CsvFileTest, SaysWhyItCannotBeWritten)
{
    add("Rossi", 1);
    path = folder.filePath(u"manca/clienti.csv"_s);
    const CsvResult result = write();
    EXPECT_FALSE(result.written);
    EXPECT_FALSE(result.why.isEmpty());
}

TEST_F(CsvFileTest, BytesThatAreNoTextBecomeReplacementCharacters)
{
    add("a\xFFz", 1);
    EXPECT_TRUE(write().written);
    EXPECT_TRUE(content().contains("a\xEF\xBF\xBDz;1\r\n"));
}

TEST_F(CsvFileTest, IsWholeWhenItTakesManyBlocks)
{
    const std::string name(10'000, 'x');
    for (int i = 0; i < 300; ++i) {
        add(name, i);
    }
    EXPECT_TRUE(write().written);
    EXPECT_EQ(content().count("\r\n"), 301);
    EXPECT_TRUE(content().endsWith("x;299\r\n"));
}
