#include "tests/support/fake/Recordset.h"

#include "automation/ComObject.h"
#include "automation/ErrorInfo.h"
#include "tests/support/fake/EarlyBound.h"

namespace zul::test {

namespace {

class FakeRecordset final : public ComObject<EarlyBound<IRecordset>, IRowReader>
{
public:
    FakeRecordset(StatePtr state, std::string source, Rows rows)
        : m_state(std::move(state))
        , m_source(std::move(source))
        , m_rows(std::move(rows))
    {
        ++m_state->openRowSets;
    }

    ~FakeRecordset() override { closeOnce(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (iid == iidOf<IRowReader>() && !m_state->rowReader) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        return ComObject::QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE get_Eof(VARIANT_BOOL* value) override
    {
        *value = m_row >= m_rows.rows.size() ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE get_FieldCount(LONG* value) override
    {
        *value = static_cast<LONG>(m_rows.fields.size());
        if (!m_state->fieldCounts.empty()) {
            *value = static_cast<LONG>(m_state->fieldCounts.front());
            m_state->fieldCounts.erase(m_state->fieldCounts.begin());
        }
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE FieldName(LONG index, BSTR* name) override
    {
        *name = nullptr;
        if (index < 0 || static_cast<std::size_t>(index) >= m_rows.fields.size()) {
            return reportError(DISP_E_BADINDEX, u"no such field");
        }
        *name = Bstr::fromUtf8(m_rows.fields[static_cast<std::size_t>(index)]).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE get_Value(VARIANT field, VARIANT* value) override
    {
        VariantInit(value);
        std::size_t column = m_rows.fields.size();
        if (field.vt == VT_I4) {
            column = static_cast<std::size_t>(field.lVal);
            // The first field begins a row that is read cell by cell.
            if (column == 0) {
                if (const HRESULT result = m_state->row(); FAILED(result)) {
                    return result;
                }
            }
        } else {
            const std::string name = utf8(field.bstrVal);
            for (std::size_t i = 0; i < m_rows.fields.size(); ++i) {
                if (sameName(m_rows.fields[i], name)) {
                    column = i;
                }
            }
            if (const HRESULT result = m_state->perform("value", std::nullopt); FAILED(result)) {
                return result;
            }
        }
        if (column >= m_rows.fields.size()) {
            return reportError(DISP_E_BADINDEX, u"no such field");
        }
        if (m_row >= m_rows.rows.size()) {
            return reportError(E_FAIL, u"no current row");
        }
        Variant(m_rows.rows[m_row].at(column)).detachTo(value);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE put_Value(VARIANT field, VARIANT value) override
    {
        const std::string name = utf8(field.bstrVal);
        const HRESULT result = m_state->perform("set", name + "=" + show(value));
        if (FAILED(result)) {
            return result;
        }
        m_pending.emplace_back(name, Variant(value));
        m_state->setValues.emplace_back(name, Variant(value));
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE MoveNext() override
    {
        ++m_row;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE AddNew() override
    {
        m_adding = true;
        m_pending.clear();
        return m_state->perform("addnew");
    }

    HRESULT STDMETHODCALLTYPE Update() override
    {
        if (const HRESULT result = m_state->perform("update"); FAILED(result)) {
            return result;
        }
        writeSetting();
        m_adding = false;
        m_pending.clear();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Close() override
    {
        closeOnce();
        return m_state->perform("close", std::nullopt);
    }

    HRESULT STDMETHODCALLTYPE ReadRows(IRowSink* sink) override
    {
        for (; m_row < m_rows.rows.size(); ++m_row) {
            if (const HRESULT result = m_state->row(); FAILED(result)) {
                return result;
            }
            std::vector<std::string> texts(m_rows.fields.size());
            std::vector<ZulCell> cells;
            for (std::size_t column = 0; column < texts.size(); ++column) {
                cells.push_back(cell(m_rows.rows[m_row].at(column), texts[column]));
            }
            if (const HRESULT result = sink->Row(static_cast<LONG>(cells.size()), cells.data());
                FAILED(result)) {
                return result;
            }
        }
        return S_OK;
    }

private:
    static ZulCell cell(const VARIANT& value, std::string& storage)
    {
        ZulCell result{};
        switch (value.vt) {
        case VT_BOOL:
            result.Kind = CellBoolean;
            result.Integer = value.boolVal != VARIANT_FALSE ? 1 : 0;
            break;
        case VT_I2:
            result.Kind = CellInteger;
            result.Integer = value.iVal;
            break;
        case VT_I4:
            result.Kind = CellInteger;
            result.Integer = value.lVal;
            break;
        case VT_I8:
            result.Kind = CellInteger;
            result.Integer = value.llVal;
            break;
        case VT_R8:
            result.Kind = CellReal;
            result.Real = value.dblVal;
            break;
        case VT_DATE:
            result.Kind = CellDate;
            result.Real = value.date;
            break;
        case VT_BSTR:
            storage = utf8(value.bstrVal);
            result.Kind = CellText;
            result.Length = static_cast<LONG>(storage.size());
            result.Text = reinterpret_cast<const unsigned char*>(storage.data());
            break;
        default:
            result.Kind = CellNull;
            break;
        }
        return result;
    }

    void closeOnce()
    {
        if (!std::exchange(m_closed, true)) {
            --m_state->openRowSets;
        }
    }

    void writeSetting()
    {
        std::optional<std::string> key = settingsKey(m_source);
        if (!key && m_source != "tabImpostazioni") {
            return;
        }
        std::optional<std::string> value;
        for (const auto& [name, given] : m_pending) {
            if (sameName(name, "Descrizione")) {
                key = utf8(given.bstrVal);
            }
            if (sameName(name, "Valore")) {
                value = utf8(given.bstrVal);
            }
        }
        m_state->settings[*key] = value;
    }

    StatePtr m_state;
    std::string m_source;
    Rows m_rows;
    std::size_t m_row = 0;
    std::vector<std::pair<std::string, Variant>> m_pending;
    bool m_adding = false;
    bool m_closed = false;
};

} // namespace

ComPtr<IRecordset> makeRecordset(StatePtr state, std::string source, Rows rows)
{
    return makeCom<FakeRecordset>(std::move(state), std::move(source), std::move(rows));
}

} // namespace zul::test
