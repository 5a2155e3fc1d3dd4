// The tooltips of the report grid's rows.
#pragma once

#include <QPoint>
#include <QString>

namespace zul {

class ReportGridView;

/// The whole text of the cell, or of the group, at a point of the viewport, if the row does not show all of it; else
/// empty.
QString cutTextAt(const ReportGridView& view, const QPoint& point);

/// A plain text as a tooltip takes it, wrapped, with its line breaks. What is longer than a screen ends in an ellipsis.
QString asToolTip(QString text);

} // namespace zul
