// The report grid at its design size, beside what it is measured against: a bare loop that keeps the same rows in
// plain arrays, and Qt's own sorting and filtering model over the same rows.
//
// ZUL_BENCH_ROWS sets the number of rows (a million when it is not set).
#include "bench/OrdinaryModel.h"
#include "bench/SortKeys.h"
#include "controls/report/ReportGrid.h"
#include "controls/report/ReportGridProbe.h"
#include "grid/ColumnStore.h"
#include "grid/TextCollation.h"

#include <QApplication>

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

using namespace zul;

namespace {

constexpr int columns = 13;
constexpr int nameColumn = 2;
constexpr int townColumn = 3;
constexpr int emailColumn = 10;

int rowsWanted()
{
    const char* given = std::getenv("ZUL_BENCH_ROWS");
    const int rows = given != nullptr ? std::atoi(given) : 0;
    return rows > 0 ? rows : 1000000;
}

using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

/// A database in memory with as many customers as wanted: names that come again, towns and provinces of which
/// there are few, phones and addresses of which each is its own, some of them NULL.
class Customers
{
public:
    Customers()
    {
        check(sqlite3_open(":memory:", &m_database));
        run("CREATE TABLE c (id INTEGER PRIMARY KEY, tick TEXT, name TEXT, town TEXT, prov TEXT, age "
            "INTEGER, "
            "sex TEXT, birth REAL, phone TEXT, phone2 TEXT, email TEXT, sales TEXT, accounts TEXT)");
        const std::string rows = std::to_string(rowsWanted());
        run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " + rows +
            ") INSERT INTO c SELECT i, '', 'Cognome' || (i * 7919 % 30011) || ' Nome' || (i * 31 % 503), "
            "'Comune di ' || (i * 101 % 7903), substr('RMMITONAPABABO', (i % 7) * 2 + 1, 2), 18 + i % 80, "
            "CASE i % 2 WHEN 0 THEN 'M' ELSE 'F' END, 10000.0 + i * 37 % 25000, '06' || (10000000 + i * 13), "
            "CASE i % 3 WHEN 0 THEN NULL ELSE '340' || (1000000 + i) END, "
            "'cliente' || (i * 48271 % 2147483647) || '@example.com', "
            "CASE i % 10 WHEN 0 THEN 'ufficio' || i || '@example.com' ELSE NULL END, NULL FROM n");
    }
    ~Customers() { sqlite3_close(m_database); }
    Customers(const Customers&) = delete;
    Customers& operator=(const Customers&) = delete;

    Statement select() const
    {
        sqlite3_stmt* statement = nullptr;
        check(sqlite3_prepare_v2(m_database, "SELECT * FROM c", -1, &statement, nullptr));
        return {statement, &sqlite3_finalize};
    }

    static const Customers& instance()
    {
        static const Customers customers;
        return customers;
    }

private:
    static void check(int result)
    {
        if (result != SQLITE_OK) {
            std::abort();
        }
    }
    void run(const std::string& sql) const
    {
        check(sqlite3_exec(m_database, sql.c_str(), nullptr, nullptr, nullptr));
    }

    sqlite3* m_database = nullptr;
};

void load(ColumnStore& store)
{
    const Statement rows = Customers::instance().select();
    while (sqlite3_step(rows.get()) == SQLITE_ROW) {
        for (int column = 0; column < columns; ++column) {
            switch (sqlite3_column_type(rows.get(), column)) {
            case SQLITE_NULL:
                store.appendNull(column);
                break;
            case SQLITE_INTEGER:
                store.appendInteger(column, sqlite3_column_int64(rows.get(), column));
                break;
            case SQLITE_FLOAT:
                store.appendDate(column, sqlite3_column_double(rows.get(), column));
                break;
            default:
                store.appendText(column,
                                 reinterpret_cast<const char*>(sqlite3_column_text(rows.get(), column)),
                                 static_cast<size_t>(sqlite3_column_bytes(rows.get(), column)));
            }
        }
        store.endRow();
    }
    store.settle();
}

/// The same rows as anyone would keep them at least cost: an array per column, each text once.
struct PlainRows
{
    struct Column
    {
        std::unordered_map<std::string, uint32_t> known;
        std::vector<uint32_t> words;
        std::vector<double> reals;
    };
    std::vector<Column> all = std::vector<Column>(columns);
    uint32_t rows = 0;

    void load()
    {
        const Statement select = Customers::instance().select();
        while (sqlite3_step(select.get()) == SQLITE_ROW) {
            for (int number = 0; number < columns; ++number) {
                Column& column = all[static_cast<size_t>(number)];
                switch (sqlite3_column_type(select.get(), number)) {
                case SQLITE_NULL:
                    column.words.push_back(0xFFFFFFFF);
                    break;
                case SQLITE_INTEGER:
                    column.words.push_back(static_cast<uint32_t>(sqlite3_column_int(select.get(), number)));
                    break;
                case SQLITE_FLOAT:
                    column.reals.push_back(sqlite3_column_double(select.get(), number));
                    break;
                default: {
                    std::string text(reinterpret_cast<const char*>(sqlite3_column_text(select.get(), number)),
                                     static_cast<size_t>(sqlite3_column_bytes(select.get(), number)));
                    const auto next = static_cast<uint32_t>(column.known.size());
                    column.words.push_back(column.known.try_emplace(std::move(text), next).first->second);
                }
                }
            }
            ++rows;
        }
    }
};

void describe(ReportGrid& grid)
{
    for (int column = 0; column < columns; ++column) {
        const QString name = QStringLiteral("Column %1").arg(column);
        grid.addColumn({name, name, 0, column != 0, true, column == 1});
    }
}

/// One filled grid for all measurements that do not fill.
ReportGrid& filledGrid()
{
    static ReportGrid* grid = [] {
        auto* filled = new ReportGrid;
        filled->resize(1000, 600);
        describe(*filled);
        load(filled->store());
        filled->populate();
        filled->show();
        QApplication::processEvents();
        return filled;
    }();
    return *grid;
}

QSortFilterProxyModel& ordinaryProxy()
{
    static bench::OrdinaryModel model(filledGrid().store());
    static const std::unique_ptr<QSortFilterProxyModel> proxy = bench::ordinaryProxy(model);
    return *proxy;
}

/// Forgets the orders of texts worked out so far: a cell written anew is enough.
void forgetRanks(ReportGrid& grid)
{
    static int writes = 0;
    const std::string text = "Written " + std::to_string(++writes);
    for (const int column : {nameColumn, townColumn, emailColumn}) {
        grid.store().setText(0, column, text.data(), text.size());
    }
}

void loadPlainArrays(benchmark::State& state)
{
    Customers::instance();
    for (auto _ : state) {
        PlainRows rows;
        rows.load();
        benchmark::DoNotOptimize(rows.rows);
    }
}

void loadGrid(benchmark::State& state)
{
    Customers::instance();
    for (auto _ : state) {
        ReportGrid grid;
        describe(grid);
        load(grid.store());
        grid.populate();
        state.counters["bytes"] = static_cast<double>(grid.store().bytes());
    }
}

void firstPaint(benchmark::State& state)
{
    ReportGrid& grid = filledGrid();
    for (auto _ : state) {
        grid.store().setInteger(0, 0, 1); // so that populate has all to do
        grid.populate();
        probeOf(&grid)->bodyViewport()->repaint();
    }
}

void sortGrid(benchmark::State& state)
{
    ReportGrid& grid = filledGrid();
    const auto column = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        forgetRanks(grid);
        state.ResumeTiming();
        grid.sortBy(column, false);
        probeOf(&grid)->bodyViewport()->repaint();
    }
}

void turnGrid(benchmark::State& state)
{
    ReportGrid& grid = filledGrid();
    bool descending = false;
    for (auto _ : state) {
        grid.sortBy(static_cast<int>(state.range(0)), descending = !descending);
        probeOf(&grid)->bodyViewport()->repaint();
    }
}

void sortOrdinary(benchmark::State& state)
{
    QSortFilterProxyModel& proxy = ordinaryProxy();
    for (auto _ : state) {
        proxy.sort(-1);
        proxy.sort(static_cast<int>(state.range(0)));
    }
}

void filterGrid(benchmark::State& state)
{
    ReportGrid& grid = filledGrid();
    grid.sortBy(nameColumn, false);
    for (auto _ : state) {
        grid.setTextFilter(QStringLiteral("comune di 77"));
        grid.populate();
        grid.setTextFilter(QString());
        grid.populate();
    }
}

void filterOrdinary(benchmark::State& state)
{
    QSortFilterProxyModel& proxy = ordinaryProxy();
    proxy.sort(nameColumn);
    for (auto _ : state) {
        proxy.setFilterFixedString(QStringLiteral("comune di 77"));
        proxy.setFilterFixedString(QString());
    }
}

void groupGrid(benchmark::State& state)
{
    ReportGrid& grid = filledGrid();
    grid.sortBy(-1, false);
    for (auto _ : state) {
        state.PauseTiming();
        grid.ungroupAll();
        forgetRanks(grid);
        state.ResumeTiming();
        grid.groupBy(static_cast<int>(state.range(0)));
        probeOf(&grid)->bodyViewport()->repaint();
    }
    grid.ungroupAll();
}

void tickAll(benchmark::State& state)
{
    ReportGrid& grid = filledGrid();
    for (auto _ : state) {
        grid.setAllChecked(true);
        probeOf(&grid)->bodyViewport()->repaint();
    }
}

/// The distinct texts of a column.
TextPool textsOf(int column)
{
    const ColumnStore& store = filledGrid().store();
    TextPool pool;
    for (uint32_t row = 0; row < store.rowCount(); ++row) {
        const std::string_view text = store.utf8(row, column);
        pool.intern(text.data(), text.size());
    }
    return pool;
}

/// What the first sort by a column of texts spends on their order.
void rankTexts(benchmark::State& state)
{
    const TextPool pool = textsOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(collationRanks(pool, QLocale()));
    }
}

void rankTextsBySortKeys(benchmark::State& state)
{
    const TextPool pool = textsOf(static_cast<int>(state.range(0)));
    if (bench::ranksBySortKeys(pool, QLocale()) != collationRanks(pool, QLocale())) {
        state.SkipWithError("the two orders differ");
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(bench::ranksBySortKeys(pool, QLocale()));
    }
}

BENCHMARK(loadPlainArrays)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(loadGrid)->Unit(benchmark::kMillisecond)->Iterations(2);
BENCHMARK(firstPaint)->Unit(benchmark::kMillisecond);
BENCHMARK(sortGrid)
    ->Unit(benchmark::kMillisecond)
    ->Arg(nameColumn)
    ->Arg(townColumn)
    ->Arg(emailColumn)
    ->Arg(7);
BENCHMARK(rankTexts)->Unit(benchmark::kMillisecond)->Arg(nameColumn)->Arg(townColumn)->Arg(emailColumn);
BENCHMARK(rankTextsBySortKeys)
    ->Unit(benchmark::kMillisecond)
    ->Arg(nameColumn)
    ->Arg(townColumn)
    ->Arg(emailColumn);
BENCHMARK(turnGrid)->Unit(benchmark::kMillisecond)->Arg(nameColumn)->Arg(emailColumn);
BENCHMARK(groupGrid)->Unit(benchmark::kMillisecond)->Arg(nameColumn)->Arg(townColumn)->Arg(emailColumn);
BENCHMARK(filterGrid)->Unit(benchmark::kMillisecond);
BENCHMARK(tickAll)->Unit(benchmark::kMillisecond);
BENCHMARK(sortOrdinary)
    ->Unit(benchmark::kMillisecond)
    ->Arg(nameColumn)
    ->Arg(townColumn)
    ->Arg(emailColumn)
    ->Iterations(1);
BENCHMARK(filterOrdinary)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
