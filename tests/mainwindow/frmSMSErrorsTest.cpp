// Errors in the handlers of the main window: each ends its handler, is logged under the handler's name, and
// reaches nobody else.
#include "hostlib/Error.h"
#include "tests/mainwindow/SmsFormTest.h"

#include <QDir>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

/// Fails at an event of the widgets that it watches.
class FailsAt : public QObject
{
public:
    explicit FailsAt(QEvent::Type type)
        : m_type(type)
    {}
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == m_type) {
            throw Error(RunTime::InvalidCall);
        }
        return false;
    }

private:
    QEvent::Type m_type;
};

class SmsFormErrorsTest : public SmsFormTest
{
protected:
    // A listener that fails stands for whatever may fail in a handler.
    static void fail() { throw Error(RunTime::InvalidCall); }

    void expectLogged(const QString& procedure)
    {
        EXPECT_EQ(logged(), QStringList{procedure +
                                        u" | Error 5 (Invalid procedure call or argument) in "
                                        "procedure "_s +
                                        procedure + u" of Form frmSMS | "_s});
        EXPECT_TRUE(messages.empty());
    }
};

TEST_F(SmsFormErrorsTest, AClickOnASubType)
{
    open();
    QObject::connect(box("chkANA_Tipo"), &QCheckBox::toggled, fail);
    click("chkANA_Tipo_For");
    expectLogged(u"chkANA_Tipo_For_Click"_s);
}

TEST_F(SmsFormErrorsTest, ACopyOfANumber)
{
    open();
    page("TabControl1", 2);
    QObject::connect(edit("txtECO_Fatt_A"), &QLineEdit::textChanged, fail);
    edit("txtECO_Fatt_Da")->setFocus();
    QTest::keyClicks(edit("txtECO_Fatt_Da"), u"1"_s);
    expectLogged(u"txtECO_Fatt_Da_Change"_s);
}

TEST_F(SmsFormErrorsTest, ACopyOfADate)
{
    open();
    QObject::connect(dateField("cbbANA_Ricorr_DataF"), &DateField::valueChanged, fail);
    dateField("cbbANA_Ricorr_DataI")->setDate(QDate(2024, 5, 6));
    expectLogged(u"cbbANA_Ricorr_DataI_Change"_s);
}

TEST_F(SmsFormErrorsTest, TheFocusInARangeField)
{
    open();
    form->setTouchMode(true);
    FailsAt failure(QEvent::Show);
    find<Keypad>(u"Virtual_KeyPAD"_s)->installEventFilter(&failure);
    edit("txtANA_Eta_I")->setFocus();
    expectLogged(u"txtANA_Eta_I_GotFocus"_s);
}

TEST_F(SmsFormErrorsTest, TheFocusInADateField)
{
    open();
    form->setTouchMode(true);
    FailsAt failure(QEvent::Show);
    find<Keypad>(u"Virtual_KeyPAD"_s)->installEventFilter(&failure);
    dateField("cbbANA_Ricorr_DataI")->setFocus();
    expectLogged(u"cbbANA_Ricorr_DataI_GotFocus"_s);
}

TEST_F(SmsFormErrorsTest, TheFocusInThePushText)
{
    session().ShowTouchMode = true;
    open();
    page("tab_Invio", 1);
    page("TabControlTipo", 1);
    FailsAt failure(QEvent::Show);
    find<OnScreenKeyboard>(u"Virtual_Keyboard"_s)->installEventFilter(&failure);
    freeText(1)->setFocus();
    expectLogged(u"txtTestoMessaggio_GotFocus"_s);
}

TEST_F(SmsFormErrorsTest, TheFocusThatLeavesThePushText)
{
    session().ShowTouchMode = true;
    open();
    page("tab_Invio", 1);
    page("TabControlTipo", 1);
    freeText(1)->setFocus();
    FailsAt failure(QEvent::Hide);
    find<OnScreenKeyboard>(u"Virtual_Keyboard"_s)->installEventFilter(&failure);
    radio("RBN_Push")->setFocus();
    expectLogged(u"txtTestoMessaggio_LostFocus"_s);
}

TEST_F(SmsFormErrorsTest, ALayoutThatCannotBeSaved)
{
    open();
    scriptCustomers({customer(1, "A", "", "")});
    search();
    ASSERT_TRUE(QDir().mkpath(layoutFile())) << "a folder stands where the file should";
    Q_EMIT grid()->columnLayoutChanged(ReportGrid::ColumnMoved);
    Q_EMIT grid()->columnLayoutChanged(ReportGrid::SortChanged);
    QDir().rmdir(layoutFile());
    ASSERT_EQ(logged().size(), 1) << "an order is no layout";
    EXPECT_EQ(logged().first(), u"grdClienti_ColumnOrderChanged | Error 75 (Path/File access error: "_s +
                                    QDir::toNativeSeparators(layoutFile()) +
                                    u") in procedure grdClienti_ColumnOrderChanged of Form frmSMS | "_s);
    EXPECT_TRUE(messages.empty());
}

} // namespace
} // namespace zul
