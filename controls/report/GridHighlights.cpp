#include "controls/report/GridHighlights.h"

#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridView.h"

#include <QItemSelectionModel>

#include <algorithm>

namespace zul {

namespace {

constexpr int64_t manyRows = 2000;

/// The rows of the records, as few ranges.
QItemSelection rowsOf(const std::vector<uint32_t>& records, const ReportGridModel& grid)
{
    std::vector<bool> wanted(grid.recordCount(), false);
    for (const uint32_t record : records) {
        if (record < wanted.size()) {
            wanted[record] = true;
        }
    }
    QItemSelection rows;
    const int lastColumn = grid.columnCount() - 1;
    for (int row = 0; row < grid.rowCount(); ++row) {
        const int first = row;
        for (; row < grid.rowCount(); ++row) {
            const int record = grid.record(row);
            if (record < 0 || !wanted[static_cast<size_t>(record)]) {
                break;
            }
        }
        if (row > first) {
            rows.append(QItemSelectionRange(grid.index(first, 0), grid.index(row - 1, lastColumn)));
        }
    }
    return rows;
}

} // namespace

std::vector<uint32_t> highlightedRecords(const ReportGridView& view)
{
    std::vector<std::pair<int, int>> ranges;
    const QItemSelection highlighted = view.selectionModel()->selection();
    for (const QItemSelectionRange& range : highlighted) {
        ranges.emplace_back(range.top(), range.bottom());
    }
    std::sort(ranges.begin(), ranges.end());
    std::vector<uint32_t> records;
    for (const auto& [top, bottom] : ranges) {
        for (int row = top; row <= bottom; ++row) {
            const int record = view.grid().record(row);
            if (record >= 0) {
                records.push_back(static_cast<uint32_t>(record));
            }
        }
    }
    return records;
}

size_t highlightedCount(const ReportGridView& view)
{
    const ReportGridModel& grid = view.grid();
    size_t count = 0;
    const QItemSelection highlighted = view.selectionModel()->selection();
    for (const QItemSelectionRange& range : highlighted) {
        count += static_cast<size_t>(range.height() - grid.groupRowsBetween(range.top(), range.bottom()));
    }
    return count;
}

bool highlightsRecords(const ReportGridView& view)
{
    const QItemSelection highlighted = view.selectionModel()->selection();
    return std::any_of(highlighted.begin(), highlighted.end(), [&view](const QItemSelectionRange& range) {
        return view.grid().groupRowsBetween(range.top(), range.bottom()) < range.height();
    });
}

KeptHighlights::KeptHighlights(ReportGridView& view)
    : m_view(view)
{
    const QItemSelection highlighted = view.selectionModel()->selection();
    for (const QItemSelectionRange& range : highlighted) {
        m_rows += range.height();
    }
    m_all = m_rows > 0 && m_rows == view.grid().rowCount();
    if (m_rows <= manyRows) {
        m_records = highlightedRecords(view);
    }
    const QModelIndex current = view.currentIndex();
    m_current = current.isValid() ? view.grid().record(current.row()) : -1;
}

void KeptHighlights::restore() const
{
    const ReportGridModel& grid = m_view.grid();
    QItemSelectionModel& highlights = *m_view.selectionModel();
    const int rowCount = grid.rowCount();
    if (rowCount == 0 || (m_records.empty() && m_current < 0 && !m_all) ||
        (m_rows > 0 && highlights.hasSelection())) {
        return; // nothing to highlight, or nothing was made anew
    }
    QItemSelection again;
    if (!m_records.empty()) {
        again = rowsOf(m_records, grid);
    } else if (m_all) {
        again.select(grid.index(0, 0), grid.index(rowCount - 1, grid.columnCount() - 1));
    }
    const int currentRow = m_current < 0 ? -1 : grid.rowOfRecord(static_cast<uint32_t>(m_current));
    if (currentRow >= 0) {
        highlights.setCurrentIndex(grid.index(currentRow, m_view.firstShownColumn()),
                                   QItemSelectionModel::NoUpdate);
    }
    if (!again.isEmpty()) {
        highlights.select(again, QItemSelectionModel::ClearAndSelect);
    }
}

} // namespace zul
