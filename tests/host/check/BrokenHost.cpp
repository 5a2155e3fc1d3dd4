#include "tests/host/check/BrokenHost.h"

#include "automation/ErrorInfo.h"
#include "base/DateText.h"

#include <Zul_Host.h>

#include <chrono>
#include <cstdlib>
#include <thread>
#include <utility>

namespace zul::host::check {

namespace {

using State = std::shared_ptr<BrokenState>;

void die(Fault fault)
{
    if (fault == Fault::Exits) {
        std::exit(0);
    } else if (fault == Fault::Crashes) {
        int* volatile stray = nullptr;
        *stray = 1;
    } else if (fault == Fault::Hangs) {
        std::this_thread::sleep_for(std::chrono::hours(1));
    } else if (fault == Fault::Throws) {
        throw 42;
    }
}

/// Passes the rows on but for the last, or with a text at no place.
class BrokenSink final : public ComObject<IRowSink>
{
public:
    BrokenSink(IRowSink* sink, Fault fault)
        : m_sink(sink)
        , m_fault(fault)
    {}

    HRESULT STDMETHODCALLTYPE Row(LONG count, const ZulCell* cells) override
    {
        if (m_fault == Fault::ReaderLosesARow && m_rows++ == 1) {
            return S_OK;
        }
        std::vector<ZulCell> changed(cells, cells + count);
        if (m_fault == Fault::ReaderGivesStrayTexts) {
            changed[0] = ZulCell{CellText, 100, 0, 0, nullptr};
        }
        return m_sink->Row(count, changed.data());
    }

private:
    IRowSink* m_sink;
    Fault m_fault;
    int m_rows = 0;
};

class BrokenRows final : public ComObject<Dispatching<IRecordset>, IRowReader>
{
public:
    BrokenRows(ComPtr<IRecordset> sound, State state, bool deadly)
        : m_sound(std::move(sound))
        , m_state(std::move(state))
        , m_statements(m_state->statements)
        , m_deadly(deadly)
    {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const bool reads = is(Fault::ReaderLosesARow) || is(Fault::ReaderGivesStrayTexts);
        if (iid == iidOf<IRowReader>() && !reads) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        const HRESULT result = ComObject::QueryInterface(iid, object);
        if (FAILED(result) && is(Fault::AnswersEverything)) {
            // Not counted: who asks for what nobody has cannot give it back.
            *object = static_cast<IRecordset*>(this);
            return S_OK;
        }
        return result;
    }

    HRESULT STDMETHODCALLTYPE ReadRows(IRowSink* sink) override
    {
        const auto between = makeCom<BrokenSink>(sink, m_state->fault);
        return m_sound.as<IRowReader>()->ReadRows(between.get());
    }

    HRESULT STDMETHODCALLTYPE get_Eof(VARIANT_BOOL* value) override
    {
        const HRESULT result = m_sound->get_Eof(value);
        if (is(Fault::EofNeverTrue)) {
            *value = VARIANT_FALSE;
        }
        if (is(Fault::EofIsOne) && *value != VARIANT_FALSE) {
            *value = 1;
        }
        if (is(Fault::LostWhenAnotherRuns) && m_state->statements != m_statements) {
            *value = VARIANT_TRUE;
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_FieldCount(LONG* value) override { return m_sound->get_FieldCount(value); }
    HRESULT STDMETHODCALLTYPE FieldName(LONG index, BSTR* name) override
    {
        return m_sound->FieldName(index, name);
    }

    HRESULT STDMETHODCALLTYPE get_Value(VARIANT field, VARIANT* value) override
    {
        if (is(Fault::IndexNotTaken) && field.vt != VT_BSTR) {
            return reportError(E_INVALIDARG, u"a field has a name");
        }
        if (is(Fault::NamesInOneCase) && field.vt == VT_BSTR && textOf(field.bstrVal) == u"DESCRIZIONE") {
            return reportError(E_INVALIDARG, u"no such field");
        }
        if (m_closed && is(Fault::ClosedGoesOn)) {
            Variant::fromLong(1).detachTo(value);
            return S_OK;
        }
        const HRESULT result = m_sound->get_Value(field, value);
        if (SUCCEEDED(result)) {
            change(*static_cast<Variant*>(value));
        } else if (is(Fault::FailuresSucceed)) {
            return S_OK;
        }
        return failure(result);
    }

    HRESULT STDMETHODCALLTYPE put_Value(VARIANT field, VARIANT value) override
    {
        if (is(Fault::DecimalTakenAsNull) && value.vt == VT_DECIMAL) {
            return m_sound->put_Value(field, Variant::null());
        }
        return m_sound->put_Value(field, value);
    }
    HRESULT STDMETHODCALLTYPE MoveNext() override { return m_sound->MoveNext(); }
    HRESULT STDMETHODCALLTYPE AddNew() override
    {
        m_adding = true;
        return m_sound->AddNew();
    }
    HRESULT STDMETHODCALLTYPE Update() override
    {
        const bool adding = std::exchange(m_adding, false);
        if (is(adding ? Fault::AddNewChangesNothing : Fault::UpdateChangesNothing)) {
            return S_OK;
        }
        const HRESULT result = m_sound->Update();
        return is(Fault::UpdateHidesFailures) ? S_OK : failure(result);
    }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const bool goesEarly = is(Fault::RowSetGoesEarly);
        const bool throws = m_deadly && is(Fault::ThrowsInRelease);
        const ULONG left = ComObject::Release();
        if (left == 1 && goesEarly) {
            return ComObject::Release() + 1;
        }
        if (throws && left == 0) {
            throw 42;
        }
        return left;
    }
    HRESULT STDMETHODCALLTYPE Close() override
    {
        if (m_deadly && is(Fault::ThrowsInClose)) {
            throw 42;
        }
        if (std::exchange(m_closed, true) && is(Fault::CloseTwiceFails)) {
            return reportError(E_FAIL, u"closed");
        }
        return m_sound->Close();
    }

private:
    bool is(Fault fault) const { return m_state->fault == fault; }

    HRESULT failure(HRESULT result) const
    {
        if (FAILED(result) && is(Fault::NoDescription)) {
            SetErrorInfo(0, nullptr);
        }
        return result;
    }

    void change(Variant& value) const
    {
        switch (m_state->fault) {
        case Fault::NullAsEmpty:
            if (value.vt == VT_NULL) {
                value = Variant();
            }
            break;
        case Fault::NullAsZero:
            if (value.vt == VT_NULL) {
                value = Variant::fromLong(0);
            }
            break;
        case Fault::EmptyTextAsNull:
            if (value.vt == VT_BSTR && value.text().empty()) {
                value = Variant::null();
            }
            break;
        case Fault::TextCutAt255:
            if (value.text().size() > 255) {
                value = Variant::fromText(value.text().substr(0, 255));
            }
            break;
        case Fault::CodePage: {
            std::u16string text(value.text());
            for (char16_t& c : text) {
                c = c > 0xFF ? u'?' : c;
            }
            if (value.vt == VT_BSTR) {
                value = Variant::fromText(text);
            }
            break;
        }
        case Fault::BooleanAsNumber:
            if (value.vt == VT_BOOL) {
                value = Variant::fromLong(value.boolVal);
            }
            break;
        case Fault::BooleanIsOne:
            if (value.vt == VT_BOOL && value.boolVal != VARIANT_FALSE) {
                value.boolVal = 1;
            }
            break;
        case Fault::DateAsText:
            if (value.vt == VT_DATE) {
                value = Variant::fromUtf8(formatDate(value.date));
            }
            break;
        case Fault::MoneyAsCurrency:
            if (value.vt == VT_DECIMAL) {
                value.changeType(VT_CY);
            }
            break;
        case Fault::StrayVariant:
            if (value.vt == VT_R8) {
                value.vt = VT_BYREF | VT_VARIANT;
                value.byref = reinterpret_cast<void*>(8);
            }
            break;
        default:
            break;
        }
    }

    const DispTable<IRecordset>& dispTable() const override
    {
        static const DispTable<IRecordset> table{};
        return table;
    }

    ComPtr<IRecordset> m_sound;
    State m_state;
    int m_statements;
    bool m_deadly;
    bool m_adding = false;
    bool m_closed = false;
};

class BrokenConnection final : public ComObject<Dispatching<IConnection>>
{
public:
    BrokenConnection(ComPtr<IConnection> sound, State state)
        : m_sound(std::move(sound))
        , m_state(std::move(state))
    {}

    HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR* value) override
    {
        return m_sound->get_ConnectionString(value);
    }
    HRESULT STDMETHODCALLTYPE Execute(BSTR sql, LONG* affected) override
    {
        ++m_state->statements;
        const std::u16string_view text = textOf(sql);
        if (is(Fault::NoTable) && text.starts_with(u"CREATE")) {
            return reportError(E_ACCESSDENIED, u"nessun permesso");
        }
        if (const auto end = text.find(u"; "); is(Fault::TakesTwoStatements) && end != text.npos) {
            m_sound->Execute(Bstr(text.substr(0, end)).get(), affected);
            return m_sound->Execute(Bstr(text.substr(end + 2)).get(), affected);
        }
        const HRESULT result = outcome(m_sound->Execute(sql, affected));
        if (is(Fault::RowsNotCounted)) {
            *affected = -1;
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE OpenRecordset(BSTR source, CursorKind cursor, LockKind lock,
                                            IRecordset** recordset) override
    {
        *recordset = nullptr;
        ++m_state->statements;
        ComPtr<IRecordset> sound;
        if (is(Fault::NoRowSet)) {
            return S_OK;
        }
        const HRESULT result = outcome(m_sound->OpenRecordset(source, cursor, lock, sound.put()));
        if (!sound || FAILED(result)) {
            return result;
        }
        const bool deadly = textOf(source) == u"SELECT CAST(NULL AS int) AS n";
        if (deadly) {
            die(m_state->fault);
        }
        auto rows = makeCom<BrokenRows>(sound, m_state, deadly);
        if (is(Fault::RowSetLeaks)) {
            m_state->leaked.emplace_back(static_cast<IRecordset*>(rows.get()));
        }
        if (is(Fault::RowSetKeepsConnection)) {
            m_state->leaked.emplace_back(static_cast<IConnection*>(this));
        }
        *recordset = rows.detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE BeginTrans() override { return m_sound->BeginTrans(); }
    HRESULT STDMETHODCALLTYPE CommitTrans() override { return m_sound->CommitTrans(); }
    HRESULT STDMETHODCALLTYPE RollbackTrans() override
    {
        return is(Fault::RollbackKeeps) ? m_sound->CommitTrans() : m_sound->RollbackTrans();
    }

private:
    bool is(Fault fault) const { return m_state->fault == fault; }

    HRESULT outcome(HRESULT result) const
    {
        if (m_state->failed && is(Fault::BrokenByFailure)) {
            return reportError(E_FAIL, u"the connection is broken");
        }
        if (SUCCEEDED(result)) {
            return result;
        }
        if (is(Fault::NoDescription)) {
            SetErrorInfo(0, nullptr);
        }
        // The table that is dropped beforehand is not there.
        m_state->failed = m_state->statements > 20;
        return is(Fault::FailuresSucceed) ? S_OK : result;
    }

    const DispTable<IConnection>& dispTable() const override
    {
        static const DispTable<IConnection> table{};
        return table;
    }

    ComPtr<IConnection> m_sound;
    State m_state;
};

class BrokenHost final : public ComObject<Dispatching<_SqlConnection>, IServiceProvider>
{
public:
    BrokenHost(_SqlConnection* sound, State state)
        : m_sound(sound)
        , m_state(std::move(state))
    {
        ComPtr<IConnection> connection;
        throwIfFailed(m_sound->get_Connection(connection.put()));
        m_connection = makeCom<BrokenConnection>(connection, m_state);
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const HRESULT result = ComObject::QueryInterface(iid, object);
        if (FAILED(result) && is(Fault::RefusesWithoutNull)) {
            *object = this;
        }
        return result;
    }

    HRESULT STDMETHODCALLTYPE get_Connection(IConnection** value) override
    {
        if (is(Fault::NoConnection)) {
            *value = nullptr;
            return S_OK;
        }
        const HRESULT result = m_connection.copyTo(value);
        if (is(Fault::ConnectionNotCounted)) {
            m_connection->Release();
        }
        if (is(Fault::ConnectionLeaks)) {
            m_state->leaked.emplace_back(static_cast<IConnection*>(m_connection.get()));
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override { return m_sound->get_UserName(value); }
    HRESULT STDMETHODCALLTYPE LookupValue(BSTR field, BSTR table, BSTR condition, VARIANT* value) override
    {
        const HRESULT result = m_sound->LookupValue(field, table, condition, value);
        if (SUCCEEDED(result) && value->vt == VT_EMPTY && is(Fault::LookupNull)) {
            value->vt = VT_NULL;
        }
        return is(Fault::LookupSucceeds) ? S_OK : result;
    }
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID iid, void** object) override
    {
        if (is(Fault::ServiceNull) && service == iidOf<IEmailCheck>()) {
            *object = nullptr;
            return S_OK;
        }
        if (is(Fault::ServiceFails) && service == iidOf<IEmailCheck>()) {
            *object = nullptr;
            return E_FAIL;
        }
        return m_sound.as<IServiceProvider>()->QueryService(service, iid, object);
    }

private:
    bool is(Fault fault) const { return m_state->fault == fault; }

    const DispTable<_SqlConnection>& dispTable() const override
    {
        static const DispTable<_SqlConnection> table{};
        return table;
    }

    ComPtr<_SqlConnection> m_sound;
    State m_state;
    ComPtr<IConnection> m_connection;
};

} // namespace

ComPtr<_SqlConnection> makeBrokenHost(_SqlConnection* sound, const std::shared_ptr<BrokenState>& state)
{
    return makeCom<BrokenHost>(sound, state);
}

} // namespace zul::host::check
