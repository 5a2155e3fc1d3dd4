// The search criteria of the main window as plain values, and the rules that judge them.
#pragma once

#include <QLocale>
#include <QString>
#include <optional>

namespace zul {

/// Two date fields as they were typed.
struct DateTexts
{
    QString from;
    QString to;
};

/// Two number fields as they were typed.
struct NumberTexts
{
    QString from;
    QString to;
};

/// What stands in the criteria pages. Check boxes hold their value: 1 is ticked. A criterion takes part in a
/// search when its check box is exactly 1.
struct Criteria
{
    int chkANA_Tipo = 0;
    int chkANA_Tipo_Cli = 0;
    int chkANA_Tipo_For = 0;
    int chkANA_Tipo_Con = 0;

    int chkANA_Eta = 0;
    NumberTexts eta; ///< txtANA_Eta_I, txtANA_Eta_F: whole years

    int chkANA_Sesso = 0;
    bool optMaschio = false;
    bool optFemmina = false;

    int chkANA_Ricorr = 0;
    int idRicorrenza = -1;
    DateTexts dateRicorrenza;

    int chkLOC_Comune = 0;
    QString comune;
    int chkLOC_Provincia = 0;
    QString provincia;

    int chkECO_Fatt = 0;
    DateTexts dateFatturato;
    NumberTexts fatturato;

    int chkECO_NAcq = 0;
    DateTexts dateAcquisti;
    NumberTexts numeroAcquisti;

    int chkECO_PerAcq = 0;
    DateTexts periodoAcquisto;

    int chkECO_PtFid = 0;
    NumberTexts puntiFidelity;

    int chkECO_Classif = 0;
    int idClassificazione = -1;

    int chk_Avanzata = 0;
    QString parametriRicercaAvanzata; ///< a sub-select of customer ids
};

/// Why a search cannot start: what the operator is told, and the criteria page that comes to the front.
struct CriteriaFailure
{
    QString message;
    int page = 0; ///< 0 "Anagrafici", 1 "Localizzazione"
};

/// Checks the ticked criteria in their fixed order; the first one that is not usable, or nothing.
/// Numbers and dates are judged by the rules of the locale.
std::optional<CriteriaFailure> testFiltri(const Criteria& criteria, const QLocale& locale);

} // namespace zul
