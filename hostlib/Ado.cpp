#include "hostlib/Ado.h"

#include "automation/ComObject.h"
#include "hostlib/Calls.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace zul::ado {

using namespace calls;

namespace {

/// A field's name as the row set takes it.
Variant fieldVariant(const QString& field)
{
    return Variant::fromText(
        {reinterpret_cast<const char16_t*>(field.utf16()), static_cast<std::size_t>(field.size())});
}

struct ToVariant
{
    Variant operator()(std::monostate) const { return Variant::null(); }
    Variant operator()(bool value) const { return Variant::fromBool(value); }
    Variant operator()(qint16 value) const
    {
        Variant v;
        v.vt = VT_I2;
        v.iVal = value;
        return v;
    }
    Variant operator()(qint32 value) const { return Variant::fromLong(value); }
    Variant operator()(qint64 value) const { return Variant::fromInt64(value); }
    Variant operator()(double value) const { return Variant::fromDouble(value); }
    Variant operator()(const QDateTime& value) const { return Variant::fromDate(toDate(value)); }
    Variant operator()(const QString& value) const { return fieldVariant(value); }
};

Value fromVariant(const VARIANT& v)
{
    switch (v.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return std::monostate{};
    case VT_BOOL:
        return v.boolVal != VARIANT_FALSE;
    case VT_I2:
        return qint16{v.iVal};
    case VT_I4:
        return static_cast<qint32>(v.lVal);
    case VT_I8:
        return static_cast<qint64>(v.llVal);
    case VT_R8:
        return v.dblVal;
    case VT_DATE:
        return fromDate(v.date);
    case VT_BSTR:
        return toQString(textOf(v.bstrVal));
    default:
        break;
    }
    Variant number(v);
    check(number.changeType(VT_R8));
    return number.dblVal;
}

/// More than a row set of any database has. The number becomes the size of tables.
constexpr LONG mostFields = 0x7FFF;

/// A count of fields, or of a row's cells. @throws Error 9 for a number that no row set has
LONG checkedCount(LONG count)
{
    if (count < 0 || count > mostFields) {
        throw Error(RunTime::SubscriptOutOfRange);
    }
    return count;
}

/// @throws Error 13 for a cell that is not one of the contract's
void checkCell(const ZulCell& cell)
{
    const bool isKind = cell.Kind >= CellNull && cell.Kind <= CellBoolean;
    const bool isText =
        cell.Kind != CellText || cell.Length == 0 || (cell.Length > 0 && cell.Text != nullptr);
    if (!isKind || !isText) {
        throw Error(RunTime::TypeMismatch);
    }
}

/// Hands rows on to a function; what the function throws is kept and thrown again behind the boundary.
class FunctionSink final : public ComObject<IRowSink>
{
public:
    explicit FunctionSink(const std::function<void(long, const ZulCell*)>& taker)
        : m_taker(taker)
    {}

    HRESULT STDMETHODCALLTYPE Row(LONG count, const ZulCell* cells) override
    {
        try {
            if (checkedCount(count) > 0 && cells == nullptr) {
                throw Error(RunTime::ObjectNotSet);
            }
            std::for_each(cells, cells + count, checkCell);
            m_taker(count, cells);
            return S_OK;
        } catch (...) {
            m_failure = std::current_exception();
            return E_ABORT;
        }
    }

    void rethrow() const
    {
        if (m_failure) {
            std::rethrow_exception(m_failure);
        }
    }

private:
    const std::function<void(long, const ZulCell*)>& m_taker;
    std::exception_ptr m_failure;
};

/// A cell from a field's value, for row sets without the fast path. The text stays in `storage`.
ZulCell toCell(const VARIANT& v, std::string& storage)
{
    ZulCell cell{};
    const auto integer = [&cell](long kind, qint64 value) {
        cell.Kind = static_cast<LONG>(kind);
        cell.Integer = value;
        return cell;
    };
    switch (v.vt) {
    case VT_EMPTY:
    case VT_NULL:
        cell.Kind = CellNull;
        return cell;
    case VT_BOOL:
        return integer(CellBoolean, v.boolVal != VARIANT_FALSE ? 1 : 0);
    case VT_I2:
        return integer(CellInteger, v.iVal);
    case VT_I4:
        return integer(CellInteger, v.lVal);
    case VT_I8:
        return integer(CellInteger, v.llVal);
    case VT_DATE:
        cell.Kind = CellDate;
        cell.Real = v.date;
        return cell;
    case VT_BSTR:
        storage = utf8FromUtf16(textOf(v.bstrVal));
        cell.Kind = CellText;
        cell.Length = static_cast<LONG>(storage.size());
        cell.Text = reinterpret_cast<const unsigned char*>(storage.data());
        return cell;
    default:
        break;
    }
    Variant number(v);
    check(number.changeType(VT_R8));
    cell.Kind = CellReal;
    cell.Real = number.dblVal;
    return cell;
}

} // namespace

QString toText(const Value& value)
{
    struct Visitor
    {
        QString operator()(std::monostate) const { return {}; }
        QString operator()(bool v) const { return v ? QStringLiteral("1") : QStringLiteral("0"); }
        QString operator()(qint16 v) const { return QString::number(v); }
        QString operator()(qint32 v) const { return QString::number(v); }
        QString operator()(qint64 v) const { return QString::number(v); }
        QString operator()(double v) const { return QString::number(v, 'g', 15); }
        QString operator()(const QDateTime& v) const
        {
            return v.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
        }
        QString operator()(const QString& v) const { return v; }
    };
    return std::visit(Visitor{}, value);
}

qint32 toInteger(const Value& value)
{
    struct Visitor
    {
        double operator()(std::monostate) const { throw Error(RunTime::TypeMismatch); }
        double operator()(bool v) const { return v ? -1 : 0; }
        double operator()(qint16 v) const { return v; }
        double operator()(qint32 v) const { return v; }
        double operator()(qint64 v) const { return static_cast<double>(v); }
        double operator()(double v) const { return std::nearbyint(v); }
        double operator()(const QDateTime&) const { throw Error(RunTime::TypeMismatch); }
        double operator()(const QString& v) const
        {
            bool ok = false;
            const double number = v.trimmed().toDouble(&ok);
            if (!ok) {
                throw Error(RunTime::TypeMismatch);
            }
            return std::nearbyint(number);
        }
    };
    const double number = std::visit(Visitor{}, value);
    if (!(number >= std::numeric_limits<qint32>::min() && number <= std::numeric_limits<qint32>::max())) {
        throw Error(RunTime::Overflow);
    }
    return static_cast<qint32>(number);
}

qint32 keyAfter(qint32 largest)
{
    if (largest == std::numeric_limits<qint32>::max()) {
        throw Error(RunTime::Overflow);
    }
    return largest + 1;
}

// ------------------------------------------------------------------------------------------- Recordset

Recordset::Recordset(ComPtr<IRecordset> rows, Ownership ownership)
    : m_rows(std::move(rows))
    , m_ownership(ownership)
{}

Recordset::~Recordset()
{
    if (m_rows && m_ownership == Ownership::Own) {
        m_rows->Close();
    }
}

Recordset& Recordset::operator=(Recordset&& other) noexcept
{
    std::swap(m_rows, other.m_rows);
    std::swap(m_ownership, other.m_ownership);
    return *this;
}

IRecordset* Recordset::opened() const
{
    constexpr long ObjectClosed = 3704;
    if (!m_rows) {
        throw Error(ObjectClosed, QStringLiteral("Operation is not allowed when the object is closed."));
    }
    return m_rows.get();
}

bool Recordset::eof() const
{
    return calls::value<VARIANT_BOOL>([&](VARIANT_BOOL* result) { return opened()->get_Eof(result); }) !=
           VARIANT_FALSE;
}

void Recordset::moveNext()
{
    check(opened()->MoveNext());
}

int Recordset::fieldCount() const
{
    return static_cast<int>(
        checkedCount(calls::value<LONG>([&](LONG* result) { return opened()->get_FieldCount(result); })));
}

QString Recordset::fieldName(int index) const
{
    return calls::text([&](BSTR* result) { return opened()->FieldName(index, result); });
}

Value Recordset::value(const QString& field) const
{
    Variant result;
    check(opened()->get_Value(fieldVariant(field), result.put()));
    return fromVariant(result);
}

QString Recordset::text(const QString& field, const QString& fallback) const
{
    const Value found = value(field);
    return std::holds_alternative<std::monostate>(found) ? fallback : toText(found);
}

qint32 Recordset::integer(const QString& field, qint32 fallback) const
{
    const Value found = value(field);
    return std::holds_alternative<std::monostate>(found) ? fallback : toInteger(found);
}

bool Recordset::isNull(const QString& field) const
{
    return std::holds_alternative<std::monostate>(value(field));
}

void Recordset::addNew()
{
    check(opened()->AddNew());
}

void Recordset::set(const QString& field, const Value& value)
{
    check(opened()->put_Value(fieldVariant(field), std::visit(ToVariant{}, value)));
}

void Recordset::update()
{
    check(opened()->Update());
}

void Recordset::close()
{
    check(opened()->Close());
    m_rows.reset();
}

void Recordset::readRows(const std::function<void(long, const ZulCell*)>& taker)
{
    if (const ComPtr<IRowReader> reader = queryFor<IRowReader>(opened())) {
        const auto sink = makeCom<FunctionSink>(taker);
        const HRESULT result = reader->ReadRows(sink.get());
        sink->rethrow();
        check(result);
        return;
    }
    const auto count = static_cast<std::size_t>(fieldCount());
    std::vector<ZulCell> cells(count);
    std::vector<std::string> texts(count);
    std::vector<Variant> values(count);
    for (; !eof(); moveNext()) {
        for (std::size_t column = 0; column < count; ++column) {
            const Variant index = Variant::fromLong(static_cast<LONG>(column));
            check(opened()->get_Value(index, values[column].put()));
            cells[column] = toCell(values[column], texts[column]);
        }
        taker(static_cast<long>(count), cells.data());
    }
}

// ------------------------------------------------------------------------------------------ Connection

Connection::Connection(ComPtr<IConnection> connection)
    : m_connection(std::move(connection))
{}

QString Connection::connectionString() const
{
    return calls::text([&](BSTR* result) { return m_connection->get_ConnectionString(result); });
}

long Connection::execute(const QString& sql) const
{
    const Bstr text = bstr(sql);
    return calls::value<LONG>([&](LONG* result) { return m_connection->Execute(text.get(), result); });
}

Recordset Connection::open(const QString& source, Cursor cursor, Lock lock) const
{
    const Bstr text = bstr(source);
    ComPtr<IRecordset> rows;
    check(m_connection->OpenRecordset(text.get(), static_cast<CursorKind>(cursor),
                                      static_cast<LockKind>(lock), rows.put()));
    if (!rows) {
        throw Error(RunTime::ObjectNotSet);
    }
    return Recordset(std::move(rows));
}

void Connection::begin() const
{
    check(m_connection->BeginTrans());
}

void Connection::commit() const
{
    check(m_connection->CommitTrans());
}

void Connection::rollback() const
{
    check(m_connection->RollbackTrans());
}

} // namespace zul::ado
