#include "session/GridObject.h"

#include "automation/ErrorInfo.h"
#include "controls/report/ReportGrid.h"
#include "hostlib/Ado.h"
#include "hostlib/Calls.h"
#include "session/GridFill.h"

namespace zul {

namespace {

constexpr const char16_t* Source = u"Zul_Controls.ReportGrid";

/// Runs a member's body; an error of the house reaches the host as one of its own kind.
template <class Body>
HRESULT guarded(Body&& body) noexcept
{
    return comGuard(Source, [&] {
        try {
            body();
        } catch (const Error& error) {
            throw calls::comError(error);
        }
    });
}

void setCell(ColumnStore& store, uint32_t record, int column, const VARIANT& given)
{
    Variant value;
    if (FAILED(copyWithoutReference(value, given))) {
        throw ComError(DISP_E_TYPEMISMATCH, u"The value cannot be shown in a grid");
    }
    switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
        store.setNull(record, column);
        return;
    case VT_BOOL:
        store.setBoolean(record, column, value.boolVal != VARIANT_FALSE);
        return;
    case VT_I2:
        store.setInteger(record, column, value.iVal);
        return;
    case VT_I4:
        store.setInteger(record, column, value.lVal);
        return;
    case VT_I8:
        store.setInteger(record, column, value.llVal);
        return;
    case VT_DATE:
        store.setDate(record, column, value.date);
        return;
    case VT_R4:
    case VT_R8:
    case VT_CY:
    case VT_DECIMAL:
        throwIfFailed(value.changeType(VT_R8));
        store.setReal(record, column, value.dblVal);
        return;
    default:
        throwIfFailed(value.changeType(VT_BSTR));
        store.setText16(record, column, value.text().data(), value.text().size());
        return;
    }
}

} // namespace

GridObject::GridObject(ReportGrid& grid)
    : m_grid(&grid)
{}

ReportGrid& GridObject::grid() const
{
    if (!m_grid) {
        throw ComError(E_FAIL, u"The grid is no longer there");
    }
    return *m_grid;
}

HRESULT GridObject::DeleteRecords()
{
    return guarded([&] { grid().deleteRecords(); });
}

HRESULT GridObject::DeleteColumns()
{
    return guarded([&] { grid().deleteColumns(); });
}

HRESULT GridObject::AddColumn(BSTR field, BSTR caption, LONG width, VARIANT_BOOL sizable,
                              VARIANT_BOOL visible)
{
    return guarded([&] {
        if (width < 0) {
            throw ComError(E_INVALIDARG, u"A column's width cannot be negative");
        }
        ReportColumn column;
        column.field = calls::toQString(textOf(field));
        column.caption = calls::toQString(textOf(caption));
        column.width = static_cast<int>(width);
        column.sizable = sizable != VARIANT_FALSE;
        column.visible = visible != VARIANT_FALSE;
        grid().addColumn(column);
    });
}

HRESULT GridObject::AddRecord(LONG* record)
{
    if (record == nullptr) {
        return E_POINTER;
    }
    *record = -1;
    return guarded([&] {
        ColumnStore& store = grid().store();
        store.endRow();
        *record = static_cast<LONG>(store.rowCount()) - 1;
    });
}

HRESULT GridObject::SetItem(LONG record, LONG column, VARIANT value)
{
    return guarded([&] {
        ColumnStore& store = grid().store();
        if (record < 0 || static_cast<uint32_t>(record) >= store.rowCount() || column < 0 ||
            column >= store.columnCount()) {
            throw ComError(DISP_E_BADINDEX, u"There is no such record or column");
        }
        setCell(store, static_cast<uint32_t>(record), static_cast<int>(column), value);
    });
}

HRESULT GridObject::FillFromRecordset(IRecordset* recordset)
{
    if (recordset == nullptr) {
        return E_POINTER;
    }
    return guarded([&] {
        ado::Recordset rows(ComPtr<IRecordset>(recordset), ado::Recordset::Ownership::Borrowed);
        appendRows(grid().store(), rows);
    });
}

HRESULT GridObject::Populate()
{
    return guarded([&] {
        grid().store().settle();
        grid().populate();
    });
}

HRESULT GridObject::get_RecordCount(LONG* value)
{
    if (value == nullptr) {
        return E_POINTER;
    }
    *value = 0;
    return guarded([&] { *value = static_cast<LONG>(grid().store().rowCount()); });
}

HRESULT GridObject::get_ColumnCount(LONG* value)
{
    if (value == nullptr) {
        return E_POINTER;
    }
    *value = 0;
    return guarded([&] { *value = static_cast<LONG>(grid().columnCount()); });
}

const DispTable<IReportGrid>& GridObject::dispTable() const
{
    using namespace dispatch;
    static const DispTable<IReportGrid> table{
        method("DeleteRecords", 1, &IReportGrid::DeleteRecords),
        method("DeleteColumns", 2, &IReportGrid::DeleteColumns),
        method("AddColumn", 3, &IReportGrid::AddColumn, {"field", "caption", "width", "sizable", "visible"}),
        method("AddRecord", 4, &IReportGrid::AddRecord),
        method("SetItem", 5, &IReportGrid::SetItem, {"record", "column", "value"}),
        method("FillFromRecordset", 6, &IReportGrid::FillFromRecordset, {"recordset"}),
        method("Populate", 7, &IReportGrid::Populate),
        propget("RecordCount", 8, &IReportGrid::get_RecordCount),
        propget("ColumnCount", 9, &IReportGrid::get_ColumnCount),
    };
    return table;
}

} // namespace zul
