// The host's own routine that fills a grid from a query.
#pragma once

#include <QString>
#include <QStringList>
#include <Zul_Controls.h>
#include <Zul_SQL.h>

namespace zul::host {
// How the component asks rows to be shown. The grammar of the lists is the host's own: one entry for a column, joined
// by commas. This host reads two of them: a column with the visibility "0" is hidden, one with the sizable "0"
// keeps its width; an entry that is missing counts as "1".
struct GridColumns
{
    QString visibility;
    QString sizable;
    QStringList captions; // in the order of the columns; a column without one shows its field's name
};

// Fills the grid from a row set: a column for every field, a record for every row. What the grid showed before goes.
// Throws ComError.
void fillGrid(IReportGrid& grid, IRecordset& rows, const GridColumns& columns);

// The texts of a collection of captions; null gives none. Throws ComError.
QStringList captionTexts(_Collection* captions);
} // namespace zul::host
