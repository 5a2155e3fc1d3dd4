// Searches that an operator keeps under a name.
#include "tests/mainwindow/SmsFormTest.h"

#include <QListWidget>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class SmsFormSearchesTest : public SmsFormTest
{
protected:
    void inSearches(const std::function<void(QWidget*)>& steps)
    {
        bool shown = false;
        onWindow(u"frmRicerche"_s, [&](QWidget* window) {
            shown = true;
            steps(window);
        });
        click("cmdRicerche");
        EXPECT_TRUE(shown);
    }

    static void press(QWidget* window, const char* name)
    {
        QTest::mouseClick(window->findChild<QPushButton*>(QLatin1String(name)), Qt::LeftButton);
    }

    static void saveAs(QWidget* window, const QString& name)
    {
        window->findChild<QLineEdit*>(u"txtNome"_s)->setText(name);
        press(window, "cmdSalva");
    }

    static QStringList listed(QWidget* window)
    {
        auto* list = window->findChild<QListWidget*>();
        QStringList names;
        for (int i = 0; i < list->count(); ++i) {
            names.append(list->item(i)->text());
        }
        return names;
    }

    /// Without the table the searches are the user's own, which the test needs no database for.
    void keepForUser() { host.failWhere("tabImpostazioni", E_FAIL, u"no such table"); }
};

TEST_F(SmsFormSearchesTest, WhatStandsInTheCriteriaComesBackWhole)
{
    keepForUser();
    open();
    click("chkANA_Tipo_Cli");
    click("chkANA_Eta");
    edit("txtANA_Eta_I")->setText(u"30"_s);
    edit("txtANA_Eta_F")->setText(u"60"_s);
    click("optFemmina");
    selector("cntrAna_Ricorr")->setSelection(7, u"Compleanno | à è € 😀"_s);
    page("TabControl1", 2);
    dateField("cbbECO_PerAcq_DataI")->setText(u"domani"_s);
    page("TabControl1", 3);
    host.searchAnswers() = {"SELECT 1"};
    click("cmd_Ricerca_Avanzata");
    EXPECT_TRUE(host.operations("open").empty()) << "nobody is asked before the window opens";
    const QString name = u"D'Amico \"100%\" 😀"_s;
    inSearches([&](QWidget* window) {
        EXPECT_TRUE(listed(window).isEmpty());
        EXPECT_EQ(window->focusWidget(), window->findChild<QLineEdit*>(u"txtNome"_s)) << "nothing to choose";
        EXPECT_FALSE(window->findChild<QPushButton*>(u"cmdCarica"_s)->isEnabled());
        saveAs(window, u"  "_s + name + u' ');
        EXPECT_EQ(listed(window), QStringList{name});
    });
    form->close();
    open();
    click("optMaschio");
    edit("txtANA_Eta_I")->setText(u"1"_s);
    page("TabControl1", 1);
    click("chkLOC_Comune");
    inSearches([&](QWidget* window) {
        EXPECT_EQ(window->focusWidget(), window->findChild<QListWidget*>());
        window->findChild<QListWidget*>()->setCurrentRow(0);
        QTest::keyClick(window->findChild<QPushButton*>(u"cmdCarica"_s), Qt::Key_Return);
    });
    EXPECT_TRUE(box("chkANA_Tipo")->isChecked());
    EXPECT_TRUE(box("chkANA_Tipo_Cli")->isChecked());
    EXPECT_FALSE(box("chkANA_Sesso")->isChecked());
    EXPECT_TRUE(radio("optFemmina")->isChecked());
    EXPECT_FALSE(radio("optMaschio")->isChecked());
    EXPECT_EQ(edit("txtANA_Eta_I")->text(), u"30"_s);
    EXPECT_EQ(edit("txtANA_Eta_F")->text(), u"60"_s) << "the end is not the start's copy";
    EXPECT_EQ(selector("cntrAna_Ricorr")->selectedId(), 7);
    EXPECT_EQ(selector("cntrAna_Ricorr")->text(), u"Compleanno | à è € 😀"_s);
    EXPECT_EQ(dateField("cbbECO_PerAcq_DataI")->text(), u"domani"_s);
    EXPECT_EQ(dateField("cbbECO_PerAcq_DataF")->text(), QString());
    EXPECT_FALSE(box("chkLOC_Comune")->isChecked()) << "what is not in it is at its default";
    EXPECT_TRUE(box("chk_Avanzata")->isChecked());
    EXPECT_TRUE(messages.empty());
}

TEST_F(SmsFormSearchesTest, ANameIsNeededAndOneThatIsThereIsReplacedOnlyWhenConfirmed)
{
    keepForUser();
    open();
    inSearches([&](QWidget* window) {
        saveAs(window, u"  "_s);
        EXPECT_EQ(messages, std::vector{told(u"Scrivere il nome della ricerca."_s)});
        messages.clear();
        saveAs(window, u"Roma"_s);
        saveAs(window, u"Milano"_s);
        answers = {Answer::No};
        saveAs(window, u"ROMA"_s);
        EXPECT_EQ(messages, std::vector{asked(u"Si desidera sostituire la ricerca «ROMA»?"_s)});
        EXPECT_EQ(listed(window), (QStringList{u"Roma"_s, u"Milano"_s}));
        saveAs(window, u"ROMA"_s);
        EXPECT_EQ(listed(window), (QStringList{u"ROMA"_s, u"Milano"_s}));
        answers = {Answer::No, Answer::Yes};
        press(window, "cmdElimina");
        EXPECT_EQ(listed(window).size(), 2);
        press(window, "cmdElimina");
        EXPECT_EQ(listed(window), QStringList{u"Milano"_s});
    });
}

TEST_F(SmsFormSearchesTest, ASearchThatDoesNotFitSaysWhyAndChangesNothing)
{
    keepForUser();
    open();
    page("TabControl1", 2);
    click("chkECO_Classif");
    inSearches([&](QWidget* window) { saveAs(window, u"Buoni"_s); });
    form->close();
    open();
    form->InitRicercaClassificazioni(false);
    edit("txtANA_Eta_I")->setText(u"5"_s);
    inSearches([&](QWidget* window) {
        window->findChild<QListWidget*>()->setCurrentRow(0);
        press(window, "cmdCarica");
        EXPECT_TRUE(window->isVisible());
    });
    EXPECT_EQ(messages, std::vector{told(
                            u"La ricerca «Buoni» non si può usare: il criterio «Classificazione» qui non è "
                            "disponibile."_s,
                            MessageIcon::Exclamation)});
    EXPECT_EQ(edit("txtANA_Eta_I")->text(), u"5"_s);
    EXPECT_FALSE(box("chkECO_Classif")->isChecked());
}

TEST_F(SmsFormSearchesTest, InTheTableEachIsOneSetting)
{
    open();
    click("chkANA_Eta");
    host.answer("Max(idImpostazione)", {{"maxId"}, {{number(41)}}});
    inSearches([&](QWidget* window) { saveAs(window, u"Roma"_s); });
    const std::string key = "Messaggi.Ricerca." + std::to_string(filler.idUtente()) + ".1";
    EXPECT_EQ(host.operations("set"),
              (std::vector<std::string>{
                  "set idImpostazione=42", "set Descrizione='" + key + "'",
                  R"(set Valore='{"criteri":{"chkANA_Eta":"1"},"nome":"Roma","versione":1}')"}));
    EXPECT_TRUE(logged().isEmpty());
}

} // namespace
} // namespace zul
