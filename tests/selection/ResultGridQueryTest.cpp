#include "selection/ResultGridQuery.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

TEST(ResultGridQueryTest, IsThisTextToTheLetter)
{
    EXPECT_EQ(
        resultGridQuery(QDate(2025, 3, 7)),
        QStringLiteral(
            "SELECT DISTINCT tabClienti.IdCLiente , '' AS Selezione"
            " , ISNULL(tabClienti.RAGIONESOCIALE1,'') + ' '+ ISNULL(tabClienti.RAGIONESOCIALE2,'') AS Cliente"
            " , tabClienti.Paese , tabClienti.Provincia"
            " , DateDiff(year,tabClienti.DataNascita,'20250307') as Eta"
            " , tabClienti.Sesso , tabClienti.DataNascita , tabClienti.Telefono , tabClienti.Telefono2"
            " , tabClienti.email , tabClienti.MailCommerciale , tabClienti.MailAmministrazione "
            " FROM tabSpoolReportStat2 INNER JOIN tabClienti "
            "     ON tabSpoolReportStat2.intero1 = tabClienti.IdCLiente "));
}

TEST(ResultGridQueryTest, HasNoOrder)
{
    EXPECT_FALSE(
        resultGridQuery(QDate(2025, 3, 7)).contains(QStringLiteral("order by"), Qt::CaseInsensitive));
}

TEST(ResultGridQueryTest, ListsHaveOneEntryPerField)
{
    const ColumnLists lists = resultGridLists(13);
    EXPECT_EQ(lists.visibility, QStringLiteral("0,1,1,1,1,1,1,1,1,1,1,1,1"));
    EXPECT_EQ(lists.buttonType, QStringLiteral("0,CHK,0,0,0,0,0,0,0,0,0,0,0"));
    EXPECT_EQ(lists.sizable, QStringLiteral("1,1,1,1,1,1,1,1,1,1,1,1,1"));
}

TEST(ResultGridQueryTest, ListsOfOtherFieldCounts)
{
    EXPECT_EQ(resultGridLists(0).visibility, QString());
    EXPECT_EQ(resultGridLists(1).visibility, QStringLiteral("0"));
    EXPECT_EQ(resultGridLists(2).buttonType, QStringLiteral("0,CHK"));
}

TEST(ResultGridQueryTest, ElevenCaptionsForThirteenColumnsWithTelefonoTwiceAndInSixthPlace)
{
    const QStringList captions = resultGridCaptions();
    EXPECT_EQ(captions.join(u'|'),
              QStringLiteral("Id|Selezione|RagioneSociale1|Paese|Provincia|Telefono|Eta|Sesso|Data "
                             "nascita|Telefono|Telefono2"));
    EXPECT_EQ(captions.size(), 11);
    EXPECT_EQ(captions.at(5), QStringLiteral("Telefono"));
}

TEST(ResultGridQueryTest, TheSendFlowReadsColumnsByTheseIndexes)
{
    EXPECT_EQ(ColumnIdCliente, 0);
    EXPECT_EQ(ColumnSelezione, 1);
    EXPECT_EQ(ColumnCliente, 2);
    EXPECT_EQ(ColumnTelefono, 8);
    EXPECT_EQ(ColumnTelefono2, 9);
    EXPECT_EQ(ColumnEmail, 10);
    EXPECT_EQ(ColumnMailCommerciale, 11);
    EXPECT_EQ(ColumnMailAmministrazione, 12);
}

} // namespace
} // namespace zul
