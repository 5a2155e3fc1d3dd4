#include "bench/LoadedGrid.h"
#include "bench/Measure.h"
#include "bench/OrdinaryModel.h"
#include "bench/Runs.h"
#include "controls/report/ReportGridProbe.h"
#include "selection/ResultGridQuery.h"

#include <QApplication>

namespace zul::bench {

namespace {

template <class Step>
void measure(const char* word, std::uint64_t rows, Step&& step)
{
    const Times start = now();
    step();
    printRun(now() - start, rows, word);
}

/// What is looked for: the beginning of a commune that comes, or a text that does not where there are none.
QString needleIn(const ColumnStore& store)
{
    const QString place = store.rowCount() > 0 ? store.text(store.rowCount() / 2, ColumnPaese) : QString();
    return place.isEmpty() ? QStringLiteral("roma") : place.left(12);
}

} // namespace

void runGrid(const std::string& database)
{
    LoadedGrid loaded(database);
    ReportGrid& grid = loaded.grid();
    grid.resize(1000, 600);
    grid.show();
    QApplication::processEvents();
    probeOf(&grid)->bodyViewport()->repaint();
    const auto paint = [&grid] {
        QApplication::processEvents();
        probeOf(&grid)->bodyViewport()->repaint();
    };
    const Times start = now();
    loaded.search();
    const std::uint64_t rows = grid.recordCount();
    printRun(now() - start, rows, "load");
    measure("paint", rows, paint);
    // Painting takes the same few milliseconds after every one of them, so it is not counted.
    const auto step = [&](const char* word, auto change) {
        measure(word, rows, change);
        paint();
    };
    step("tick", [&] { grid.setAllChecked(true); });
    // Each column's order is worked out for the first time.
    step("sort-town", [&] { grid.sortBy(ColumnPaese, false); });
    step("sort-email", [&] { grid.sortBy(ColumnEmail, false); });
    step("sort-name", [&] { grid.sortBy(ColumnCliente, false); });
    const QString needle = needleIn(grid.store());
    step("filter", [&] {
        grid.setTextFilter(needle);
        grid.setTextFilter(QString());
    });
    // A load takes orders and groups away, so grouping has no more ready than the sort had.
    loaded.search();
    grid.sortBy(ColumnCliente, false);
    paint();
    step("group", [&] { grid.groupBy(ColumnPaese); });
}

void runProxy(const std::string& database)
{
    LoadedGrid loaded(database);
    loaded.search();
    const QString needle = needleIn(loaded.grid().store());
    const std::uint64_t rows = loaded.grid().recordCount();
    OrdinaryModel model(loaded.grid().store());
    const std::unique_ptr<QSortFilterProxyModel> proxy = ordinaryProxy(model);
    (void)proxy->rowCount();
    measure("sort-town", rows, [&] { proxy->sort(ColumnPaese); });
    proxy->sort(-1);
    measure("sort-email", rows, [&] { proxy->sort(ColumnEmail); });
    proxy->sort(-1);
    measure("sort-name", rows, [&] { proxy->sort(ColumnCliente); });
    measure("filter", rows, [&] {
        proxy->setFilterFixedString(needle);
        (void)proxy->rowCount();
        proxy->setFilterFixedString(QString());
        (void)proxy->rowCount();
    });
}

} // namespace zul::bench
