#include "controls/report/HeaderLayout.h"

#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportHeader.h"

#include <QMap>

#include <algorithm>

namespace zul {

std::vector<ColumnLayout> headerLayout(const ReportHeader& header, const ReportGridModel& grid)
{
    std::vector<ColumnLayout> layout;
    for (int column = 0; column < grid.columnCount(); ++column) {
        ColumnLayout own;
        own.field = grid.columns()[static_cast<size_t>(column)].field;
        own.position = header.visualIndex(column);
        own.width = header.isShared(column) ? 0 : header.widthOf(column);
        own.visible = grid.isColumnShown(column);
        layout.push_back(own);
    }
    return layout;
}

bool applyHeaderLayout(const std::vector<ColumnLayout>& layout, ReportHeader& header, ReportGridModel& grid)
{
    // The n-th column of a name in the layout is the n-th one of that name here.
    QMap<QString, int> seen;
    QMap<std::pair<QString, int>, const ColumnLayout*> saved;
    for (const ColumnLayout& own : layout) {
        saved.insert({own.field, seen[own.field]++}, &own);
    }
    seen.clear();
    std::vector<std::pair<int, int>> order; // saved position, column
    std::vector<int> places;                // visual places of the columns that the layout knows
    bool shares = false;
    for (int column = 0; column < grid.columnCount(); ++column) {
        const ReportColumn& described = grid.columns()[static_cast<size_t>(column)];
        const ColumnLayout* own = saved.value({described.field, seen[described.field]++}, nullptr);
        if (own == nullptr) {
            continue;
        }
        order.emplace_back(own->position, column);
        places.push_back(header.visualIndex(column));
        shares = shares || own->width == 0;
        if (own->width > 0 && described.sizable) {
            header.setWidthOf(column, own->width);
        }
        grid.setColumnShown(column, own->visible && described.visible);
    }
    if (order.empty()) {
        return false;
    }
    if (!shares) {
        header.stopSharing();
    }
    std::sort(order.begin(), order.end());
    std::sort(places.begin(), places.end());
    for (size_t i = 0; i < order.size(); ++i) {
        header.moveSection(header.visualIndex(order[i].second), places[i]);
    }
    return true;
}

} // namespace zul
