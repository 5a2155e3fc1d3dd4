#include "lookup/LookupModes.h"

#include <vector>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

// Kinds of TMK_Messaggi.idtipoMessaggio.
const QString KindSms = u"6"_s;
const QStringList KindsMail = {u"5"_s, u"102"_s, u"101"_s};

// Four things look like slips and are meant: the commune's name is labelled "Provincia" in its query, the
// province query gives the id as the sign and the code as the province, the SMS query joins a table that it
// does not use, and the mail kinds stand in this order.
const std::vector<LookupMode>& modes()
{
    static const std::vector<LookupMode> all = {
        {u"tabRIC_Ricorrenze"_s,
         u"SELECT tabRic_Ricorrenze.id,  tabRic_Ricorrenze.Descrizione as Ricorrenza "
         " from tabRic_Ricorrenze"
         " order by tabRic_Ricorrenze.Descrizione "_s,
         u"Selezione ricorrenze"_s,
         u"Elenco ricorrenze disponibili"_s,
         {u"id"_s, u"Descrizione"_s}},
        {u"tabComuni"_s,
         u"SELECT tabComuni.Codice as Sigla, tabComuni.Descrizione AS [Provincia] "
         "FROM tabComuni "
         "Order BY tabComuni.Descrizione "_s,
         u"Selezione del Comune"_s,
         u""_s,
         {u"Sigla"_s, u"Comune"_s}},
        {u"tabProvince"_s,
         u"SELECT tabProvince.id as Sigla, tabProvince.Codice AS [Provincia] "
         "FROM tabProvince "
         "Order BY tabProvince.Descrizione "_s,
         u"Selezione della provincia"_s,
         u""_s,
         {u"Sigla"_s, u"Provincia"_s}},
        {u"tabRIC_Classificazioni"_s,
         u"SELECT id,Descrizione as [Classificazione] from tabRIC_Classificazioni order by Descrizione"_s,
         u"Selezione classificazione"_s,
         u""_s,
         {u"id"_s, u"classificazione"_s}},
        {u"Tmk_Messaggi_SMS"_s,
         u"SELECT Tmk_Messaggi.idMessaggio, [Tmk_Messaggi].[TESTOSMS] AS [Testo] from TMK_Messaggi "
         "LEFT JOIN tabRIC_RicorrenzeMessaggi ON TMK_Messaggi.idMessaggio = "
         "tabRIC_RicorrenzeMessaggi.idMessaggio "
         " where Tmk_Messaggi.idtipoMessaggio="_s +
             KindSms + u" order by Descrizione "_s,
         u"Selezione SMS"_s,
         u""_s,
         {u"id"_s, u"Testo SMS"_s}},
        {u"Tmk_Messaggi_MAIL"_s,
         u"SELECT Tmk_Messaggi.idMessaggio, [Tmk_Messaggi].[Descrizione]  AS [Tipo MAIL]  "
         "from TMK_Messaggi "
         " where Tmk_Messaggi.idtipoMessaggio="_s +
             KindsMail.join(u" or Tmk_Messaggi.idtipoMessaggio="_s) + u" order by Descrizione "_s,
         u"Selezione MAIL"_s,
         u""_s,
         {u"id"_s, u"Testo MAIL"_s}},
    };
    return all;
}

} // namespace

std::optional<LookupMode> lookupMode(const QString& table)
{
    for (const LookupMode& mode : modes()) {
        if (mode.key.compare(table, Qt::CaseInsensitive) == 0) {
            return mode;
        }
    }
    return std::nullopt;
}

QString lookupStatus(int rowCount)
{
    if (rowCount == 0) {
        return u"Ricerca avanzata ** Nessun elemento visualizzato."_s;
    }
    return u"Ricerca avanzata ** Elementi visualizzati: "_s + QString::number(rowCount);
}

QString normalizedFilter(const QString& filter)
{
    return filter.contains(u"WHERE"_s, Qt::CaseInsensitive) ? filter : u" WHERE "_s + filter;
}

} // namespace zul
