#include "host/database/Counters.h"

namespace zul::host {

std::string largestId(std::string_view table, std::string_view key)
{
    std::string sql = "(SELECT COALESCE(MAX(";
    sql += key;
    sql += "), 0) FROM ";
    sql += table;
    return sql + ")";
}

std::string raiseCounterText(std::string_view table, std::string_view key, std::string_view clause,
                             std::string_view condition)
{
    const std::string largest = largestId(table, key);
    std::string sql = "UPDATE tabContatori SET Ultimo = CASE WHEN Ultimo < " + largest + " THEN " + largest +
                      " + 1 ELSE Ultimo + 1 END";
    sql += clause;
    sql += condition;
    return sql;
}

} // namespace zul::host
