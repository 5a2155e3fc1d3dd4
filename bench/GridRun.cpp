#include "bench/LoadedGrid.h"
#include "bench/Measure.h"
#include "bench/Runs.h"
#include "selection/ResultGridQuery.h"

namespace zul::bench {

namespace {

template <class Step>
void measure(const char* word, std::uint64_t rows, Step&& step)
{
    const Times start = now();
    step();
    printRun(now() - start, rows, word);
}

} // namespace

void runGrid(const std::string& database)
{
    LoadedGrid loaded(database);
    ReportGrid& grid = loaded.grid();
    grid.resize(1000, 600);
    grid.show();
    const Times start = now();
    loaded.search();
    const std::uint64_t rows = grid.recordCount();
    printRun(now() - start, rows, "load");
    measure("sort", rows, [&] { grid.sortBy(ColumnCliente, false); });
    measure("group", rows, [&] { grid.groupBy(ColumnPaese); });
    measure("tick", rows, [&] { grid.setAllChecked(true); });
}

} // namespace zul::bench
