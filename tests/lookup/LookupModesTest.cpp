#include "lookup/LookupModes.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

LookupMode mode(const QString& table)
{
    const auto found = lookupMode(table);
    EXPECT_TRUE(found.has_value()) << table.toStdString();
    return found.value_or(LookupMode());
}

TEST(LookupModesTest, Recurrences)
{
    const LookupMode m = mode(u"tabRIC_Ricorrenze"_s);
    EXPECT_EQ(m.query, u"SELECT tabRic_Ricorrenze.id,  tabRic_Ricorrenze.Descrizione as Ricorrenza  from "
                       "tabRic_Ricorrenze order by tabRic_Ricorrenze.Descrizione "_s);
    EXPECT_EQ(m.title, u"Selezione ricorrenze"_s);
    EXPECT_EQ(m.header, u"Elenco ricorrenze disponibili"_s);
    EXPECT_EQ(m.captions, (QStringList{u"id"_s, u"Descrizione"_s}));
}

TEST(LookupModesTest, CommunesAreLabelledProvinciaInTheirQueryAndComuneInTheGrid)
{
    const LookupMode m = mode(u"tabComuni"_s);
    EXPECT_EQ(m.query,
              u"SELECT tabComuni.Codice as Sigla, tabComuni.Descrizione AS [Provincia] FROM tabComuni Order "
              "BY tabComuni.Descrizione "_s);
    EXPECT_EQ(m.title, u"Selezione del Comune"_s);
    EXPECT_EQ(m.header, u""_s);
    EXPECT_EQ(m.captions, (QStringList{u"Sigla"_s, u"Comune"_s}));
}

TEST(LookupModesTest, ProvincesGiveTheirIdAsSiglaAndTheirCodeAsProvincia)
{
    const LookupMode m = mode(u"tabProvince"_s);
    EXPECT_EQ(m.query,
              u"SELECT tabProvince.id as Sigla, tabProvince.Codice AS [Provincia] FROM tabProvince Order BY "
              "tabProvince.Descrizione "_s);
    EXPECT_EQ(m.title, u"Selezione della provincia"_s);
    EXPECT_EQ(m.header, u""_s);
    EXPECT_EQ(m.captions, (QStringList{u"Sigla"_s, u"Provincia"_s}));
}

TEST(LookupModesTest, Classifications)
{
    const LookupMode m = mode(u"tabRIC_Classificazioni"_s);
    EXPECT_EQ(
        m.query,
        u"SELECT id,Descrizione as [Classificazione] from tabRIC_Classificazioni order by Descrizione"_s);
    EXPECT_EQ(m.title, u"Selezione classificazione"_s);
    EXPECT_EQ(m.header, u""_s);
    EXPECT_EQ(m.captions, (QStringList{u"id"_s, u"classificazione"_s}));
}

TEST(LookupModesTest, SmsTemplatesJoinATableThatTheyDoNotUse)
{
    const LookupMode m = mode(u"Tmk_Messaggi_SMS"_s);
    EXPECT_EQ(m.query,
              u"SELECT Tmk_Messaggi.idMessaggio, [Tmk_Messaggi].[TESTOSMS] AS [Testo] from TMK_Messaggi LEFT "
              "JOIN tabRIC_RicorrenzeMessaggi ON TMK_Messaggi.idMessaggio = "
              "tabRIC_RicorrenzeMessaggi.idMessaggio  where Tmk_Messaggi.idtipoMessaggio=6 order by "
              "Descrizione "_s);
    EXPECT_EQ(m.title, u"Selezione SMS"_s);
    EXPECT_EQ(m.header, u""_s);
    EXPECT_EQ(m.captions, (QStringList{u"id"_s, u"Testo SMS"_s}));
}

TEST(LookupModesTest, MailTemplatesNameTheirKindsInThisOrder)
{
    const LookupMode m = mode(u"Tmk_Messaggi_MAIL"_s);
    EXPECT_EQ(m.query,
              u"SELECT Tmk_Messaggi.idMessaggio, [Tmk_Messaggi].[Descrizione]  AS [Tipo MAIL]  from "
              "TMK_Messaggi  where Tmk_Messaggi.idtipoMessaggio=5 or Tmk_Messaggi.idtipoMessaggio=102 or "
              "Tmk_Messaggi.idtipoMessaggio=101 order by Descrizione "_s);
    EXPECT_EQ(m.title, u"Selezione MAIL"_s);
    EXPECT_EQ(m.header, u""_s);
    EXPECT_EQ(m.captions, (QStringList{u"id"_s, u"Testo MAIL"_s}));
}

TEST(LookupModesTest, KeysAreComparedWithoutRegardToCase)
{
    EXPECT_EQ(mode(u"TABPROVINCE"_s).key, u"tabProvince"_s);
    EXPECT_EQ(mode(u"tmk_messaggi_sms"_s).key, u"Tmk_Messaggi_SMS"_s);
    EXPECT_FALSE(lookupMode(u"tabProvince "_s).has_value());
    EXPECT_FALSE(lookupMode(u""_s).has_value());
    EXPECT_FALSE(lookupMode(u"TabVettori"_s).has_value());
}

TEST(LookupModesTest, TheLayoutIsTheSameForEveryMode)
{
    const LookupLayout layout;
    EXPECT_EQ(layout.visibility, u"0,1"_s);
    EXPECT_EQ(layout.iconIndex, u"0,0"_s);
    EXPECT_EQ(layout.editMask, u"0,0"_s);
    EXPECT_EQ(layout.sizable, u"0,1"_s);
    EXPECT_EQ(layout.buttonType, u"0,0"_s);
    EXPECT_EQ(layout.preFormat, u"0,0"_s);
    EXPECT_EQ(layout.preFormatQta, u"0,0"_s);
    EXPECT_EQ(layout.preFormatColore, u"0,0"_s);
}

TEST(LookupModesTest, StatusTexts)
{
    EXPECT_EQ(lookupStatus(0), u"Ricerca avanzata ** Nessun elemento visualizzato."_s);
    EXPECT_EQ(lookupStatus(1), u"Ricerca avanzata ** Elementi visualizzati: 1"_s);
    EXPECT_EQ(lookupStatus(8047), u"Ricerca avanzata ** Elementi visualizzati: 8047"_s);
}

TEST(LookupModesTest, AnExtraFilterGetsItsWhereWhenItHasNone)
{
    EXPECT_EQ(normalizedFilter(u"id=3"_s), u" WHERE id=3"_s);
    EXPECT_EQ(normalizedFilter(u" where id=3"_s), u" where id=3"_s);
    EXPECT_EQ(normalizedFilter(u"x = 'wHeRe'"_s), u"x = 'wHeRe'"_s);
    EXPECT_EQ(normalizedFilter(u""_s), u" WHERE "_s);
}

} // namespace
} // namespace zul
