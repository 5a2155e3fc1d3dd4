// The search criteria of the main window as plain values, and the rules that judge them.
#pragma once

#include <QDate>
#include <QLocale>
#include <QString>
#include <optional>

namespace zul {

/// Two date fields; a bound that is no date is none.
struct DateRange
{
    std::optional<QDate> from;
    std::optional<QDate> to;
};

/// Two number fields; a bound that is no number is none.
struct NumberRange
{
    std::optional<double> from;
    std::optional<double> to;
};

/// The two fields of the age, which go into the statement as they were typed.
struct AgeRange
{
    QString from;
    QString to;
    bool bothAreNumbers = false;
};

// What was typed, read by the rules of a locale: once, where a search takes the fields.
DateRange dateRange(const QString& from, const QString& to, const QLocale& locale);
NumberRange numberRange(const QString& from, const QString& to, const QLocale& locale);
AgeRange ageRange(const QString& from, const QString& to, const QLocale& locale);

/// What stands in the criteria pages. Check boxes hold their value: 1 is ticked. A criterion takes part in a
/// search when its check box is exactly 1.
struct Criteria
{
    int chkANA_Tipo = 0;
    int chkANA_Tipo_Cli = 0;
    int chkANA_Tipo_For = 0;
    int chkANA_Tipo_Con = 0;

    int chkANA_Eta = 0;
    AgeRange eta; ///< txtANA_Eta_I, txtANA_Eta_F: whole years

    int chkANA_Sesso = 0;
    bool optMaschio = false;
    bool optFemmina = false;

    int chkANA_Ricorr = 0;
    int idRicorrenza = -1;
    DateRange dateRicorrenza;

    int chkLOC_Comune = 0;
    QString comune;
    int chkLOC_Provincia = 0;
    QString provincia;

    int chkECO_Fatt = 0;
    DateRange dateFatturato;
    NumberRange fatturato;

    int chkECO_NAcq = 0;
    DateRange dateAcquisti;
    NumberRange numeroAcquisti;

    int chkECO_PerAcq = 0;
    DateRange periodoAcquisto;

    int chkECO_PtFid = 0;
    NumberRange puntiFidelity;

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
std::optional<CriteriaFailure> testFiltri(const Criteria& criteria);

} // namespace zul
