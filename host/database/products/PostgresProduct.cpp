// PostgreSQL.
#include "host/database/Counters.h"
#include "host/database/Names.h"
#include "host/database/Schema.h"
#include "host/database/products/Product.h"

namespace zul::host {

namespace {

class PostgresProduct final : public Product
{
public:
    std::string quotedName(std::string_view name) const override { return enclosed(name, '"', '"'); }

    TypeNames typeNames() const override
    {
        return {
            .boolean = "boolean", .real = "double precision", .text = "varchar", .dateTime = "timestamp(3)"};
    }

    // The row of a counter is locked from here to the end of the transaction, so that nobody else reads in between.
    std::string raiseCounter(std::string_view table, std::string_view key) const override
    {
        const std::string largest = largestId(table, key);
        return "INSERT INTO tabContatori (Tabella, Chiave, Ultimo) VALUES (?, ?, " + largest +
               " + 1) ON CONFLICT (Tabella, Chiave) DO UPDATE SET Ultimo = GREATEST(tabContatori.Ultimo, " +
               largest + ") + 1 RETURNING Ultimo";
    }

    std::optional<ErrorCode> errorCode(int, std::string_view) const override { return std::nullopt; }

protected:
    std::string_view truth(bool value) const override { return value ? "TRUE" : "FALSE"; }
};

} // namespace

const Product& postgresProduct()
{
    static const PostgresProduct product;
    return product;
}

} // namespace zul::host
