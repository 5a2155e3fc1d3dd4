#include "controls/report/CellToolTip.h"

#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridView.h"
#include "controls/report/ReportHeader.h"
#include "controls/report/ReportRowPainter.h"

namespace zul {

using namespace Qt::StringLiterals;

QString cutTextAt(const ReportGridView& view, const QPoint& point)
{
    const ReportGridModel& grid = view.grid();
    const int row = view.rowAt(point.y());
    if (row < 0) {
        return {};
    }
    const int column = grid.isGroup(row) ? -1 : view.header()->logicalIndexAt(point.x());
    QString text;
    int room = 0;
    QFont font = view.font();
    if (grid.isGroup(row)) {
        text = grid.groupCaption(row);
        room = groupCaptionWidth(view, row);
        font.setBold(true);
    } else if (column >= 0 && column != grid.checkColumn()) {
        text = grid.store().text(static_cast<uint32_t>(grid.record(row)), column);
        room = view.textRect(row, column).width();
    }
    const QString shown = oneLine(text);
    return shown != text || QFontMetrics(font).horizontalAdvance(shown) > room ? text : QString();
}

QString asToolTip(QString text)
{
    constexpr qsizetype longest = 4000; // characters
    if (text.size() > longest) {
        text.truncate(longest);
        text += u'…';
    }
    // A plain text that looks like markup would be taken for it, and only markup is wrapped.
    return u"<p style='white-space: pre-wrap'>"_s + text.toHtmlEscaped() + u"</p>"_s;
}

} // namespace zul
