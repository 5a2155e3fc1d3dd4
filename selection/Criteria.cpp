#include "selection/Criteria.h"

#include "base/LocaleInput.h"

#include <array>

namespace zul {

namespace {

constexpr int PageAnagrafici = 0;
constexpr int PageLocalizzazione = 1;

/// One row of the check table. Each row reads the criteria and the locale and says whether it fails.
struct Check
{
    bool (*applies)(const Criteria&);
    bool (*fails)(const Criteria&, const QLocale&);
    const char* message;
    int page;
};

bool neitherIsDate(const DateTexts& dates, const QLocale& locale)
{
    return !isDate(dates.from, locale) && !isDate(dates.to, locale);
}

bool neitherIsNumber(const NumberTexts& numbers, const QLocale& locale)
{
    return !isNumeric(numbers.from, locale) && !isNumeric(numbers.to, locale);
}

// The order is the order in which the operator is told. Three things look like slips and are meant:
// only the age needs both of its bounds; the fidelity points speak of the number of sales; and every
// failure but those of commune, province and classification brings the first page forward, also where the
// criterion stands on "Economici".
constexpr std::array<Check, 14> Checks{{
    {[](const Criteria& c) { return c.chkANA_Tipo == 1; },
     [](const Criteria& c, const QLocale&) {
         return c.chkANA_Tipo_Cli == 0 && c.chkANA_Tipo_For == 0 && c.chkANA_Tipo_Con == 0;
     },
     "Selezionare almeno una tipologia tra cliente, fornitore e contatto.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkANA_Eta == 1; },
     [](const Criteria& c, const QLocale& l) { return !isNumeric(c.eta.from, l) || !isNumeric(c.eta.to, l); },
     "Intervallo di età non valido.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkANA_Sesso == 1; },
     [](const Criteria& c, const QLocale&) { return !c.optFemmina && !c.optMaschio; },
     "Selezionare o maschio o femmina.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkANA_Ricorr == 1; },
     [](const Criteria& c, const QLocale&) { return c.idRicorrenza < 1; },
     "Selezionare una ricorrenza valida.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkANA_Ricorr == 1; },
     [](const Criteria& c, const QLocale& l) { return neitherIsDate(c.dateRicorrenza, l); },
     "Inserire correttamente le date di calcolo della ricorrenza.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkLOC_Comune == 1; },
     [](const Criteria& c, const QLocale&) { return c.comune.isEmpty(); },
     "Selezionare correttamente il comune.", PageLocalizzazione},
    {[](const Criteria& c) { return c.chkLOC_Provincia == 1; },
     [](const Criteria& c, const QLocale&) { return c.provincia.isEmpty(); },
     "Inserire correttamente la provincia.", PageLocalizzazione},
    {[](const Criteria& c) { return c.chkECO_Classif == 1; },
     [](const Criteria& c, const QLocale&) { return c.idClassificazione < 1; },
     "Selezionare correttamente la classificazione del cliente.", PageLocalizzazione},
    {[](const Criteria& c) { return c.chkECO_Fatt == 1; },
     [](const Criteria& c, const QLocale& l) { return neitherIsDate(c.dateFatturato, l); },
     "Inserire correttamente le date per il calcolo del fatturato.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkECO_Fatt == 1; },
     [](const Criteria& c, const QLocale& l) { return neitherIsNumber(c.fatturato, l); },
     "Inserire correttamente l'intervallo del fatturato per cliente.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkECO_NAcq == 1; },
     [](const Criteria& c, const QLocale& l) { return neitherIsDate(c.dateAcquisti, l); },
     "Inserire correttamente le date per il calcolo del numero di vendite.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkECO_NAcq == 1; },
     [](const Criteria& c, const QLocale& l) { return neitherIsNumber(c.numeroAcquisti, l); },
     "Inserire correttamente l'intervallo del numero di vendite.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkECO_PerAcq == 1; },
     [](const Criteria& c, const QLocale& l) { return neitherIsDate(c.periodoAcquisto, l); },
     "Inserire correttamente le date per il periodo di acquisto.", PageAnagrafici},
    {[](const Criteria& c) { return c.chkECO_PtFid == 1; },
     [](const Criteria& c, const QLocale& l) { return neitherIsNumber(c.puntiFidelity, l); },
     "Inserire correttamente l'intervallo del numero di vendite.", PageAnagrafici},
}};

} // namespace

std::optional<CriteriaFailure> testFiltri(const Criteria& criteria, const QLocale& locale)
{
    for (const Check& check : Checks)
        if (check.applies(criteria) && check.fails(criteria, locale))
            return CriteriaFailure{QString::fromUtf8(check.message), check.page};
    return std::nullopt;
}

} // namespace zul
