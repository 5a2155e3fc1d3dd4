// A report grid as the host sees it while it fills one.
#pragma once

#include "automation/ComObject.h"
#include "automation/Dispatch.h"

#include <Zul_Controls.h>

#include <QPointer>

namespace zul {

class ReportGrid;

/// Refers to the grid and does not keep it alive: a host that holds on to this object after the dialog has
/// gone gets E_FAIL from every member, and nothing worse.
class GridObject final : public ComObject<Dispatching<IReportGrid>>
{
public:
    explicit GridObject(ReportGrid& grid);

    HRESULT STDMETHODCALLTYPE DeleteRecords() override;
    HRESULT STDMETHODCALLTYPE DeleteColumns() override;
    HRESULT STDMETHODCALLTYPE AddColumn(BSTR field, BSTR caption, LONG width, VARIANT_BOOL sizable,
                                        VARIANT_BOOL visible) override;
    HRESULT STDMETHODCALLTYPE AddRecord(LONG* record) override;
    HRESULT STDMETHODCALLTYPE SetItem(LONG record, LONG column, VARIANT value) override;
    HRESULT STDMETHODCALLTYPE FillFromRecordset(IRecordset* recordset) override;
    HRESULT STDMETHODCALLTYPE Populate() override;
    HRESULT STDMETHODCALLTYPE get_RecordCount(LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_ColumnCount(LONG* value) override;

private:
    const DispTable<IReportGrid>& dispTable() const override;
    ReportGrid& grid() const; ///< throws ComError when the grid is gone

    QPointer<ReportGrid> m_grid;
};

} // namespace zul
