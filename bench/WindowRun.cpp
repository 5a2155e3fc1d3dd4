#include "bench/Measure.h"
#include "bench/Runs.h"
#include "controls/look/CommonLook.h"
#include "host/session/HostDatabase.h"
#include "mainwindow/frmSMS.h"
#include "session/Session.h"

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QLineEdit>

namespace zul::bench {

namespace {

/// Lets a window draw itself once.
void paint(QWidget& window)
{
    window.resize(1000, 700);
    window.show();
    QApplication::processEvents();
    (void)window.grab();
}

int widgetsOf(const QWidget& window)
{
    return static_cast<int>(window.findChildren<QWidget*>().size());
}

} // namespace

void runMainWindow(const std::string& database, int runs)
{
    host::HostDatabaseOptions options;
    options.database = database;
    const host::HostDatabase host(options);
    session().setConnessione(hostlib::SqlConnection(ComPtr<_SqlConnection>(host.connection())));
    for (; runs > 0; --runs) {
        const Times start = now();
        frmSMS window;
        window.InitTipoMessaggio(true, true, true);
        window.InitRicercaRicorrenze(true);
        window.InitRicercaClassificazioni(true);
        window.setTouchMode(false);
        paint(window);
        printRun(now() - start, static_cast<std::uint64_t>(widgetsOf(window)));
    }
    printPeak();
}

void runPlainWindow(const std::string& /*database*/, int runs)
{
    const int count = widgetsOf(frmSMS());
    for (; runs > 0; --runs) {
        const Times start = now();
        QDialog window;
        auto* layout = new QGridLayout(&window);
        constexpr int Columns = 12;
        for (int i = 0; i < count; ++i) {
            layout->addWidget(new QLineEdit, i / Columns, i % Columns);
        }
        applyCommonLook(&window, false);
        paint(window);
        printRun(now() - start, static_cast<std::uint64_t>(count));
    }
    printPeak();
}

} // namespace zul::bench
