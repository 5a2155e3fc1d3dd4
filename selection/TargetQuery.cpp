#include "selection/TargetQuery.h"

#include "hostlib/Ado.h"
#include "hostlib/Host.h"
#include "selection/SqlLiteral.h"

#include <limits>

namespace zul {

namespace {

using namespace Qt::StringLiterals;

QString typeClause(const Criteria& criteria)
{
    if (criteria.chkANA_Tipo != 1 ||
        (criteria.chkANA_Tipo_Con != 1 && criteria.chkANA_Tipo_For != 1 && criteria.chkANA_Tipo_Cli != 1)) {
        return {};
    }
    QString clause = u" and ("_s;
    if (criteria.chkANA_Tipo_Cli == 1) {
        clause += u" tabClienti.Cliente<>0 or"_s;
    }
    if (criteria.chkANA_Tipo_For == 1) {
        clause += u" tabClienti.Fornitore<>0 or"_s;
    }
    if (criteria.chkANA_Tipo_Con == 1) {
        clause += u" tabClienti.Contatto<>0 or"_s;
    }
    clause.chop(3);
    return clause + u" )"_s;
}

QString sexClause(const Criteria& criteria)
{
    if (criteria.chkANA_Sesso != 1) {
        return {};
    }
    if (criteria.optMaschio) {
        return u" and tabClienti.Sesso='M'"_s;
    }
    if (criteria.optFemmina) {
        return u" and tabClienti.Sesso='F'"_s;
    }
    return {};
}

// A range with one usable bound is open at the other end.
struct Days
{
    QDate from;
    QDate to;
};

Days daysOf(const DateRange& range)
{
    return {range.from.value_or(QDate(1753, 1, 1)), range.to.value_or(QDate(9999, 12, 31))};
}

struct Numbers
{
    double least;
    double most;
};

Numbers numbersOf(const NumberRange& range)
{
    return {range.from.value_or(std::numeric_limits<double>::lowest()),
            range.to.value_or(std::numeric_limits<double>::max())};
}

} // namespace

QString ageExpression(QDate today)
{
    return u"DateDiff(year,tabClienti.DataNascita,"_s + SqlLiteral::DateLiteral(today) + u")"_s;
}

QString selectionStatement(const Criteria& criteria, QDate today)
{
    const QString age = ageExpression(today);
    const QString insert = u"INSERT INTO tabSpoolReportStat2(intero1) "_s;
    QString select = u"SELECT tabClienti.idCliente "
                     " FROM tabclienti"
                     " WHERE 1=1 "_s;
    select += typeClause(criteria);
    if (criteria.chkANA_Eta == 1) {
        // The bounds go in as they were typed: validation has found them numeric. A decimal comma passes
        // validation and is refused by the database; that search fails and is logged.
        select += u" and "_s + age + u" >= "_s + criteria.eta.from;
        select += u" and "_s + age + u" <= "_s + criteria.eta.to;
    }
    select += sexClause(criteria);
    if (criteria.chkLOC_Comune == 1 && !criteria.comune.isEmpty()) {
        select += u" and tabClienti.Paese='"_s + SqlLiteral::TextLiteral(criteria.comune) + u"'"_s;
    }
    if (criteria.chkLOC_Provincia == 1 && !criteria.provincia.isEmpty()) {
        select += u" and tabClienti.provincia='"_s + SqlLiteral::TextLiteral(criteria.provincia) + u"'"_s;
    }
    if (criteria.chk_Avanzata == 1) {
        select += u" and tabClienti.idcliente in ("_s + criteria.parametriRicercaAvanzata + u") "_s;
    }
    // The join leaves two blanks behind the column list, as it always has.
    return insert + u" "_s + select;
}

void fillScratchTable(const ado::Connection& connection, hostlib::CustomerFilterSql& filters,
                      const Criteria& criteria, QDate today)
{
    connection.execute(QString::fromLatin1(EmptyScratchTable));
    connection.execute(selectionStatement(criteria, today));

    // Each criterion runs its plain statement and then the restricted one; together they leave the ids that
    // were there before and meet the criterion.
    const QString ids = QString::fromLatin1(ScratchTableIds);
    const auto narrow = [&](int check, auto&& plain, auto&& restricted) {
        if (check != 1) {
            return;
        }
        connection.execute(plain());
        connection.execute(restricted());
    };

    const Days recurrence = daysOf(criteria.dateRicorrenza);
    narrow(
        criteria.chkANA_Ricorr,
        [&] { return filters.Ricorrenze(criteria.idRicorrenza, recurrence.from, recurrence.to); },
        [&] { return filters.RicorrenzeIn(criteria.idRicorrenza, recurrence.from, recurrence.to, ids); });

    const Numbers points = numbersOf(criteria.puntiFidelity);
    narrow(
        criteria.chkECO_PtFid, [&] { return filters.PuntiFidelity(points.least, points.most); },
        [&] { return filters.PuntiFidelityIn(points.least, points.most, ids); });

    narrow(
        criteria.chkECO_Classif, [&] { return filters.Classificazione(criteria.idClassificazione); },
        [&] { return filters.ClassificazioneIn(criteria.idClassificazione, ids); });

    const Days turnoverDays = daysOf(criteria.dateFatturato);
    const Numbers turnover = numbersOf(criteria.fatturato);
    narrow(
        criteria.chkECO_Fatt,
        [&] { return filters.Fatturato(turnoverDays.from, turnoverDays.to, turnover.least, turnover.most); },
        [&] {
            return filters.FatturatoIn(turnoverDays.from, turnoverDays.to, turnover.least, turnover.most,
                                       ids);
        });

    const Days salesDays = daysOf(criteria.dateAcquisti);
    const Numbers sales = numbersOf(criteria.numeroAcquisti);
    narrow(
        criteria.chkECO_NAcq,
        [&] { return filters.NumeroAcquisti(salesDays.from, salesDays.to, sales.least, sales.most); },
        [&] { return filters.NumeroAcquistiIn(salesDays.from, salesDays.to, sales.least, sales.most, ids); });

    const Days period = daysOf(criteria.periodoAcquisto);
    narrow(
        criteria.chkECO_PerAcq, [&] { return filters.PeriodoAcquisto(period.from, period.to); },
        [&] { return filters.PeriodoAcquistoIn(period.from, period.to, ids); });
}

} // namespace zul
