// The host's database connection as the component likes to use it: values and exceptions instead of VARIANTs
// and HRESULTs. Every failure is an Error with the provider's number and text.
#pragma once

#include "automation/ComPtr.h"

#include <Zul_SQL.h>

#include <QDateTime>
#include <QString>
#include <functional>
#include <variant>

namespace zul::ado {

enum class Cursor
{
    ForwardOnly = CursorForwardOnly,
    Keyset = CursorKeyset,
    Dynamic = CursorDynamic,
    Static = CursorStatic,
};

enum class Lock
{
    ReadOnly = LockReadOnly,
    Pessimistic = LockPessimistic,
    Optimistic = LockOptimistic,
};

/// A column's value: monostate is NULL. Decimals of the database come as double.
using Value = std::variant<std::monostate, bool, qint16, qint32, qint64, double, QDateTime, QString>;

/// A day as a value: its midnight. Held in UTC, because a local day may lack its midnight.
inline Value dayValue(QDate day)
{
    return QDateTime(day, QTime(0, 0), Qt::UTC);
}

// A truth has two faces, and both are meant: as a text it is "1", as the database's bit shows itself and as
// settings keep a check box; as a number it is -1, as automation has it. Readers of numbers ask whether it is 0.

/// A value as text: whole numbers in decimal, true as "1", dates as "yyyy-MM-dd HH:mm:ss", NULL as a null QString.
QString toText(const Value& value);
/// A value as a 32-bit number, true as -1. @throws Error 13 when it is no number, 6 when it is too large; NULL
/// is 13.
qint32 toInteger(const Value& value);

/// The key that follows the largest one. @throws Error 6 when the keys of 32 bits are used up
qint32 keyAfter(qint32 largest);

/// An open row set. Moves with its owner and closes itself at the end of its life, unless it belongs to
/// somebody else. After close(), and where it was moved away from, every member throws Error 3704.
class Recordset
{
public:
    enum class Ownership
    {
        Own,
        Borrowed ///< the one who opened it closes it
    };

    explicit Recordset(ComPtr<IRecordset> rows, Ownership ownership = Ownership::Own);
    ~Recordset();
    Recordset(Recordset&& other) noexcept = default;
    Recordset& operator=(Recordset&& other) noexcept;
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    bool eof() const;
    void moveNext();
    /// @throws Error 9 for a number that no row set has
    int fieldCount() const;
    QString fieldName(int index) const;

    Value value(const QString& field) const;
    /// The text of a field; NULL as the fallback.
    QString text(const QString& field, const QString& fallback = QStringLiteral("")) const;
    /// The number of a field; NULL as the fallback.
    qint32 integer(const QString& field, qint32 fallback) const;
    bool isNull(const QString& field) const;

    void addNew();
    void set(const QString& field, const Value& value);
    void update();
    void close();

    /// Hands every remaining row to the taker: on the fast path where the row set has one, else field by
    /// field. The cells hold good until the taker returns. A row that is not as the contract has it ends the reading.
    /// @throws Error 13 for a cell of another kind, or a text without characters; 9 for a wrong count of cells; 91 for a
    ///         row without cells
    void readRows(const std::function<void(long count, const ZulCell* cells)>& taker);

    IRecordset* object() const { return m_rows.get(); }

private:
    IRecordset* opened() const; ///< never null

    ComPtr<IRecordset> m_rows; ///< null once closed
    Ownership m_ownership;
};

/// The connection that runs every statement. A copy refers to the same connection.
class Connection
{
public:
    explicit Connection(ComPtr<IConnection> connection);

    QString connectionString() const;
    /// @return the number of rows touched
    long execute(const QString& sql) const;
    /// @param source a SELECT statement or the bare name of a table
    Recordset open(const QString& source, Cursor cursor, Lock lock) const;
    void begin() const;
    void commit() const;
    void rollback() const;

private:
    ComPtr<IConnection> m_connection;
};

} // namespace zul::ado
