// The host's own routine that fills a grid from a query.
#pragma once

#include "automation/ComPtr.h"

#include <QString>
#include <QStringList>
#include <Zul_Controls.h>
#include <Zul_SQL.h>

namespace zul::host
{
// What the component asks to be shown. The grammar of the lists is the host's own: one entry for a column, joined
// by commas. This host reads two of them: a column with the visibility "0" is hidden, one with the sizable "0"
// keeps its width; an entry that is missing counts as "1".
struct GridRequest
{
    QString sql;
    QString visibility;
    QString sizable;
    QStringList captions; // in the order of the columns; a column without one shows its field's name
};

// Fills the grid with the rows of the query: a column for every field, a record for every row. The grid keeps what
// it showed when the query cannot be opened. Throws ComError.
void fillGrid(IReportGrid& grid, IConnection& connection, const GridRequest& request);

// The texts of a collection of captions; null gives none. Throws ComError.
QStringList captionTexts(_Collection* captions);
} // namespace zul::host
