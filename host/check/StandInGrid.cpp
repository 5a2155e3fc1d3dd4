#include "host/check/StandInGrid.h"

#include "automation/ErrorInfo.h"

#include <utility>

namespace zul::host::check {

namespace {

constexpr std::u16string_view gridName = u"zulhost.Grid";
constexpr std::size_t mostRows = 1000;

template <typename List>
HRESULT countOf(const List& list, LONG* value)
{
    if (value == nullptr) {
        return E_POINTER;
    }
    *value = static_cast<LONG>(list.size());
    return S_OK;
}

} // namespace

HRESULT StandInGrid::DeleteRecords()
{
    m_records.clear();
    m_shown = false;
    return S_OK;
}

HRESULT StandInGrid::DeleteColumns()
{
    m_columns.clear();
    m_shown = false;
    return S_OK;
}

HRESULT StandInGrid::AddColumn(BSTR field, BSTR, LONG, VARIANT_BOOL, VARIANT_BOOL)
{
    return comGuard(gridName, [&] {
        m_columns.emplace_back(textOf(field));
        m_shown = false;
    });
}

HRESULT StandInGrid::AddRecord(LONG* record)
{
    if (record == nullptr) {
        return E_POINTER;
    }
    return comGuard(gridName, [&] {
        if (m_records.size() == mostRows) {
            throw ComError(E_FAIL, u"the grid of the check takes no more rows");
        }
        *record = static_cast<LONG>(m_records.size());
        m_records.emplace_back(m_columns.size());
        m_shown = false;
    });
}

HRESULT StandInGrid::SetItem(LONG record, LONG column, VARIANT value)
{
    return comGuard(gridName, [&] {
        if (record < 0 || column < 0 || static_cast<std::size_t>(record) >= m_records.size() ||
            static_cast<std::size_t>(column) >= m_records[static_cast<std::size_t>(record)].size()) {
            throw ComError(E_INVALIDARG, u"the grid has no such cell");
        }
        m_records[static_cast<std::size_t>(record)][static_cast<std::size_t>(column)] = Variant(value);
        m_shown = false;
    });
}

HRESULT StandInGrid::FillFromRecordset(IRecordset* recordset)
{
    if (recordset == nullptr) {
        return E_POINTER;
    }
    return comGuard(gridName, [&] {
        m_shown = false;
        for (std::size_t row = 0; row < mostRows; ++row) {
            VARIANT_BOOL atEnd = VARIANT_TRUE;
            throwIfFailed(recordset->get_Eof(&atEnd));
            if (atEnd != VARIANT_FALSE) {
                return;
            }
            std::vector<Variant>& cells = m_records.emplace_back(m_columns.size());
            for (std::size_t i = 0; i < cells.size(); ++i) {
                throwIfFailed(recordset->get_Value(Variant::fromLong(static_cast<LONG>(i)), cells[i].put()));
            }
            throwIfFailed(recordset->MoveNext());
        }
    });
}

HRESULT StandInGrid::Populate()
{
    m_shown = true;
    return S_OK;
}

HRESULT StandInGrid::get_RecordCount(LONG* value)
{
    return countOf(m_records, value);
}

HRESULT StandInGrid::get_ColumnCount(LONG* value)
{
    return countOf(m_columns, value);
}

const DispTable<IReportGrid>& StandInGrid::dispTable() const
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

StandInCaptions::StandInCaptions(std::vector<std::u16string> texts)
    : m_texts(std::move(texts))
{}

HRESULT StandInCaptions::Item(VARIANT* index, VARIANT* item)
{
    if (index == nullptr || item == nullptr) {
        return E_POINTER;
    }
    VariantInit(item);
    return comGuard(u"zulhost.Captions", [&] {
        Variant position(*index);
        throwIfFailed(position.changeType(VT_I4));
        if (position.lVal < 1 || static_cast<std::size_t>(position.lVal) > m_texts.size()) {
            throw ComError(E_INVALIDARG, u"the collection has no such item");
        }
        Variant::fromText(m_texts[static_cast<std::size_t>(position.lVal) - 1]).detachTo(item);
    });
}

HRESULT StandInCaptions::Add(VARIANT*, VARIANT*, VARIANT*, VARIANT*)
{
    return E_NOTIMPL;
}

HRESULT StandInCaptions::Count(LONG* count)
{
    return countOf(m_texts, count);
}

HRESULT StandInCaptions::Remove(VARIANT*)
{
    return E_NOTIMPL;
}

HRESULT StandInCaptions::_NewEnum(IUnknown** enumerator)
{
    if (enumerator == nullptr) {
        return E_POINTER;
    }
    *enumerator = nullptr;
    return E_NOTIMPL;
}

const DispTable<_Collection>& StandInCaptions::dispTable() const
{
    using namespace dispatch;
    static const DispTable<_Collection> table{
        method("Item", 0, &_Collection::Item, {"Index"}),
        method("Add", 1, &_Collection::Add, {"Item", optional("Key"), optional("Before"), optional("After")}),
        method("Count", 2, &_Collection::Count),
        method("Remove", 3, &_Collection::Remove, {"Index"}),
        method("_NewEnum", -4, &_Collection::_NewEnum),
    };
    return table;
}

} // namespace zul::host::check
