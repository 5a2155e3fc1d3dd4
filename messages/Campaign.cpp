#include "messages/Campaign.h"

#include "hostlib/Ado.h"
#include "hostlib/Error.h"
#include "hostlib/Host.h"
#include "hostlib/NewRowId.h"

#include <QDateTime>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

/// Moves the open calls of a campaign (all but states 5 and 1) to a new script.
void moveOpenCalls(const ado::Connection& connection, qint32 idCampagna, qint32 IdScript)
{
    connection.execute(u"update TMK_Chiamate set IdScript= "_s + QString::number(IdScript) +
                       u" where IdStatoChiamata<>"_s + u"5"_s + u" and IdStatoChiamata<>"_s + u"1"_s +
                       u" and idCampagna="_s + QString::number(idCampagna));
}

} // namespace

qint32 saveCampaign(const hostlib::SqlConnection& connection, const Campaign& campaign,
                    std::optional<qint32> idCampagna)
{
    const ado::Connection database = connection.connection();
    const bool isNew = !idCampagna.has_value();
    std::optional<hostlib::NewRowId> newId;
    if (isNew) {
        newId.emplace(connection, u"TMK_Campagne"_s, u"idCampagna"_s);
    }
    const qint32 id = isNew ? newId->value() : *idCampagna;
    ado::Recordset row =
        database.open(isNew ? u"select * from TMK_Campagne where 1=2"_s
                            : u"select * from TMK_Campagne where IdCampagna="_s + QString::number(id),
                      ado::Cursor::Static, ado::Lock::Pessimistic);
    // The host's null-to-default helper gives 0 for a number, and a row being added has no script yet: a new
    // mail campaign, with its script -1, therefore always runs the call update once. It touches no row.
    qint32 currentScript = 0;
    if (isNew) {
        row.addNew();
        row.set(u"idCampagna"_s, id);
    } else {
        if (row.eof()) {
            throw Error(3021, u"Either BOF or EOF is True, or the current record has been deleted."_s);
        }
        currentScript = row.integer(u"IdScript"_s, 0);
    }
    row.set(u"Predefinita"_s, campaign.Predefinita);
    row.set(u"MessaggiPerSettore"_s, campaign.MessaggiPerSettore);
    row.set(u"Descrizione"_s, campaign.Descrizione);
    row.set(u"DataLancio"_s, ado::dayValue(campaign.DataLancio));
    row.set(u"datatermine"_s, ado::dayValue(campaign.datatermine));
    if (currentScript != campaign.IdScript) {
        moveOpenCalls(database, id, campaign.IdScript);
    }
    row.set(u"IdScript"_s, campaign.IdScript);
    row.set(u"idMessaggio"_s, campaign.idMessaggio);
    row.set(u"tipoCampagna"_s, campaign.tipoCampagna);
    row.set(u"IdStatoCampagna"_s, campaign.IdStatoCampagna);
    row.set(u"idOperatore"_s, campaign.idOperatore);
    row.set(u"Colore"_s, campaign.Colore);
    row.set(u"MessaggioPredAppuntamento"_s, campaign.MessaggioPredAppuntamento);
    row.set(u"BloccaRichiami"_s, campaign.BloccaRichiami);
    row.set(u"IgnoraFiltriOrariAttivita"_s, campaign.IgnoraFiltriOrariAttivita);
    row.set(u"IdCampagnaRichiami"_s, campaign.IdCampagnaRichiami);
    row.set(u"IdCampagnaAssociata"_s, campaign.IdCampagnaAssociata);
    row.set(u"NrRichiami_NonRisponde"_s, campaign.NrRichiami_NonRisponde);
    row.set(u"NrRichiami_Occupato"_s, campaign.NrRichiami_Occupato);
    row.set(u"NrRichiami_RispondeFax"_s, campaign.NrRichiami_RispondeFax);
    row.set(u"MinutiPerRichiamoOccupato"_s, campaign.MinutiPerRichiamoOccupato);
    row.set(u"MinutiPerRichiamoNonRisponde"_s, campaign.MinutiPerRichiamoNonRisponde);
    row.set(u"MinutiPerRichiamoFax"_s, campaign.MinutiPerRichiamoFax);
    row.set(u"NrRichiami_Totali"_s, campaign.NrRichiami_Totali);
    row.set(u"DataAgg"_s, QDateTime::currentDateTime());
    row.set(u"UtenteUltimoAccesso"_s, connection.userName());
    row.update();
    row.close();
    if (newId) {
        newId->written();
    }
    return id;
}

} // namespace zul
