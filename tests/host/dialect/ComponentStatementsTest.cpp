// Every statement that the component builds, to the letter, run on a small database.
#include "tests/host/dialect/Engine.h"

#include <gmock/gmock.h>

using namespace zul::dialect;
using namespace zul::dialect::test;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

// Each test runs with the columns' types known and without.
class ComponentStatements : public testing::TestWithParam<bool>
{
protected:
    void SetUp() override
    {
        m_engine.run(R"(
            CREATE TABLE tabClienti(IdCliente int NOT NULL PRIMARY KEY, Cliente smallint, Fornitore smallint, Contatto smallint,
                RagioneSociale1 nvarchar(100), RagioneSociale2 nvarchar(100), Paese nvarchar(50), Provincia nvarchar(50),
                Sesso nvarchar(1), DataNascita datetime, Telefono nvarchar(30), Telefono2 nvarchar(30), email nvarchar(100),
                MailCommerciale nvarchar(100), MailAmministrazione nvarchar(100), NoteCliente ntext);
            CREATE TABLE tabSpoolReportStat2(id int IDENTITY(1,1) PRIMARY KEY, intero1 int);
            CREATE TABLE tabImpostazioni(idImpostazione int IDENTITY PRIMARY KEY, Descrizione nvarchar(100), Valore nvarchar(255));
            CREATE TABLE TMK_Messaggi(idMessaggio int PRIMARY KEY, IdTipoMessaggio int, Descrizione nvarchar(50), testoSMS ntext,
                Oggetto nvarchar(100), isAttivo bit);
            CREATE TABLE tabRIC_RicorrenzeMessaggi(id int PRIMARY KEY, idMessaggio int);
            CREATE TABLE TMK_Chiamate(idChiamata int PRIMARY KEY, IdScript int, IdStatoChiamata int, idCampagna int);
            CREATE TABLE TMK_StatoCampagne(idStatoCampagna int PRIMARY KEY, Descrizione nvarchar(50));
            CREATE TABLE tabRIC_Ricorrenze(id int PRIMARY KEY, Descrizione nvarchar(50));
            CREATE TABLE tabRIC_Classificazioni(id int PRIMARY KEY, Descrizione nvarchar(50));
            CREATE TABLE tabComuni(Codice nvarchar(10), Descrizione nvarchar(50));
            CREATE TABLE tabProvince(id int PRIMARY KEY, Codice nvarchar(10), Descrizione nvarchar(50));
            INSERT INTO tabClienti VALUES
                (1, 1, 0, 0, 'Rossi', NULL, 'L''Aquila', 'AQ', 'M', '19801231', '0862', '3331234567', 'a@x.it', NULL, NULL, NULL),
                (2, 0, 1, 0, NULL, 'Bianchi', 'FORLÌ', 'FC', 'F', '2000-01-01 00:00:00.000', NULL, '393331234567', NULL, '', '', 'nota'),
                (3, 0, 0, 1, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL),
                (4, 1, 1, 0, 'Città €', '😀 100%', 'l''aquila', 'aq', 'm', '19560229', NULL, '3331234567', NULL, NULL, NULL, ''))");
    }

    Rows run(const std::string& tsql) { return GetParam() ? m_engine.run(tsql) : m_engine.runUntyped(tsql); }

    // The search of the selection page: the scratch table afterwards.
    std::vector<std::string> search(const std::string& criteria)
    {
        run("Delete from tabSpoolReportStat2");
        run("INSERT INTO tabSpoolReportStat2(intero1)  SELECT tabClienti.idCliente  FROM tabclienti WHERE "
            "1=1 " +
            criteria);
        std::vector<std::string> ids;
        for (const auto& row : m_engine.runNative("SELECT intero1 FROM tabSpoolReportStat2 ORDER BY 1")) {
            ids.push_back(row.front());
        }
        return ids;
    }

    Engine m_engine;
};

std::string named(const testing::TestParamInfo<bool>& info)
{
    return info.param ? "TypesKnown" : "TypesUnknown";
}

INSTANTIATE_TEST_SUITE_P(Dialect, ComponentStatements, testing::Bool(), named);

TEST_P(ComponentStatements, SettingIsReadByItsKeyInAnyCase)
{
    run("INSERT INTO tabImpostazioni(Descrizione, Valore) VALUES('SMS_CHECK_FTP_Password', 'x')");
    EXPECT_THAT(run("SELECT * FROM tabImpostazioni WHERE descrizione='sms_check_ftp_PASSWORD'"),
                ElementsAre(ElementsAre("1", "SMS_CHECK_FTP_Password", "x")));
    EXPECT_THAT(run("SELECT * FROM tabImpostazioni WHERE descrizione='SMS_CHECK_FTP_USER'"), IsEmpty());
}

TEST_P(ComponentStatements, LargestSettingIdOfAnEmptyTableIsNull)
{
    EXPECT_THAT(run("SELECT Max(idImpostazione) as maxId FROM tabImpostazioni"),
                ElementsAre(ElementsAre("NULL")));
    EXPECT_THAT(m_engine.columns(), ElementsAre("maxId"));
    run("INSERT INTO tabImpostazioni(Descrizione) VALUES('a'), ('b')");
    EXPECT_THAT(run("SELECT Max(idImpostazione) as maxId FROM tabImpostazioni"),
                ElementsAre(ElementsAre("2")));
}

TEST_P(ComponentStatements, SearchWithoutCriterionTakesEveryCustomer)
{
    EXPECT_THAT(search(""), ElementsAre("1", "2", "3", "4"));
}

TEST_P(ComponentStatements, DoubleBlankAfterTheColumnListIsHarmless)
{
    const std::string sql =
        translate("INSERT INTO tabSpoolReportStat2(intero1)  SELECT tabClienti.idCliente  FROM tabclienti "
                  "WHERE 1=1 ")
            .sql;
    EXPECT_EQ(sql, "INSERT INTO [tabSpoolReportStat2]([intero1]) SELECT [tabClienti].[idCliente] FROM "
                   "[tabclienti] WHERE 1 = 1");
}

TEST_P(ComponentStatements, SearchByKind)
{
    EXPECT_THAT(search(" and ( tabClienti.Cliente<>0 or tabClienti.Contatto<>0 )"),
                ElementsAre("1", "3", "4"));
    EXPECT_THAT(search(" and ( tabClienti.Fornitore<>0 )"), ElementsAre("2", "4"));
    EXPECT_THAT(search(" and ( tabClienti.Cliente<>0 or tabClienti.Fornitore<>0 or tabClienti.Contatto<>0 )"),
                ElementsAre("1", "2", "3", "4"));
}

TEST_P(ComponentStatements, AgeCountsCalendarYears)
{
    // Born on 31 December 1980: 46 on any day of 2026.
    EXPECT_THAT(search(" and DateDiff(year,tabClienti.DataNascita,'20261121') >= 46 and "
                       "DateDiff(year,tabClienti.DataNascita,'20261121') <= 46"),
                ElementsAre("1"));
    EXPECT_THAT(search(" and DateDiff(year,tabClienti.DataNascita,'20270101') >= 18 and "
                       "DateDiff(year,tabClienti.DataNascita,'20270101') <= 30"),
                ElementsAre("2"));
}

TEST_P(ComponentStatements, AgeBoundsGoInAsTyped)
{
    EXPECT_THAT(search(" and DateDiff(year,tabClienti.DataNascita,'20261121') >=  18.5  and "
                       "DateDiff(year,tabClienti.DataNascita,'20261121') <= 1e2"),
                ElementsAre("1", "2", "4"));
    try {
        search(" and DateDiff(year,tabClienti.DataNascita,'20261121') >= 18,5 and 1=1");
        FAIL();
    } catch (const DialectError& error) {
        EXPECT_EQ(error.message(), "incorrect syntax near ',': expected the end of the statement");
    }
}

TEST_P(ComponentStatements, SearchBySexAndPlaceDoesNotLookAtCase)
{
    EXPECT_THAT(search(" and tabClienti.Sesso='M'"), ElementsAre("1", "4"));
    EXPECT_THAT(search(" and tabClienti.Sesso='F'"), ElementsAre("2"));
    EXPECT_THAT(search(" and tabClienti.Paese='L''Aquila'"), ElementsAre("1", "4"));
    EXPECT_THAT(search(" and tabClienti.Paese='FORLÌ'"), ElementsAre("2"));
    EXPECT_THAT(search(" and tabClienti.provincia='AQ'"), ElementsAre("1", "4"));
}

TEST_P(ComponentStatements, AdvancedFilterIsASubSelect)
{
    EXPECT_THAT(
        search(" and tabClienti.idcliente in (SELECT IdCliente FROM tabClienti WHERE email is not null) "),
        ElementsAre("1"));
    run("Delete from tabSpoolReportStat2");
    run("INSERT INTO tabSpoolReportStat2(intero1) VALUES (2),(3)");
    EXPECT_THAT(run("SELECT idCliente FROM tabClienti WHERE idCliente IN (Select intero1 as IdCliente from "
                    "tabSpoolReportStat2)"),
                UnorderedElementsAre(ElementsAre("2"), ElementsAre("3")));
}

TEST_P(ComponentStatements, ResultGrid)
{
    run("INSERT INTO tabSpoolReportStat2(intero1) VALUES (1),(2),(3),(4),(4)");
    const Rows rows =
        run("SELECT DISTINCT tabClienti.IdCLiente , '' AS Selezione , ISNULL(tabClienti.RAGIONESOCIALE1,'') "
            "+ ' '+ "
            "ISNULL(tabClienti.RAGIONESOCIALE2,'') AS Cliente , tabClienti.Paese , tabClienti.Provincia , "
            "DateDiff(year,tabClienti.DataNascita,'20261121') as Eta , tabClienti.Sesso , "
            "tabClienti.DataNascita , "
            "tabClienti.Telefono , tabClienti.Telefono2 , tabClienti.email , tabClienti.MailCommerciale , "
            "tabClienti.MailAmministrazione  FROM tabSpoolReportStat2 INNER JOIN tabClienti      ON "
            "tabSpoolReportStat2.intero1 = tabClienti.IdCLiente ");
    EXPECT_THAT(rows,
                UnorderedElementsAre(
                    ElementsAre("1", "", "Rossi ", "L'Aquila", "AQ", "46", "M", "1980-12-31 00:00:00.000",
                                "0862", "3331234567", "a@x.it", "NULL", "NULL"),
                    ElementsAre("2", "", " Bianchi", "FORLÌ", "FC", "26", "F", "2000-01-01 00:00:00.000",
                                "NULL", "393331234567", "NULL", "", ""),
                    ElementsAre("3", "", " ", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL", "NULL",
                                "NULL", "NULL"),
                    ElementsAre("4", "", "Città € 😀 100%", "l'aquila", "aq", "70", "m",
                                "1956-02-29 00:00:00.000", "NULL", "3331234567", "NULL", "NULL", "NULL")));
    EXPECT_THAT(m_engine.columns(), ElementsAre("IdCLiente", "Selezione", "Cliente", "Paese", "Provincia",
                                                "Eta", "Sesso", "DataNascita", "Telefono", "Telefono2",
                                                "email", "MailCommerciale", "MailAmministrazione"));
}

TEST_P(ComponentStatements, LookupLists)
{
    run("INSERT INTO tabRIC_Ricorrenze VALUES (1,'onomastico'),(2,'Compleanno'),(3,'Anniversario')");
    EXPECT_THAT(run("SELECT tabRic_Ricorrenze.id,  tabRic_Ricorrenze.Descrizione as Ricorrenza  from "
                    "tabRic_Ricorrenze order by "
                    "tabRic_Ricorrenze.Descrizione "),
                ElementsAre(ElementsAre("3", "Anniversario"), ElementsAre("2", "Compleanno"),
                            ElementsAre("1", "onomastico")));
    run("INSERT INTO tabComuni VALUES ('H501','Roma'),('A345','L''Aquila')");
    EXPECT_THAT(
        run("SELECT tabComuni.Codice as Sigla, tabComuni.Descrizione AS [Provincia] FROM tabComuni Order BY "
            "tabComuni.Descrizione "),
        ElementsAre(ElementsAre("A345", "L'Aquila"), ElementsAre("H501", "Roma")));
    EXPECT_THAT(m_engine.columns(), ElementsAre("Sigla", "Provincia"));
    run("INSERT INTO tabProvince VALUES (1,'RM','Roma'),(2,'AQ','L''Aquila')");
    EXPECT_THAT(
        run("SELECT tabProvince.id as Sigla, tabProvince.Codice AS [Provincia] FROM tabProvince Order BY "
            "tabProvince.Descrizione "),
        ElementsAre(ElementsAre("2", "AQ"), ElementsAre("1", "RM")));
    run("INSERT INTO tabRIC_Classificazioni VALUES (1,'oro'),(2,'Argento')");
    EXPECT_THAT(
        run("SELECT id,Descrizione as [Classificazione] from tabRIC_Classificazioni order by Descrizione"),
        ElementsAre(ElementsAre("2", "Argento"), ElementsAre("1", "oro")));
    run("INSERT INTO TMK_StatoCampagne VALUES (1,'aperta')");
    EXPECT_THAT(run("SELECT [idStatoCampagna],[Descrizione] FROM [TMK_StatoCampagne]"),
                ElementsAre(ElementsAre("1", "aperta")));
}

TEST_P(ComponentStatements, MessageLists)
{
    run("INSERT INTO TMK_Messaggi(idMessaggio, IdTipoMessaggio, Descrizione, testoSMS) VALUES "
        "(1,6,'SMS','ciao'),(2,6,'B','b'),"
        "(3,5,'mail 5',NULL),(4,101,'Mail 101',NULL),(5,102,'a mail',NULL),(6,7,'other',NULL)");
    run("INSERT INTO tabRIC_RicorrenzeMessaggi VALUES (1,1),(2,1)");
    // The joined table is not used, but a message of two recurrences stands twice.
    EXPECT_THAT(run("SELECT Tmk_Messaggi.idMessaggio, [Tmk_Messaggi].[TESTOSMS] AS [Testo] from TMK_Messaggi "
                    "LEFT JOIN "
                    "tabRIC_RicorrenzeMessaggi ON TMK_Messaggi.idMessaggio = "
                    "tabRIC_RicorrenzeMessaggi.idMessaggio  where "
                    "Tmk_Messaggi.idtipoMessaggio=6 order by Descrizione "),
                ElementsAre(ElementsAre("2", "b"), ElementsAre("1", "ciao"), ElementsAre("1", "ciao")));
    EXPECT_THAT(
        run("SELECT Tmk_Messaggi.idMessaggio, [Tmk_Messaggi].[Descrizione]  AS [Tipo MAIL]  from "
            "TMK_Messaggi  where "
            "Tmk_Messaggi.idtipoMessaggio=5 or Tmk_Messaggi.idtipoMessaggio=102 or "
            "Tmk_Messaggi.idtipoMessaggio=101 order "
            "by Descrizione "),
        ElementsAre(ElementsAre("5", "a mail"), ElementsAre("4", "Mail 101"), ElementsAre("3", "mail 5")));
    EXPECT_THAT(m_engine.columns(), ElementsAre("idMessaggio", "Tipo MAIL"));
    EXPECT_THAT(run("Select TestoSMS, OGGETTO from TMK_Messaggi where idMessaggio=1"),
                ElementsAre(ElementsAre("ciao", "NULL")));
}

TEST_P(ComponentStatements, EmptyRowSetsForAddingRows)
{
    EXPECT_THAT(run("Select * from TMK_Messaggi where 1=2"), IsEmpty());
    EXPECT_THAT(m_engine.columns(), ElementsAre("idMessaggio", "IdTipoMessaggio", "Descrizione", "testoSMS",
                                                "Oggetto", "isAttivo"));
    EXPECT_THAT(run("SELECT * FROM TMK_Chiamate WHERE 1=2"), IsEmpty());
    EXPECT_THAT(run("select * from TMK_Chiamate where idCampagna=7"), IsEmpty());
}

TEST_P(ComponentStatements, OpenCallsMoveToTheNewScript)
{
    run("INSERT INTO TMK_Chiamate VALUES (1,9,5,12),(2,9,1,12),(3,9,2,12),(4,9,2,13)");
    run("update TMK_Chiamate set IdScript= -1 where IdStatoChiamata<>5 and IdStatoChiamata<>1 and "
        "idCampagna=12");
    EXPECT_THAT(m_engine.runNative("SELECT IdScript FROM TMK_Chiamate ORDER BY idChiamata"),
                ElementsAre(ElementsAre("9"), ElementsAre("9"), ElementsAre("-1"), ElementsAre("9")));
}

TEST_P(ComponentStatements, FailedNumberIsFoundAnywhereInThePhone)
{
    EXPECT_EQ(run(" select * from tabclienti where telefono2 like '%333123456%'").size(), 3U);
    EXPECT_EQ(run(" select * from tabclienti where telefono2 like '%%'").size(), 3U);
    EXPECT_THAT(run(" select * from tabclienti where telefono2 like '%39333_23%'"), testing::SizeIs(1));
}

TEST_P(ComponentStatements, FailedNumberIsDisabled)
{
    run("update tabclienti set notecliente = isnull(notecliente, '') + ' Numero non valido :' + '3331234567' "
        ", Telefono2='' where  "
        "telefono2 = '3331234567'");
    EXPECT_THAT(m_engine.runNative("SELECT NoteCliente, Telefono2 FROM tabClienti ORDER BY IdCliente"),
                ElementsAre(ElementsAre(" Numero non valido :3331234567", ""),
                            ElementsAre("nota", "393331234567"), ElementsAre("NULL", "NULL"),
                            ElementsAre(" Numero non valido :3331234567", "")));
}

TEST(ComponentStatementsInfo, TellTargetTablesAndColumns)
{
    const Translation insert =
        translate("INSERT INTO tabSpoolReportStat2(intero1)  SELECT tabClienti.idCliente  FROM tabclienti");
    EXPECT_EQ(insert.kind, StatementKind::Insert);
    EXPECT_EQ(insert.target, "tabSpoolReportStat2");
    EXPECT_THAT(insert.tables, ElementsAre("tabclienti"));

    const Translation grid = translate(
        "SELECT tabClienti.IdCLiente, '' AS Selezione, DateDiff(year,DataNascita,'20261121') as Eta "
        "FROM tabSpoolReportStat2 INNER JOIN tabClienti ON intero1 = IdCLiente");
    EXPECT_EQ(grid.kind, StatementKind::Select);
    EXPECT_THAT(grid.tables, ElementsAre("tabSpoolReportStat2", "tabClienti"));
    ASSERT_EQ(grid.columns.size(), 3U);
    EXPECT_EQ(grid.columns[0].name, "IdCLiente");
    EXPECT_EQ(grid.columns[1].type, ColumnType::Text);
    EXPECT_EQ(grid.columns[2].name, "Eta");
    EXPECT_EQ(grid.columns[2].type, ColumnType::Integer);
    EXPECT_THAT(translate("SELECT * FROM t").columns, IsEmpty());
}

} // namespace
