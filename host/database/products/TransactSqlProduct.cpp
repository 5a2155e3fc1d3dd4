// Transact-SQL's servers.
#include "host/database/Counters.h"
#include "host/database/Engine.h"
#include "host/database/Names.h"
#include "host/database/Schema.h"
#include "host/database/products/Product.h"
#include "host/dialect/writer/Sql.h"

#include <algorithm>
#include <array>

namespace zul::host {

namespace {

struct KnownNumber
{
    int number;
    ErrorCode code;
};

constexpr std::array<KnownNumber, 20> knownNumbers{{
    {208, ErrorCode::NoTable},    {2627, ErrorCode::Integrity}, {2601, ErrorCode::Integrity},
    {515, ErrorCode::Integrity},  {547, ErrorCode::Integrity},  {8152, ErrorCode::BadValue},
    {2628, ErrorCode::BadValue},  {245, ErrorCode::BadValue},   {241, ErrorCode::BadValue},
    {242, ErrorCode::BadValue},   {8115, ErrorCode::BadValue},  {8114, ErrorCode::BadValue},
    {220, ErrorCode::BadValue},   {2402, ErrorCode::BadValue},  {229, ErrorCode::Permission},
    {230, ErrorCode::Permission}, {262, ErrorCode::Permission}, {3906, ErrorCode::Permission},
    {1205, ErrorCode::Busy},      {1222, ErrorCode::Busy},
}};

class TransactSqlProduct final : public Product
{
public:
    std::string quotedName(std::string_view name) const override { return enclosed(name, '[', ']'); }

    // A datetime is finer than its milliseconds say, and long texts of the old kinds do not compare at all.
    std::string sameValue(const ColumnInfo& column) const override
    {
        const std::string name = quotedName(column.baseName);
        if (column.type == ColumnType::DateTime) {
            return name + " = CAST(? AS datetime)";
        }
        if (column.type == ColumnType::Text) {
            return "CAST(" + name + " AS nvarchar(max)) = CAST(? AS nvarchar(max))";
        }
        return Product::sameValue(column);
    }

    // The server's work on a list of rows grows faster than the list.
    std::size_t rowsPerInsert() const override { return 100; }

    TypeNames typeNames() const override { return {.longText = "nvarchar(max)"}; }

    bool createsIfMissing() const override { return false; }
    std::string_view nullMark() const override { return " NULL"; }

    std::vector<std::string> keyDefaults() const override
    {
        return {"CREATE FUNCTION dbo.zulProssimaImpostazione() RETURNS int AS BEGIN RETURN (SELECT"
                " ISNULL(MAX(idImpostazione), 0) + 1 FROM dbo.tabImpostazioni) END",
                "ALTER TABLE tabImpostazioni ADD CONSTRAINT DF_tabImpostazioni_id DEFAULT"
                " dbo.zulProssimaImpostazione() FOR idImpostazione"};
    }

    // By the server's own rules for names, and without the catalogue, which compatible servers have in part only.
    std::string tableQuery(std::string_view name) const override
    {
        return "SELECT OBJECT_ID(N" + dialect::quotedText(name) + ", N'U')";
    }

    // The driver's catalogue asks a procedure that compatible servers may lack; the views are in the language's
    // standard.
    std::string keyQuery(std::string_view table) const override
    {
        return "SELECT k.COLUMN_NAME FROM INFORMATION_SCHEMA.TABLE_CONSTRAINTS c INNER JOIN"
               " INFORMATION_SCHEMA.KEY_COLUMN_USAGE k ON k.CONSTRAINT_NAME = c.CONSTRAINT_NAME AND"
               " k.TABLE_NAME = c.TABLE_NAME WHERE c.CONSTRAINT_TYPE = 'PRIMARY KEY' AND c.TABLE_NAME = N" +
               dialect::quotedText(bareName(table)) + " ORDER BY k.ORDINAL_POSITION";
    }

    std::string raiseCounter(std::string_view table, std::string_view key) const override
    {
        return raiseCounterText(table, key, " OUTPUT inserted.Ultimo", whichCounter);
    }

    // XACT_ABORT holds for this text alone: whatever goes wrong in it, also that the client is gone, undoes the whole.
    std::string addRow(const NewRow& row) const override
    {
        const std::string which = " WHERE Tabella = " + literal(bareName(row.table)) +
                                  " AND Chiave = " + literal(bareName(row.key));
        const std::string table(row.table);
        std::string columns(row.key);
        std::string marks;
        for (const std::string_view column : row.columns) {
            columns += ", ";
            columns += column;
            marks += ", ?";
        }
        return "SET XACT_ABORT ON; BEGIN TRANSACTION; " + raiseCounterText(row.table, row.key, {}, which) +
               "; INSERT INTO " + table + " (" + columns + ") SELECT Ultimo" + marks + " FROM tabContatori" +
               which + "; SELECT Ultimo FROM tabContatori" + which + "; COMMIT TRANSACTION";
    }

    // The driver's own way begins the next transaction with each commit, and ends that with a further request.
    std::string_view beginStatement() const override { return "BEGIN TRANSACTION"; }
    std::string_view commitStatement() const override { return "COMMIT TRANSACTION"; }
    std::string_view rollbackStatement() const override { return "IF @@TRANCOUNT > 0 ROLLBACK TRANSACTION"; }
    std::string_view transactionQuery() const override { return "SELECT @@TRANCOUNT AS n"; }

    // The server's numbers come first: drivers put many of its errors under one state.
    std::optional<ErrorCode> errorCode(int number, std::string_view) const override
    {
        const auto* const known =
            std::find_if(knownNumbers.begin(), knownNumbers.end(),
                         [&](const KnownNumber& entry) { return entry.number == number; });
        return known != knownNumbers.end() ? std::optional(known->code) : std::nullopt;
    }

    // Wrong syntax, in the words of several versions; an option or a function that is not there.
    bool isUnknownClause(int number) const override
    {
        return number == 102 || number == 156 || number == 170 || number == 195;
    }

    bool goesOnAfterRefusal() const override { return true; }

    // A driver may cut long texts at 64 KB unless told otherwise.
    std::vector<std::string_view> settings() const override { return {"SET TEXTSIZE 2147483647"}; }

    // The server waits without end for what another program has locked; the host's only thread must not. A compatible
    // server may not know it.
    std::vector<std::string_view> optionalSettings() const override { return {"SET LOCK_TIMEOUT 30000"}; }

    bool limitsSilence() const override { return true; }
    // It asks the server to call the statement off, and waits for an answer to that.
    int waitsForSilence() const override { return 2; }
    bool keepsPlans() const override { return true; }
    // Longer ones are of the "max" kind.
    std::optional<std::size_t> announcedTextSize() const override { return 4000; }

protected:
    std::string_view textMark() const override { return "N"; }

    // With hyphens the server reads day and month by the session's language.
    std::string momentText(double date) const override
    {
        std::string text = Product::momentText(date);
        text.erase(std::remove(text.begin(), text.end(), '-'), text.end());
        return text;
    }
};

} // namespace

const Product& transactSqlProduct()
{
    static const TransactSqlProduct product;
    return product;
}

} // namespace zul::host
