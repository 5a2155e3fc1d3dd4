#include "selection/Criteria.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

const QLocale italian(QLocale::Italian, QLocale::Italy);
const QLocale american(QLocale::English, QLocale::UnitedStates);

/// Every criterion ticked and usable.
Criteria usable(const QLocale& locale)
{
    const bool it = locale.language() == QLocale::Italian;
    const DateRange dates = dateRange(it ? QStringLiteral("31/12/2024") : QStringLiteral("12/31/2024"),
                                      QStringLiteral("1/1/2025"), locale);
    const NumberRange numbers = numberRange(it ? QStringLiteral("1.234,50") : QStringLiteral("1,234.50"),
                                            QStringLiteral("-3"), locale);
    Criteria c;
    c.chkANA_Tipo = c.chkANA_Tipo_Cli = 1;
    c.chkANA_Eta = 1;
    c.eta = ageRange(QStringLiteral("18"), QStringLiteral("30"), locale);
    c.chkANA_Sesso = 1;
    c.optFemmina = true;
    c.chkANA_Ricorr = 1;
    c.idRicorrenza = 1;
    c.dateRicorrenza = dates;
    c.chkLOC_Comune = 1;
    c.comune = QStringLiteral("L'Aquila");
    c.chkLOC_Provincia = 1;
    c.provincia = QStringLiteral("AQ");
    c.chkECO_Fatt = 1;
    c.dateFatturato = dates;
    c.fatturato = numbers;
    c.chkECO_NAcq = 1;
    c.dateAcquisti = dates;
    c.numeroAcquisti = numbers;
    c.chkECO_PerAcq = 1;
    c.periodoAcquisto = dates;
    c.chkECO_PtFid = 1;
    c.puntiFidelity = numbers;
    c.chkECO_Classif = 1;
    c.idClassificazione = 1;
    return c;
}

struct Case
{
    const char* name;
    void (*spoil)(Criteria&);
    void (*untick)(Criteria&);
    const char* message;
    int page;
};

const DateRange noDates;
const NumberRange noNumbers;

// In the order in which the operator is told.
const std::vector<Case> cases{
    {"Tipo", [](Criteria& c) { c.chkANA_Tipo_Cli = 0; }, [](Criteria& c) { c.chkANA_Tipo = 0; },
     "Selezionare almeno una tipologia tra cliente, fornitore e contatto.", 0},
    {"Eta", [](Criteria& c) { c.eta.bothAreNumbers = false; }, [](Criteria& c) { c.chkANA_Eta = 0; },
     "Intervallo di età non valido.", 0},
    {"Sesso", [](Criteria& c) { c.optFemmina = false; }, [](Criteria& c) { c.chkANA_Sesso = 0; },
     "Selezionare o maschio o femmina.", 0},
    {"Ricorrenza", [](Criteria& c) { c.idRicorrenza = 0; }, [](Criteria& c) { c.chkANA_Ricorr = 0; },
     "Selezionare una ricorrenza valida.", 0},
    {"DateRicorrenza", [](Criteria& c) { c.dateRicorrenza = noDates; },
     [](Criteria& c) { c.chkANA_Ricorr = 0; }, "Inserire correttamente le date di calcolo della ricorrenza.",
     0},
    {"Comune", [](Criteria& c) { c.comune.clear(); }, [](Criteria& c) { c.chkLOC_Comune = 0; },
     "Selezionare correttamente il comune.", 1},
    {"Provincia", [](Criteria& c) { c.provincia.clear(); }, [](Criteria& c) { c.chkLOC_Provincia = 0; },
     "Inserire correttamente la provincia.", 1},
    {"Classificazione", [](Criteria& c) { c.idClassificazione = 0; },
     [](Criteria& c) { c.chkECO_Classif = 0; }, "Selezionare correttamente la classificazione del cliente.",
     1},
    {"DateFatturato", [](Criteria& c) { c.dateFatturato = noDates; }, [](Criteria& c) { c.chkECO_Fatt = 0; },
     "Inserire correttamente le date per il calcolo del fatturato.", 0},
    {"Fatturato", [](Criteria& c) { c.fatturato = noNumbers; }, [](Criteria& c) { c.chkECO_Fatt = 0; },
     "Inserire correttamente l'intervallo del fatturato per cliente.", 0},
    {"DateAcquisti", [](Criteria& c) { c.dateAcquisti = noDates; }, [](Criteria& c) { c.chkECO_NAcq = 0; },
     "Inserire correttamente le date per il calcolo del numero di vendite.", 0},
    {"NumeroAcquisti", [](Criteria& c) { c.numeroAcquisti = noNumbers; },
     [](Criteria& c) { c.chkECO_NAcq = 0; }, "Inserire correttamente l'intervallo del numero di vendite.", 0},
    {"PeriodoAcquisto", [](Criteria& c) { c.periodoAcquisto = noDates; },
     [](Criteria& c) { c.chkECO_PerAcq = 0; }, "Inserire correttamente le date per il periodo di acquisto.",
     0},
    {"PuntiFidelity", [](Criteria& c) { c.puntiFidelity = noNumbers; },
     [](Criteria& c) { c.chkECO_PtFid = 0; }, "Inserire correttamente l'intervallo del numero di vendite.",
     0},
};

class CriteriaTest : public ::testing::TestWithParam<QLocale>
{
protected:
    std::optional<CriteriaFailure> judge(const Criteria& c) const { return testFiltri(c); }
    QString message(const Criteria& c) const
    {
        const auto failure = judge(c);
        return failure ? failure->message : QString();
    }
    Criteria good = usable(GetParam());
};

TEST_P(CriteriaTest, NothingTickedIsUsable)
{
    EXPECT_FALSE(judge(Criteria()).has_value());
    Criteria nothingTicked;
    for (const Case& c : cases) {
        c.spoil(nothingTicked);
    }
    EXPECT_FALSE(judge(nothingTicked).has_value());
}

TEST_P(CriteriaTest, EveryCriterionTickedAndFilledIsUsable)
{
    EXPECT_EQ(message(good), QString());
}

TEST_P(CriteriaTest, EachCheckFailsWithItsMessageAndPage)
{
    for (const Case& c : cases) {
        Criteria spoiled = good;
        c.spoil(spoiled);
        const auto failure = judge(spoiled);
        ASSERT_TRUE(failure.has_value()) << c.name;
        EXPECT_EQ(failure->message, QString::fromUtf8(c.message)) << c.name;
        EXPECT_EQ(failure->page, c.page) << c.name;
    }
}

TEST_P(CriteriaTest, ACriterionThatIsNotTickedIsNotJudged)
{
    for (const Case& c : cases) {
        Criteria spoiled = good;
        c.spoil(spoiled);
        c.untick(spoiled);
        EXPECT_EQ(message(spoiled), QString()) << c.name;
    }
}

TEST_P(CriteriaTest, OfSeveralFailuresTheFirstInOrderIsTold)
{
    for (std::size_t first = 0; first < cases.size(); ++first) {
        Criteria spoiled = good;
        for (std::size_t later = first; later < cases.size(); ++later) {
            cases[later].spoil(spoiled);
        }
        EXPECT_EQ(message(spoiled), QString::fromUtf8(cases[first].message)) << cases[first].name;
    }
}

TEST_P(CriteriaTest, CheckBoxesCountWhenTheyAreExactlyOneAndSubTypesWhenTheyAreNotZero)
{
    Criteria greyed;
    greyed.chkANA_Tipo = greyed.chkANA_Eta = greyed.chkANA_Sesso = greyed.chkANA_Ricorr = 2;
    greyed.chkLOC_Comune = greyed.chkLOC_Provincia = greyed.chkECO_Fatt = greyed.chkECO_NAcq = 2;
    greyed.chkECO_PerAcq = greyed.chkECO_PtFid = greyed.chkECO_Classif = 2;
    EXPECT_FALSE(judge(greyed).has_value());

    Criteria subTypeGreyed;
    subTypeGreyed.chkANA_Tipo = 1;
    subTypeGreyed.chkANA_Tipo_Con = 2;
    EXPECT_FALSE(judge(subTypeGreyed).has_value());
}

TEST_P(CriteriaTest, OnlyTheAgeNeedsBothOfItsBounds)
{
    const QString ageMessage = QStringLiteral("Intervallo di età non valido.");
    Criteria c;
    c.chkANA_Eta = 1;
    c.eta = ageRange(QStringLiteral("10"), QString(), GetParam());
    EXPECT_EQ(message(c), ageMessage);
    c.eta = ageRange(QString(), QStringLiteral("10"), GetParam());
    EXPECT_EQ(message(c), ageMessage);
    c.eta = ageRange(QStringLiteral("10"), QStringLiteral("venti"), GetParam());
    EXPECT_EQ(message(c), ageMessage);
    c.eta = ageRange(QStringLiteral("10"), QStringLiteral("20"), GetParam());
    EXPECT_EQ(message(c), QString());
}

TEST_P(CriteriaTest, OneUsableBoundIsEnoughForEveryOtherRange)
{
    const QString day = QStringLiteral("1/1/2025");
    const QString two = QStringLiteral("2");
    const QString words = QStringLiteral("abc");
    for (const DateRange& dates : {dateRange(day, {}, GetParam()), dateRange(words, day, GetParam())}) {
        for (const NumberRange& numbers :
             {numberRange(two, {}, GetParam()), numberRange(words, two, GetParam())}) {
            Criteria c = good;
            c.dateRicorrenza = c.dateFatturato = c.dateAcquisti = c.periodoAcquisto = dates;
            c.fatturato = c.numeroAcquisti = c.puntiFidelity = numbers;
            EXPECT_EQ(message(c), QString());
        }
    }
}

TEST_P(CriteriaTest, FidelityPointsSpeakOfTheNumberOfSales)
{
    Criteria c;
    c.chkECO_PtFid = 1;
    c.puntiFidelity = numberRange(QStringLiteral("abc"), QStringLiteral("abc"), GetParam());
    EXPECT_EQ(message(c), QStringLiteral("Inserire correttamente l'intervallo del numero di vendite."));
}

TEST_P(CriteriaTest, ClassificationBringsThePlacePageForwardAndOtherSalesChecksTheFirst)
{
    Criteria classification;
    classification.chkECO_Classif = 1;
    EXPECT_EQ(judge(classification)->page, 1);
    Criteria sales;
    sales.chkECO_PtFid = 1;
    EXPECT_EQ(judge(sales)->page, 0);
}

TEST_P(CriteriaTest, IdsBeginAtOne)
{
    for (const int id : {-1, 0}) {
        Criteria c = good;
        c.idRicorrenza = id;
        EXPECT_EQ(message(c), QStringLiteral("Selezionare una ricorrenza valida.")) << id;
        c = good;
        c.idClassificazione = id;
        EXPECT_EQ(message(c), QStringLiteral("Selezionare correttamente la classificazione del cliente."))
            << id;
    }
    Criteria c = good;
    c.idRicorrenza = c.idClassificazione = 1;
    EXPECT_EQ(message(c), QString());
}

TEST_P(CriteriaTest, AClearedCommuneIsJudgedByItsTextAlone)
{
    Criteria c;
    c.chkLOC_Comune = c.chkLOC_Provincia = 1;
    c.provincia = QStringLiteral("RM");
    EXPECT_EQ(message(c), QStringLiteral("Selezionare correttamente il comune."));
    c.comune = QStringLiteral(" "); // a blank is a text
    EXPECT_EQ(message(c), QString());
}

TEST_P(CriteriaTest, MaleAloneOrFemaleAloneIsEnough)
{
    Criteria c;
    c.chkANA_Sesso = 1;
    c.optMaschio = true;
    EXPECT_EQ(message(c), QString());
    c.optMaschio = false;
    c.optFemmina = true;
    EXPECT_EQ(message(c), QString());
}

INSTANTIATE_TEST_SUITE_P(Locales, CriteriaTest, ::testing::Values(italian, american),
                         [](const auto& given) { return given.param.name().toStdString(); });

TEST(CriteriaLocaleTest, NumbersAndDatesAreReadByTheRulesOfTheLocale)
{
    const auto isAge = [](const char* text, const QLocale& locale) {
        const AgeRange age = ageRange(QLatin1String(text), QLatin1String(text), locale);
        EXPECT_EQ(age.from, QLatin1String(text)) << "as typed";
        EXPECT_EQ(age.to, QLatin1String(text));
        return age.bothAreNumbers;
    };
    EXPECT_TRUE(isAge("18,5", italian));
    EXPECT_FALSE(isAge("18,5", american));
    EXPECT_FALSE(isAge("18.5", italian));
    EXPECT_TRUE(isAge("18.5", american));

    const QString day = QStringLiteral("25/12/2024");
    EXPECT_EQ(dateRange(day, {}, italian).from, QDate(2024, 12, 25));
    EXPECT_EQ(dateRange(day, {}, italian).to, std::nullopt);
    EXPECT_EQ(dateRange({}, day, american).to, std::nullopt) << "there is no month 25";

    const QString number = QStringLiteral("1.234,50");
    EXPECT_EQ(numberRange({}, number, italian).to, 1234.5);
    EXPECT_EQ(numberRange({}, number, italian).from, std::nullopt);
    EXPECT_EQ(numberRange(number, {}, american).from, std::nullopt);
}

} // namespace
} // namespace zul
