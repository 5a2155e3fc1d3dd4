// A host whose every answer comes from the input: types, counts, failures, the end of a row set, services that there are
// not. Whatever it says, the component's side ends in a value or in an error of the house, every row set is closed, every
// reference is given back, and what a grid was loaded with can be shown, sorted and searched.
#include "automation/ComObject.h"
#include "grid/ColumnStore.h"
#include "hostlib/Calls.h"
#include "hostlib/Host.h"
#include "hostlib/NewRowId.h"
#include "session/GridFill.h"
#include "tests/fuzz/Input.h"
#include "tests/fuzz/Values.h"
#include "tests/support/fake/EarlyBound.h"

#include <array>
#include <servprov.h>

using namespace zul;
using fuzz::Input;
using fuzz::require;
using test::EarlyBound;

namespace {

/// What all objects of one host share.
struct Host
{
    Input& input;
    fuzz::Values& values;
    long objects = 0;
    long openRowSets = 0;

    /// Success for the most part; a failure with a description or without, or a success that is none.
    HRESULT outcome()
    {
        const std::uint8_t choice = input.ended() ? 0 : input.number<std::uint8_t>();
        if (choice < 0xE0) {
            return S_OK;
        }
        SetErrorInfo(0, nullptr);
        constexpr std::array<HRESULT, 6> failures{
            E_FAIL,           E_UNEXPECTED,  static_cast<HRESULT>(0x80040E14),
            DISP_E_EXCEPTION, E_OUTOFMEMORY, DISP_E_BADINDEX};
        const HRESULT failure = failures[choice % failures.size()];
        return (choice & 0x10U) != 0 ? reportError(failure, input.text16(), u"Host") : failure;
    }
    void give(BSTR* text)
    {
        const BSTR own = values.text();
        *text = own == nullptr
                    ? nullptr
                    : SysAllocStringByteLen(reinterpret_cast<const char*>(own), SysStringByteLen(own));
    }
    void give(VARIANT* value)
    {
        const VARIANT& own = *values.variant();
        // A reference into the host's own storage is no value, but a host may give one.
        if (FAILED(copyVariant(*value, own))) {
            value->vt = own.vt;
        }
    }
};

class Rows final : public ComObject<EarlyBound<IRecordset>, IRowReader>
{
public:
    explicit Rows(Host& host)
        : m_host(host)
        , m_hasReader(host.input.flag())
    {
        ++m_host.objects;
        ++m_host.openRowSets;
    }
    ~Rows() override
    {
        --m_host.objects;
        require(m_closed, "a row set is closed by who opened it");
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (iid == iidOf<IRowReader>() && !m_hasReader) {
            *object = nullptr;
            return m_host.outcome() == S_OK ? E_NOINTERFACE : E_FAIL;
        }
        return ComObject::QueryInterface(iid, object);
    }

    HRESULT STDMETHODCALLTYPE get_Eof(VARIANT_BOOL* value) override
    {
        *value = m_host.input.ended() ? VARIANT_TRUE : static_cast<VARIANT_BOOL>(m_host.input.below(5) == 0);
        return m_host.outcome();
    }
    HRESULT STDMETHODCALLTYPE get_FieldCount(LONG* value) override
    {
        *value = m_host.input.number<std::uint8_t>() == 0xFF ? m_host.input.number<LONG>()
                                                             : static_cast<LONG>(m_host.input.below(6));
        return m_host.outcome();
    }
    HRESULT STDMETHODCALLTYPE FieldName(LONG, BSTR* name) override
    {
        m_host.give(name);
        return m_host.outcome();
    }
    HRESULT STDMETHODCALLTYPE get_Value(VARIANT, VARIANT* value) override
    {
        m_host.give(value);
        return m_host.outcome();
    }
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT, VARIANT) override { return m_host.outcome(); }
    HRESULT STDMETHODCALLTYPE MoveNext() override { return m_host.outcome(); }
    HRESULT STDMETHODCALLTYPE AddNew() override { return m_host.outcome(); }
    HRESULT STDMETHODCALLTYPE Update() override { return m_host.outcome(); }
    HRESULT STDMETHODCALLTYPE Close() override
    {
        m_host.openRowSets -= m_closed ? 0 : 1;
        m_closed = true;
        return m_host.outcome();
    }

    HRESULT STDMETHODCALLTYPE ReadRows(IRowSink* sink) override
    {
        std::array<ZulCell, 8> cells{};
        while (!m_host.input.ended()) {
            auto count = static_cast<LONG>(m_host.input.below(cells.size() + 1));
            for (LONG i = 0; i < count; ++i) {
                fill(cells[static_cast<std::size_t>(i)]);
            }
            const ZulCell* given = cells.data();
            const std::uint8_t lie = m_host.input.number<std::uint8_t>();
            if (lie == 0xFF) {
                given = nullptr;
            } else if (lie == 0xFE) {
                count = -1 - count;
            }
            const HRESULT taken = sink->Row(count, given);
            // One that goes on after the sink has had enough is a host's mistake too.
            if (FAILED(taken) && !m_host.input.flag()) {
                return m_host.input.flag() ? taken : S_OK;
            }
        }
        return m_host.outcome();
    }

private:
    void fill(ZulCell& cell)
    {
        Input& input = m_host.input;
        cell = {};
        const std::uint8_t kind = input.number<std::uint8_t>();
        cell.Kind = kind < 0xF0 ? static_cast<LONG>(kind % 6) : input.number<LONG>();
        const std::string_view text = input.bytes();
        cell.Text = reinterpret_cast<const unsigned char*>(text.data());
        cell.Length = static_cast<LONG>(text.size());
        if (cell.Kind == ::CellText) {
            const std::uint8_t lie = input.number<std::uint8_t>();
            if (lie == 0xFF) {
                cell.Text = nullptr;
            } else if (lie == 0xFE) {
                cell.Length = -cell.Length;
            }
        } else {
            std::memcpy(&cell.Integer, text.data(), std::min(text.size(), sizeof cell.Integer));
            std::memcpy(&cell.Real, text.data(), std::min(text.size(), sizeof cell.Real));
        }
    }

    Host& m_host;
    bool m_hasReader;
    bool m_closed = false;
};

class Connection final : public ComObject<EarlyBound<IConnection>>
{
public:
    explicit Connection(Host& host)
        : m_host(host)
    {
        ++m_host.objects;
    }
    ~Connection() override { --m_host.objects; }

    HRESULT STDMETHODCALLTYPE get_ConnectionString(BSTR* value) override
    {
        m_host.give(value);
        return m_host.outcome();
    }
    HRESULT STDMETHODCALLTYPE Execute(BSTR, LONG* affected) override
    {
        *affected = m_host.input.number<LONG>();
        return m_host.outcome();
    }
    HRESULT STDMETHODCALLTYPE OpenRecordset(BSTR, CursorKind, LockKind, IRecordset** rows) override
    {
        *rows = nullptr;
        const HRESULT result = m_host.outcome();
        // A success without a row set is one of the things that a host can do wrong.
        if (SUCCEEDED(result) && m_host.input.number<std::uint8_t>() < 0xF0) {
            *rows = makeCom<Rows>(m_host).detach();
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE BeginTrans() override { return m_host.outcome(); }
    HRESULT STDMETHODCALLTYPE CommitTrans() override { return m_host.outcome(); }
    HRESULT STDMETHODCALLTYPE RollbackTrans() override { return m_host.outcome(); }

private:
    Host& m_host;
};

class SqlConnection final : public ComObject<EarlyBound<_SqlConnection>, IServiceProvider>
{
public:
    explicit SqlConnection(Host& host)
        : m_host(host)
    {
        ++m_host.objects;
    }
    ~SqlConnection() override { --m_host.objects; }

    HRESULT STDMETHODCALLTYPE get_Connection(IConnection** value) override
    {
        *value = nullptr;
        const HRESULT result = m_host.outcome();
        if (SUCCEEDED(result) && m_host.input.number<std::uint8_t>() < 0xF8) {
            *value = makeCom<Connection>(m_host).detach();
        }
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override
    {
        m_host.give(value);
        return m_host.outcome();
    }
    HRESULT STDMETHODCALLTYPE LookupValue(BSTR, BSTR, BSTR, VARIANT* value) override
    {
        m_host.give(value);
        return m_host.outcome();
    }
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID, REFIID, void** object) override
    {
        *object = nullptr;
        return m_host.outcome(); // also a success with nothing
    }

private:
    Host& m_host;
};

ado::Recordset open(const hostlib::SqlConnection& connection)
{
    return connection.connection().open(QStringLiteral("select"), ado::Cursor::Static, ado::Lock::Optimistic);
}

void loadGrid(const hostlib::SqlConnection& connection, Input& input)
{
    ColumnStore store;
    const auto columns = static_cast<int>(input.below(5));
    for (int i = 0; i < columns; ++i) {
        store.addColumn();
    }
    ado::Recordset rows = open(connection);
    try {
        appendRows(store, rows);
    } catch (const Error&) {
        // The rows so far stay, and are shown.
    }
    store.settle();
    constexpr std::uint32_t most = 64;
    std::vector<uint32_t> order;
    for (std::uint32_t row = 0; row < std::min(store.rowCount(), most); ++row) {
        order.push_back(row);
    }
    std::vector<int> all;
    for (int column = 0; column < columns; ++column) {
        for (const std::uint32_t row : order) {
            require(store.isNull(row, column) == (store.kind(row, column) == zul::CellKind::Null),
                    "one answer");
            const QString text = store.text(row, column);
            require(!store.isNull(row, column) || text.isEmpty(), "NULL is the empty text");
            store.integer(row, column);
            store.isNumeric(row, column);
        }
        std::vector<uint32_t> sorted = order;
        store.sortRows(sorted, column, input.flag());
        std::sort(sorted.begin(), sorted.end());
        require(sorted == order, "a sort loses no row");
        all.push_back(column);
    }
    const std::vector<uint64_t> found = store.rowsContaining(QStringLiteral("1"), all);
    require(found.size() * 64 >= store.rowCount(), "a bit for every row");
}

void readRow(const hostlib::SqlConnection& connection, Input& input)
{
    ado::Recordset row = open(connection);
    for (int step = 0; step < 20 && !input.ended(); ++step) {
        const QString field = QStringLiteral("a");
        switch (input.below(9)) {
        case 0:
            row.eof();
            break;
        case 1:
            row.moveNext();
            break;
        case 2:
            require(row.fieldCount() >= 0, "a count is one");
            break;
        case 3:
            row.fieldName(static_cast<int>(input.number<std::int8_t>()));
            break;
        case 4:
            ado::toText(row.value(field));
            break;
        case 5:
            row.text(field, field);
            break;
        case 6:
            row.integer(field, 0);
            break;
        case 7:
            row.addNew();
            row.set(field, row.value(field));
            row.update();
            break;
        default:
            row.close();
            break;
        }
    }
}

void useHost(const hostlib::SqlConnection& connection, Input& input)
{
    switch (input.below(8)) {
    case 0:
    case 1:
        loadGrid(connection, input);
        break;
    case 2:
        readRow(connection, input);
        break;
    case 3: {
        hostlib::Customer customer(connection);
        customer.init(1);
        customer.name();
        customer.email();
        customer.consensoSms();
        customer.consensoEmail();
        customer.idClassificazione();
        break;
    }
    case 4: {
        hostlib::NewRowId id(connection, QStringLiteral("t"), QStringLiteral("k"));
        require(id.value() != std::numeric_limits<qint32>::min(), "a key follows the largest");
        id.written();
        break;
    }
    case 5: {
        hostlib::MessageRecord record(connection);
        hostlib::Message message;
        message.creazione = QDateTime(QDate(2024, 2, 29), QTime(23, 59), Qt::UTC);
        record.save(message);
        break;
    }
    case 6:
        connection.lookupText(QStringLiteral("f"), QStringLiteral("t"), QStringLiteral("c"));
        connection.userName();
        connection.connection().connectionString();
        connection.tellRowAdded(QStringLiteral("t"), 1);
        break;
    default: {
        const ado::Connection plain = connection.connection();
        plain.begin();
        plain.execute(QStringLiteral("update"));
        plain.commit();
        break;
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    {
        fuzz::Values values(input);
        Host host{input, values};
        {
            const auto object = makeCom<SqlConnection>(host);
            const hostlib::SqlConnection connection{ComPtr<_SqlConnection>(object.get())};
            for (int step = 0; step < 20 && !input.ended(); ++step) {
                try {
                    useHost(connection, input);
                } catch (const Error& error) {
                    require(error.number() != 0, "an error has a number");
                }
                require(host.openRowSets == 0, "every row set is closed");
            }
        }
        require(host.objects == 0, "every reference is given back");
    }
    SetErrorInfo(0, nullptr);
    require(fuzz::Values::objectsAlive() == 0, "every reference is given back");
    return 0;
}
