#include "bench/LoadedGrid.h"
#include "bench/Measure.h"
#include "bench/Runs.h"

namespace zul::bench {

void runSearch(const std::string& database, int runs)
{
    LoadedGrid loaded(database);
    for (; runs > 0; --runs) {
        const Times start = now();
        loaded.search();
        printRun(now() - start, loaded.grid().recordCount());
    }
    printPeak();
}

} // namespace zul::bench
