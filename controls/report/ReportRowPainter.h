// How the rows of the report grid are painted.
#pragma once

#include <QColor>
#include <QPalette>

#include <vector>

QT_FORWARD_DECLARE_CLASS(QPainter)
QT_FORWARD_DECLARE_CLASS(QRect)

namespace zul {

class ReportGridView;

/// Paints the rows of a list on its viewport, for the length of one paint event. Only cells in sight are read.
class ReportRowPainter
{
public:
    ReportRowPainter(const ReportGridView& view, QPainter& painter);

    /// The rows that `area`, a part of the viewport, meets.
    void paintRows(const QRect& area);

private:
    void paintGroup(int row, const QRect& rect, bool selected);
    void paintRecord(int row);
    void paintTick(int row);
    QColor checkColor(bool checked) const;

    const ReportGridView& m_view;
    QPainter& m_painter;
    const QPalette m_palette;
    const QPalette::ColorGroup m_colors;
    const std::vector<int> m_columns; // in the order on the screen
};

/// The room for a group's caption in its row, in pixels.
int groupCaptionWidth(const ReportGridView& view, int row);

/// A text on one line: control characters are blanks, and what cannot be seen at once is cut.
QString oneLine(QString text);

} // namespace zul
