#include "tests/support/FakeHost.h"

#include "automation/ComObject.h"
#include "automation/ErrorInfo.h"
#include "base/CaseFold.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <servprov.h>

namespace zul::test {

// ----------------------------------------------------------------------------------------------- values

Variant null()
{
    return Variant::null();
}

Variant text(std::string_view utf8)
{
    return Variant::fromUtf8(utf8);
}

Variant number(std::int32_t value)
{
    return Variant::fromLong(value);
}

Variant real(double value)
{
    return Variant::fromDouble(value);
}

Variant boolean(bool value)
{
    return Variant::fromBool(value);
}

Variant date(double days)
{
    return Variant::fromDate(days);
}

namespace {

std::string utf8(BSTR text)
{
    return utf8FromUtf16(textOf(text));
}

std::string twoDigits(unsigned value)
{
    std::string digits = std::to_string(value);
    return digits.size() < 2 ? digits.insert(0, 1, '0') : digits;
}

/// Days since 1899-12-30 as a civil date.
std::string dayText(double days)
{
    using namespace std::chrono;
    const year_month_day day(sys_days(year(1899) / 12 / 30) +
                             std::chrono::days(std::lround(std::floor(days))));
    std::string text = std::to_string(static_cast<int>(day.year()));
    text.append("-").append(twoDigits(static_cast<unsigned>(day.month())));
    text.append("-").append(twoDigits(static_cast<unsigned>(day.day())));
    return text;
}

std::string realText(double value)
{
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.15g", value);
    std::string text = buffer.data();
    std::replace(text.begin(), text.end(), ',', '.');
    return text;
}

bool sameName(const std::string& a, const std::string& b)
{
    return equalNames(utf16FromUtf8(a), utf16FromUtf8(b));
}

bool contains(const std::string& whole, const std::string& part)
{
    return whole.find(part) != std::string::npos;
}

} // namespace

std::string show(const VARIANT& value)
{
    switch (value.vt) {
    case VT_NULL:
        return "NULL";
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE ? "true" : "false";
    case VT_I2:
        return std::to_string(value.iVal) + "s";
    case VT_I4:
        return std::to_string(value.lVal);
    case VT_I8:
        return std::to_string(value.llVal) + "l";
    case VT_R8:
        return realText(value.dblVal);
    case VT_DATE:
        return value.date == std::floor(value.date) ? dayText(value.date) : "<moment>";
    case VT_BSTR:
        return "'" + utf8(value.bstrVal) + "'";
    default:
        return "?" + std::to_string(value.vt);
    }
}

// ------------------------------------------------------------------------------------------------ state

struct FakeHost::State
{
    struct Failure
    {
        HRESULT code;
        std::u16string description;
    };

    std::string connectionString = "Provider=Fake;Data Source=memory";
    std::string userName = "operatore";
    std::vector<std::pair<std::string, Rows>> answers;
    std::map<std::string, Variant> lookups;
    std::map<std::string, std::optional<std::string>> settings;
    bool rowReader = false;

    std::set<Service> services;
    std::map<long, FakeCustomer> customers;
    std::vector<bool> saveAnswers;
    std::vector<std::string> searchAnswers;
    std::vector<std::string> connectorErrors;
    std::function<bool(const std::string&)> isValidEmail = [](const std::string&) { return true; };
    long nextId = 1;

    std::map<std::pair<std::string, int>, Failure> nth;
    std::vector<std::pair<std::string, Failure>> where;
    std::map<int, Failure> rowFailures;
    int rowsAsked = 0;
    std::map<std::string, int> counts;
    std::vector<std::pair<std::string, std::function<void()>>> actions;

    std::vector<std::string> operations;
    std::vector<std::pair<std::string, Variant>> setValues;
    std::vector<FilledRecord> savedRecords;
    int openRowSets = 0;
    std::map<Service, int> made;

    static HRESULT fail(const Failure& failure)
    {
        return reportError(failure.code, failure.description, u"FakeHost");
    }

    /// Counts an operation and says whether it fails; writes it down when it is told in words.
    HRESULT perform(const std::string& kind, const std::optional<std::string>& words = std::string())
    {
        const int n = ++counts[kind];
        const std::string line = words && !words->empty() ? kind + " " + *words : kind;
        if (words)
            operations.push_back(line);
        for (std::size_t i = 0; i < actions.size(); ++i) {
            if (!contains(line, actions[i].first))
                continue;
            const auto action = actions[i].second;
            action();
        }
        if (const auto found = nth.find({kind, n}); found != nth.end())
            return fail(found->second);
        for (const auto& [part, failure] : where)
            if (contains(line, part))
                return fail(failure);
        return S_OK;
    }

    HRESULT row()
    {
        const auto found = rowFailures.find(++rowsAsked);
        return found == rowFailures.end() ? S_OK : fail(found->second);
    }

    template <class T>
    static T next(std::vector<T>& queue, T otherwise)
    {
        if (queue.empty())
            return otherwise;
        T first = queue.front();
        queue.erase(queue.begin());
        return first;
    }
};

namespace {

using StatePtr = std::shared_ptr<FakeHost::State>;

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// An object that is called through its interface only.
template <typename I>
class EarlyBound : public I
{
public:
    using ComInterface = I;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        return E_NOTIMPL;
    }
};

#pragma GCC diagnostic pop

const std::string settingsTable = "tabImpostazioni";
const std::string settingsRow = "SELECT * FROM tabImpostazioni WHERE descrizione='";

/// The key of a statement on one setting, or nothing.
std::optional<std::string> settingsKey(const std::string& sql)
{
    if (sql.rfind(settingsRow, 0) != 0)
        return std::nullopt;
    return sql.substr(settingsRow.size(), sql.size() - settingsRow.size() - 1);
}

// --------------------------------------------------------------------------------------------- row sets

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
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE FieldName(LONG index, BSTR* name) override
    {
        *name = nullptr;
        if (index < 0 || static_cast<std::size_t>(index) >= m_rows.fields.size())
            return reportError(DISP_E_BADINDEX, u"no such field");
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
            if (column == 0)
                if (const HRESULT result = m_state->row(); FAILED(result))
                    return result;
        } else {
            const std::string name = utf8(field.bstrVal);
            for (std::size_t i = 0; i < m_rows.fields.size(); ++i)
                if (sameName(m_rows.fields[i], name))
                    column = i;
            if (const HRESULT result = m_state->perform("value", std::nullopt); FAILED(result))
                return result;
        }
        if (column >= m_rows.fields.size())
            return reportError(DISP_E_BADINDEX, u"no such field");
        if (m_row >= m_rows.rows.size())
            return reportError(E_FAIL, u"no current row");
        Variant(m_rows.rows[m_row].at(column)).detachTo(value);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE put_Value(VARIANT field, VARIANT value) override
    {
        const std::string name = utf8(field.bstrVal);
        const HRESULT result = m_state->perform("set", name + "=" + show(value));
        if (FAILED(result))
            return result;
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
        if (const HRESULT result = m_state->perform("update"); FAILED(result))
            return result;
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
            if (const HRESULT result = m_state->row(); FAILED(result))
                return result;
            std::vector<std::string> texts(m_rows.fields.size());
            std::vector<ZulCell> cells;
            for (std::size_t column = 0; column < texts.size(); ++column)
                cells.push_back(cell(m_rows.rows[m_row].at(column), texts[column]));
            if (const HRESULT result = sink->Row(static_cast<LONG>(cells.size()), cells.data());
                FAILED(result))
                return result;
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
        if (!std::exchange(m_closed, true))
            --m_state->openRowSets;
    }

    void writeSetting()
    {
        std::optional<std::string> key = settingsKey(m_source);
        if (!key && m_source != settingsTable)
            return;
        std::optional<std::string> value;
        for (const auto& [name, given] : m_pending) {
            if (sameName(name, "Descrizione"))
                key = utf8(given.bstrVal);
            if (sameName(name, "Valore"))
                value = utf8(given.bstrVal);
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

// ------------------------------------------------------------------------------------------- connection

class FakeConnection final : public ComObject<EarlyBound<IConnection>>
{
public:
    explicit FakeConnection(StatePtr state)
        : m_state(std::move(state))
    {}

    HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR* value) override
    {
        *value = nullptr;
        if (const HRESULT result = m_state->perform("connectionstring", std::nullopt); FAILED(result))
            return result;
        *value = Bstr::fromUtf8(m_state->connectionString).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Execute(BSTR sql, LONG* affected) override
    {
        *affected = 0;
        return m_state->perform("execute", utf8(sql));
    }

    HRESULT STDMETHODCALLTYPE OpenRecordset(BSTR source, CursorKind cursor, LockKind lock,
                                            IRecordset** recordset) override
    {
        *recordset = nullptr;
        static const std::array<const char*, 4> cursors{"forward-only", "keyset", "dynamic", "static"};
        static const std::array<const char*, 4> locks{"?", "read-only", "pessimistic", "optimistic"};
        const std::string sql = utf8(source);
        const HRESULT result =
            m_state->perform("open", sql + " " + cursors.at(static_cast<std::size_t>(cursor)) + " " +
                                         locks.at(static_cast<std::size_t>(lock)));
        if (FAILED(result))
            return result;
        *recordset = makeCom<FakeRecordset>(m_state, sql, rowsOf(sql)).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE BeginTrans() override { return m_state->perform("begin"); }
    HRESULT STDMETHODCALLTYPE CommitTrans() override { return m_state->perform("commit"); }
    HRESULT STDMETHODCALLTYPE RollbackTrans() override { return m_state->perform("rollback"); }

private:
    Rows rowsOf(const std::string& sql) const
    {
        for (auto script = m_state->answers.rbegin(); script != m_state->answers.rend(); ++script)
            if (contains(sql, script->first))
                return script->second;
        const std::optional<std::string> key = settingsKey(sql);
        if (!key)
            return {};
        Rows rows{{"idImpostazione", "Descrizione", "Valore"}, {}};
        const auto found = m_state->settings.find(*key);
        if (found != m_state->settings.end())
            rows.rows.push_back({number(1), text(*key), found->second ? text(*found->second) : null()});
        return rows;
    }

    StatePtr m_state;
};

// --------------------------------------------------------------------------------------------- services

class FakeIdGenerator final : public ComObject<EarlyBound<IIdGenerator>>
{
public:
    explicit FakeIdGenerator(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE NextId(BSTR table, BSTR key, _SqlConnection* connection, LONG* id) override
    {
        *id = 0;
        if (connection == nullptr)
            return E_POINTER;
        const HRESULT result = m_state->perform("nextid", utf8(table) + " " + utf8(key));
        if (SUCCEEDED(result))
            *id = static_cast<LONG>(m_state->nextId++);
        return result;
    }

private:
    StatePtr m_state;
};

class FakeCustomerObject final : public ComObject<EarlyBound<ICustomer>>
{
public:
    explicit FakeCustomerObject(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE Init(LONG idCliente, _SqlConnection* connection) override
    {
        m_customer = {};
        m_id = 0;
        if (connection == nullptr)
            return E_POINTER;
        const HRESULT result = m_state->perform("customer", std::to_string(idCliente));
        if (FAILED(result))
            return result;
        const auto found = m_state->customers.find(idCliente);
        if (found != m_state->customers.end()) {
            m_customer = found->second;
            m_id = idCliente;
        }
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Id(LONG* value) override
    {
        *value = m_id;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Name(BSTR* value) override
    {
        *value = Bstr::fromUtf8(m_customer.name).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Email(BSTR* value) override
    {
        *value = Bstr::fromUtf8(m_customer.email).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_ConsensoSms(VARIANT_BOOL* value) override
    {
        *value = m_id != 0 && m_customer.consensoSms ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_ConsensoEmail(VARIANT_BOOL* value) override
    {
        *value = m_id != 0 && m_customer.consensoEmail ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_IdClassificazione(LONG* value) override
    {
        *value = static_cast<LONG>(m_customer.idClassificazione);
        return S_OK;
    }

private:
    StatePtr m_state;
    FakeCustomer m_customer;
    LONG m_id = 0;
};

class FakeMessageRecord final : public ComObject<EarlyBound<IMessageRecord>>
{
public:
    explicit FakeMessageRecord(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE put_IdTipoMessaggio(LONG value) override
    {
        return put("IdTipoMessaggio", value);
    }
    HRESULT STDMETHODCALLTYPE put_Descrizione(BSTR value) override { return put("Descrizione", value); }
    HRESULT STDMETHODCALLTYPE put_Testo(BSTR value) override { return put("Testo", value); }
    HRESULT STDMETHODCALLTYPE put_Contatto(BSTR value) override { return put("Contatto", value); }
    HRESULT STDMETHODCALLTYPE put_IDCliente(LONG value) override { return put("IDCliente", value); }
    HRESULT STDMETHODCALLTYPE put_Riferimento(BSTR value) override { return put("Riferimento", value); }
    HRESULT STDMETHODCALLTYPE put_Flag1(VARIANT_BOOL value) override { return putFlag("Flag1", value); }
    HRESULT STDMETHODCALLTYPE put_Flag2(VARIANT_BOOL value) override { return putFlag("Flag2", value); }
    HRESULT STDMETHODCALLTYPE put_Flag3(VARIANT_BOOL value) override { return putFlag("Flag3", value); }
    HRESULT STDMETHODCALLTYPE put_Valore(LONG value) override { return put("Valore", value); }
    HRESULT STDMETHODCALLTYPE put_DataCreaz(DATE value) override { return putDate("DataCreaz", value); }
    HRESULT STDMETHODCALLTYPE put_OraCreaz(DATE value) override { return putDate("OraCreaz", value); }
    HRESULT STDMETHODCALLTYPE put_UtenteUltimoAccesso(BSTR value) override
    {
        return put("UtenteUltimoAccesso", value);
    }
    HRESULT STDMETHODCALLTYPE Save(_SqlConnection* connection, VARIANT_BOOL* stored) override
    {
        *stored = VARIANT_FALSE;
        if (connection == nullptr)
            return E_POINTER;
        FilledRecord filled;
        filled.swap(m_filled);
        if (const HRESULT result = m_state->perform("save"); FAILED(result))
            return result;
        if (!FakeHost::State::next(m_state->saveAnswers, true))
            return S_OK;
        m_state->savedRecords.push_back(std::move(filled));
        *stored = VARIANT_TRUE;
        return S_OK;
    }

private:
    HRESULT put(const char* name, LONG value)
    {
        m_filled.emplace_back(name, Variant::fromLong(value));
        return S_OK;
    }
    HRESULT put(const char* name, BSTR value)
    {
        m_filled.emplace_back(name, Variant::fromText(textOf(value)));
        return S_OK;
    }
    HRESULT putFlag(const char* name, VARIANT_BOOL value)
    {
        m_filled.emplace_back(name, Variant::fromBool(value != VARIANT_FALSE));
        return S_OK;
    }
    HRESULT putDate(const char* name, DATE value)
    {
        m_filled.emplace_back(name, Variant::fromDate(value));
        return S_OK;
    }

    StatePtr m_state;
    FilledRecord m_filled;
};

class FakeTextParser final : public ComObject<EarlyBound<ITextParser>>
{
public:
    explicit FakeTextParser(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE Parse(BSTR source, ICustomer* customer, BSTR classificazione,
                                    BSTR* parsed) override
    {
        *parsed = nullptr;
        Bstr name;
        if (customer != nullptr)
            customer->get_Name(name.put());
        const HRESULT result =
            m_state->perform("parse", utf8(source) + "|" + name.toUtf8() + "|" + utf8(classificazione));
        if (FAILED(result))
            return result;
        *parsed =
            Bstr::fromUtf8(utf8(source) + "<" + name.toUtf8() + "," + utf8(classificazione) + ">").detach();
        return S_OK;
    }

private:
    StatePtr m_state;
};

class FakeAppConnector final : public ComObject<EarlyBound<IAppConnector>>
{
public:
    explicit FakeAppConnector(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE Init(BSTR slug, BSTR salt) override
    {
        return m_state->perform("init", utf8(slug) + "|" + utf8(salt));
    }
    HRESULT STDMETHODCALLTYPE SendToContact(BSTR email, DATE, BSTR message, BSTR* errorText,
                                            VARIANT_BOOL* sent) override
    {
        return send("push", utf8(email) + "|" + utf8(message), errorText, sent);
    }
    HRESULT STDMETHODCALLTYPE SendToEverybody(BSTR message, DATE, BSTR* errorText,
                                              VARIANT_BOOL* sent) override
    {
        return send("pushall", utf8(message), errorText, sent);
    }

private:
    HRESULT send(const std::string& kind, const std::string& words, BSTR* errorText, VARIANT_BOOL* sent)
    {
        *errorText = nullptr;
        *sent = VARIANT_FALSE;
        if (const HRESULT result = m_state->perform(kind, words); FAILED(result))
            return result;
        const std::string error = FakeHost::State::next(m_state->connectorErrors, std::string());
        if (error.empty())
            *sent = VARIANT_TRUE;
        else
            *errorText = Bstr::fromUtf8(error).detach();
        return S_OK;
    }

    StatePtr m_state;
};

class FakeFilters final : public ComObject<EarlyBound<ICustomerFilterSql>>
{
public:
    explicit FakeFilters(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE Ricorrenze(LONG id, DATE from, DATE to, BSTR* sql) override
    {
        return give("Ricorrenze", {std::to_string(id), dayText(from), dayText(to)}, nullptr, sql);
    }
    HRESULT STDMETHODCALLTYPE RicorrenzeIn(LONG id, DATE from, DATE to, BSTR ids, BSTR* sql) override
    {
        return give("RicorrenzeIn", {std::to_string(id), dayText(from), dayText(to)}, ids, sql);
    }
    HRESULT STDMETHODCALLTYPE PuntiFidelity(double least, double most, BSTR* sql) override
    {
        return give("PuntiFidelity", {realText(least), realText(most)}, nullptr, sql);
    }
    HRESULT STDMETHODCALLTYPE PuntiFidelityIn(double least, double most, BSTR ids, BSTR* sql) override
    {
        return give("PuntiFidelityIn", {realText(least), realText(most)}, ids, sql);
    }
    HRESULT STDMETHODCALLTYPE Classificazione(LONG id, BSTR* sql) override
    {
        return give("Classificazione", {std::to_string(id)}, nullptr, sql);
    }
    HRESULT STDMETHODCALLTYPE ClassificazioneIn(LONG id, BSTR ids, BSTR* sql) override
    {
        return give("ClassificazioneIn", {std::to_string(id)}, ids, sql);
    }
    HRESULT STDMETHODCALLTYPE Fatturato(DATE from, DATE to, double least, double most, BSTR* sql) override
    {
        return give("Fatturato", {dayText(from), dayText(to), realText(least), realText(most)}, nullptr, sql);
    }
    HRESULT STDMETHODCALLTYPE FatturatoIn(DATE from, DATE to, double least, double most, BSTR ids,
                                          BSTR* sql) override
    {
        return give("FatturatoIn", {dayText(from), dayText(to), realText(least), realText(most)}, ids, sql);
    }
    HRESULT STDMETHODCALLTYPE NumeroAcquisti(DATE from, DATE to, double least, double most,
                                             BSTR* sql) override
    {
        return give("NumeroAcquisti", {dayText(from), dayText(to), realText(least), realText(most)}, nullptr,
                    sql);
    }
    HRESULT STDMETHODCALLTYPE NumeroAcquistiIn(DATE from, DATE to, double least, double most, BSTR ids,
                                               BSTR* sql) override
    {
        return give("NumeroAcquistiIn", {dayText(from), dayText(to), realText(least), realText(most)}, ids,
                    sql);
    }
    HRESULT STDMETHODCALLTYPE PeriodoAcquisto(DATE from, DATE to, BSTR* sql) override
    {
        return give("PeriodoAcquisto", {dayText(from), dayText(to)}, nullptr, sql);
    }
    HRESULT STDMETHODCALLTYPE PeriodoAcquistoIn(DATE from, DATE to, BSTR ids, BSTR* sql) override
    {
        return give("PeriodoAcquistoIn", {dayText(from), dayText(to)}, ids, sql);
    }

private:
    /// The statement is the call itself, so that what is executed tells what was asked for.
    HRESULT give(const char* name, const std::vector<std::string>& arguments, BSTR ids, BSTR* sql)
    {
        *sql = nullptr;
        std::string call = name;
        call.append("(");
        for (std::size_t i = 0; i < arguments.size(); ++i)
            call.append(i > 0 ? "," : "").append(arguments[i]);
        if (ids != nullptr)
            call.append(",").append(utf8(ids));
        call.append(")");
        if (const HRESULT result = m_state->perform("filter", call); FAILED(result))
            return result;
        *sql = Bstr::fromUtf8(call).detach();
        return S_OK;
    }

    StatePtr m_state;
};

class FakeAdvancedSearch final : public ComObject<EarlyBound<IAdvancedSearch>>
{
public:
    explicit FakeAdvancedSearch(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE put_Connection(_SqlConnection* value) override
    {
        m_hasConnection = value != nullptr;
        return m_state->perform("searchconnection");
    }
    HRESULT STDMETHODCALLTYPE Search(LONG kind, BSTR* filter) override
    {
        *filter = nullptr;
        if (!m_hasConnection)
            return E_UNEXPECTED;
        if (const HRESULT result = m_state->perform("search", std::to_string(kind)); FAILED(result))
            return result;
        *filter = Bstr::fromUtf8(FakeHost::State::next(m_state->searchAnswers, std::string())).detach();
        return S_OK;
    }

private:
    StatePtr m_state;
    bool m_hasConnection = false;
};

class FakeChangeTracker final : public ComObject<EarlyBound<IChangeTracker>>
{
public:
    explicit FakeChangeTracker(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE RowAdded(BSTR table, LONG id, _SqlConnection* connection) override
    {
        if (connection == nullptr)
            return E_POINTER;
        return m_state->perform("tracked", utf8(table) + " " + std::to_string(id));
    }

private:
    StatePtr m_state;
};

class FakeEmailCheck final : public ComObject<EarlyBound<IEmailCheck>>
{
public:
    explicit FakeEmailCheck(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE IsValid(BSTR email, VARIANT_BOOL* valid) override
    {
        *valid = VARIANT_FALSE;
        if (const HRESULT result = m_state->perform("checkemail", utf8(email)); FAILED(result))
            return result;
        *valid = m_state->isValidEmail(utf8(email)) ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
    }

private:
    StatePtr m_state;
};

class FakeProgramStarter final : public ComObject<EarlyBound<IProgramStarter>>
{
public:
    explicit FakeProgramStarter(StatePtr state)
        : m_state(std::move(state))
    {}
    HRESULT STDMETHODCALLTYPE Start(BSTR path, BSTR parameters) override
    {
        return m_state->perform("start", utf8(path) + "|" + utf8(parameters));
    }

private:
    StatePtr m_state;
};

// ------------------------------------------------------------------------------------ connection object

class FakeSqlConnection final : public ComObject<EarlyBound<_SqlConnection>, IServiceProvider>
{
public:
    explicit FakeSqlConnection(StatePtr state)
        : m_state(std::move(state))
    {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (iid == iidOf<IServiceProvider>() && m_state->services.empty()) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        return ComObject::QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE get_Connection(IConnection** value) override
    {
        *value = nullptr;
        if (const HRESULT result = m_state->perform("connection", std::nullopt); FAILED(result))
            return result;
        *value = makeCom<FakeConnection>(m_state).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override
    {
        *value = nullptr;
        if (const HRESULT result = m_state->perform("user", std::nullopt); FAILED(result))
            return result;
        *value = Bstr::fromUtf8(m_state->userName).detach();
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE LookupValue(BSTR field, BSTR table, BSTR condition, VARIANT* value) override
    {
        VariantInit(value);
        const HRESULT result =
            m_state->perform("lookup", utf8(field) + "|" + utf8(table) + "|" + utf8(condition));
        if (FAILED(result))
            return result;
        const auto found = m_state->lookups.find(utf8(condition));
        if (found != m_state->lookups.end())
            Variant(found->second).detachTo(value);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID iid, void** object) override
    {
        *object = nullptr;
        if (!(service == iid))
            return E_INVALIDARG;
        const bool found = serve<IIdGenerator, FakeIdGenerator>(Service::IdGenerator, iid, object) ||
                           serve<ICustomer, FakeCustomerObject>(Service::Customer, iid, object) ||
                           serve<IMessageRecord, FakeMessageRecord>(Service::MessageRecord, iid, object) ||
                           serve<ITextParser, FakeTextParser>(Service::TextParser, iid, object) ||
                           serve<IAppConnector, FakeAppConnector>(Service::AppConnector, iid, object) ||
                           serve<ICustomerFilterSql, FakeFilters>(Service::CustomerFilterSql, iid, object) ||
                           serve<IAdvancedSearch, FakeAdvancedSearch>(Service::AdvancedSearch, iid, object) ||
                           serve<IChangeTracker, FakeChangeTracker>(Service::ChangeTracker, iid, object) ||
                           serve<IEmailCheck, FakeEmailCheck>(Service::EmailCheck, iid, object) ||
                           serve<IProgramStarter, FakeProgramStarter>(Service::ProgramStarter, iid, object);
        return found ? S_OK : E_NOINTERFACE;
    }

private:
    template <class I, class T>
    bool serve(Service service, REFIID iid, void** object)
    {
        if (!(iid == iidOf<I>()) || m_state->services.count(service) == 0)
            return false;
        ++m_state->made[service];
        *object = static_cast<I*>(makeCom<T>(m_state).detach());
        return true;
    }

    StatePtr m_state;
};

} // namespace

// --------------------------------------------------------------------------------------------- FakeHost

FakeHost::FakeHost()
    : m_state(std::make_shared<State>())
{}

FakeHost::~FakeHost() = default;

ComPtr<_SqlConnection> FakeHost::connection() const
{
    return makeCom<FakeSqlConnection>(m_state);
}

std::string& FakeHost::connectionString()
{
    return m_state->connectionString;
}

std::string& FakeHost::userName()
{
    return m_state->userName;
}

void FakeHost::answer(const std::string& part, Rows rows)
{
    m_state->answers.emplace_back(part, std::move(rows));
}

void FakeHost::answerLookup(const std::string& condition, Variant value)
{
    m_state->lookups[condition] = std::move(value);
}

std::map<std::string, std::optional<std::string>>& FakeHost::settings()
{
    return m_state->settings;
}

void FakeHost::giveRowReader(bool give)
{
    m_state->rowReader = give;
}

void FakeHost::offer(Service service)
{
    m_state->services.insert(service);
}

void FakeHost::offerAll()
{
    for (int service = 0; service <= static_cast<int>(Service::ProgramStarter); ++service)
        offer(static_cast<Service>(service));
}

std::map<long, FakeCustomer>& FakeHost::customers()
{
    return m_state->customers;
}

std::vector<bool>& FakeHost::saveAnswers()
{
    return m_state->saveAnswers;
}

std::vector<std::string>& FakeHost::searchAnswers()
{
    return m_state->searchAnswers;
}

std::vector<std::string>& FakeHost::connectorErrors()
{
    return m_state->connectorErrors;
}

std::function<bool(const std::string&)>& FakeHost::isValidEmail()
{
    return m_state->isValidEmail;
}

long& FakeHost::nextId()
{
    return m_state->nextId;
}

void FakeHost::failNth(const std::string& kind, int n, HRESULT code, const std::u16string& description)
{
    m_state->nth[{kind, m_state->counts[kind] + n}] = {code, description};
}

void FakeHost::failWhere(const std::string& part, HRESULT code, const std::u16string& description)
{
    m_state->where.push_back({part, {code, description}});
}

void FakeHost::failAtRow(int n, HRESULT code, const std::u16string& description)
{
    m_state->rowFailures[m_state->rowsAsked + n] = {code, description};
}

void FakeHost::noFailures()
{
    m_state->nth.clear();
    m_state->where.clear();
    m_state->rowFailures.clear();
}

const std::vector<std::string>& FakeHost::operations() const
{
    return m_state->operations;
}

std::vector<std::string> FakeHost::operations(const std::string& kind) const
{
    std::vector<std::string> found;
    for (const std::string& line : m_state->operations)
        if (line == kind || line.rfind(kind + " ", 0) == 0)
            found.push_back(line);
    return found;
}

void FakeHost::forgetOperations()
{
    m_state->operations.clear();
    m_state->setValues.clear();
}

std::vector<Variant> FakeHost::valuesOf(const std::string& column) const
{
    std::vector<Variant> values;
    for (const auto& [name, value] : m_state->setValues)
        if (name == column)
            values.push_back(value);
    return values;
}

const std::vector<FilledRecord>& FakeHost::savedRecords() const
{
    return m_state->savedRecords;
}

int FakeHost::openRowSets() const
{
    return m_state->openRowSets;
}

int FakeHost::made(Service service) const
{
    const auto found = m_state->made.find(service);
    return found == m_state->made.end() ? 0 : found->second;
}

void FakeHost::during(const std::string& part, std::function<void()> action)
{
    m_state->actions.emplace_back(part, std::move(action));
}

} // namespace zul::test
