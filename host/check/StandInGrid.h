// A grid without a window, which a host fills for the event CaricaGriglia.
#pragma once

#include "automation/ComObject.h"
#include "automation/Dispatch.h"
#include "automation/Variant.h"

#include <Zul_Controls.h>

#include <string>
#include <vector>

namespace zul::host::check {

class StandInGrid final : public ComObject<Dispatching<IReportGrid>>
{
public:
    HRESULT STDMETHODCALLTYPE DeleteRecords() override;
    HRESULT STDMETHODCALLTYPE DeleteColumns() override;
    HRESULT STDMETHODCALLTYPE AddColumn(BSTR field, BSTR caption, LONG width, VARIANT_BOOL sizable,
                                        VARIANT_BOOL visible) override;
    HRESULT STDMETHODCALLTYPE AddRecord(LONG* record) override;
    HRESULT STDMETHODCALLTYPE SetItem(LONG record, LONG column, VARIANT value) override;
    /// Takes at most a thousand rows.
    HRESULT STDMETHODCALLTYPE FillFromRecordset(IRecordset* recordset) override;
    HRESULT STDMETHODCALLTYPE Populate() override;
    HRESULT STDMETHODCALLTYPE get_RecordCount(LONG* value) override;
    HRESULT STDMETHODCALLTYPE get_ColumnCount(LONG* value) override;

    const std::vector<std::u16string>& columns() const { return m_columns; }
    const std::vector<std::vector<Variant>>& records() const { return m_records; }
    /// Whether nothing was added since the last Populate.
    bool isShown() const { return m_shown; }

private:
    const DispTable<IReportGrid>& dispTable() const override;

    std::vector<std::u16string> m_columns;
    std::vector<std::vector<Variant>> m_records;
    bool m_shown = false;
};

/// The captions of the columns.
class StandInCaptions final : public ComObject<Dispatching<_Collection>>
{
public:
    explicit StandInCaptions(std::vector<std::u16string> texts);

    HRESULT STDMETHODCALLTYPE Item(VARIANT* index, VARIANT* item) override;
    /// What belongs to the component is not changed by a host: E_NOTIMPL.
    HRESULT STDMETHODCALLTYPE Add(VARIANT* item, VARIANT* key, VARIANT* before, VARIANT* after) override;
    HRESULT STDMETHODCALLTYPE Count(LONG* count) override;
    HRESULT STDMETHODCALLTYPE Remove(VARIANT* index) override;
    HRESULT STDMETHODCALLTYPE _NewEnum(IUnknown** enumerator) override;

private:
    const DispTable<_Collection>& dispTable() const override;

    std::vector<std::u16string> m_texts;
};

} // namespace zul::host::check
