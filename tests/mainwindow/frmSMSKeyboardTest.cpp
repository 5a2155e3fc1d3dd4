// The main window worked with the keyboard.
#include "mainwindow/PageTabs.h"
#include "tests/mainwindow/SmsFormTest.h"
#include "tests/support/AltKey.h"
#include "tests/support/QueuedInput.h"

#include <QApplication>
#include <QClipboard>
#include <QMap>
#include <array>
#include <gtest/gtest.h>
#include <utility>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class SmsFormKeyboardTest : public SmsFormTest
{
protected:
    /// The control that has the focus; a part of one (a text box, a bar, the rows of the grid) counts as it.
    static QString focused()
    {
        const QWidget* widget = QApplication::focusWidget();
        while (widget != nullptr && (widget->objectName().isEmpty() || widget->objectName() == u"textBox"_s ||
                                     widget->objectName().startsWith(u"qt_"_s))) {
            widget = widget->parentWidget();
        }
        return widget != nullptr ? widget->objectName() : QString();
    }

    /// The stops of the Tab key from the main bar on until it is there again.
    QStringList stops(Qt::Key key = Qt::Key_Tab)
    {
        tabs("tab_Invio")->tabBar()->setFocus();
        QStringList names;
        constexpr int Enough = 60;
        while (names.size() < Enough) {
            names.append(focused());
            QTest::keyClick(QApplication::focusWidget(), key);
            if (QApplication::focusWidget() == tabs("tab_Invio")->tabBar()) {
                break;
            }
        }
        return names;
    }

    static QStringList reversed(QStringList names)
    {
        // The walk begins at the main bar in both directions.
        std::reverse(names.begin() + 1, names.end());
        return names;
    }
};

TEST_F(SmsFormKeyboardTest, TabGoesThroughThePageAsItIsRead)
{
    open();
    const QStringList begin{u"tab_Invio"_s, u"TabControl1"_s};
    const QStringList end{u"cmdRicerche"_s,
                          u"cmdElabora"_s,
                          u"grdClienti"_s,
                          u"cmdSelAll"_s,
                          u"cmdDeSelAll"_s,
                          u"cmdSelezionaEvidenziati"_s,
                          u"Cmd_DeselezionaEvidenziati"_s,
                          u"cmdProsegui1"_s};
    const std::array<QStringList, 4> criteria{
        QStringList{u"chkANA_Tipo"_s, u"chkANA_Tipo_Cli"_s, u"chkANA_Tipo_For"_s, u"chkANA_Tipo_Con"_s,
                    u"chkANA_Eta"_s, u"txtANA_Eta_I"_s, u"txtANA_Eta_F"_s, u"chkANA_Sesso"_s, u"optMaschio"_s,
                    u"chkANA_Ricorr"_s, u"cntrAna_Ricorr"_s, u"cbbANA_Ricorr_DataI"_s,
                    u"cbbANA_Ricorr_DataF"_s},
        QStringList{u"chkLOC_Comune"_s, u"cntrLOC_Comune"_s, u"chkLOC_Provincia"_s, u"cntrLOC_Provincia"_s},
        QStringList{u"chkECO_Fatt"_s, u"cbbECO_Fatt_DataI"_s, u"cbbECO_Fatt_DataF"_s, u"txtECO_Fatt_Da"_s,
                    u"txtECO_Fatt_A"_s, u"chkECO_NAcq"_s, u"cbbECO_NAcq_DataI"_s, u"cbbECO_NAcq_DataF"_s,
                    u"txtECO_NAcq_Da"_s, u"txtECO_NAcq_A"_s, u"chkECO_PerAcq"_s, u"cbbECO_PerAcq_DataI"_s,
                    u"cbbECO_PerAcq_DataF"_s, u"cbbECO_PerAcq_Auto"_s, u"chkECO_PtFid"_s, u"txtECO_PtFid_I"_s,
                    u"txtECO_PtFid_F"_s, u"chkECO_Classif"_s, u"cntrECO_Classif"_s},
        QStringList{u"chk_Avanzata"_s, u"cmd_Ricerca_Avanzata"_s},
    };
    for (int i = 0; i < 4; ++i) {
        page("TabControl1", i);
        const QStringList all = begin + criteria.at(static_cast<std::size_t>(i)) + end;
        EXPECT_EQ(stops(), all);
        EXPECT_EQ(reversed(stops(Qt::Key_Backtab)), all);
    }
}

TEST_F(SmsFormKeyboardTest, TabGoesThroughThePagesOfTheSendTypeAsTheyAreRead)
{
    open();
    page("tab_Invio", 1);
    const QStringList smsMail{u"tab_Invio"_s,        u"TabControlTipo"_s,      u"RBN_SoloSMS"_s,
                              u"cntrMessaggio(0)"_s, u"cmdNuovoTestoSMS(0)"_s, u"cmdAnteprima(0)"_s,
                              u"cntrMailFinder"_s,   u"cmdProsegui2"_s};
    EXPECT_EQ(stops(), smsMail);
    EXPECT_EQ(reversed(stops(Qt::Key_Backtab)), smsMail);
    page("TabControlTipo", 1);
    const QStringList push{u"tab_Invio"_s,           u"TabControlTipo"_s,         u"RBN_PushModel"_s,
                           u"cntrMessaggio(1)"_s,    u"txtTestoMessaggio(1)"_s,   u"cmdAnteprima(1)"_s,
                           u"cmdNuovoTestoSMS(1)"_s, u"optApp_SoloSelezionati"_s, u"cmdProsegui2"_s};
    EXPECT_EQ(stops(), push);
    find<PageTabs>(u"tab_Invio"_s)->setPageShown(2, true);
    page("tab_Invio", 2);
    auto* list = find<OutcomeList>(u"List_INFO"_s);
    list->append(u"OK     - Rossi"_s);
    list->flush();
    const QStringList prepare{u"tab_Invio"_s, u"chkSoloErrori"_s,     u"cmdCopiaEsito"_s,  u"cmdSalvaEsito"_s,
                              u"List_INFO"_s, u"cmdApriGestoreSMS"_s, u"cmdCreaMessaggi"_s};
    EXPECT_EQ(stops(), prepare);
    EXPECT_EQ(reversed(stops(Qt::Key_Backtab)), prepare);
}

TEST_F(SmsFormKeyboardTest, EveryCommandTabAndCriterionHasAnAltLetterOfItsOwn)
{
    open();
    const auto check = [this](const char* where) {
        QMap<QChar, QString> taken;
        const auto take = [&](const QString& caption, const QString& name, bool needed) {
            const qsizetype at = caption.indexOf(u'&');
            if (at < 0) {
                EXPECT_FALSE(needed) << where << ": " << utf8(name) << " has none";
                return;
            }
            const QChar letter = caption.at(at + 1).toUpper();
            EXPECT_FALSE(taken.contains(letter)) << where << ": " << utf8(QString(letter)) << " of "
                                                 << utf8(name) << " and " << utf8(taken.value(letter));
            taken.insert(letter, name);
        };
        for (const auto* control : form->findChildren<QAbstractButton*>()) {
            // The choices of a criterion follow it directly.
            const bool needed = qobject_cast<const QPushButton*>(control) != nullptr;
            if (control->isVisible() && !control->text().isEmpty() && control->focusPolicy() != Qt::NoFocus) {
                take(control->text(), control->objectName(), needed);
            }
        }
        for (const auto* control : form->findChildren<QTabWidget*>()) {
            for (int i = 0; control->isVisible() && i < control->count(); ++i) {
                if (control->isTabVisible(i) && !(control == tabs("tab_Invio") && i == 2)) {
                    take(control->tabText(i), control->tabText(i), true);
                }
            }
        }
    };
    for (int i = 0; i < 4; ++i) {
        page("TabControl1", i);
        check(utf8(tabs("TabControl1")->tabText(i)).c_str());
    }
    click("cmdProsegui1");
    check("Sms/Mail");
    page("TabControlTipo", 1);
    check("push");
    click("optApp_TuttiRegistrati");
    click("RBN_Push");
    freeText(1)->setPlainText(u"Ciao"_s);
    click("cmdProsegui2");
    check("Prepara per invio");
}

TEST_F(SmsFormKeyboardTest, AltWithALetterWorksAndTheLetterAloneIsTyped)
{
    open();
    scriptCustomers({customer(1, "Rossi", "333", "a@b.it")});
    QLineEdit* field = edit("txtANA_Eta_I");
    field->setFocus();
    QTest::keyClicks(field, u"rRaAlL"_s);
    EXPECT_EQ(field->text(), u"rRaAlL"_s);
    EXPECT_TRUE(host.operations().empty());
    pressAlt(field, Qt::Key_L);
    EXPECT_EQ(tabs("TabControl1")->currentIndex(), 1);
    pressAlt(form.get(), Qt::Key_C);
    EXPECT_TRUE(box("chkLOC_Comune")->isChecked());
    pressAlt(form.get(), Qt::Key_C);
    pressAlt(form.get(), Qt::Key_R);
    EXPECT_EQ(grid()->recordCount(), 1U) << "a search";
    pressAlt(form.get(), Qt::Key_U);
    EXPECT_EQ(marks(), u"x"_s);
    pressAlt(form.get(), Qt::Key_P);
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 1);
    pressAlt(form.get(), Qt::Key_O);
    EXPECT_TRUE(radio("RBN_SoloSMS")->isChecked());
    pressAlt(form.get(), Qt::Key_U);
    EXPECT_EQ(tabs("TabControlTipo")->currentIndex(), 1);
}

TEST_F(SmsFormKeyboardTest, F5AndCtrlEnterSearchOnTheSearchPageAlone)
{
    open();
    QTest::keyClick(edit("txtANA_Eta_I"), Qt::Key_F5);
    QTest::keyClick(edit("txtANA_Eta_I"), Qt::Key_Return, Qt::ControlModifier);
    QTest::keyClick(probeOf(grid())->bodyViewport(), Qt::Key_Enter, Qt::ControlModifier);
    EXPECT_EQ(host.operations("execute INSERT").size(), 3U);
    click("cmdProsegui1");
    QTest::keyClick(form.get(), Qt::Key_F5);
    QTest::keyClick(form.get(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(host.operations("execute INSERT").size(), 3U);
}

TEST_F(SmsFormKeyboardTest, F6GoesFromTheCriteriaToTheRowsAndBack)
{
    open();
    QWidget* rows = grid()->focusProxy();
    edit("txtANA_Eta_I")->setFocus();
    QTest::keyClick(form->focusWidget(), Qt::Key_F6);
    EXPECT_EQ(form->focusWidget(), rows);
    QTest::keyClick(form->focusWidget(), Qt::Key_F6);
    EXPECT_EQ(form->focusWidget(), edit("txtANA_Eta_I"));
    page("TabControl1", 1);
    rows->setFocus();
    QTest::keyClick(form->focusWidget(), Qt::Key_F6);
    EXPECT_EQ(form->focusWidget(), tabs("TabControl1")->tabBar()) << "the criterion it left is not there";
}

TEST_F(SmsFormKeyboardTest, CtrlFFindsFromAnywhereInThePageAndF6GoesOnToTheRows)
{
    open();
    edit("txtANA_Eta_I")->setFocus();
    QTest::keyClick(form->focusWidget(), Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(form->focusWidget(), find<QLineEdit>(u"txtTrova"_s));
    QTest::keyClick(form->focusWidget(), Qt::Key_F6);
    EXPECT_EQ(form->focusWidget(), grid()->focusProxy());
    EXPECT_TRUE(find<QLineEdit>(u"txtTrova"_s)->isVisible()) << "what is filtered stays so";
    page("tab_Invio", 1);
    QTest::keyClick(form->focusWidget(), Qt::Key_F, Qt::ControlModifier);
    QTest::keyClick(form->focusWidget(), Qt::Key_F6);
    EXPECT_FALSE(form->focusWidget()->isAncestorOf(grid()) || grid()->isAncestorOf(form->focusWidget()));
}

TEST_F(SmsFormKeyboardTest, CtrlZTakesBackTheLastTickingFromItsButtonToo)
{
    open();
    scriptCustomers({customer(1, "Rossi", "333", "a@b.it"), customer(2, "Verdi", "334", "c@d.it")});
    search();
    tick(0);
    click("cmdSelAll");
    EXPECT_EQ(marks(), u"xx"_s);
    EXPECT_EQ(focused(), u"cmdSelAll"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(marks(), u"x-"_s);
    grid()->setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(marks(), u"xx"_s) << "once, in the rows too";
    auto* age = edit("txtANA_Eta_I");
    age->setFocus();
    QTest::keyClicks(age, u"30"_s);
    QTest::keyClick(age, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(age->text(), QString()) << "a field's own";
    EXPECT_EQ(marks(), u"xx"_s);
}

TEST_F(SmsFormKeyboardTest, ProseguiLeadsToTheSendTypeAndChoosesNone)
{
    open();
    QTest::keyClick(button("cmdProsegui1"), Qt::Key_Return);
    EXPECT_EQ(form->focusWidget(), radio("RBN_SoloSMS"));
    EXPECT_FALSE(radio("RBN_SoloSMS")->isChecked());
    click("RBM_Precedenza_SMS");
    page("tab_Invio", 0);
    QTest::keyClick(button("cmdProsegui1"), Qt::Key_Return);
    EXPECT_EQ(form->focusWidget(), radio("RBM_Precedenza_SMS"));
    open(false, false, true);
    QTest::keyClick(button("cmdProsegui1"), Qt::Key_Return);
    EXPECT_EQ(form->focusWidget(), radio("RBN_PushModel"));
}

TEST_F(SmsFormKeyboardTest, AKeyPressedWhileASearchRunsSearchesNoMore)
{
    open();
    bool queued = false;
    host.during("execute INSERT", [&] {
        if (!std::exchange(queued, true)) {
            queueKey(form.get(), Qt::Key_F5);
            queueKey(form.get(), Qt::Key_R, Qt::AltModifier);
        }
    });
    QTest::keyClick(edit("txtANA_Eta_I"), Qt::Key_F5);
    QCoreApplication::processEvents();
    EXPECT_EQ(host.operations("execute INSERT").size(), 1U);
}

TEST_F(SmsFormKeyboardTest, CtrlWithPageDownAndPageUpTurnsTheShownPagesOfTheControlOneIsIn)
{
    open(true, true, false);
    const auto press = [](Qt::Key key) {
        QTest::keyClick(QApplication::focusWidget(), key, Qt::ControlModifier);
    };
    box("chkANA_Tipo")->setFocus();
    for (const int next : {1, 2, 3, 3}) {
        press(Qt::Key_PageDown);
        EXPECT_EQ(tabs("TabControl1")->currentIndex(), next);
    }
    press(Qt::Key_PageUp);
    EXPECT_EQ(tabs("TabControl1")->currentIndex(), 2);
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 0);
    grid()->setFocus();
    press(Qt::Key_PageDown);
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 1);
    tabs("tab_Invio")->tabBar()->setFocus();
    press(Qt::Key_PageDown);
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 1) << "the next one is hidden";
    radio("RBN_SoloSMS")->setFocus();
    press(Qt::Key_PageDown);
    EXPECT_EQ(tabs("TabControlTipo")->currentIndex(), 0) << "no push page is shown";
    tabs("tab_Invio")->tabBar()->setFocus();
    press(Qt::Key_PageUp);
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 0);
}

TEST_F(SmsFormKeyboardTest, F2AndEnterEditNothingInTheGrid)
{
    open();
    scriptCustomers({customer(1, "Rossi", "333", "a@b.it")});
    search();
    clickRow(0);
    for (const Qt::Key key : {Qt::Key_F2, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(probeOf(grid())->bodyViewport(), key);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_X);
        EXPECT_EQ(grid()->cellText(0, 2), u"Rossi"_s);
        EXPECT_EQ(marks(), u"-"_s);
    }
    EXPECT_TRUE(form->isVisible());
    EXPECT_TRUE(host.operations().empty());
}

TEST_F(SmsFormKeyboardTest, F1ShowsTheKeys)
{
    open();
    bool shown = false;
    onWindow(u"frmTasti"_s, [&](QWidget* window) {
        shown = true;
        QTest::keyClick(window, Qt::Key_Escape);
    });
    QTest::keyClick(probeOf(grid())->bodyViewport(), Qt::Key_F1);
    EXPECT_TRUE(shown);
    EXPECT_TRUE(form->isVisible());
}

TEST_F(SmsFormKeyboardTest, EnterPressesTheFocusedButton)
{
    open();
    scriptCustomers({customer(1, "Rossi", "333", "a@b.it")});
    button("cmdElabora")->setFocus();
    QTest::keyClick(button("cmdElabora"), Qt::Key_Return);
    EXPECT_EQ(grid()->recordCount(), 1U);
    button("cmdSelAll")->setFocus();
    QTest::keyClick(button("cmdSelAll"), Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(marks(), u"x"_s);
    button("cmdProsegui1")->setFocus();
    QTest::keyClick(button("cmdProsegui1"), Qt::Key_Return);
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 1);
}

TEST_F(SmsFormKeyboardTest, EnterPressesTheFocusedToolButton)
{
    open();
    page("tab_Invio", 1);
    find<PageTabs>(u"tab_Invio"_s)->setPageShown(2, true);
    page("tab_Invio", 2);
    auto* list = find<OutcomeList>(u"List_INFO"_s);
    list->append(u"OK     - Rossi"_s);
    list->flush();
    QApplication::clipboard()->clear();
    auto* copy = find<QToolButton>(u"cmdCopiaEsito"_s);
    copy->setFocus();
    QTest::keyClick(copy, Qt::Key_Return);
    EXPECT_EQ(QApplication::clipboard()->text(), u"OK     - Rossi\n"_s);
}

TEST_F(SmsFormKeyboardTest, EnterWithAnotherKeyPressesNothing)
{
    open();
    button("cmdProsegui1")->setFocus();
    for (const Qt::KeyboardModifier with : {Qt::ShiftModifier, Qt::AltModifier}) {
        QTest::keyClick(button("cmdProsegui1"), Qt::Key_Return, with);
    }
    EXPECT_EQ(tabs("tab_Invio")->currentIndex(), 0);
}

} // namespace
} // namespace zul
