// Under which names the handlers of the options windows report. An owner's listener that fails stands for whatever
// may fail in a handler.
#include "controls/fields/FolderTree.h"
#include "options/frmCheckSendError.h"
#include "options/frmOpzioni.h"
#include "options/frmShowPath.h"
#include "tests/support/ComponentTest.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class FormReportsTest : public ComponentTest
{
protected:
    static void fail() { throw Error(RunTime::Overflow); }

    static void click(const QWidget& form, const char* name)
    {
        QTest::mouseClick(form.findChild<QPushButton*>(QLatin1String(name)), Qt::LeftButton);
    }

    void expectReport(const QString& name, const QString& form)
    {
        EXPECT_EQ(logged(), QStringList{name + u" | Error 6 (Overflow) in procedure "_s + name +
                                        u" of Form "_s + form + u" | "_s});
    }
};

TEST_F(FormReportsTest, ChoosingAFolder)
{
    frmOpzioni form;
    form.show();
    QObject::connect(form.findChild<QLineEdit*>(u"txtPathSMSSender"_s), &QLineEdit::textChanged,
                     &FormReportsTest::fail);
    const QTemporaryDir folder;
    onWindow(u"frmShowPath"_s, [&](QWidget* chooser) {
        ASSERT_TRUE(chooser->findChild<FolderTree*>(u"FolderTreeview1"_s)->selectPath(folder.path()));
        click(*chooser, "cmdOK");
    });
    click(form, "cmdSelezionaPath");
    expectReport(u"cmdSelezionaPath_Click"_s, u"frmOpzioni"_s);
}

TEST_F(FormReportsTest, OkOfTheFolderChooser)
{
    frmShowPath chooser(nullptr);
    chooser.show();
    whileAsked = [](const OperatorMessage&) { fail(); };
    click(chooser, "cmdOK");
    expectReport(u"cmdOK_Click"_s, u"frmShowPath"_s);
    EXPECT_TRUE(chooser.isVisible());
}

TEST_F(FormReportsTest, ClosingTheSendErrorCheck)
{
    frmCheckSendError form;
    form.show();
    QObject::connect(&form, &QDialog::finished, &FormReportsTest::fail);
    click(form, "cmdChiudi");
    expectReport(u"cmdChiudi_Click"_s, u"frmCheckSendError"_s);
}

} // namespace
} // namespace zul
