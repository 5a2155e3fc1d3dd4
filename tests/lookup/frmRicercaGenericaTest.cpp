#include "lookup/frmRicercaGenerica.h"

#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridProbe.h"
#include "hostlib/Error.h"
#include "session/FormHelpers.h"
#include "tests/support/ComponentTest.h"
#include "tests/support/SmallScreen.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

/// Fills a grid as a host does: two columns, the rows given.
class FakeFiller final : public ComponentObject
{
public:
    std::vector<std::pair<QString, QString>> rows{
        {u"RM"_s, u"Roma"_s}, {u"MI"_s, u"Milano"_s}, {u"RN"_s, u"Rimini"_s}};
    bool hasNumbers = false; ///< the ids come as numbers
    std::vector<GridRequest> requests;

    qint32 idUtente() const override { return 0; }
    void EventoGrd_CaricaGrd(ReportGrid& grid, const GridRequest& request) override
    {
        requests.push_back(request);
        grid.deleteRecords();
        grid.deleteColumns();
        grid.addColumn(
            {.field = u"id"_s, .caption = request.captions.value(0), .width = 50, .visible = false});
        grid.addColumn({.field = u"testo"_s, .caption = request.captions.value(1)});
        for (const auto& [id, text] : rows) {
            const auto append = [&](int column, const QString& value) {
                grid.store().appendText16(column, reinterpret_cast<const char16_t*>(value.utf16()),
                                          static_cast<std::size_t>(value.size()));
            };
            if (hasNumbers) {
                grid.store().appendInteger(0, id.toLongLong());
            } else {
                append(0, id);
            }
            append(1, text);
            grid.store().endRow();
        }
        grid.populate();
    }
};

class RicercaGenericaTest : public ComponentTest
{
protected:
    void load(const QString& table = u"tabComuni"_s)
    {
        dialog.Init(table);
        dialog.resize(600, 500);
        dialog.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    }

    template <class T>
    T* find(const char* name)
    {
        T* found = dialog.findChild<T*>(QLatin1String(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }

    void select(int row)
    {
        QTest::mouseClick(probeOf(grid())->bodyViewport(), Qt::LeftButton, {},
                          probeOf(grid())->rowRect(row).center());
    }

    ReportGrid* grid() { return find<ReportGrid>("grdRicerca"); }
    QLineEdit* quickSearch() { return find<QLineEdit>("txtRicVeloce"); }
    QString status() { return find<QLabel>("lblStato")->text(); }
    QString tag() { return tagOf(&dialog); }

    FakeFiller filler;
    frmRicercaGenerica dialog{&filler};
};

TEST_F(RicercaGenericaTest, LoadingAModeHandsTheHostTheQueryTheLayoutAndTheCaptions)
{
    load(u"TABRIC_RICORRENZE"_s);
    ASSERT_EQ(filler.requests.size(), 1U);
    const GridRequest& request = filler.requests[0];
    EXPECT_TRUE(request.sql.startsWith(u"SELECT tabRic_Ricorrenze.id,  "_s));
    EXPECT_EQ(
        (QStringList{request.visibility, request.iconIndex, request.editMask, request.sizable,
                     request.buttonType, request.preFormat, request.preFormatQta, request.preFormatColore}),
        (QStringList{u"0,1"_s, u"0,0"_s, u"0,0"_s, u"0,1"_s, u"0,0"_s, u"0,0"_s, u"0,0"_s, u"0,0"_s}));
    EXPECT_EQ(request.captions, (QStringList{u"id"_s, u"Descrizione"_s}));
    EXPECT_EQ(find<QLabel>("Label2")->text(), u"Selezione ricorrenze"_s);
    EXPECT_EQ(dialog.windowTitle(), u"Selezione ricorrenze"_s);
    EXPECT_EQ(find<QLabel>("lblHeader")->text(), u"Elenco ricorrenze disponibili"_s);
    EXPECT_EQ(status(), u"Ricerca avanzata ** Elementi visualizzati: 3"_s);
}

TEST_F(RicercaGenericaTest, AnEmptyResultIsToldInTheStatusLine)
{
    filler.rows.clear();
    load();
    EXPECT_EQ(status(), u"Ricerca avanzata ** Nessun elemento visualizzato."_s);
    EXPECT_EQ(find<QLabel>("lblHeader")->text(), QString());
    EXPECT_TRUE(messages.empty());
}

TEST_F(RicercaGenericaTest, ATableThatItDoesNotKnowIsLoggedAndLeavesItEmpty)
{
    load(u"TabVettori"_s);
    EXPECT_TRUE(filler.requests.empty());
    EXPECT_EQ(logged(),
              QStringList{u"Init | Error 5 (Invalid procedure call or argument) in procedure Init of Form "
                          "frmRicercaGenerica | "_s});
    EXPECT_EQ(grid()->recordCount(), 0U);
}

TEST_F(RicercaGenericaTest, ItOpensWithTheFocusInTheQuickSearch)
{
    load();
    EXPECT_EQ(dialog.focusWidget(), quickSearch());
    EXPECT_EQ(quickSearch()->text(), QString());
}

TEST_F(RicercaGenericaTest, OnASmallScreenItIsNoLargerThanIt)
{
    load();
    expectOnScreen(dialog);
    expectReachable(find<QPushButton>("cmdOK"));
}

TEST_F(RicercaGenericaTest, OkTakesTheRowAndLeavesItsTag)
{
    load();
    EXPECT_EQ(dialog.GetId(), 0);
    EXPECT_EQ(dialog.GetDescrizione(), QString());
    select(2);
    QTest::mouseClick(find<QPushButton>("cmdOK"), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(tag(), u"OK"_s);
    EXPECT_EQ(dialog.GetIdAsString(), u"RN"_s);
    EXPECT_EQ(dialog.GetDescrizione(), u"Rimini"_s);
    EXPECT_EQ(dialog.GetCodice(), u"RN"_s);
}

TEST_F(RicercaGenericaTest, TheIdAsANumber)
{
    filler.rows = {{u"12"_s, u"a"_s}, {u"abc"_s, u"b"_s}, {u"2147483648"_s, u"c"_s}};
    const auto idOfRow = [&](int row) -> long {
        load();
        select(row);
        QTest::mouseClick(find<QPushButton>("cmdOK"), Qt::LeftButton);
        try {
            return dialog.GetId();
        } catch (const Error& error) {
            return -error.number();
        }
    };
    EXPECT_EQ(idOfRow(0), 12);
    EXPECT_EQ(idOfRow(1), -13);
    EXPECT_EQ(idOfRow(2), -6);
}

TEST_F(RicercaGenericaTest, TheIdIsNotWrittenInTheDigitsOfTheUsersLanguage)
{
    filler.hasNumbers = true;
    filler.rows = {{u"12"_s, u"a"_s}, {u"-3"_s, u"b"_s}};
    const QLocale before;
    for (const char* language : {"ar_EG", "bn_BD", "fa_IR", "sv_SE", "it_IT"}) {
        QLocale::setDefault(QLocale(QLatin1String(language)));
        load();
        select(0);
        QTest::mouseClick(find<QPushButton>("cmdOK"), Qt::LeftButton);
        EXPECT_EQ(dialog.GetId(), 12) << language;
        load();
        select(1);
        QTest::mouseClick(find<QPushButton>("cmdOK"), Qt::LeftButton);
        EXPECT_EQ(dialog.GetId(), -3) << language;
        EXPECT_EQ(dialog.GetIdAsString(), u"-3"_s);
    }
    QLocale::setDefault(before);
}

TEST_F(RicercaGenericaTest, CancelLeavesEscAndNoChoice)
{
    load();
    select(0);
    QTest::mouseClick(find<QPushButton>("cmdAnnulla"), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(tag(), u"ESC"_s);
    EXPECT_EQ(dialog.GetDescrizione(), QString());
}

TEST_F(RicercaGenericaTest, TheCloseButtonLeavesNothing)
{
    load();
    select(0);
    dialog.close();
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(tag(), QString());
    EXPECT_EQ(dialog.GetDescrizione(), QString());
}

TEST_F(RicercaGenericaTest, OkWithoutARowTellsSoAndStaysOpen)
{
    load();
    QTest::mouseClick(find<QPushButton>("cmdOK"), Qt::LeftButton);
    EXPECT_EQ(messages, std::vector<OperatorMessage>{
                            told(u"Selezionare un elemento della lista."_s, MessageIcon::Exclamation)});
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(tag(), QString());
}

TEST_F(RicercaGenericaTest, F6IsOkEscIsCancelAndF3IsTheQuickSearch)
{
    load();
    QTest::keyClick(quickSearch(), Qt::Key_F6);
    EXPECT_EQ(messages.size(), 1U) << "no row yet";
    quickSearch()->setText(u"mi"_s);
    EXPECT_EQ(probeOf(grid())->visibleRowCount(), 3) << "typing alone does not search";
    QTest::keyClick(quickSearch(), Qt::Key_F3);
    EXPECT_EQ(probeOf(grid())->visibleRowCount(), 2);
    EXPECT_EQ(dialog.focusWidget(), quickSearch()) << "F3 leaves the focus where it is";
    select(0);
    QTest::keyClick(probeOf(grid())->bodyViewport(), Qt::Key_F6);
    EXPECT_EQ(tag(), u"OK"_s);
    EXPECT_EQ(dialog.GetDescrizione(), u"Milano"_s);

    for (const bool inGrid : {false, true}) {
        setTag(&dialog, FormChoice::None);
        load();
        QTest::keyClick(inGrid ? probeOf(grid())->bodyViewport() : quickSearch(), Qt::Key_Escape);
        EXPECT_EQ(tag(), u"ESC"_s);
        EXPECT_FALSE(dialog.isVisible());
    }
}

TEST_F(RicercaGenericaTest, EnterInTheQuickSearchSearchesAndMovesTheFocusToTheGrid)
{
    load();
    QTest::keyClicks(quickSearch(), u"rom"_s);
    QTest::keyClick(quickSearch(), Qt::Key_Return);
    EXPECT_EQ(probeOf(grid())->visibleRowCount(), 1);
    EXPECT_TRUE(dialog.focusWidget() == grid() || grid()->isAncestorOf(dialog.focusWidget()));
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(filler.requests.size(), 1U) << "no query runs again";
}

TEST_F(RicercaGenericaTest, EnterSelectsTheFirstHitSoThatF6Confirms)
{
    load();
    QTest::keyClicks(quickSearch(), u"mi"_s);
    QTest::keyClick(quickSearch(), Qt::Key_Return);
    EXPECT_EQ(grid()->selectedRecords(), std::vector<uint32_t>{1});
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
    EXPECT_EQ(tag(), u"OK"_s);
    EXPECT_EQ(dialog.GetDescrizione(), u"Milano"_s);
    EXPECT_TRUE(messages.empty());
}

TEST_F(RicercaGenericaTest, DownGoesFromTheQuickSearchToTheRows)
{
    load();
    QTest::keyClick(quickSearch(), Qt::Key_Down);
    EXPECT_EQ(grid()->selectedRecords(), std::vector<uint32_t>{0});
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_EQ(grid()->selectedRecords(), std::vector<uint32_t>{1}) << "the focus is in the rows";
    quickSearch()->setFocus();
    QTest::keyClick(quickSearch(), Qt::Key_Down);
    EXPECT_EQ(grid()->selectedRecords(), std::vector<uint32_t>{1}) << "what was chosen stays so";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
    EXPECT_EQ(dialog.GetDescrizione(), u"Milano"_s);
}

TEST_F(RicercaGenericaTest, EnterThatFindsNothingSelectsNothing)
{
    load();
    select(0);
    QTest::keyClicks(quickSearch(), u"zzz"_s);
    QTest::keyClick(quickSearch(), Qt::Key_Return);
    EXPECT_FALSE(grid()->hasSelection());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
    EXPECT_EQ(messages.size(), 1U);
}

TEST_F(RicercaGenericaTest, TheStatusLineCountsWhatIsShown)
{
    load();
    EXPECT_EQ(status(), u"Ricerca avanzata ** Elementi visualizzati: 3"_s);
    for (const auto& [text, shown] : {std::pair{u"mi"_s, u"Ricerca avanzata ** Elementi visualizzati: 2"_s},
                                      {u"zzz"_s, u"Ricerca avanzata ** Nessun elemento visualizzato."_s},
                                      {u""_s, u"Ricerca avanzata ** Elementi visualizzati: 3"_s}}) {
        quickSearch()->setText(text);
        QTest::keyClick(quickSearch(), Qt::Key_F3);
        EXPECT_EQ(status(), shown);
    }
}

TEST_F(RicercaGenericaTest, EnterElsewhereDoesNothing)
{
    load();
    select(0);
    for (QWidget* place :
         {probeOf(grid())->bodyViewport(), static_cast<QWidget*>(find<QPushButton>("cmdAnnulla")),
          static_cast<QWidget*>(find<QPushButton>("cmdOK"))}) {
        QTest::keyClick(place, Qt::Key_Return);
        QTest::keyClick(place, Qt::Key_Enter);
    }
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(tag(), QString());
    EXPECT_TRUE(messages.empty());
}

TEST_F(RicercaGenericaTest, EnterOnTheSearchButtonSearches)
{
    load();
    quickSearch()->setText(u"mil"_s);
    auto* search = find<QPushButton>("cmdRicVeloce");
    search->setFocus();
    QTest::keyClick(search, Qt::Key_Return);
    EXPECT_EQ(probeOf(grid())->visibleRowCount(), 1);
}

TEST_F(RicercaGenericaTest, OtherKeysDoNothing)
{
    load();
    for (const Qt::Key key : {Qt::Key_F1, Qt::Key_F2, Qt::Key_F5, Qt::Key_F7}) {
        QTest::keyClick(&dialog, key);
    }
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(probeOf(grid())->visibleRowCount(), 3);
}

TEST_F(RicercaGenericaTest, TheSearchButtonSearchesTheTextOfTheBox)
{
    filler.rows.emplace_back(u"AQ"_s, u"L'Aquila 100% \"à\" 😀"_s);
    load();
    for (const auto& [text, rows] : {std::pair{u"L'AQUILA"_s, 1},
                                     {u"100%"_s, 1},
                                     {u"😀"_s, 1},
                                     {u"zzz"_s, 0},
                                     {u"RM"_s, 0},
                                     {u""_s, 4}}) {
        quickSearch()->setText(text);
        QTest::mouseClick(find<QPushButton>("cmdRicVeloce"), Qt::LeftButton);
        EXPECT_EQ(probeOf(grid())->visibleRowCount(), rows) << utf8(text);
    }
}

TEST_F(RicercaGenericaTest, APresetFilterWorksBeforeTheOperatorTypes)
{
    dialog.FiltroRicercaVeloce(u"mil"_s);
    load();
    EXPECT_EQ(quickSearch()->text(), u"mil"_s);
    EXPECT_EQ(probeOf(grid())->visibleRowCount(), 1);
}

TEST_F(RicercaGenericaTest, EachActivationBringsTheFocusBackAndThePresetFilter)
{
    dialog.FiltroRicercaVeloce(u"mil"_s);
    load();
    quickSearch()->setText(u"altro"_s);
    grid()->setFocus();
    QWidget other;
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    other.close();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_EQ(dialog.focusWidget(), quickSearch());
    EXPECT_EQ(quickSearch()->text(), u"mil"_s);
    EXPECT_EQ(probeOf(grid())->visibleRowCount(), 1);
}

TEST_F(RicercaGenericaTest, APresetFilterOfBlanksIsIgnored)
{
    dialog.FiltroRicercaVeloce(u"   "_s);
    load();
    EXPECT_EQ(quickSearch()->text(), QString());
    EXPECT_EQ(probeOf(grid())->visibleRowCount(), 3);
}

TEST_F(RicercaGenericaTest, APresetFilterOfOtherWhiteSpaceIsAFilter)
{
    dialog.FiltroRicercaVeloce(u"\t"_s);
    load();
    EXPECT_EQ(quickSearch()->text(), u"\t"_s) << "only blanks are taken off";
}

TEST_F(RicercaGenericaTest, TheExtraFilterIsKeptWithItsWhere)
{
    dialog.initFiltroRicercaCausali(u"id=3"_s);
    EXPECT_EQ(dialog.filtroRicercaCausali(), u" WHERE id=3"_s);
}

TEST_F(RicercaGenericaTest, ADoubleClickOnARowConfirms)
{
    load();
    select(1);
    QTest::mouseDClick(probeOf(grid())->bodyViewport(), Qt::LeftButton, {},
                       probeOf(grid())->rowRect(1).center());
    EXPECT_EQ(tag(), u"OK"_s);
    EXPECT_EQ(dialog.GetDescrizione(), u"Milano"_s);
}

TEST_F(RicercaGenericaTest, ADoubleClickThatFollowsNoMouseUpOnARowDoesNothing)
{
    load();
    grid()->setCurrentRecord(1);
    Q_EMIT grid()->recordDoubleClicked(1);
    EXPECT_TRUE(dialog.isVisible());
    Q_EMIT grid()->mouseReleasedOn(-1); // below the last row
    Q_EMIT grid()->recordDoubleClicked(1);
    EXPECT_TRUE(dialog.isVisible());
    Q_EMIT grid()->mouseReleasedOn(1);
    Q_EMIT grid()->recordDoubleClicked(1);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(tag(), u"OK"_s);
}

TEST_F(RicercaGenericaTest, ADoubleClickOnHeaderOrEmptyAreaDoesNotConfirm)
{
    load();
    grid()->setCurrentRecord(0);
    QTest::mouseDClick(probeOf(grid())->headerViewport(), Qt::LeftButton, {},
                       probeOf(grid())->headerRect(1).center());
    QWidget* body = probeOf(grid())->bodyViewport();
    const QPoint below(body->width() / 2, body->height() - 3);
    QTest::mouseClick(body, Qt::LeftButton, {}, below);
    QTest::mouseDClick(body, Qt::LeftButton, {}, below);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(tag(), QString());
}

TEST_F(RicercaGenericaTest, TheRowClickedFlagIsSpentByOneConfirmation)
{
    load();
    select(0);
    Q_EMIT grid()->recordDoubleClicked(0);
    ASSERT_FALSE(dialog.isVisible());
    dialog.show();
    Q_EMIT grid()->recordDoubleClicked(0);
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(RicercaGenericaTest, WithoutAFillerItShowsAnEmptyGrid)
{
    frmRicercaGenerica alone(nullptr);
    alone.Init(u"tabComuni"_s);
    EXPECT_EQ(alone.findChild<QLabel*>(u"lblStato"_s)->text(),
              u"Ricerca avanzata ** Nessun elemento visualizzato."_s);
    EXPECT_TRUE(logged().isEmpty());
}

} // namespace
} // namespace zul
