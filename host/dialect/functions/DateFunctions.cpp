#include "host/dialect/functions/DateFunctions.h"

#include "host/dialect/base/DateTime.h"

#include <charconv>
#include <limits>

namespace zul::dialect {

namespace {

using std::int64_t;

DatePart partArgument(const Argument& argument)
{
    const TextView name(argument);
    const auto part = datePartNamed(*name);
    if (!part) {
        throw FunctionError("'" + std::string(*name) + "' is not a recognized date part.");
    }
    return *part;
}

// Year, month or day of a date; the common case without reading the rest of the text.
Result digitsOf(Arguments arguments, DatePart part, std::size_t from, std::size_t count)
{
    if (isNull(arguments[0])) {
        return {};
    }
    const auto* text = std::get_if<std::string_view>(&arguments[0]);
    if (text != nullptr && text->size() == 23 && (*text)[4] == '-' && (*text)[7] == '-') {
        int number = 0;
        const char* end = text->data() + from + count;
        const auto read = std::from_chars(text->data() + from, end, number);
        if (read.ec == std::errc() && read.ptr == end && number > 0) {
            return int64_t{number};
        }
    }
    return partOf(part, momentOf(arguments[0]));
}

Result year(Arguments arguments)
{
    return digitsOf(arguments, DatePart::Year, 0, 4);
}

Result month(Arguments arguments)
{
    return digitsOf(arguments, DatePart::Month, 5, 2);
}

Result day(Arguments arguments)
{
    return digitsOf(arguments, DatePart::Day, 8, 2);
}

// The same of a column of dates, in which what is no date counts as NULL.
template <Result (*Call)(Arguments)>
Result orNull(Arguments arguments)
{
    try {
        return Call(arguments);
    } catch (const FunctionError&) {
        return {};
    }
}

Result moment(Arguments arguments)
{
    return isNull(arguments[0]) ? Result{} : Result(formatMoment(momentOf(arguments[0])));
}

Result dateDiff(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const int64_t number =
        dateDifference(partArgument(arguments[0]), momentOf(arguments[1]), momentOf(arguments[2]));
    if (number > std::numeric_limits<std::int32_t>::max() ||
        number < std::numeric_limits<std::int32_t>::min()) {
        throw FunctionError(
            "The datediff function resulted in an overflow. Try to use datediff with a less precise "
            "datepart.");
    }
    return number;
}

Result dateAdd(Arguments arguments)
{
    if (anyNull(arguments)) {
        return {};
    }
    const auto sum = dateSum(partArgument(arguments[0]), wholeOf(arguments[1]), momentOf(arguments[2]));
    if (!sum) {
        throw FunctionError("Adding a value to a 'datetime' column caused an overflow.");
    }
    return formatMoment(*sum);
}

// A date plus a number of days, as '+' between the two means.
Result datePlus(Arguments arguments)
{
    return anyNull(arguments) ? Result{} : plusDays(momentOf(arguments[0]), realOf(arguments[1]));
}

Result datePart(Arguments arguments)
{
    return anyNull(arguments) ? Result{} : Result(partOf(partArgument(arguments[0]), momentOf(arguments[1])));
}

Result isDate(Arguments arguments)
{
    const auto* text = std::get_if<std::string_view>(&arguments[0]);
    if (text == nullptr || text->find_first_not_of(' ') == std::string_view::npos) {
        return int64_t{0};
    }
    return int64_t{parseMoment(*text) ? 1 : 0};
}

constexpr Function table[] = {
    {"zul_year", 1, 1, year},
    {"zul_month", 1, 1, month},
    {"zul_day", 1, 1, day},
    {"zul_datediff", 3, 3, dateDiff},
    {"zul_dateadd", 3, 3, dateAdd},
    {"zul_dateplus", 2, 2, datePlus},
    {"zul_datepart", 2, 2, datePart},
    {"zul_isdate", 1, 1, isDate},
    {"zul_yearcell", 1, 1, orNull<year>},
    {"zul_monthcell", 1, 1, orNull<month>},
    {"zul_daycell", 1, 1, orNull<day>},
    {"zul_datecell", 1, 1, orNull<moment>},
};

} // namespace

std::span<const Function> dateFunctions()
{
    return table;
}

} // namespace zul::dialect
