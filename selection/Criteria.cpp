#include "selection/Criteria.h"

#include "base/LocaleInput.h"

#include <array>

namespace zul {

namespace {

constexpr int PageAnagrafici = 0;
constexpr int PageLocalizzazione = 1;

/// One row of the check table.
struct Check
{
    bool (*applies)(const Criteria&);
    bool (*fails)(const Criteria&);
    const char* message;
    int page;
};

template <class Range>
bool isEmpty(const Range& range)
{
    return !range.from && !range.to;
}

// The order is the order in which the operator is told. Three things look like slips and are meant:
// only the age needs both of its bounds; the fidelity points speak of the number of sales; and every
// failure but those of commune, province and classification brings the first page forward, also where the
// criterion stands on "Economici".
constexpr std::array<Check, 14> Checks{{
    {[](const Criteria& c) { return c.chkANA_Tipo == 1; },
     [](const Criteria& c) {
         return c.chkANA_Tipo_Cli == 0 && c.chkANA_Tipo_For == 0 && c.chkANA_Tipo_Con == 0;
     },
     "Selezionare almeno una tipologia tra cliente, fornitore e contatto.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkANA_Eta == 1; },
     [](const Criteria& c) { return !c.eta.bothAreNumbers; }, "Intervallo di età non valido.",
     PageAnagrafici},
    {[](const Criteria& c) { return c.chkANA_Sesso == 1; },
     [](const Criteria& c) { return !c.optFemmina && !c.optMaschio; }, "Selezionare o maschio o femmina.",
     PageAnagrafici},
    {[](const Criteria& c) { return c.chkANA_Ricorr == 1; },
     [](const Criteria& c) { return c.idRicorrenza < 1; }, "Selezionare una ricorrenza valida.",
     PageAnagrafici},
    {[](const Criteria& c) { return c.chkANA_Ricorr == 1; },
     [](const Criteria& c) { return isEmpty(c.dateRicorrenza); },
     "Inserire correttamente le date di calcolo della ricorrenza.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkLOC_Comune == 1; },
     [](const Criteria& c) { return c.comune.isEmpty(); }, "Selezionare correttamente il comune.",
     PageLocalizzazione},
    {[](const Criteria& c) { return c.chkLOC_Provincia == 1; },
     [](const Criteria& c) { return c.provincia.isEmpty(); }, "Inserire correttamente la provincia.",
     PageLocalizzazione},
    {[](const Criteria& c) { return c.chkECO_Classif == 1; },
     [](const Criteria& c) { return c.idClassificazione < 1; },
     "Selezionare correttamente la classificazione del cliente.", PageLocalizzazione},
    {[](const Criteria& c) { return c.chkECO_Fatt == 1; },
     [](const Criteria& c) { return isEmpty(c.dateFatturato); },
     "Inserire correttamente le date per il calcolo del fatturato.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkECO_Fatt == 1; },
     [](const Criteria& c) { return isEmpty(c.fatturato); },
     "Inserire correttamente l'intervallo del fatturato per cliente.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkECO_NAcq == 1; },
     [](const Criteria& c) { return isEmpty(c.dateAcquisti); },
     "Inserire correttamente le date per il calcolo del numero di vendite.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkECO_NAcq == 1; },
     [](const Criteria& c) { return isEmpty(c.numeroAcquisti); },
     "Inserire correttamente l'intervallo del numero di vendite.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkECO_PerAcq == 1; },
     [](const Criteria& c) { return isEmpty(c.periodoAcquisto); },
     "Inserire correttamente le date per il periodo di acquisto.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkECO_PtFid == 1; },
     [](const Criteria& c) { return isEmpty(c.puntiFidelity); },
     "Inserire correttamente l'intervallo del numero di vendite.", PageAnagrafici},
}};

} // namespace

DateRange dateRange(const QString& from, const QString& to, const QLocale& locale)
{
    return {toDate(from, locale), toDate(to, locale)};
}

NumberRange numberRange(const QString& from, const QString& to, const QLocale& locale)
{
    return {toNumber(from, locale), toNumber(to, locale)};
}

AgeRange ageRange(const QString& from, const QString& to, const QLocale& locale)
{
    return {from, to, isNumeric(from, locale) && isNumeric(to, locale)};
}

std::optional<CriteriaFailure> testFiltri(const Criteria& criteria)
{
    for (const Check& check : Checks) {
        if (check.applies(criteria) && check.fails(criteria)) {
            return CriteriaFailure{QString::fromUtf8(check.message), check.page};
        }
    }
    return std::nullopt;
}

} // namespace zul
