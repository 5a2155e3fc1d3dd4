#include "host/database/odbc/OdbcParameters.h"

#include "base/AutomationDate.h"

#include <algorithm>
#include <string>

namespace zul::host {

namespace {

// Beyond it columns and parameters are of the kinds for long texts.
constexpr SQLULEN longestPlainText = 4000;

// UTF-16 units of a UTF-8 text, which is how the server counts.
SQLULEN unitsOf(std::string_view text)
{
    SQLULEN units = 0;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0U) != 0x80U) {
            units += byte >= 0xF0U ? 2 : 1;
        }
    }
    return units;
}

SQL_TIMESTAMP_STRUCT timestampOf(double date)
{
    const auto [days, milliseconds] = splitDateInRange(date);
    const CivilDay day = civilFromDays(days);
    SQL_TIMESTAMP_STRUCT moment{};
    moment.year = static_cast<SQLSMALLINT>(day.year);
    moment.month = static_cast<SQLUSMALLINT>(day.month);
    moment.day = static_cast<SQLUSMALLINT>(day.day);
    moment.hour = static_cast<SQLUSMALLINT>(milliseconds / 3'600'000);
    moment.minute = static_cast<SQLUSMALLINT>(milliseconds / 60'000 % 60);
    moment.second = static_cast<SQLUSMALLINT>(milliseconds / 1000 % 60);
    moment.fraction = static_cast<SQLUINTEGER>(milliseconds % 1000) * 1'000'000U;
    return moment;
}

struct BindParameter
{
    SQLHSTMT statement;
    SQLUSMALLINT index;
    BoundParameter& bound;
    std::optional<SQLULEN> textSize; // with which every short text is announced

    SQLRETURN bind(SQLSMALLINT cType, SQLSMALLINT sqlType, SQLULEN size, SQLSMALLINT digits, void* data,
                   SQLLEN length)
    {
        bound.length = length;
        return SQLBindParameter(statement, index, SQL_PARAM_INPUT, cType, sqlType, size, digits, data, length,
                                &bound.length);
    }

    SQLRETURN operator()(std::monostate)
    {
        // Where sizes matter a NULL is announced as a text is.
        const SQLRETURN code =
            bind(SQL_C_CHAR, textSize ? SQL_WVARCHAR : SQL_VARCHAR, textSize.value_or(1), 0, &bound.flag, 1);
        bound.length = SQL_NULL_DATA;
        return code;
    }
    SQLRETURN operator()(bool value)
    {
        bound.flag = value ? 1 : 0;
        return bind(SQL_C_BIT, SQL_BIT, 1, 0, &bound.flag, 1);
    }
    SQLRETURN operator()(std::int64_t value)
    {
        bound.whole = value;
        const bool small = value >= INT32_MIN && value <= INT32_MAX;
        return bind(SQL_C_SBIGINT, small ? SQL_INTEGER : SQL_BIGINT, small ? 10 : 19, 0, &bound.whole, 0);
    }
    SQLRETURN operator()(double value)
    {
        bound.number = value;
        return bind(SQL_C_DOUBLE, SQL_DOUBLE, 15, 0, &bound.number, 0);
    }
    SQLRETURN operator()(const std::string& value)
    {
        SQLULEN units = std::max<SQLULEN>(unitsOf(value), 1);
        const bool isLong = units > longestPlainText;
        // One size for all, or the server makes a plan for every length that comes along.
        if (textSize && !isLong) {
            units = *textSize;
        }
        return bind(SQL_C_CHAR, isLong ? SQL_WLONGVARCHAR : SQL_WVARCHAR, units, 0,
                    const_cast<char*>(value.data()), static_cast<SQLLEN>(value.size()));
    }
    SQLRETURN operator()(const DateValue& value)
    {
        bound.moment = timestampOf(value.days);
        return bind(SQL_C_TYPE_TIMESTAMP, SQL_TYPE_TIMESTAMP, 23, 3, &bound.moment,
                    static_cast<SQLLEN>(sizeof bound.moment));
    }
    SQLRETURN operator()(const DecimalValue& value)
    {
        const std::size_t dot = value.text.find('.');
        const auto digits = static_cast<SQLULEN>(
            std::count_if(value.text.begin(), value.text.end(), [](char c) { return c >= '0' && c <= '9'; }));
        const auto scale =
            static_cast<SQLSMALLINT>(dot == std::string::npos ? 0 : value.text.size() - dot - 1);
        return bind(SQL_C_CHAR, SQL_DECIMAL, std::min<SQLULEN>(std::max<SQLULEN>(digits, 1), 38), scale,
                    const_cast<char*>(value.text.data()), static_cast<SQLLEN>(value.text.size()));
    }
};

} // namespace

SQLRETURN bindParameter(SQLHSTMT statement, SQLUSMALLINT index, const Value& value, BoundParameter& storage,
                        std::optional<SQLULEN> textSize)
{
    return std::visit(BindParameter{statement, index, storage, textSize}, value);
}

} // namespace zul::host
