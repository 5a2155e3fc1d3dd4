// The engine for ODBC on a driver that may answer anything: every operation ends in a result or in an error with a
// number of a data provider, cells are what they say, and every handle is given back.
#include "host/database/Connection.h"
#include "host/database/Recordset.h"
#include "host/database/odbc/OdbcEngine.h"
#include "tests/fuzz/Input.h"
#include "tests/fuzz/LyingDriver.h"

#include <array>
#include <cmath>

using namespace zul;
using namespace zul::host;
using fuzz::Input;
using fuzz::require;

namespace {

bool isDocumented(ErrorCode code)
{
    constexpr std::array<ErrorCode, 14> documented{ErrorCode::Unspecified,   ErrorCode::InvalidArgument,
                                                   ErrorCode::Statement,     ErrorCode::NoTable,
                                                   ErrorCode::Integrity,     ErrorCode::BadValue,
                                                   ErrorCode::Busy,          ErrorCode::Permission,
                                                   ErrorCode::NoTransaction, ErrorCode::TransactionOpen,
                                                   ErrorCode::ItemNotFound,  ErrorCode::NoCurrentRow,
                                                   ErrorCode::NotUpdatable,  ErrorCode::Closed};
    return std::find(documented.begin(), documented.end(), code) != documented.end();
}

/// Reads every byte of a row.
void checkCells(const ZulCell* cells, std::size_t count)
{
    unsigned sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const ZulCell& cell = cells[i];
        require(cell.Kind >= CellNull && cell.Kind <= CellBoolean, "a kind of cell");
        if (cell.Kind == CellText || (cell.Kind == CellReal && cell.Text != nullptr)) {
            require(cell.Length >= 0, "a text has a length");
            for (LONG byte = 0; byte < cell.Length; ++byte) {
                sum += cell.Text[byte];
            }
        } else if (cell.Kind == CellBoolean) {
            require(cell.Integer == 0 || cell.Integer == 1, "a truth is one of two");
        } else if (cell.Kind == CellDate) {
            require(std::isfinite(cell.Real), "a date is a number");
        }
    }
    volatile unsigned seen = sum;
    static_cast<void>(seen);
}

class RowCheck final : public ComObject<IRowSink>
{
public:
    HRESULT STDMETHODCALLTYPE Row(LONG count, const ZulCell* cells) override
    {
        checkCells(cells, static_cast<std::size_t>(count));
        return S_OK;
    }
};

class Program
{
public:
    explicit Program(Input& input)
        : m_input(input)
        , m_session(std::make_shared<Session>())
    {
        m_session->engine = std::make_unique<OdbcEngine>("DSN=x;UID=y", std::chrono::seconds(4));
    }

    void run()
    {
        for (int step = 0; step < 40 && !m_input.ended(); ++step) {
            try {
                operation();
            } catch (const EngineError& error) {
                require(isDocumented(error.code()), "an error of the documented numbers");
            }
            // Rows that stream go before the engine, and may go at any time.
            if (m_rows && m_input.number<std::uint8_t>() < 0x20) {
                m_rows.reset();
            }
        }
        m_rows.reset();
    }

private:
    Engine& engine() { return *m_session->engine; }

    std::vector<Value> values()
    {
        std::vector<Value> all;
        for (std::uint32_t count = m_input.below(4); count > 0; --count) {
            switch (m_input.below(7)) {
            case 0:
                all.emplace_back();
                break;
            case 1:
                all.emplace_back(m_input.flag());
                break;
            case 2:
                all.emplace_back(m_input.number<std::int64_t>());
                break;
            case 3:
                all.emplace_back(m_input.number<double>());
                break;
            case 4:
                all.emplace_back(std::string(m_input.bytes()));
                break;
            case 5:
                all.emplace_back(DateValue{m_input.number<double>()});
                break;
            default:
                all.emplace_back(DecimalValue{"-12.50"});
                break;
            }
        }
        return all;
    }

    void operation()
    {
        switch (m_input.below(13)) {
        case 0:
            require(engine().execute("update t set a=1", Language::Native) >= 0, "a count is one");
            break;
        case 1:
            engine().execute("update t set a=?", Language::Native, values());
            break;
        case 2:
            m_rows.reset();
            m_rows = engine().query("select a from t", Language::Native, values());
            read(3);
            break;
        case 3:
            read(200);
            break;
        case 4:
            engine().begin();
            break;
        case 5:
            engine().commit();
            break;
        case 6:
            engine().rollback();
            break;
        case 7:
            engine().hasTable("t");
            break;
        case 8:
            engine().rowIdentity(m_input.flag() ? "t" : "u");
            break;
        case 9:
            engine().nextId("t", "k");
            break;
        case 10:
            addRow();
            break;
        case 11:
            rowSet();
            break;
        default: {
            const std::array<std::string_view, 2> columns{"a", "b"};
            engine().insertRows("t", columns, values());
            break;
        }
        }
    }

    void read(int most)
    {
        while (m_rows && most-- > 0) {
            if (!m_rows->next()) {
                m_rows.reset();
                return;
            }
            checkCells(m_rows->cells(), m_rows->columns().size());
        }
    }

    void addRow()
    {
        const std::array<std::string_view, 1> columns{"a"};
        const std::array<Value, 1> row{Value(std::string("x"))};
        std::int64_t id = 0;
        engine().addRow({"t", "k", columns, row}, id);
    }

    /// The same rows as the component sees them.
    void rowSet()
    {
        const auto cursor = static_cast<CursorKind>(m_input.below(4));
        const auto lock = static_cast<LockKind>(1 + m_input.below(3));
        const ComPtr<Recordset> rows =
            Recordset::open(m_session, "select a, b from t", cursor, lock, Journaled::No);
        LONG count = 0;
        require(rows->get_FieldCount(&count) == S_OK && count >= 0, "a count of fields");
        for (int step = 0; step < 20 && !m_input.ended(); ++step) {
            const Variant field = Variant::fromLong(static_cast<LONG>(m_input.below(4)));
            Variant value;
            switch (m_input.below(6)) {
            case 0:
                rows->MoveNext();
                break;
            case 1:
            case 2: {
                const HRESULT result = rows->get_Value(field, value.put());
                require(SUCCEEDED(result) || value.isEmpty(), "a failure leaves the value empty");
                break;
            }
            case 3:
                rows->AddNew();
                rows->put_Value(field, Variant::fromText(m_input.text16()));
                rows->Update();
                break;
            case 4:
                rows->put_Value(field, Variant::fromDouble(m_input.number<double>()));
                rows->Update();
                break;
            default:
                rows->ReadRows(makeCom<RowCheck>().get());
                break;
            }
        }
        require(rows->Close() == S_OK && rows->Close() == S_OK, "closing twice is no error");
    }

    Input& m_input;
    SessionPtr m_session;
    std::unique_ptr<RowStream> m_rows;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    fuzz::setDriverInput(&input);
    try {
        Program(input).run();
    } catch (const EngineError& error) {
        require(isDocumented(error.code()), "an error of the documented numbers");
    }
    SetErrorInfo(0, nullptr);
    require(fuzz::driverHandles() == 0, "every handle is given back");
    return 0;
}
