#pragma once
// Statements as the parser reads them: one type for each kind, joined in a variant, so that who handles
// statements handles every kind or does not compile. Tables and views come without server, database and schema.

#include "host/dialect/syntax/Ast.h"

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace zul::dialect {

struct SelectStatement
{
    QueryPtr query;
};

struct InsertStatement
{
    std::vector<Cte> ctes;
    std::string table;
    std::vector<std::string> columns; ///< none: all of them
    QueryPtr query;                   ///< the rows; null for DEFAULT VALUES
};

struct Assignment
{
    std::size_t offset = 0;
    std::string column;
    std::string op; ///< "=" or "+=" …
    ExprPtr value;
};

struct UpdateStatement
{
    std::vector<Cte> ctes;
    std::string table; ///< or an alias of 'from'
    std::vector<Assignment> assignments;
    std::vector<TableRefPtr> from;
    ExprPtr where;
};

struct DeleteStatement
{
    std::vector<Cte> ctes;
    std::string table; ///< or an alias of 'from'
    std::vector<TableRefPtr> from;
    ExprPtr where;
};

struct TruncateTable
{
    std::string table;
};

struct KeyColumn
{
    std::size_t offset = 0;
    std::string name;
    bool descending = false;
};

struct Reference
{
    std::string table;
    std::vector<std::string> columns; ///< none: the table's key
    std::string actions;              ///< " ON DELETE CASCADE" …
};

struct ColumnDefinition
{
    std::size_t offset = 0;
    std::string name;
    TypeName type;
    bool notNull = false;
    bool identity = false;
    bool primaryKey = false;
    bool unique = false;
    ExprPtr defaultValue;
    ExprPtr check;
    std::optional<Reference> references;
};

struct PrimaryKey
{
    std::size_t offset = 0;
    std::vector<KeyColumn> columns;
};

struct UniqueKey
{
    std::vector<KeyColumn> columns;
};

struct ForeignKey
{
    std::vector<std::string> columns;
    Reference reference;
};

struct Check
{
    ExprPtr condition;
};

using TableConstraint = std::variant<PrimaryKey, UniqueKey, ForeignKey, Check>;

struct CreateTable
{
    std::string table;
    std::vector<ColumnDefinition> columns; ///< at least one
    std::vector<TableConstraint> constraints;
};

struct DropTable
{
    std::string table;
    bool ifExists = false;
};

struct AddColumn
{
    std::string table;
    ColumnDefinition column;
};

struct DropColumn
{
    std::string table;
    std::string column;
};

struct CreateIndex
{
    std::string name;
    std::string table;
    std::vector<KeyColumn> columns;
    bool unique = false;
};

struct DropIndex
{
    std::string name;
    std::string table;
    bool ifExists = false;
};

struct CreateView
{
    std::string view;
    std::vector<std::string> columns;
    QueryPtr query;
};

struct DropView
{
    std::string view;
    bool ifExists = false;
};

struct BeginTransaction
{};

struct CommitTransaction
{};

struct RollbackTransaction
{};

using Statement =
    std::variant<SelectStatement, InsertStatement, UpdateStatement, DeleteStatement, TruncateTable,
                 CreateTable, DropTable, AddColumn, DropColumn, CreateIndex, DropIndex, CreateView, DropView,
                 BeginTransaction, CommitTransaction, RollbackTransaction>;

/// A statement, and where and how it stood in its batch.
struct ParsedStatement
{
    Statement statement;
    std::size_t offset = 0; ///< of its first byte in the text
    int parameters = 0;     ///< how many '?' it has
};

} // namespace zul::dialect
