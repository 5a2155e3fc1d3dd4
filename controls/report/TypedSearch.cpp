#include "controls/report/TypedSearch.h"

#include "controls/report/ReportGridModel.h"

namespace zul {

int TypedSearch::find(const ReportGridModel& grid, int column, int current, const QString& letters)
{
    constexpr qint64 pause = 1000; // milliseconds
    const int rows = grid.rowCount();
    if (column < 0 || rows == 0 || letters.trimmed().isEmpty()) {
        return -1;
    }
    if (!m_typedAt.isValid() || m_typedAt.elapsed() > pause) {
        m_typed.clear();
    }
    m_typedAt.start();
    // The first letter goes on to another row; further ones may find that the row at hand fits them, too.
    const int start = current < 0 ? 0 : current + (m_typed.isEmpty() ? 1 : 0);
    m_typed += letters;
    for (int i = 0; i < rows; ++i) {
        const int row = (start + i) % rows;
        const int record = grid.record(row);
        if (record < 0) {
            continue;
        }
        const QString text = grid.store().text(static_cast<uint32_t>(record), column);
        if (text.startsWith(m_typed, Qt::CaseInsensitive)) {
            return row;
        }
    }
    return -1;
}

} // namespace zul
