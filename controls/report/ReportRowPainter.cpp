#include "controls/report/ReportRowPainter.h"

#include "controls/report/GridMarks.h"
#include "controls/report/ReportGridColors.h"
#include "controls/report/ReportGridModel.h"
#include "controls/report/ReportGridView.h"
#include "controls/report/ReportHeader.h"

#include <QItemSelectionModel>
#include <QPainter>

#include <algorithm>

namespace zul {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestShown = 512; // characters of a cell that can be seen at once, at most
constexpr int besideAlign = static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine;
constexpr int numberAlign = static_cast<int>(Qt::AlignRight | Qt::AlignVCenter) | Qt::TextSingleLine;

constexpr int besideExpander = 4;
constexpr int besideTick = 4; // as much as it stands from the expander

/// The number of records behind a group's caption.
QString countText(int records)
{
    return u" (%1)"_s.arg(records);
}

QPalette::ColorGroup colorGroup(const QWidget& view)
{
    if (!view.isEnabled()) {
        return QPalette::Disabled;
    }
    return view.isActiveWindow() && view.hasFocus() ? QPalette::Active : QPalette::Inactive;
}

/// Where a group's caption stands, behind its expander and its tick.
QRect captionRect(const ReportGridView& view, int row)
{
    const QRect tick = view.checkRect(row);
    const int before = tick.isEmpty() ? view.expanderRect(row).right() : tick.right() + besideTick;
    return view.rowRect(row).adjusted(before + besideExpander, 0, -besideExpander, 0);
}

} // namespace

QString oneLine(QString text)
{
    text.truncate(longestShown);
    for (QChar& c : text) {
        if (c.unicode() < 0x20 || c == QChar::LineSeparator || c == QChar::ParagraphSeparator) {
            c = u' ';
        }
    }
    return text;
}

int groupCaptionWidth(const ReportGridView& view, int row)
{
    return captionRect(view, row).width() -
           view.fontMetrics().horizontalAdvance(countText(view.grid().groupCount(row))) - 2;
}

ReportRowPainter::ReportRowPainter(const ReportGridView& view, QPainter& painter)
    : m_view(view)
    , m_painter(painter)
    , m_palette(view.palette())
    , m_colors(colorGroup(view))
    , m_columns(view.header()->shownColumns())
{}

void ReportRowPainter::paintRows(const QRect& area)
{
    const ReportGridModel& grid = m_view.grid();
    const QColor base = m_palette.color(m_colors, QPalette::Base);
    m_painter.fillRect(area, base);
    const QColor selectedColor =
        gridcolors::blend(base, accentColor(), m_colors == QPalette::Active ? 0.26 : 0.14);
    const QColor line = gridcolors::rowLine(m_palette);
    const int first = std::max(0, m_view.rowAt(std::max(0, area.top())));
    for (int row = first; row < grid.rowCount(); ++row) {
        const QRect rect = m_view.rowRect(row);
        if (rect.top() > area.bottom()) {
            break;
        }
        const bool selected = m_view.selectionModel()->isSelected(grid.index(row, 0));
        if (selected) {
            m_painter.fillRect(rect, selectedColor);
        }
        if (grid.isGroup(row)) {
            paintGroup(row, rect, selected);
        } else {
            paintRecord(row);
        }
        if (m_view.hasRowLines()) {
            m_painter.fillRect(rect.left(), rect.bottom(), rect.width(), 1, line);
        }
        if (row == m_view.currentIndex().row() && m_view.hasFocus()) {
            m_painter.setPen(accentColor());
            m_painter.setBrush(Qt::NoBrush);
            m_painter.drawRect(rect.adjusted(0, 0, -1, -1));
        }
    }
}

void ReportRowPainter::paintGroup(int row, const QRect& rect, bool selected)
{
    const ReportGridModel& grid = m_view.grid();
    if (!selected) {
        m_painter.fillRect(rect, gridcolors::groupRow(m_palette));
    }
    const QRect expander = m_view.expanderRect(row);
    const QColor quiet = gridcolors::quietText(m_palette);
    paintExpander(m_painter, QRectF(expander).center(), grid.isGroupClosed(row), quiet);
    if (grid.checkColumn() >= 0) {
        paintTick(row);
    }
    QFont bold = m_view.font();
    bold.setBold(true);
    const QFontMetrics metrics(bold);
    const QRect text = captionRect(m_view, row);
    const QString caption =
        metrics.elidedText(oneLine(grid.groupCaption(row)), Qt::ElideRight, groupCaptionWidth(m_view, row));
    m_painter.save();
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.setPen(m_palette.color(m_colors, QPalette::Text));
    m_painter.setFont(bold);
    m_painter.drawText(text, besideAlign, caption);
    m_painter.setFont(m_view.font());
    m_painter.setPen(quiet);
    m_painter.drawText(text.adjusted(metrics.horizontalAdvance(caption), 0, 0, 0), besideAlign,
                       countText(grid.groupCount(row)));
    m_painter.restore();
}

void ReportRowPainter::paintRecord(int row)
{
    const ReportGridModel& grid = m_view.grid();
    const auto record = static_cast<uint32_t>(grid.record(row));
    const QFontMetrics metrics = m_view.fontMetrics();
    m_painter.setPen(m_palette.color(m_colors, QPalette::Text));
    for (const int column : m_columns) {
        const QRect cell = m_view.cellRect(row, column);
        if (cell.right() < 0 || cell.left() > m_view.viewport()->width()) {
            continue;
        }
        if (column == grid.checkColumn()) {
            paintTick(row);
            continue;
        }
        const QString text = grid.store().text(record, column);
        const QRect inner = m_view.textRect(row, column);
        if (text.isEmpty() || inner.width() <= 0) {
            continue;
        }
        m_painter.drawText(inner, grid.store().holdsNumbers(column) ? numberAlign : besideAlign,
                           metrics.elidedText(oneLine(text), Qt::ElideRight, inner.width()));
    }
}

void ReportRowPainter::paintTick(int row)
{
    const Qt::CheckState tick = m_view.grid().rowTick(row);
    paintCheckBox(m_painter, m_view.checkRect(row), tick, checkColor(tick != Qt::Unchecked),
                  m_palette.color(QPalette::Base));
}

QColor ReportRowPainter::checkColor(bool checked) const
{
    if (!m_view.isEnabled()) {
        return checked ? gridcolors::quietText(m_palette) : gridcolors::shade(m_palette, 0.45);
    }
    return checked ? accentColor() : boxColor();
}

} // namespace zul
