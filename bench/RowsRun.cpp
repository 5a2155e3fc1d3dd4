// What an operator does with a million rows beside sorting them: counts, find and filter, a group's tick, a CSV file. After
// each step comes a bare loop that does the least that could be done for it over the same rows.
#include "bench/LoadedGrid.h"
#include "bench/Measure.h"
#include "bench/Runs.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridView.h"
#include "grid/CsvFile.h"
#include "selection/ResultGridQuery.h"

#include <QApplication>
#include <QFile>
#include <QLocale>

#include <charconv>
#include <cstdio>
#include <memory>
#include <stdexcept>

namespace zul::bench {

namespace {

using namespace Qt::StringLiterals;

template <class Step>
void measure(const char* word, std::uint64_t rows, Step&& step)
{
    const Times start = now();
    step();
    printRun(now() - start, rows, word);
}

/// The results of bare loops go here, so that none is left out.
volatile std::size_t outcome = 0;

/// The columns that are shown, without the one with the ticks.
std::vector<int> textColumns(const ReportGrid& grid)
{
    std::vector<int> columns;
    for (const int column : grid.columnsInScreenOrder()) {
        if (column != grid.checkColumn()) {
            columns.push_back(column);
        }
    }
    return columns;
}

/// A bit for each record, every other one set, as the grid has them.
std::vector<std::uint64_t> everyOther(std::uint32_t records)
{
    return std::vector<std::uint64_t>((records + 63) / 64, 0x5555555555555555U);
}

bool isSet(const std::vector<std::uint64_t>& bits, std::uint32_t record)
{
    return (bits[record >> 6] >> (record & 63) & 1) != 0;
}

void runCounts(ReportGrid& grid)
{
    // One is too short for the clock.
    constexpr int times = 1000;
    const GridNoun noun{u"cliente"_s, u"clienti"_s};
    const QLocale locale;
    std::size_t units = 0;
    const Times start = now();
    for (int i = 0; i < times; ++i) {
        units += static_cast<std::size_t>(countsText(grid.counts(), noun, locale).size());
    }
    const Times all = now() - start;
    outcome = units;
    printRun({all.wall / times, all.cpu / times}, grid.recordCount(), "counts");

    const std::vector<std::uint64_t> ticks = everyOther(grid.recordCount());
    measure("counts-bare", grid.recordCount(), [&] {
        std::size_t ticked = 0;
        for (std::uint32_t record = 0; record < grid.recordCount(); ++record) {
            ticked += isSet(ticks, record) ? 1U : 0U;
        }
        outcome = ticked;
    });
}

void runFilters(ReportGrid& grid)
{
    const std::uint32_t records = grid.recordCount();
    measure("ticked", records, [&] {
        grid.setOnlyChecked(true);
        grid.setOnlyChecked(false);
    });
    const std::vector<std::uint64_t> ticks = everyOther(records);
    const std::vector<std::uint32_t> order = grid.recordsInScreenOrder();
    measure("ticked-bare", records, [&] {
        std::vector<std::uint32_t> passed;
        for (const std::uint32_t record : order) {
            if (isSet(ticks, record)) {
                passed.push_back(record);
            }
        }
        outcome = passed.size();
    });

    // What a key in the find bar does: the row, the number of matches, and with "solo i corrispondenti" the rows.
    const QString needle = grid.store().text(records / 2, ColumnCliente).left(4);
    measure("find", records, [&] {
        grid.setTextFilter(needle);
        (void)grid.findText(needle, ReportGrid::Find::Here);
        outcome = grid.matchCount(needle);
    });
    grid.setTextFilter({});
    const std::vector<int> columns = textColumns(grid);
    const std::string bytes = needle.toStdString();
    measure("find-bare", records, [&] {
        std::vector<std::uint32_t> passed;
        for (const std::uint32_t record : order) {
            for (const int column : columns) {
                if (grid.store().utf8(record, column).find(bytes) != std::string_view::npos) {
                    passed.push_back(record);
                    break;
                }
            }
        }
        outcome = passed.size();
    });
}

void runGroupTicks(ReportGrid& grid)
{
    auto& view = *grid.findChild<ReportGridView*>();
    grid.groupBy(ColumnPaese);
    grid.setAllGroupsClosed(true);
    const ReportGridModel& rows = view.grid();
    int largest = 0;
    for (int row = 0; row < rows.rowCount(); ++row) {
        largest = rows.groupCount(row) > rows.groupCount(largest) ? row : largest;
    }
    const auto count = static_cast<std::uint64_t>(rows.groupCount(largest));
    measure("group-tick", count, [&] { view.toggleCheck(largest); });
    // As many records as the group has, from anywhere.
    const std::vector<std::uint32_t>& order = grid.recordsInScreenOrder();
    std::vector<std::uint64_t> ticks = everyOther(grid.recordCount());
    measure("group-tick-bare", count, [&] {
        const std::vector<std::uint64_t> before = ticks; // for the operator who takes it back
        for (std::uint64_t place = 0; place < count; ++place) {
            const std::uint32_t record = order[place];
            ticks[record >> 6] |= std::uint64_t{1} << (record & 63);
        }
        outcome = ticks.front() + before.size();
    });
    // After it the box of every group is reckoned anew when it comes to be painted.
    measure("group-boxes", grid.recordCount(), [&] {
        std::size_t ticked = 0;
        for (int row = 0; row < rows.rowCount(); ++row) {
            ticked += rows.rowTick(row) == Qt::Checked ? 1U : 0U;
        }
        outcome = ticked;
    });
    measure("group-boxes-bare", grid.recordCount(), [&] {
        std::size_t ticked = 0;
        for (const std::uint32_t record : order) {
            ticked += isSet(ticks, record) ? 1U : 0U;
        }
        outcome = ticked;
    });
    grid.ungroup(ColumnPaese);
}

void runExport(ReportGrid& grid, const std::string& database)
{
    const QString path = QString::fromStdString(database) + u".csv"_s;
    const std::vector<std::uint32_t>& records = grid.recordsInScreenOrder();
    CsvContent content{grid.store(), {}, records};
    const std::vector<int> columns = textColumns(grid);
    for (const int column : columns) {
        content.columns.push_back({column, grid.columnCaption(column)});
    }
    measure("csv", records.size(), [&] {
        if (!writeCsv(path, content, [](std::size_t) { return true; }).written) {
            throw std::runtime_error("the file was not written");
        }
    });
    QFile::remove(path);
    measure("csv-bare", records.size(), [&] {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
            std::fopen(QFile::encodeName(path).constData(), "wb"), &std::fclose);
        if (!file) {
            throw std::runtime_error("the file was not made");
        }
        constexpr std::size_t blockSize = 1 << 18;
        std::string block;
        char digits[24];
        for (const std::uint32_t record : records) {
            for (const int column : columns) {
                if (grid.store().kind(record, column) == CellKind::Text) {
                    block += grid.store().utf8(record, column);
                } else {
                    const auto end =
                        std::to_chars(digits, digits + sizeof digits, grid.store().integer(record, column));
                    block.append(digits, end.ptr);
                }
                block += ';';
            }
            block += "\r\n";
            if (block.size() >= blockSize) {
                (void)std::fwrite(block.data(), 1, block.size(), file.get());
                block.clear();
            }
        }
        (void)std::fwrite(block.data(), 1, block.size(), file.get());
    });
    QFile::remove(path);
}

} // namespace

void runRows(const std::string& database)
{
    LoadedGrid loaded(database);
    ReportGrid& grid = loaded.grid();
    grid.resize(1000, 600);
    grid.show();
    loaded.search();
    QApplication::processEvents();
    measure("sort", grid.recordCount(), [&] { grid.sortBy(ColumnCliente, false); });
    grid.blockSignals(true);
    for (std::uint32_t record = 0; record < grid.recordCount(); record += 2) {
        grid.setChecked(record, true);
    }
    grid.blockSignals(false);
    runCounts(grid);
    runFilters(grid);
    runGroupTicks(grid);
    runExport(grid, database);
}

} // namespace zul::bench
