// The uniform look of grids and controls.
#pragma once

#include <QList>

QT_FORWARD_DECLARE_CLASS(QWidget)

namespace zul {

class ReportGrid;

/// Gives a report grid its Italian texts, its font and its style: flat, sortable by column, groupable.
/// Errors go to the log under the name of this procedure.
void setupReportControl(ReportGrid* grid) noexcept;

/// Walks all controls of a form: flat; not transparent, where a control could let shine through what lies
/// behind it; and the button-face colour for check boxes, option buttons and frames, told by the first letters
/// of their names. A control that lacks a property is passed over; nothing here fails.
void SetupControlsAppearance(QWidget* form) noexcept;

/// The same for chosen controls.
void SetupControlsAppearance(const QList<QWidget*>& controls) noexcept;

} // namespace zul
