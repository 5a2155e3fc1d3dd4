#pragma once
// All tables that the component and this host work with, in one list, from which the data definition of every
// engine is written.
//
// No column but the keys refuses NULL, and texts compare without regard to case by what the engine has for it
// (SQLite's NOCASE, the server's default collation), so that other programs can open the database.
#include "host/database/Engine.h"

#include <string>
#include <string_view>
#include <vector>

namespace zul::host {

struct ColumnDefinition
{
    enum class Kind
    {
        Integer,
        SmallInt,
        Boolean,
        Money,
        Real,
        Text,
        LongText,
        DateTime
    };

    std::string_view name;
    Kind kind = Kind::Integer;
    int length = 0; ///< characters of a Text
};

struct TableDefinition
{
    std::string_view name;
    std::vector<std::string_view> key; ///< columns of the primary key, which refuse NULL; may be empty
    std::vector<ColumnDefinition> columns;
    std::vector<std::string_view> indexes; ///< each the columns of one index, joined by ", "
};

/// Every table, the host's own bookkeeping (ids given, rows changed, app messages) included.
const std::vector<TableDefinition>& allTables();

/// tabContatori: the last id given for each table and key.
const TableDefinition& counterTable();
/// tabModificheRighe: the rows that the change tracker was told of.
const TableDefinition& changeTable();
/// appOutbox: the app messages that wait where no app service is configured.
const TableDefinition& outboxTable();

/// "CREATE TABLE …"; with `ifMissing` one that lets an existing table be.
std::string createTableStatement(const TableDefinition& table, const Product& product,
                                 bool ifMissing = false);

/// "CREATE INDEX …" for each index of the table.
std::vector<std::string> createIndexStatements(const TableDefinition& table);

/// Makes every table; the database must have none of them.
void createTables(Engine& engine);

/// Makes every index.
void createIndexes(Engine& engine);

/// Lets a server fill the id of a setting that is added without one; outside a transaction, since a server that
/// cannot do it may end one over it.
void addDefaults(Engine& engine);

} // namespace zul::host
