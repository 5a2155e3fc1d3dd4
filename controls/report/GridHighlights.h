// The highlighted rows of the report grid, as records.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zul {

class ReportGridView;

/// In the order on the screen; group rows are passed over.
std::vector<uint32_t> highlightedRecords(const ReportGridView& view);
/// How many records are highlighted. Without groups it takes no longer for many than for one.
size_t highlightedCount(const ReportGridView& view);
/// Whether a row that is no group is highlighted.
bool highlightsRecords(const ReportGridView& view);

/// Remembers which records are highlighted and which has the focus, and highlights them again after a change that made
/// the rows anew: by record, because rows change places. When very many rows are highlighted, but not all, they are
/// not worth it.
class KeptHighlights
{
public:
    explicit KeptHighlights(ReportGridView& view);

    /// Nothing when the rows were not made anew.
    void restore() const;

private:
    ReportGridView& m_view;
    int64_t m_rows = 0;
    bool m_all = false;
    std::vector<uint32_t> m_records;
    int m_current = -1; // record
};

} // namespace zul
