// The layout of a grid's columns: widths, order, visibility.
#pragma once

#include "grid/GridLayoutFile.h"

#include <vector>

namespace zul {

class ReportGridModel;
class ReportHeader;

/// The layout of all columns as they stand, in the order in which they were added.
std::vector<ColumnLayout> headerLayout(const ReportHeader& header, const ReportGridModel& grid);

/// Gives columns the width, place and visibility that a layout has for them, by field name. Columns that it does not know
/// keep theirs, columns that are not for the operator stay hidden, and those that are not sizable keep their width.
/// False, and nothing changes, when it knows none of the columns. The header shows hidden and shown columns after its
/// owner has told it.
bool applyHeaderLayout(const std::vector<ColumnLayout>& layout, ReportHeader& header, ReportGridModel& grid);

} // namespace zul
