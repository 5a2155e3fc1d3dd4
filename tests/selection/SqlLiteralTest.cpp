#include "selection/SqlLiteral.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

TEST(SqlLiteralTest, DatesAreReadAlikeUnderEveryLanguageOfTheServer)
{
    EXPECT_EQ(SqlLiteral::DateLiteral(QDate(2025, 3, 7)), QStringLiteral("'20250307'"));
    EXPECT_EQ(SqlLiteral::DateLiteral(QDate(1753, 1, 1)), QStringLiteral("'17530101'"));
    EXPECT_EQ(SqlLiteral::DateLiteral(QDate(9999, 12, 31)), QStringLiteral("'99991231'"));
}

TEST(SqlLiteralTest, SingleQuotesAreDoubledAndNothingElseChanges)
{
    EXPECT_EQ(SqlLiteral::TextLiteral(QStringLiteral("L'Aquila")), QStringLiteral("L''Aquila"));
    EXPECT_EQ(SqlLiteral::TextLiteral(QStringLiteral("''")), QStringLiteral("''''"));
    const QString plain = QStringLiteral("100% \"à è\" € 😀 [x]_\\");
    EXPECT_EQ(SqlLiteral::TextLiteral(plain), plain);
    EXPECT_EQ(SqlLiteral::TextLiteral(QString()), QString());
    EXPECT_EQ(SqlLiteral::TextLiteral(QString(10000, u'\'')).size(), 20000);
}

} // namespace
} // namespace zul
