#include "bench/Contents.h"

#include "host/database/sqlite/SqliteEngine.h"
#include "host/session/HostDatabase.h"

#include <array>
#include <stdexcept>

namespace zul::bench {

namespace {

constexpr std::array columns{"RagioneSociale1", "RagioneSociale2", "Paese",
                             "provincia",       "Telefono",        "Telefono2",
                             "email",           "MailCommerciale", "MailAmministrazione"};

// The text of a column as an expression. A number that hops about keeps the texts out of the order of the ids.
std::string expression(const std::string& column, const std::string& contents)
{
    const std::string own = "'" + column + " ' || (IdCliente * 7919 % 1000003) || ' ' || IdCliente";
    if (contents == "distinct") {
        return own;
    }
    if (contents == "same") {
        return "'" + column + "'";
    }
    if (contents == "long") {
        return own + " || substr(replace(hex(zeroblob(100)), '00', 'àe'), 1, 180)";
    }
    if (contents == "null") {
        return "NULL";
    }
    throw std::runtime_error("no such contents: " + contents);
}

} // namespace

void makeDatabase(const std::string& path, int customers, const std::string& contents)
{
    host::createDemo(path, customers);
    if (contents == "demo") {
        return;
    }
    host::SqliteEngine engine(path, host::SqliteDatabase::Mode::OpenExisting);
    std::string set;
    for (const char* column : columns) {
        set += (set.empty() ? "" : ", ") + std::string(column) + " = " + expression(column, contents);
    }
    engine.execute("UPDATE tabClienti SET " + set, host::Language::Native);
    engine.execute("VACUUM", host::Language::Native);
}

} // namespace zul::bench
