// The page "Ricerca destinatari": criteria, search, result grid.
#include "controls/look/CommonLook.h"
#include "controls/look/ScreenRoom.h"
#include "grid/GridLayoutFile.h"
#include "tests/mainwindow/SmsFormTest.h"
#include "tests/support/QueuedInput.h"
#include "tests/support/SmallScreen.h"

#include <QDate>
#include <QSplitter>
#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <utility>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

const QColor yellow(255, 255, 0);
const QColor white(255, 255, 255);

class SmsFormCriteriaTest : public SmsFormTest
{
protected:
    bool isShown(const char* name) { return !find<QWidget>(QLatin1String(name))->isHidden(); }
    Keypad* keypad() { return find<Keypad>(u"Virtual_KeyPAD"_s); }
};

// ----------------------------------------------------------------------------------------------- set-up

TEST_F(SmsFormCriteriaTest, OpensWithItsDefaults)
{
    open();
    EXPECT_EQ(form->windowTitle(), u"Zul_MessageBuilder"_s);
    EXPECT_EQ(find<QLabel>(u"lblHeadaer"_s)->text(), u"Zul_MessageBuilder"_s);
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 0);
    EXPECT_FALSE(tabs("tab_Invio")->isTabVisible(2));
    EXPECT_TRUE(radio("optApp_SoloSelezionati")->isChecked());
    EXPECT_FALSE(isShown("Virtual_Keyboard"));
    EXPECT_FALSE(isShown("WaitPlease"));
    EXPECT_FALSE(isShown("Virtual_KeyPAD"));
    EXPECT_FALSE(isShown("txtTestoMessaggio(0)"));
    EXPECT_EQ(find<QWidget>(u"List_INFO"_s)->font().family(), fixedFont().family());
    EXPECT_EQ(find<QWidget>(u"List_INFO"_s)->font().pointSize(), 10);
    EXPECT_EQ(effectiveBackground(find<QWidget>(u"Resizer"_s)), white);
    EXPECT_EQ(effectiveBackground(find<QWidget>(u"frameRicorrenze"_s)), white)
        << "the button-face colour does not reach it";
    EXPECT_TRUE(host.operations().empty());
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(SmsFormCriteriaTest, EveryCriterionIsEmptyAtFirst)
{
    open();
    for (const QCheckBox* check : form->findChildren<QCheckBox*>()) {
        EXPECT_FALSE(check->isChecked()) << utf8(check->objectName());
    }
    for (const DateField* field : form->findChildren<DateField*>()) {
        EXPECT_EQ(field->text(), QString());
    }
    for (const SelectorField* field : form->findChildren<SelectorField*>()) {
        EXPECT_EQ(field->selectedId(), -1);
        EXPECT_EQ(field->text(), QString());
    }
    EXPECT_FALSE(radio("optMaschio")->isChecked());
    EXPECT_FALSE(radio("optFemmina")->isChecked());
}

TEST_F(SmsFormCriteriaTest, TheCriteriaPagesStandInTheirOrder)
{
    open();
    QStringList captions;
    for (int i = 0; i < tabs("TabControl1")->count(); ++i) {
        captions.append(read(tabs("TabControl1")->tabText(i)));
    }
    EXPECT_EQ(captions, (QStringList{u"Anagrafici"_s, u"Localizzazione"_s, u"Economici"_s, u"Avanzata"_s}));
    EXPECT_EQ(read(tabs("tab_Invio")->tabText(0)), u"Ricerca destinatari"_s);
    EXPECT_EQ(read(tabs("tab_Invio")->tabText(1)), u"Tipo di invio"_s);
    EXPECT_EQ(read(tabs("tab_Invio")->tabText(2)), u"Prepara per invio"_s);
}

TEST_F(SmsFormCriteriaTest, ThePresetListHasFiveEntriesAndChoosingOneDoesNothing)
{
    open();
    auto* presets = find<QComboBox>(u"cbbECO_PerAcq_Auto"_s);
    QStringList entries;
    for (int i = 0; i < presets->count(); ++i) {
        entries.append(presets->itemText(i));
    }
    EXPECT_EQ(entries, (QStringList{u""_s, u"Oggi"_s, u"Ieri"_s, u"Ultima settimana"_s, u"Ultimo mese"_s}));
    EXPECT_EQ(presets->currentIndex(), 0);
    page("TabControl1", 2);
    presets->setFocus();
    for (int i = 1; i < 5; ++i) {
        QTest::keyClick(presets, Qt::Key_Down);
        EXPECT_EQ(presets->currentIndex(), i);
    }
    EXPECT_EQ(dateField("cbbECO_PerAcq_DataI")->text(), QString());
    EXPECT_EQ(dateField("cbbECO_PerAcq_DataF")->text(), QString());
    EXPECT_FALSE(box("chkECO_PerAcq")->isChecked());
}

TEST_F(SmsFormCriteriaTest, NoCheckBoxEnablesOrDisablesAnything)
{
    open();
    for (const QLineEdit* field : form->findChildren<QLineEdit*>()) {
        EXPECT_TRUE(field->isEnabled()) << utf8(field->objectName());
    }
    click("chkANA_Eta");
    EXPECT_TRUE(edit("txtANA_Eta_I")->isEnabled());
    click("chkANA_Eta");
    EXPECT_TRUE(edit("txtANA_Eta_I")->isEnabled());
}

// ----------------------------------------------------------------------------------------------- fields

TEST_F(SmsFormCriteriaTest, RangeFieldsTurnYellowSelectTheirTextAndTurnWhiteAgain)
{
    open();
    const std::vector<std::pair<int, const char*>> fields{
        {0, "txtANA_Eta_I"},   {0, "txtANA_Eta_F"},  {2, "txtECO_Fatt_Da"}, {2, "txtECO_Fatt_A"},
        {2, "txtECO_NAcq_Da"}, {2, "txtECO_NAcq_A"}, {2, "txtECO_PtFid_I"}, {2, "txtECO_PtFid_F"}};
    for (const auto& [where, name] : fields) {
        page("TabControl1", where);
        edit(name)->setText(QString(150, u'1'));
        edit(name)->setFocus();
        EXPECT_EQ(effectiveBackground(edit(name)), yellow) << name;
        EXPECT_EQ(edit(name)->selectionStart(), 0);
        EXPECT_EQ(edit(name)->selectionLength(), 100) << "start 0, length 100";
        EXPECT_EQ(keypad()->attachedField(), edit(name));
        EXPECT_FALSE(keypad()->forDate());
        button("cmdElabora")->setFocus();
        EXPECT_EQ(effectiveBackground(edit(name)), white) << name;
    }
}

TEST_F(SmsFormCriteriaTest, DateFieldsAttachTheKeypadWithItsFlagAndTakeNoColour)
{
    open();
    const std::vector<std::pair<int, const char*>> fields{
        {0, "cbbANA_Ricorr_DataI"}, {0, "cbbANA_Ricorr_DataF"}, {2, "cbbECO_Fatt_DataI"},
        {2, "cbbECO_Fatt_DataF"},   {2, "cbbECO_NAcq_DataI"},   {2, "cbbECO_NAcq_DataF"},
        {2, "cbbECO_PerAcq_DataI"}, {2, "cbbECO_PerAcq_DataF"}};
    for (const auto& [where, name] : fields) {
        page("TabControl1", where);
        dateField(name)->setFocus();
        EXPECT_EQ(keypad()->attachedField(), dateField(name)) << name;
        EXPECT_TRUE(keypad()->forDate());
        EXPECT_NE(effectiveBackground(dateField(name)), yellow);
    }
}

TEST_F(SmsFormCriteriaTest, StartFieldsAreCopiedIntoEndFieldsAndNothingBack)
{
    open();
    for (const auto& [where, start, end] : {std::tuple{0, "txtANA_Eta_I", "txtANA_Eta_F"},
                                            {2, "txtECO_Fatt_Da", "txtECO_Fatt_A"},
                                            {2, "txtECO_NAcq_Da", "txtECO_NAcq_A"},
                                            {2, "txtECO_PtFid_I", "txtECO_PtFid_F"}}) {
        page("TabControl1", where);
        edit(start)->setFocus();
        QTest::keyClicks(edit(start), u"3"_s);
        EXPECT_EQ(edit(end)->text(), u"3"_s);
        QTest::keyClicks(edit(start), u"0"_s);
        EXPECT_EQ(edit(end)->text(), u"30"_s) << start;
        edit(end)->setFocus();
        QTest::keyClicks(edit(end), u"45"_s);
        EXPECT_EQ(edit(end)->text(), u"45"_s) << "the whole text was selected";
        EXPECT_EQ(edit(start)->text(), u"30"_s);
        edit(start)->setFocus();
        QTest::keyClick(edit(start), Qt::Key_Delete);
        EXPECT_EQ(edit(end)->text(), QString()) << "also when it is emptied";
    }
}

TEST_F(SmsFormCriteriaTest, StartDatesAreCopiedOnceTheyAreDates)
{
    open();
    const QString date =
        QLocale().dateFormat(QLocale::ShortFormat).startsWith(u'M') ? u"12/31/2024"_s : u"31/12/2024"_s;
    for (const auto& [where, start, end] : {std::tuple{0, "cbbANA_Ricorr_DataI", "cbbANA_Ricorr_DataF"},
                                            {2, "cbbECO_Fatt_DataI", "cbbECO_Fatt_DataF"},
                                            {2, "cbbECO_NAcq_DataI", "cbbECO_NAcq_DataF"},
                                            {2, "cbbECO_PerAcq_DataI", "cbbECO_PerAcq_DataF"}}) {
        page("TabControl1", where);
        auto* typed = dateField(start)->findChild<QLineEdit*>();
        dateField(start)->setFocus();
        QTest::keyClicks(typed, date.left(5));
        EXPECT_EQ(dateField(end)->text(), QString()) << "half a date is none";
        QTest::keyClicks(typed, date.mid(5));
        EXPECT_EQ(dateField(end)->text(), date) << start;
        dateField(end)->setText(u"altro"_s);
        dateField(start)->setEmpty();
        EXPECT_EQ(dateField(end)->text(), u"altro"_s) << "a start that is no date leaves the end";
    }
}

TEST_F(SmsFormCriteriaTest, TickingASubTypeTicksTheTypeAndUntickingNeverUnticksIt)
{
    for (const char* subType : {"chkANA_Tipo_Cli", "chkANA_Tipo_For", "chkANA_Tipo_Con"}) {
        open();
        click(subType);
        EXPECT_TRUE(box(subType)->isChecked());
        EXPECT_TRUE(box("chkANA_Tipo")->isChecked()) << subType;
        click(subType);
        EXPECT_FALSE(box(subType)->isChecked());
        EXPECT_TRUE(box("chkANA_Tipo")->isChecked());
    }
}

TEST_F(SmsFormCriteriaTest, AtMostOneSexIsSet)
{
    open();
    click("optMaschio");
    click("optFemmina");
    EXPECT_TRUE(radio("optFemmina")->isChecked());
    EXPECT_FALSE(radio("optMaschio")->isChecked());
}

// ---------------------------------------------------------------------------------------- lookup fields

struct LookupCase
{
    const char* field;
    int tab;
    int sub;
    const char* query;
    bool takesId;
    bool exactOk;
};

class SmsFormLookupTest : public SmsFormCriteriaTest, public ::testing::WithParamInterface<LookupCase>
{
protected:
    void SetUp() override
    {
        open();
        const LookupCase& c = GetParam();
        if (c.tab == 0) {
            page("TabControl1", c.sub);
        } else {
            page("tab_Invio", 1);
            page("TabControlTipo", c.sub);
        }
    }
    SelectorField* field() { return selector(GetParam().field); }
};

TEST_P(SmsFormLookupTest, OkTakesTheTextAndWhereItIsWantedTheId)
{
    lookupOk();
    choose(GetParam().field);
    EXPECT_EQ(field()->text(), u"L'Aquila 😀"_s);
    EXPECT_EQ(field()->selectedId(), GetParam().takesId ? 7 : -1);
    ASSERT_EQ(filler.requests.size(), 1U);
    EXPECT_TRUE(filler.requests[0].sql.contains(QLatin1String(GetParam().query)))
        << utf8(filler.requests[0].sql);
}

TEST_P(SmsFormLookupTest, EscLeavesTheFieldUnchanged)
{
    field()->setSelection(5, u"prima"_s);
    lookupEsc();
    choose(GetParam().field);
    EXPECT_EQ(field()->text(), u"prima"_s);
    EXPECT_EQ(field()->selectedId(), 5);
    EXPECT_FALSE(radio("RBN_PushModel")->isChecked());
}

TEST_P(SmsFormLookupTest, AClosedDialogIsAChoiceForCommuneProvinceAndTemplatesOnly)
{
    field()->setSelection(5, u"prima"_s);
    lookupClosed();
    choose(GetParam().field);
    EXPECT_EQ(field()->text(), GetParam().exactOk ? u"prima"_s : QString());
    EXPECT_EQ(field()->selectedId(), GetParam().takesId && !GetParam().exactOk ? 0 : 5);
}

TEST_P(SmsFormLookupTest, ClearingEmptiesTheTextAndWhereItWasTakenTheId)
{
    field()->setSelection(5, u"prima"_s);
    clear(GetParam().field);
    EXPECT_EQ(field()->text(), QString());
    EXPECT_EQ(field()->selectedId(), GetParam().takesId ? -1 : 5);
    EXPECT_TRUE(filler.requests.empty()) << "no dialog is shown";
}

TEST_P(SmsFormLookupTest, ATemplateOfAnSmsSetsThePushModelChoice)
{
    lookupOk();
    choose(GetParam().field);
    const bool isSmsTemplate = QLatin1String(GetParam().field).startsWith(QLatin1String("cntrMessaggio"));
    EXPECT_EQ(radio("RBN_PushModel")->isChecked(), isSmsTemplate);
}

INSTANTIATE_TEST_SUITE_P(
    Fields, SmsFormLookupTest,
    ::testing::Values(LookupCase{"cntrAna_Ricorr", 0, 0, "tabRic_Ricorrenze", true, true},
                      LookupCase{"cntrECO_Classif", 0, 2, "tabRIC_Classificazioni", true, true},
                      LookupCase{"cntrLOC_Comune", 0, 1, "FROM tabComuni", false, false},
                      LookupCase{"cntrLOC_Provincia", 0, 1, "FROM tabProvince", false, false},
                      LookupCase{"cntrMessaggio(0)", 1, 0, "idtipoMessaggio=6", true, false},
                      LookupCase{"cntrMessaggio(1)", 1, 1, "idtipoMessaggio=6", true, false},
                      LookupCase{"cntrMailFinder", 1, 0, "idtipoMessaggio=102", true, false}),
    [](const auto& given) {
        std::string name = given.param.field;
        for (char& c : name) {
            c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
        }
        return name;
    });

TEST_F(SmsFormCriteriaTest, AnIdThatIsNoNumberIsLoggedAndTheFieldKeepsItsId)
{
    filler.rows = {{u"abc"_s, u"Testo"_s}};
    open();
    page("tab_Invio", 1);
    lookupOk();
    choose("cntrMailFinder");
    EXPECT_EQ(selector("cntrMailFinder")->selectedId(), -1);
    ASSERT_EQ(logged().size(), 1);
    EXPECT_TRUE(logged().first().contains(u"Error 13 (Type mismatch)"_s));
    EXPECT_TRUE(logged().first().endsWith(u" of Form frmSMS | "_s));
}

TEST_F(SmsFormCriteriaTest, AClearedCommuneFailsTheSearchOnItsPage)
{
    open();
    page("TabControl1", 1);
    click("chkLOC_Comune");
    lookupOk();
    choose("cntrLOC_Comune");
    clear("cntrLOC_Comune");
    page("TabControl1", 2);
    click("cmdElabora");
    EXPECT_EQ(messages, std::vector<OperatorMessage>{told(u"Selezionare correttamente il comune."_s)});
    EXPECT_EQ(tabs("TabControl1")->currentIndex(), 1);
    EXPECT_TRUE(host.operations().empty());
}

// ---------------------------------------------------------------------------------------- what is offered

TEST_F(SmsFormCriteriaTest, TheRecurrenceOptionShowsOrHidesItsGroupAndEmptiesItEitherWay)
{
    for (const bool show : {false, true}) {
        open();
        selector("cntrAna_Ricorr")->setSelection(3, u"Compleanno"_s);
        dateField("cbbANA_Ricorr_DataI")->setText(u"1/1/2024"_s);
        dateField("cbbANA_Ricorr_DataF")->setText(u"2/1/2024"_s);
        box("chkANA_Ricorr")->setChecked(true);
        form->InitRicercaRicorrenze(show);
        EXPECT_EQ(isShown("frameRicorrenze"), show);
        EXPECT_EQ(selector("cntrAna_Ricorr")->selectedId(), -1);
        EXPECT_EQ(selector("cntrAna_Ricorr")->text(), QString());
        EXPECT_EQ(dateField("cbbANA_Ricorr_DataI")->text(), QString());
        EXPECT_EQ(dateField("cbbANA_Ricorr_DataF")->text(), QString());
        EXPECT_TRUE(box("chkANA_Ricorr")->isChecked()) << "the tick stays";
    }
}

TEST_F(SmsFormCriteriaTest, TheClassificationOptionShowsOrHidesItsControlsAndUnticksThem)
{
    for (const bool show : {false, true}) {
        open();
        selector("cntrECO_Classif")->setSelection(3, u"Buono"_s);
        box("chkECO_Classif")->setChecked(true);
        form->InitRicercaClassificazioni(show);
        EXPECT_EQ(isShown("chkECO_Classif"), show);
        EXPECT_EQ(isShown("cntrECO_Classif"), show);
        EXPECT_EQ(selector("cntrECO_Classif")->selectedId(), -1);
        EXPECT_FALSE(box("chkECO_Classif")->isChecked());
    }
}

// An owner's listener that fails stands for whatever may fail in these procedures.
TEST_F(SmsFormCriteriaTest, TheOptionSettersReportUnderTheirOwnNamesWithTheTailOfAnother)
{
    open();
    const auto fail = [] { throw Error(RunTime::InvalidCall); };
    QObject::connect(dateField("cbbANA_Ricorr_DataI"), &DateField::valueChanged, fail);
    QObject::connect(box("chkECO_Classif"), &QCheckBox::toggled, fail);
    QObject::connect(tabs("TabControlTipo"), &QTabWidget::currentChanged, fail);
    dateField("cbbANA_Ricorr_DataF")->setText(u"x"_s);
    {
        const QSignalBlocker blocker(dateField("cbbANA_Ricorr_DataI"));
        dateField("cbbANA_Ricorr_DataI")->setText(u"x"_s);
    }
    {
        const QSignalBlocker blocker(box("chkECO_Classif"));
        box("chkECO_Classif")->setChecked(true);
    }
    form->InitRicercaRicorrenze(true);
    form->InitRicercaClassificazioni(true);
    form->InitTipoMessaggio(false, false, true);
    const QString text =
        u" | Error 5 (Invalid procedure call or argument) in procedure InitTipoMessaggio of Form frmSMS | "_s;
    EXPECT_EQ(logged(), (QStringList{u"InitRicercaRicorrenze"_s + text,
                                     u"InitRicercaClassificazioni"_s + text, u"InitTipoMessaggio"_s + text}));
    EXPECT_EQ(dateField("cbbANA_Ricorr_DataF")->text(), u"x"_s) << "the procedure ends where it fails";
}

// ------------------------------------------------------------------------------------------- the search

TEST_F(SmsFormCriteriaTest, AFailedCheckTellsBringsItsPageForwardAndSearchesNothing)
{
    open();
    click("chkANA_Eta");
    page("TabControl1", 2);
    click("cmdElabora");
    EXPECT_EQ(messages, std::vector<OperatorMessage>{told(u"Intervallo di età non valido."_s)});
    EXPECT_EQ(tabs("TabControl1")->currentIndex(), 0);
    EXPECT_TRUE(host.operations().empty());
    EXPECT_TRUE(button("cmdElabora")->isEnabled());
    EXPECT_TRUE(form->isEnabled());
}

TEST_F(SmsFormCriteriaTest, AnErrorOfTheValidationIsLoggedUnderItsNameAndNothingIsSearched)
{
    open();
    click("chkANA_Eta");
    whileAsked = [](const OperatorMessage&) { throw Error(RunTime::Overflow); };
    click("cmdElabora");
    EXPECT_EQ(logged(),
              QStringList{u"testFiltri | Error 6 (Overflow) in procedure testFiltri of Form frmSMS | "_s});
    EXPECT_TRUE(host.operations().empty());
    EXPECT_TRUE(button("cmdElabora")->isEnabled());
}

TEST_F(SmsFormCriteriaTest, ASearchDisablesButtonAndFormAndEnablesThemAgain)
{
    open();
    scriptCustomers({customer(1, "Rossi", "333", "a@b.it"), customer(2, "Verdi", "", "")});
    bool disabled = false;
    host.during("execute INSERT",
                [&] { disabled = !button("cmdElabora")->isEnabled() && !form->isEnabled(); });
    click("cmdElabora");
    EXPECT_TRUE(disabled);
    EXPECT_TRUE(button("cmdElabora")->isEnabled());
    EXPECT_TRUE(form->isEnabled());
    EXPECT_EQ(grid()->recordCount(), 2U);
    ASSERT_EQ(host.operations().size(), 3U);
    EXPECT_EQ(host.operations()[0], "execute Delete from tabSpoolReportStat2");
    EXPECT_EQ(
        host.operations()[1],
        "execute INSERT INTO tabSpoolReportStat2(intero1)  SELECT tabClienti.idCliente  FROM tabclienti "
        "WHERE 1=1 ");
    EXPECT_EQ(host.operations()[2].rfind("open SELECT DISTINCT tabClienti.IdCLiente", 0), 0U);
    EXPECT_TRUE(messages.empty()) << "nobody counts the matches";
}

TEST_F(SmsFormCriteriaTest, WhatIsClickedAndTypedWhileASearchRunsComesToNothing)
{
    open();
    scriptCustomers({customer(1, "Rossi", "333", "a@b.it"), customer(2, "Verdi", "", "")});
    edit("txtANA_Eta_I")->setFocus();
    bool queued = false;
    host.during("execute INSERT", [&] {
        if (std::exchange(queued, true)) {
            return;
        }
        queueClick(button("cmdElabora"));
        queueClick(button("cmdElabora"));
        queueClick(button("cmdSelAll"));
        queueKey(form.get(), Qt::Key_9);
        queueKey(form.get(), Qt::Key_Tab);
    });
    QTest::mouseClick(button("cmdElabora"), Qt::LeftButton);
    QCoreApplication::processEvents();
    EXPECT_EQ(host.operations("execute INSERT").size(), 1U) << "three clicks, one search";
    EXPECT_EQ(marks(), u"--"_s);
    EXPECT_EQ(edit("txtANA_Eta_I")->text(), QString());
    click("cmdSelAll");
    EXPECT_EQ(marks(), u"xx"_s) << "what comes afterwards counts again";
}

TEST_F(SmsFormCriteriaTest, TheButtonIsDrawnDisabledWhileItsSearchRuns)
{
    open();
    int drawn = 0;
    class Watch : public QObject
    {
    public:
        explicit Watch(int& count)
            : m_count(count)
        {}
        bool eventFilter(QObject* watched, QEvent* event) override
        {
            if (event->type() == QEvent::Paint && !static_cast<QWidget*>(watched)->isEnabled()) {
                ++m_count;
            }
            return false;
        }

    private:
        int& m_count;
    };
    Watch watch(drawn);
    button("cmdElabora")->installEventFilter(&watch);
    int drawnBeforeTheFirstStatement = 0;
    host.during("execute Delete", [&] { drawnBeforeTheFirstStatement = drawn; });
    click("cmdElabora");
    EXPECT_EQ(drawnBeforeTheFirstStatement, 1);
}

TEST_F(SmsFormCriteriaTest, EveryCriterionReachesTheStatements)
{
    open();
    const bool american = QLocale().dateFormat(QLocale::ShortFormat).startsWith(u'M');
    const QString from = american ? u"1/31/2024"_s : u"31/1/2024"_s;
    const QString to = american ? u"2/28/2024"_s : u"28/2/2024"_s;
    for (QCheckBox* check : form->findChildren<QCheckBox*>()) {
        check->setChecked(true);
    }
    box("chkANA_Tipo_For")->setChecked(false);
    edit("txtANA_Eta_I")->setText(u"18"_s);
    edit("txtANA_Eta_F")->setText(u"30"_s);
    radio("optFemmina")->setChecked(true);
    selector("cntrAna_Ricorr")->setSelection(3, u"x"_s);
    selector("cntrECO_Classif")->setSelection(4, u"y"_s);
    selector("cntrLOC_Comune")->setText(u"L'Aquila"_s);
    selector("cntrLOC_Provincia")->setText(u"AQ"_s);
    for (const char* name : {"Ricorr", "Fatt", "NAcq", "PerAcq"}) {
        const QString prefix = QLatin1String(name) == u"Ricorr"_s ? u"cbbANA_"_s : u"cbbECO_"_s;
        find<DateField>(prefix + QLatin1String(name) + u"_DataI"_s)->setText(from);
        find<DateField>(prefix + QLatin1String(name) + u"_DataF"_s)->setText(to);
    }
    for (const char* name : {"Fatt_Da", "NAcq_Da", "PtFid_I"}) {
        find<QLineEdit>(u"txtECO_"_s + QLatin1String(name))->setText(u"1"_s);
    }
    for (const char* name : {"Fatt_A", "NAcq_A", "PtFid_F"}) {
        find<QLineEdit>(u"txtECO_"_s + QLatin1String(name))->setText(u"9"_s);
    }
    form->avviaRicerca();
    EXPECT_TRUE(messages.empty());
    const std::string today = utf8(QDate::currentDate().toString(u"''yyyyMMdd''"_s));
    EXPECT_EQ(
        host.operations("execute").at(1),
        "execute INSERT INTO tabSpoolReportStat2(intero1)  SELECT tabClienti.idCliente  FROM tabclienti "
        "WHERE "
        "1=1  and ( tabClienti.Cliente<>0 or tabClienti.Contatto<>0 ) and "
        "DateDiff(year,tabClienti.DataNascita," +
            today + ") >= 18 and DateDiff(year,tabClienti.DataNascita," + today +
            ") <= 30 and tabClienti.Sesso='F' and tabClienti.Paese='L''Aquila' and tabClienti.provincia='AQ' "
            "and tabClienti.idcliente in () ");
    const std::string days = "2024-01-31,2024-02-28";
    Lines plain;
    for (std::size_t i = 0; i < host.operations("filter").size(); i += 2) {
        plain.push_back(host.operations("filter")[i]);
    }
    EXPECT_EQ(plain,
              (Lines{"filter Ricorrenze(3," + days + ")", "filter PuntiFidelity(1,9)",
                     "filter Classificazione(4)", "filter Fatturato(" + days + ",1,9)",
                     "filter NumeroAcquisti(" + days + ",1,9)", "filter PeriodoAcquisto(" + days + ")"}));
}

TEST_F(SmsFormCriteriaTest, AFailedStatementIsLoggedAndLeavesButtonAndFormDisabled)
{
    open();
    host.failNth("execute", 2, static_cast<HRESULT>(0x80040E14), u"Incorrect syntax near ','.");
    click("cmdElabora");
    EXPECT_FALSE(button("cmdElabora")->isEnabled());
    EXPECT_FALSE(form->isEnabled());
    EXPECT_TRUE(host.operations("open").empty()) << "the grid is not loaded";
    EXPECT_EQ(logged(), QStringList{u"cmdElabora_Click | Error -2147217900 (Incorrect syntax near ','.) in "
                                    "procedure cmdElabora_Click of Form frmSMS | "_s});
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(SmsFormCriteriaTest, AGridThatCannotBeLoadedIsLoggedKeepsItsRowsAndTheSearchEnds)
{
    open();
    scriptCustomers({customer(1, "Rossi", "333", "a@b.it")});
    search();
    host.failWhere("open SELECT DISTINCT", E_FAIL, u"no");
    click("cmdElabora");
    EXPECT_EQ(logged(),
              QStringList{u"CaricaGriglia | Error -2147467259 (no) in procedure CaricaGriglia of Form "
                          "frmSMS | "_s});
    EXPECT_EQ(grid()->recordCount(), 1U);
    EXPECT_TRUE(form->isEnabled());
    EXPECT_TRUE(button("cmdElabora")->isEnabled());
}

TEST_F(SmsFormCriteriaTest, AHostThatClosesTheWindowFromADatabaseCallDoesNoHarm)
{
    open();
    host.during("execute Delete", [&] { form->close(); });
    click("cmdElabora");
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(form->isEnabled());
}

TEST_F(SmsFormCriteriaTest, TheSalesFiltersAreAskedForAtTheFirstOfTheirSearchesAndKept)
{
    open();
    click("cmdElabora");
    EXPECT_EQ(host.made(Service::CustomerFilterSql), 0);
    page("TabControl1", 2);
    click("chkECO_PtFid");
    edit("txtECO_PtFid_I")->setText(u"1"_s);
    click("cmdElabora");
    open();
    session().setConnessione(connection());
    page("TabControl1", 2);
    click("chkECO_PtFid");
    edit("txtECO_PtFid_I")->setText(u"1"_s);
    click("cmdElabora");
    EXPECT_EQ(host.operations("filter").size(), 4U);
    EXPECT_EQ(host.made(Service::CustomerFilterSql), 1);
}

TEST_F(SmsFormCriteriaTest, CriteriaKeepTheirValuesAcrossSearches)
{
    open();
    click("chkANA_Eta");
    edit("txtANA_Eta_I")->setText(u"18"_s);
    search();
    EXPECT_TRUE(box("chkANA_Eta")->isChecked());
    EXPECT_EQ(edit("txtANA_Eta_I")->text(), u"18"_s);
}

// ------------------------------------------------------------------------------------- advanced search

TEST_F(SmsFormCriteriaTest, TheAdvancedSearchTicksItsBoxByItsFilterAndIsOneObject)
{
    open();
    page("TabControl1", 3);
    host.searchAnswers() = {"SELECT 1", "", "SELECT 2"};
    click("cmd_Ricerca_Avanzata");
    EXPECT_TRUE(box("chk_Avanzata")->isChecked());
    click("cmd_Ricerca_Avanzata");
    EXPECT_FALSE(box("chk_Avanzata")->isChecked()) << "an empty filter unticks it";
    click("cmd_Ricerca_Avanzata");
    EXPECT_TRUE(box("chk_Avanzata")->isChecked());
    EXPECT_EQ(host.made(Service::AdvancedSearch), 1);
    EXPECT_EQ(host.operations(), (Lines{"searchconnection", "search 1", "searchconnection", "search 1",
                                        "searchconnection", "search 1"}));
}

TEST_F(SmsFormCriteriaTest, UntickingSwitchesTheFilterOffWithoutLosingIt)
{
    open();
    page("TabControl1", 3);
    host.searchAnswers() = {"SELECT 1"};
    click("cmd_Ricerca_Avanzata");
    click("chk_Avanzata");
    host.forgetOperations();
    click("cmdElabora");
    EXPECT_EQ(host.operations("execute").at(1).find("idcliente in"), std::string::npos);
    click("chk_Avanzata");
    host.forgetOperations();
    click("cmdElabora");
    EXPECT_NE(host.operations("execute").at(1).find(" and tabClienti.idcliente in (SELECT 1) "),
              std::string::npos);
}

TEST_F(SmsFormCriteriaTest, AFailedAdvancedSearchIsLoggedAndChangesNothing)
{
    open();
    page("TabControl1", 3);
    host.searchAnswers() = {"SELECT 1"};
    click("cmd_Ricerca_Avanzata");
    host.failNth("search", 1, E_FAIL, u"no");
    click("cmd_Ricerca_Avanzata");
    EXPECT_TRUE(box("chk_Avanzata")->isChecked());
    EXPECT_EQ(logged().size(), 1);
    EXPECT_TRUE(logged().first().startsWith(u"cmd_Ricerca_Avanzata_Click | Error -2147467259 (no)"_s));
}

// ------------------------------------------------------------------------------------------- the grid

TEST_F(SmsFormCriteriaTest, AllRowsAreTickedAndUnticked)
{
    open();
    click("cmdSelAll"); // nothing to tick, and no error
    click("cmdDeSelAll");
    scriptCustomers({customer(1, "A", "", ""), customer(2, "B", "", ""), customer(3, "C", "", "")});
    search();
    EXPECT_EQ(marks(), u"---"_s);
    click("cmdSelAll");
    EXPECT_EQ(marks(), u"xxx"_s);
    click("cmdDeSelAll");
    EXPECT_EQ(marks(), u"---"_s);
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(SmsFormCriteriaTest, HighlightedRowsAreTickedAndUnticked)
{
    open();
    scriptCustomers({customer(1, "A", "", ""), customer(2, "B", "", ""), customer(3, "C", "", "")});
    search();
    click("cmdSelezionaEvidenziati");
    EXPECT_EQ(marks(), u"---"_s) << "no row is highlighted";
    clickRow(0);
    clickRow(2, Qt::ControlModifier);
    click("cmdSelezionaEvidenziati");
    EXPECT_EQ(marks(), u"x-x"_s);
    clickRow(0);
    click("Cmd_DeselezionaEvidenziati");
    EXPECT_EQ(marks(), u"--x"_s);
    grid()->clearSelection();
    click("Cmd_DeselezionaEvidenziati");
    EXPECT_EQ(marks(), u"--x"_s);
}

TEST_F(SmsFormCriteriaTest, ARowIsTickedInItsCheckColumnAndTicksAreNotKeptAcrossSearches)
{
    open();
    scriptCustomers({customer(1, "A", "", ""), customer(2, "B", "", "")});
    search();
    tick(1);
    EXPECT_EQ(marks(), u"-x"_s);
    tick(1);
    tick(0);
    EXPECT_EQ(marks(), u"x-"_s);
    search();
    EXPECT_EQ(marks(), u"--"_s);
}

TEST_F(SmsFormCriteriaTest, ALayoutIsSavedAtItsChangesAndAppliedToTheNextLoad)
{
    open();
    scriptCustomers({customer(1, "A", "", "")});
    search();
    EXPECT_FALSE(QFile::exists(layoutFile()));
    const QRect header = probeOf(grid())->headerRect(2);
    QWidget* viewport = probeOf(grid())->headerViewport();
    const QPoint edge(header.right(), header.center().y());
    QTest::mousePress(viewport, Qt::LeftButton, {}, edge);
    QTest::mouseMove(viewport, edge + QPoint(20, 0));
    QTest::mouseMove(viewport, edge + QPoint(37, 0));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, edge + QPoint(37, 0));
    const int width = probeOf(grid())->headerRect(2).width();
    ASSERT_NE(width, header.width());
    ASSERT_TRUE(QFile::exists(layoutFile()));
    EXPECT_TRUE(GridLayoutFile(layoutFile()).read(u"ZUL"_s).has_value());

    open();
    search();
    EXPECT_EQ(probeOf(grid())->headerRect(2).width(), width) << "in a new window, in the next search";
}

TEST_F(SmsFormCriteriaTest, SortingIsNoLayoutAndIsNotSaved)
{
    open();
    scriptCustomers({customer(1, "A", "", "")});
    search();
    QTest::mouseClick(probeOf(grid())->headerViewport(), Qt::LeftButton, {},
                      probeOf(grid())->headerRect(2).center());
    EXPECT_EQ(grid()->sortColumn(), 2);
    Q_EMIT grid()->columnLayoutChanged(2);
    EXPECT_FALSE(QFile::exists(layoutFile()));
    Q_EMIT grid()->columnLayoutChanged(1);
    EXPECT_TRUE(QFile::exists(layoutFile()));
}

TEST_F(SmsFormCriteriaTest, ADamagedLayoutFileLeavesTheDefaultLayout)
{
    QFile file(layoutFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[ZUL]\nLayout=1\nColumn1=\xFF\xFF,abc\n");
    file.close();
    open();
    scriptCustomers({customer(1, "A", "", "")});
    search();
    EXPECT_EQ(grid()->recordCount(), 1U);
    EXPECT_TRUE(logged().isEmpty());
}

// ------------------------------------------------------------------------------------------ the window

TEST_F(SmsFormCriteriaTest, TheWindowNeverGetsSmallerThanEightThousandTwips)
{
    open();
    constexpr int least = 534; // 8000 twips, a part of a pixel counts whole
    form->resize(100, 100);
    EXPECT_EQ(form->size(), QSize(least, least));
    form->resize(1000, 100);
    EXPECT_EQ(form->size(), QSize(1000, least));
    form->resize(100, 700);
    EXPECT_EQ(form->size(), QSize(least, 700));
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(SmsFormCriteriaTest, OnASmallScreenTheWindowIsNoLargerThanItAndScrolls)
{
    open();
    expectOnScreen(*form);
    for (const char* name : {"cmdElabora", "cmdSelAll", "Cmd_DeselezionaEvidenziati", "cmdProsegui1"}) {
        expectReachable(button(name));
    }
    click("cmdProsegui1");
    for (const char* name : {"cmdNuovoTestoSMS(0)", "cmdProsegui2"}) {
        expectReachable(button(name));
    }
    form->resize(100, 100);
    constexpr int least = 534; // 8000 twips, or what the screen has room for
    EXPECT_EQ(form->size(), QSize(least, least).boundedTo(roomFor(form.get())));
    expectReachable(button("cmdProsegui2"));
}

TEST_F(SmsFormCriteriaTest, TheResizerKeepsItsMargins)
{
    open();
    for (const QSize& size : {QSize(1000, 700), QSize(534, 534), QSize(1920, 1080)}) {
        form->resize(size);
        const QRect area = find<QWidget>(u"Resizer"_s)->geometry();
        EXPECT_EQ(area.width(), size.width() - 10) << "140 twips";
        EXPECT_EQ(area.height(), size.height() - 34) << "500 twips";
    }
}

TEST_F(SmsFormCriteriaTest, TheCommandsOfTheGridKeepTheirWholeCaptions)
{
    const std::array<const char*, 5> names{"cmdSelAll", "cmdDeSelAll", "cmdSelezionaEvidenziati",
                                           "Cmd_DeselezionaEvidenziati", "cmdProsegui1"};
    const auto isWhole = [&](const char* name) {
        const QPushButton* command = button(name);
        const bool covered = std::ranges::any_of(names, [&](const char* other) {
            return other != name && command->geometry().intersects(button(other)->geometry());
        });
        return command->width() >= command->sizeHint().width() &&
               command->parentWidget()->rect().contains(command->geometry()) && !covered;
    };
    for (const bool touch : {false, true}) {
        open();
        form->setTouchMode(touch);
        for (const QSize& size : {QSize(1920, 1080), QSize(1000, 700), QSize(800, 600), QSize(560, 560)}) {
            form->resize(size);
            // Layouts within layouts take their turns.
            EXPECT_TRUE(QTest::qWaitFor([&] { return std::ranges::all_of(names, isWhole); }))
                << size.width() << (touch ? " by touch" : "");
        }
        form->resize(1920, 1080);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return button("cmdSelAll")->y() == button("Cmd_DeselezionaEvidenziati")->y();
        })) << "one row again";
    }
}

TEST_F(SmsFormCriteriaTest, InALargeFontTheCommandsOfTheGridStandInPairs)
{
    open();
    form->resize(1024, 740);
    form->setStyleSheet(form->styleSheet() + u"QPushButton { font-size: 14pt; }"_s);
    find<QSplitter>(u"splitter"_s)->setSizes({490, 520});
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return button("cmdSelAll")->y() == button("cmdDeSelAll")->y() &&
               button("cmdSelezionaEvidenziati")->y() == button("Cmd_DeselezionaEvidenziati")->y() &&
               button("cmdProsegui1")->y() > button("cmdSelezionaEvidenziati")->y();
    }));
}

TEST_F(SmsFormCriteriaTest, EscapeAndEnterEndNothing)
{
    open();
    for (QWidget* place : {static_cast<QWidget*>(form.get()), static_cast<QWidget*>(edit("txtANA_Eta_I")),
                           static_cast<QWidget*>(probeOf(grid())->bodyViewport())}) {
        QTest::keyClick(place, Qt::Key_Escape);
        QTest::keyClick(place, Qt::Key_Return);
    }
    EXPECT_TRUE(form->isVisible());
    EXPECT_TRUE(host.operations().empty()) << "no button was pressed";
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(form->choice(), QString());
}

TEST_F(SmsFormCriteriaTest, ClosedWithoutAPreparationItLeavesEsc)
{
    open();
    EXPECT_EQ(form->choice(), QString());
    form->close();
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(form->choice(), u"ESC"_s);
}

} // namespace
} // namespace zul
