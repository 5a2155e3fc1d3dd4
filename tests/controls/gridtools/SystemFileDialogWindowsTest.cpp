// The system's own dialog for the place of a list, which operators of Windows know.
#include "controls/gridtools/CsvExport.h"

#include <QApplication>
#include <QTimer>
#include <gtest/gtest.h>

#include <windows.h>

using namespace zul;
using namespace Qt::StringLiterals;

namespace {

class SystemFileDialogTest : public ::testing::Test
{
protected:
    SystemFileDialogTest()
    {
        QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
        m_timer.setInterval(50);
    }
    ~SystemFileDialogTest() override { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    /// Presses a button of the dialog as soon as it is there.
    void willPress(WPARAM button)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this, button] {
            const HWND dialog = FindWindowW(L"#32770", L"Salva in un file CSV");
            if (dialog != nullptr && IsWindowVisible(dialog) != FALSE) {
                m_timer.stop();
                m_seen = true;
                PostMessageW(dialog, WM_COMMAND, button, 0);
            }
        });
        m_timer.start();
    }

    QTimer m_timer;
    bool m_seen = false;
};

} // namespace

TEST_F(SystemFileDialogTest, GivesThePathWithItsEnding)
{
    willPress(IDOK);
    const QString path = askCsvFile(nullptr, u"clienti à €"_s);
    EXPECT_TRUE(m_seen);
    EXPECT_TRUE(path.endsWith(u"/clienti à €.csv"_s)) << path.toStdString();
}

TEST_F(SystemFileDialogTest, CancelledItGivesNone)
{
    willPress(IDCANCEL);
    EXPECT_EQ(askCsvFile(nullptr, u"clienti"_s), QString());
    EXPECT_TRUE(m_seen);
}
