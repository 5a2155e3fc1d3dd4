#include "session/GridFill.h"

#include "grid/ColumnStore.h"
#include "hostlib/Ado.h"

#include <algorithm>

namespace zul {

void appendRows(ColumnStore& store, ado::Recordset& rows)
{
    const int columns = store.columnCount();
    rows.readRows([&store, columns](long count, const ZulCell* cells) {
        const int used = std::min(columns, static_cast<int>(count));
        for (int column = 0; column < used; ++column) {
            const ZulCell& cell = cells[column];
            switch (cell.Kind) {
            case CellInteger:
                store.appendInteger(column, cell.Integer);
                break;
            case CellReal:
                store.appendReal(column, cell.Real);
                break;
            case ::CellText:
                store.appendText(column, reinterpret_cast<const char*>(cell.Text),
                                 static_cast<std::size_t>(cell.Length));
                break;
            case CellDate:
                store.appendDate(column, cell.Real);
                break;
            case CellBoolean:
                store.appendBoolean(column, cell.Integer != 0);
                break;
            default:
                store.appendNull(column);
                break;
            }
        }
        store.endRow();
    });
}

} // namespace zul
