// The main window worked with the keyboard.
#include "tests/mainwindow/SmsFormTest.h"

#include <gtest/gtest.h>

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
    const QStringList end{u"cmdElabora"_s,
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
                              u"cntrMessaggio(0)"_s, u"cmdNuovoTestoSMS(0)"_s, u"cntrMailFinder"_s,
                              u"cmdProsegui2"_s};
    EXPECT_EQ(stops(), smsMail);
    EXPECT_EQ(reversed(stops(Qt::Key_Backtab)), smsMail);
    page("TabControlTipo", 1);
    const QStringList push{u"tab_Invio"_s,
                           u"TabControlTipo"_s,
                           u"RBN_PushModel"_s,
                           u"cntrMessaggio(1)"_s,
                           u"txtTestoMessaggio(1)"_s,
                           u"cmdNuovoTestoSMS(1)"_s,
                           u"optApp_SoloSelezionati"_s,
                           u"cmdProsegui2"_s};
    EXPECT_EQ(stops(), push);
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
