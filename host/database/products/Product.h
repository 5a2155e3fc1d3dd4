#pragma once
// What differs from one database product to the next: one object for each of them. Who works on a database asks its
// product; nobody asks which product it is.
#include "host/database/EngineError.h"
#include "host/database/Value.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zul::host {

struct ColumnDefinition;
struct NewRow;

/// A product's language and habits, the same however one connects to it. Objects of it have no state and live as long
/// as the program.
class Product
{
public:
    virtual ~Product() = default;
    Product(const Product&) = delete;
    Product& operator=(const Product&) = delete;

    // The words of a statement.

    /// A column's name as it stands in a native statement.
    virtual std::string quotedName(std::string_view name) const = 0;
    /// The same in a statement of the component's.
    virtual std::string nameInSource(std::string_view name) const { return quotedName(name); }
    /// A table's name, as it stands in the component's statement, as it stands in a native one.
    virtual std::string tableName(std::string_view asWritten) const { return std::string(asWritten); }
    /// A value as it stands in a statement.
    std::string literal(const Value& value) const;
    /// The condition that a column still holds what was read from it and is given as the parameter "?".
    virtual std::string sameValue(const ColumnInfo& column) const;
    /// How many rows one INSERT takes without getting slow.
    virtual std::size_t rowsPerInsert() const { return 500; }

    // Data definition.

    /// The type of a column, with its length where it has one.
    std::string typeText(const ColumnDefinition& column) const;
    /// Whether CREATE TABLE knows IF NOT EXISTS.
    virtual bool createsIfMissing() const { return true; }
    /// What stands behind the type of a column that takes NULL.
    virtual std::string_view nullMark() const { return {}; }
    /// Whether a whole number that is a table's key is filled when a row comes without it.
    virtual bool fillsKeys() const { return false; }
    /// Statements that let the database fill the id of a setting, where fillsKeys() does not; a server may refuse them.
    virtual std::vector<std::string> keyDefaults() const { return {}; }

    // What the database knows of itself, where the driver's catalogue does not tell, or is not to be asked.

    /// A query whose first value is there and not NULL when there is a table of that name; empty: the catalogue tells.
    virtual std::string tableQuery(std::string_view) const { return {}; }
    /// A query for the columns of a table's primary key, in their order; empty: there is none.
    virtual std::string keyQuery(std::string_view) const { return {}; }
    /// A column of every table that has no key; "*" leaves it out, and it tells the rows apart. Empty: there is none.
    virtual std::string_view hiddenColumn() const { return {}; }

    // Ids.

    /// One statement that raises the counter of a table's key beyond what stands in the table and gives its new value;
    /// no row where the table of the counters has none for it. Its parameters are the names of table and key, without
    /// schema and quotes. Empty: it takes more than one statement.
    virtual std::string raiseCounter(std::string_view table, std::string_view key) const = 0;

    /// One text that raises the counter and inserts the row with its new value, both or neither, and gives that value; no
    /// row where the table of the counters has none for it. Its parameters are the row's values. Empty: it takes more
    /// than one text.
    virtual std::string addRow(const NewRow&) const { return {}; }

    // Transactions: statements for them; empty where the driver has a way of its own that costs no more.

    virtual std::string_view beginStatement() const { return {}; }
    virtual std::string_view commitStatement() const { return {}; }
    /// Undoes the transaction if there is one.
    virtual std::string_view rollbackStatement() const { return {}; }
    /// A query for the number of open transactions, where the server may end one by itself; empty: it does not.
    virtual std::string_view transactionQuery() const { return {}; }

    // Manners of a connection.

    /// What an error number or text of the product's own means; nothing: what the driver's state says.
    virtual std::optional<ErrorCode> errorCode(int number, std::string_view text) const = 0;
    /// Whether the number says that the server does not know a clause of the statement.
    virtual bool isUnknownClause(int) const { return false; }
    /// Whether a transaction in which a statement was refused may go on.
    virtual bool goesOnAfterRefusal() const { return false; }
    /// Statements for a new connection: those it cannot do without, and those that it does its best with.
    virtual std::vector<std::string_view> settings() const { return {}; }
    virtual std::vector<std::string_view> optionalSettings() const { return {}; }
    /// Whether the driver's time limit for a statement tells a server that is gone from one that works.
    virtual bool limitsSilence() const { return false; }
    /// How often the driver waits for that time before it gives up.
    virtual int waitsForSilence() const { return 1; }
    /// Whether a statement is best sent with its parameters in one call each time: the server keeps the plan by itself,
    /// while the driver would prepare it anew whenever a parameter is bound.
    virtual bool keepsPlans() const { return false; }
    /// The size, in UTF-16 units, with which every short text and every NULL is announced, since the server knows a
    /// statement again by the types of its parameters; nothing where sizes do not matter.
    virtual std::optional<std::size_t> announcedTextSize() const { return std::nullopt; }
    /// Whether the driver calls decimals texts, so that the column's declaration has to tell them.
    virtual bool hidesDecimals() const { return false; }

protected:
    Product() = default;

    /// The names of the column types, where they are not Transact-SQL's.
    struct TypeNames
    {
        std::string_view integer = "int";
        std::string_view boolean = "bit";
        std::string_view real = "float";
        std::string_view text = "nvarchar"; ///< its length stands behind it
        std::string_view textCollation = {};
        std::string_view longText = "text";
        std::string_view dateTime = "datetime";
    };
    virtual TypeNames typeNames() const = 0;
    virtual std::string_view truth(bool value) const { return value ? "1" : "0"; }
    virtual std::string_view textMark() const { return {}; }
    virtual std::string momentText(double date) const;
};

/// SQLite behind its ODBC driver, and as a part of this process.
const Product& sqliteProduct();
const Product& embeddedSqliteProduct();
const Product& transactSqlProduct();
const Product& postgresProduct();

/// The product that a server calls itself; Transact-SQL's for a name that nobody knows.
const Product& productNamed(std::string_view name);

} // namespace zul::host
