#include "bench/LoadedGrid.h"
#include "bench/Measure.h"
#include "bench/Runs.h"
#include "controls/notices/OutcomeList.h"
#include "mainwindow/FormAdapters.h"
#include "messages/CreateMAIL.h"
#include "messages/CreateSMS.h"

#include <stdexcept>

namespace zul::bench {

namespace {

// Templates of the demonstration data.
constexpr qint32 smsTemplate = 1;
constexpr qint32 mailTemplate = 6;
constexpr qint32 operatorId = 1;

} // namespace

void runPreparation(const std::string& database, Kind kind, bool half)
{
    LoadedGrid loaded(database);
    loaded.search();
    ReportGrid& grid = loaded.grid();
    for (std::uint32_t record = 0; record < grid.recordCount(); record += half ? 2 : 1) {
        grid.setChecked(record, true);
    }
    grid.show();
    OutcomeList list;
    list.resize(1000, 600);
    list.show();

    const Times start = now();
    GridRecipients recipients(grid);
    ListOutcomes outcomes(list);
    bool ok = true;
    if (kind == Kind::Mail) {
        createMail(loaded.connection(), recipients, outcomes, mailTemplate, operatorId, true);
    } else {
        ok = createSms(loaded.connection(), recipients, outcomes, smsTemplate, true);
    }
    grid.populate();
    list.flush();
    const Times taken = now() - start;
    if (!ok) {
        throw std::runtime_error("the preparation failed");
    }
    std::uint64_t prepared = 0;
    for (int line = 0; line < list.count(); ++line) {
        prepared += list.line(line).startsWith(QLatin1String("OK     - ")) ? 1U : 0U;
    }
    printRun(taken, prepared);
    printPeak();
}

} // namespace zul::bench
