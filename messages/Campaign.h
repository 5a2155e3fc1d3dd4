// The campaign record TMK_Campagne.
#pragma once

#include <QDate>
#include <QString>
#include <optional>

namespace zul {

namespace hostlib {
class SqlConnection;
}

/// The columns of a campaign, in the order in which they are written. The defaults are those of a mail
/// campaign: -1 where a column belongs to telephone campaigns and is not used, and the two flags true,
/// because a mail campaign never places calls.
struct Campaign
{
    bool Predefinita = false;
    bool MessaggiPerSettore = false;
    QString Descrizione;
    QDate DataLancio;
    QDate datatermine;
    qint32 IdScript = -1;
    qint32 idMessaggio = -1;
    qint32 tipoCampagna = 2; ///< tipoCampagna_Mail
    qint32 IdStatoCampagna = 1;
    qint32 idOperatore = 0;
    qint32 Colore = -1;
    QString MessaggioPredAppuntamento = QStringLiteral("");
    bool BloccaRichiami = true;
    bool IgnoraFiltriOrariAttivita = true;
    qint32 IdCampagnaRichiami = -1;
    qint32 IdCampagnaAssociata = -1;
    qint32 NrRichiami_NonRisponde = -1;
    qint32 NrRichiami_Occupato = -1;
    qint32 NrRichiami_RispondeFax = -1;
    qint32 MinutiPerRichiamoOccupato = -1;
    qint32 MinutiPerRichiamoNonRisponde = -1;
    qint32 MinutiPerRichiamoFax = -1;
    qint32 NrRichiami_Totali = -1;
};

/// Inserts a campaign, or changes the one with the given id in place. The calls of the campaign that are
/// still open are moved to its script first when the script changes.
/// @return the campaign's id
/// @throws Error of the database; also when the given id has no row
qint32 saveCampaign(const hostlib::SqlConnection& connection, const Campaign& campaign,
                    std::optional<qint32> idCampagna);

} // namespace zul
