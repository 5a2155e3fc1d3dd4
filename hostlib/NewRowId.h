// The id of a row that is about to be added.
#pragma once

#include "hostlib/Ado.h"
#include "hostlib/Host.h"

#include <QString>
#include <optional>

namespace zul::hostlib {

/// Comes from the host's generator, which never gives one twice. A host without one gets the largest key plus 1
/// in a transaction that lasts until the row is written, and in which nobody else can read the same largest key:
/// two users never get one id.
///
///     NewRowId id(connection, table, key);
///     … add the row with id.value() …
///     id.written();
class NewRowId
{
public:
    /// @throws Error of the generator or of the database, 6 when the keys of 32 bits are used up, 91 without a
    ///         connection
    NewRowId(const SqlConnection& connection, const QString& table, const QString& key);
    /// Undoes the transaction, and with it the row, when the row was not said to be written.
    ~NewRowId();
    NewRowId(const NewRowId&) = delete;
    NewRowId& operator=(const NewRowId&) = delete;

    qint32 value() const { return m_value; }

    /// The row stands: it may be seen by others. @throws Error when it cannot be committed
    void written();

private:
    qint32 m_value = 0;
    std::optional<ado::Connection> m_transaction; ///< where one was begun, until it ends
};

} // namespace zul::hostlib
