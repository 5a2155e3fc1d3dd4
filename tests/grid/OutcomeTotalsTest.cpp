#include "grid/OutcomeTotals.h"

#include <gtest/gtest.h>

using namespace zul;
using namespace Qt::StringLiterals;

namespace {

const QLocale italian(QLocale::Italian, QLocale::Italy);

} // namespace

TEST(OutcomeTotals, AddUpWhatWentWellAndWhatDidNotByReason)
{
    OutcomeTotals totals;
    EXPECT_EQ(totals.text(italian), QString());
    totals.add(u"       - ****");
    EXPECT_EQ(totals.text(italian), QString()) << "nobody was handled";
    for (int i = 0; i < 1204; ++i) {
        totals.add(u"OK     - Preparato SMS per Rossi: e figli");
    }
    totals.add(u"ERRORE - Saltata richiesta invio SMS per D'Orto: 100%: numero cellulare non valido.");
    totals.add(u"ERRORE - Saltata richiesta invio SMS per Neri: consenso SMS non presente.");
    totals.add(u"ERRORE - Saltata richiesta invio SMS per 😀: numero cellulare non valido.");
    totals.add(u"ERR    - Neri, contatto 12: il testo: Ciao.");
    totals.add(u"altro");
    EXPECT_EQ(totals.text(italian), u"1.204 riusciti · 4 scartati: numero cellulare non valido 2, "
                                    "consenso SMS non presente 1, altri errori 1"_s);
    totals.clear();
    EXPECT_EQ(totals.text(italian), QString());
    totals.add(u"OK     - Preparata EMAIL per Neri");
    EXPECT_EQ(totals.text(italian), u"1 riuscito · 0 scartati"_s);
    totals.clear();
    totals.add(u"ERRORE - ");
    EXPECT_EQ(totals.text(italian), u"0 riusciti · 1 scartato: altri errori 1"_s);
}
