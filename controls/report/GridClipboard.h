// The highlighted rows of the report grid as text.
#pragma once

#include <QString>

namespace zul {

class ReportGridView;

enum class CopyHeaders
{
    No,
    Yes ///< a first line with the captions
};

/// The highlighted records as a spreadsheet takes them: a line a record in the order on the screen, the visible columns
/// in theirs, separated by tabs. Tabs and line breaks inside a cell are blanks; a tick is "Sì" or "No". Group rows are
/// passed over. Empty when no record is highlighted.
QString highlightedText(const ReportGridView& view, CopyHeaders headers);

/// Puts it on the clipboard; what is there stays when no record is highlighted.
void copyHighlighted(const ReportGridView& view, CopyHeaders headers);

} // namespace zul
