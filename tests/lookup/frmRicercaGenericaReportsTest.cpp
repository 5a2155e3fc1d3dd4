// Under which names the lookup dialog's handlers report. An owner's listener that fails stands for whatever may
// fail in a handler.
#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridModel.h"
#include "lookup/frmRicercaGenerica.h"
#include "tests/support/ComponentTest.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class RicercaGenericaReportsTest : public ComponentTest
{
protected:
    RicercaGenericaReportsTest() { dialog.show(); }

    static void fail() { throw Error(RunTime::Overflow); }

    void click(const char* name)
    {
        QTest::mouseClick(dialog.findChild<QPushButton*>(QLatin1String(name)), Qt::LeftButton);
    }

    void expectReport(const QString& name)
    {
        EXPECT_EQ(logged(), QStringList{name + u" | Error 6 (Overflow) in procedure "_s + name +
                                        u" of Form frmRicercaGenerica | "_s});
    }

    frmRicercaGenerica dialog{nullptr};
};

TEST_F(RicercaGenericaReportsTest, Ok)
{
    whileAsked = [](const OperatorMessage&) { fail(); };
    click("cmdOK");
    expectReport(u"cmdOK_Click"_s);
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(RicercaGenericaReportsTest, QuickSearch)
{
    auto* grid = dialog.findChild<ReportGrid*>(u"grdRicerca"_s);
    QObject::connect(grid->findChild<ReportGridModel*>(), &QAbstractItemModel::modelReset,
                     &RicercaGenericaReportsTest::fail);
    dialog.findChild<QLineEdit*>(u"txtRicVeloce"_s)->setText(u"x"_s);
    click("cmdRicVeloce");
    expectReport(u"RicercaVeloce"_s);
}

} // namespace
} // namespace zul
