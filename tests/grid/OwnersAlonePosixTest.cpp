// Customers and layouts are for the eyes of the user who wrote them. On Windows a file has the rights of its folder.
#include "grid/ColumnStore.h"
#include "grid/CsvFile.h"
#include "grid/GridLayoutFile.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace zul;
using namespace Qt::StringLiterals;

namespace {

constexpr QFileDevice::Permissions others =
    QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther | QFileDevice::WriteOther;

} // namespace

TEST(OwnersAlone, AListIsReadableForItsOwnerAloneAlsoInThePlaceOfAnEarlierFile)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"clienti.csv"_s);
    QFile earlier(path);
    ASSERT_TRUE(earlier.open(QIODevice::WriteOnly));
    earlier.write("vecchio");
    earlier.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup |
                           QFileDevice::ReadOther);
    earlier.close();
    ColumnStore store;
    store.addColumn();
    store.appendText(0, "Rossi", 5);
    store.endRow();
    const std::vector<uint32_t> records{0};
    EXPECT_TRUE(writeCsv(path, {store, {{0, u"Cliente"_s}}, records}, {}).written);
    EXPECT_EQ(QFileInfo(path).permissions() & others, QFileDevice::Permissions());
}

TEST(OwnersAlone, ALayoutFileIsItsOwnersAlone)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Zul_MessageBuilderGrd.ini"_s);
    ASSERT_TRUE(GridLayoutFile(path).write(u"ZUL"_s, {{u"A"_s, 0, 60, true}}));
    EXPECT_EQ(QFileInfo(path).permissions() & others, QFileDevice::Permissions());
}
