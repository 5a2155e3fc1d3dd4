// SQLite, embedded or behind its ODBC driver.
#include "host/database/Counters.h"
#include "host/database/Names.h"
#include "host/database/Schema.h"
#include "host/database/products/Product.h"
#include "host/dialect/writer/Sql.h"

namespace zul::host {

namespace {

class SqliteProduct : public Product
{
public:
    // No double quotes: SQLite takes a double-quoted name that it does not know for a text.
    std::string quotedName(std::string_view name) const override { return dialect::quotedName(name); }

    // A schema name, "dbo." as a rule, means nothing here.
    std::string tableName(std::string_view asWritten) const override
    {
        return quotedName(bareName(asWritten));
    }

    TypeNames typeNames() const override
    {
        return {.integer = "INTEGER", .textCollation = " COLLATE NOCASE", .longText = "text COLLATE NOCASE"};
    }

    bool fillsKeys() const override { return true; }

    std::string tableQuery(std::string_view name) const override
    {
        return "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = " +
               dialect::quotedText(bareName(name)) + " COLLATE NOCASE";
    }

    std::string keyQuery(std::string_view table) const override
    {
        return "SELECT name FROM pragma_table_info(" + dialect::quotedText(bareName(table)) +
               ") WHERE pk > 0 ORDER BY pk";
    }

    std::string_view hiddenColumn() const override { return "rowid"; }

    // The ODBC driver runs a statement that writes and gives rows twice.
    std::string raiseCounter(std::string_view, std::string_view) const override { return {}; }

    std::optional<ErrorCode> errorCode(int, std::string_view text) const override
    {
        const auto says = [&](std::string_view part) { return text.find(part) != std::string_view::npos; };
        if (says("no such table")) {
            return ErrorCode::NoTable;
        }
        if (says("constraint failed")) {
            return ErrorCode::Integrity;
        }
        if (says("locked")) {
            return ErrorCode::Busy;
        }
        return std::nullopt;
    }

    bool goesOnAfterRefusal() const override { return true; }
    bool hidesDecimals() const override { return true; }
};

class EmbeddedSqliteProduct final : public SqliteProduct
{
public:
    // The dialect layer reads it.
    std::string nameInSource(std::string_view name) const override { return enclosed(name, '[', ']'); }

    // One statement, so that it is atomic on its own and within a transaction alike.
    std::string raiseCounter(std::string_view table, std::string_view key) const override
    {
        const std::string largest = largestId(tableName(table), quotedName(bareName(key)));
        return "INSERT INTO tabContatori(Tabella, Chiave, Ultimo) VALUES (?, ?, " + largest +
               " + 1) ON CONFLICT(Tabella, Chiave) DO UPDATE SET Ultimo = MAX(Ultimo, " + largest +
               ") + 1 RETURNING Ultimo";
    }
};

} // namespace

const Product& sqliteProduct()
{
    static const SqliteProduct product;
    return product;
}

const Product& embeddedSqliteProduct()
{
    static const EmbeddedSqliteProduct product;
    return product;
}

} // namespace zul::host
