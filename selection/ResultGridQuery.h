// The query and the column lists of the result grid grdClienti.
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

namespace zul {

/// Columns of the result grid, by the index under which the send flow reads them.
enum ResultColumn : int
{
    ColumnIdCliente = 0,
    ColumnSelezione = 1,
    ColumnCliente = 2,
    ColumnPaese = 3,
    ColumnProvincia = 4,
    ColumnEta = 5,
    ColumnSesso = 6,
    ColumnDataNascita = 7,
    ColumnTelefono = 8,
    ColumnTelefono2 = 9,
    ColumnEmail = 10,
    ColumnMailCommerciale = 11,
    ColumnMailAmministrazione = 12,
};

/// SELECT of the customers whose ids stand in the scratch table. There is no ORDER BY: rows show in the
/// order in which the database returns them.
QString resultGridQuery(QDate today);

/// What the grid is told of the columns: one entry per field, separated by commas. A grid of the host's knows more
/// lists (masks, formats, colours); for this query they would ask for nothing, and there are none.
struct ColumnLists
{
    QString visibility; ///< "0" hidden, "1" shown
    QString buttonType; ///< "CHK" for the check column, else "0"
    QString sizable;    ///< "1" for every field
};

/// The lists for so many fields of the query's result.
ColumnLists resultGridLists(int fieldCount);

/// The eleven captions. The grid has thirteen columns, and "Telefono" stands twice: kept as hosts and their
/// saved layouts know them. A column past the eleventh shows its field's name.
QStringList resultGridCaptions();

} // namespace zul
