#include "selection/TargetQuery.h"

#include "base/LocaleInput.h"
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
        (criteria.chkANA_Tipo_Con != 1 && criteria.chkANA_Tipo_For != 1 && criteria.chkANA_Tipo_Cli != 1))
        return {};
    QString clause = u" and ("_s;
    if (criteria.chkANA_Tipo_Cli == 1)
        clause += u" tabClienti.Cliente<>0 or"_s;
    if (criteria.chkANA_Tipo_For == 1)
        clause += u" tabClienti.Fornitore<>0 or"_s;
    if (criteria.chkANA_Tipo_Con == 1)
        clause += u" tabClienti.Contatto<>0 or"_s;
    clause.chop(3);
    return clause + u" )"_s;
}

QString sexClause(const Criteria& criteria)
{
    if (criteria.chkANA_Sesso != 1)
        return {};
    if (criteria.optMaschio)
        return u" and tabClienti.Sesso='M'"_s;
    if (criteria.optFemmina)
        return u" and tabClienti.Sesso='F'"_s;
    return {};
}

// A range with one usable bound is open at the other end.
QDate lowerDate(const QString& text, const QLocale& locale)
{
    return toDate(text, locale).value_or(QDate(1753, 1, 1));
}

QDate upperDate(const QString& text, const QLocale& locale)
{
    return toDate(text, locale).value_or(QDate(9999, 12, 31));
}

double lowerNumber(const QString& text, const QLocale& locale)
{
    return toNumber(text, locale).value_or(std::numeric_limits<double>::lowest());
}

double upperNumber(const QString& text, const QLocale& locale)
{
    return toNumber(text, locale).value_or(std::numeric_limits<double>::max());
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
    if (criteria.chkLOC_Comune == 1 && !criteria.comune.isEmpty())
        select += u" and tabClienti.Paese='"_s + SqlLiteral::TextLiteral(criteria.comune) + u"'"_s;
    if (criteria.chkLOC_Provincia == 1 && !criteria.provincia.isEmpty())
        select += u" and tabClienti.provincia='"_s + SqlLiteral::TextLiteral(criteria.provincia) + u"'"_s;
    if (criteria.chk_Avanzata == 1)
        select += u" and tabClienti.idcliente in ("_s + criteria.parametriRicercaAvanzata + u") "_s;
    // The join leaves two blanks behind the column list, as it always has.
    return insert + u" "_s + select;
}

void fillScratchTable(const ado::Connection& connection, hostlib::CustomerFilterSql& filters,
                      const Criteria& criteria, QDate today, const QLocale& locale)
{
    connection.execute(QString::fromLatin1(EmptyScratchTable));
    connection.execute(selectionStatement(criteria, today));

    // Each criterion runs its plain statement and then the restricted one; together they leave the ids that
    // were there before and meet the criterion.
    const QString ids = QString::fromLatin1(ScratchTableIds);
    const auto narrow = [&](int check, auto&& plain, auto&& restricted) {
        if (check != 1)
            return;
        connection.execute(plain());
        connection.execute(restricted());
    };

    {
        const QDate from = lowerDate(criteria.dateRicorrenza.from, locale);
        const QDate to = upperDate(criteria.dateRicorrenza.to, locale);
        narrow(
            criteria.chkANA_Ricorr, [&] { return filters.Ricorrenze(criteria.idRicorrenza, from, to); },
            [&] { return filters.RicorrenzeIn(criteria.idRicorrenza, from, to, ids); });
    }
    {
        const double from = lowerNumber(criteria.puntiFidelity.from, locale);
        const double to = upperNumber(criteria.puntiFidelity.to, locale);
        narrow(
            criteria.chkECO_PtFid, [&] { return filters.PuntiFidelity(from, to); },
            [&] { return filters.PuntiFidelityIn(from, to, ids); });
    }
    narrow(
        criteria.chkECO_Classif, [&] { return filters.Classificazione(criteria.idClassificazione); },
        [&] { return filters.ClassificazioneIn(criteria.idClassificazione, ids); });
    {
        const QDate from = lowerDate(criteria.dateFatturato.from, locale);
        const QDate to = upperDate(criteria.dateFatturato.to, locale);
        const double least = lowerNumber(criteria.fatturato.from, locale);
        const double most = upperNumber(criteria.fatturato.to, locale);
        narrow(
            criteria.chkECO_Fatt, [&] { return filters.Fatturato(from, to, least, most); },
            [&] { return filters.FatturatoIn(from, to, least, most, ids); });
    }
    {
        const QDate from = lowerDate(criteria.dateAcquisti.from, locale);
        const QDate to = upperDate(criteria.dateAcquisti.to, locale);
        const double least = lowerNumber(criteria.numeroAcquisti.from, locale);
        const double most = upperNumber(criteria.numeroAcquisti.to, locale);
        narrow(
            criteria.chkECO_NAcq, [&] { return filters.NumeroAcquisti(from, to, least, most); },
            [&] { return filters.NumeroAcquistiIn(from, to, least, most, ids); });
    }
    {
        const QDate from = lowerDate(criteria.periodoAcquisto.from, locale);
        const QDate to = upperDate(criteria.periodoAcquisto.to, locale);
        narrow(
            criteria.chkECO_PerAcq, [&] { return filters.PeriodoAcquisto(from, to); },
            [&] { return filters.PeriodoAcquistoIn(from, to, ids); });
    }
}

} // namespace zul
