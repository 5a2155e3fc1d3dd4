// How each function of the server is written: natively where the engine's own does the same, else as a call of
// an application function.
#include "host/dialect/base/DateTime.h"
#include "host/dialect/base/Words.h"
#include "host/dialect/writer/ExpressionWriter.h"

#include <charconv>
#include <optional>

namespace zul::dialect {

namespace {

constexpr std::size_t many = 127; // the engine's limit of arguments

// The value of an integer literal that fits comfortably.
std::optional<int> smallLiteral(const Expr& expr)
{
    int number = 0;
    if (expr.kind != ExprKind::Integer) {
        return std::nullopt;
    }
    const auto end = std::from_chars(expr.text.data(), expr.text.data() + expr.text.size(), number);
    return end.ec == std::errc() ? std::optional(number) : std::nullopt;
}

} // namespace

const ExpressionWriter::Builtin* ExpressionWriter::builtinNamed(std::string_view name)
{
    using W = ExpressionWriter;
    static constexpr Builtin table[] = {
        // aggregates
        {"COUNT", 1, 1, &W::count},
        {"SUM", 1, 1, &W::aggregate},
        {"MIN", 1, 1, &W::aggregate},
        {"MAX", 1, 1, &W::aggregate},
        {"AVG", 1, 1, &W::average},
        // choice
        {"ISNULL", 2, 2, &W::isNull},
        {"COALESCE", 2, many, &W::coalesce},
        {"NULLIF", 2, 2, &W::nullIf},
        {"IIF", 3, 3, &W::iif},
        // texts
        {"LEN", 1, 1, &W::length},
        {"LEFT", 2, 2, &W::left},
        {"RIGHT", 2, 2, &W::right},
        {"SUBSTRING", 3, 3, &W::substring},
        {"LTRIM", 1, 1, &W::trim},
        {"RTRIM", 1, 1, &W::trim},
        {"TRIM", 1, 1, &W::trim},
        {"UPPER", 1, 1, &W::textFunction},
        {"LOWER", 1, 1, &W::textFunction},
        {"REPLACE", 3, 3, &W::textFunction},
        {"CHARINDEX", 2, 3, &W::textFunction},
        {"PATINDEX", 2, 2, &W::textFunction},
        {"REPLICATE", 2, 2, &W::textFunction},
        {"ASCII", 1, 1, &W::textFunction},
        {"UNICODE", 1, 1, &W::textFunction},
        {"SPACE", 1, 1, &W::space},
        {"CHAR", 1, 1, &W::codeFunction},
        {"NCHAR", 1, 1, &W::codeFunction},
        {"STR", 1, 3, &W::codeFunction},
        {"CONCAT", 2, many, &W::concat},
        // numbers
        {"ABS", 1, 1, &W::absolute},
        {"ROUND", 2, 3, &W::numberFunction},
        {"FLOOR", 1, 1, &W::numberFunction},
        {"CEILING", 1, 1, &W::numberFunction},
        // dates
        {"GETDATE", 0, 0, &W::now},
        {"CURRENT_TIMESTAMP", 0, 0, &W::now},
        {"DATEDIFF", 3, 3, &W::dateDifference},
        {"DATEADD", 3, 3, &W::dateSum},
        {"DATEPART", 2, 2, &W::datePart},
        {"YEAR", 1, 1, &W::yearOrSo},
        {"MONTH", 1, 1, &W::yearOrSo},
        {"DAY", 1, 1, &W::yearOrSo},
        {"ISDATE", 1, 1, &W::test},
        {"ISNUMERIC", 1, 1, &W::test},
        // the engine
        {"SCOPE_IDENTITY", 0, 0, &W::engineState},
        {"@@IDENTITY", 0, 0, &W::engineState},
        {"@@ROWCOUNT", 0, 0, &W::engineState},
    };
    for (const Builtin& builtin : table) {
        if (builtin.name == name) {
            return &builtin;
        }
    }
    return nullptr;
}

Piece ExpressionWriter::call(const Expr& expr)
{
    const Builtin* builtin = builtinNamed(expr.text);
    if (builtin == nullptr) {
        fail(expr, "the function '" + expr.text + "' is not known");
    }
    const std::size_t given = expr.args.size();
    if (given < builtin->least || given > builtin->most) {
        std::string expected = std::to_string(builtin->least);
        if (builtin->most == many) {
            expected = "at least " + expected;
        } else if (builtin->most != builtin->least) {
            expected += " to " + std::to_string(builtin->most);
        }
        fail(expr, "the function " + expr.text + " has " + std::to_string(given) + " arguments: expected " +
                       expected);
    }
    const bool aggregates = builtin->write == &ExpressionWriter::count ||
                            builtin->write == &ExpressionWriter::aggregate ||
                            builtin->write == &ExpressionWriter::average;
    if (expr.distinct && !aggregates) {
        fail(expr, "DISTINCT cannot stand in " + expr.text);
    }
    return (this->*builtin->write)(expr);
}

Piece ExpressionWriter::callOf(const std::string& function, const std::vector<std::string>& arguments,
                               ColumnType type) const
{
    Piece piece{.sql = function + "(", .type = type};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        piece.sql += (i == 0 ? "" : ", ") + arguments[i];
    }
    piece.sql += ")";
    return piece;
}

// --- aggregates -------------------------------------------------------------------------------------------

Piece ExpressionWriter::count(const Expr& expr)
{
    std::string argument = "*";
    if (expr.args.front()->kind != ExprKind::Star) {
        const Piece value = write(*expr.args.front());
        argument = expr.distinct ? "DISTINCT " + collated(value).sql : value.sql;
    }
    return {.sql = "COUNT(" + argument + ")", .type = ColumnType::Integer};
}

Piece ExpressionWriter::aggregate(const Expr& expr)
{
    Piece value = write(*expr.args.front());
    const ColumnType type = value.type;
    if (expr.text == "SUM" && isMoment(type)) {
        fail(expr, "dates cannot be summed");
    }
    value = expr.text == "SUM"         ? asNumber(std::move(value))
            : type == ColumnType::Text ? collated(std::move(value))
                                       : value;
    return {.sql = expr.text + "(" + (expr.distinct ? "DISTINCT " : "") + value.sql + ")", .type = type};
}

// Of whole numbers the average is a whole number.
Piece ExpressionWriter::average(const Expr& expr)
{
    const Piece value = asNumber(write(*expr.args.front()));
    const bool real = value.type == ColumnType::Real || value.type == ColumnType::Decimal;
    return {.sql = std::string(real ? "AVG(" : "zul_avg(") + (expr.distinct ? "DISTINCT " : "") + value.sql +
                   ")",
            .type = value.type};
}

// --- choice -----------------------------------------------------------------------------------------------

// The result is of the first argument's type. A text as replacement tells that an unknown first one is a text.
Piece ExpressionWriter::isNull(const Expr& expr)
{
    const Piece value = write(*expr.args[0]);
    Piece other = write(*expr.args[1]);
    ColumnType type = value.type;
    if (type == ColumnType::Unknown && (other.type == ColumnType::Text || isMoment(other.type))) {
        type = other.type;
    } else if (type != ColumnType::Unknown) {
        other = assigned(std::move(other), type);
    }
    return callOf("IFNULL", {value.sql, other.sql}, type);
}

Piece ExpressionWriter::coalesce(const Expr& expr)
{
    std::vector<Piece> values;
    ColumnType type = ColumnType::Unknown;
    bool typed = false;
    bool open = false;
    for (const ExprPtr& argument : expr.args) {
        values.push_back(write(*argument));
        const Piece& value = values.back();
        if (value.isNull()) {
            continue;
        }
        open = open || (value.type == ColumnType::Unknown && value.literal == nullptr);
        if (value.type == ColumnType::Unknown) {
            continue;
        }
        type = typed ? commonType(type, value.type) : value.type;
        typed = true;
    }
    if (open && type != ColumnType::Text && !isMoment(type)) {
        type = ColumnType::Unknown;
    }
    std::vector<std::string> arguments;
    arguments.reserve(values.size());
    for (Piece& value : values) {
        arguments.push_back(type == ColumnType::Text || type == ColumnType::Unknown
                                ? value.sql
                                : assigned(std::move(value), type).sql);
    }
    return callOf("COALESCE", arguments, type);
}

Piece ExpressionWriter::nullIf(const Expr& expr)
{
    Piece value = write(*expr.args[0]);
    Piece other = write(*expr.args[1]);
    const ColumnType type = value.type;
    prepareComparison(value, other);
    return callOf("NULLIF", {value.sql, other.sql}, type);
}

Piece ExpressionWriter::iif(const Expr& expr)
{
    const Piece condition = write(*expr.args[0]);
    Piece yes = write(*expr.args[1]);
    Piece no = write(*expr.args[2]);
    const ColumnType type = commonType(yes.type, no.type);
    if (isMoment(type)) {
        yes = asMoment(std::move(yes), type);
        no = asMoment(std::move(no), type);
    }
    return {.sql = "CASE WHEN " + condition.sql + " THEN " + yes.sql + " ELSE " + no.sql + " END",
            .type = type};
}

// --- texts ------------------------------------------------------------------------------------------------

// Blanks at the end do not count.
Piece ExpressionWriter::length(const Expr& expr)
{
    return {.sql = "length(rtrim(" + textArgument(*expr.args[0]) + "))", .type = ColumnType::Integer};
}

Piece ExpressionWriter::left(const Expr& expr)
{
    const std::string text = textArgument(*expr.args[0]);
    if (const auto length = smallLiteral(*expr.args[1])) {
        return callOf("substr", {text, "1", std::to_string(*length)}, ColumnType::Text);
    }
    return callOf("zul_left", {text, numberArgument(*expr.args[1])}, ColumnType::Text);
}

Piece ExpressionWriter::right(const Expr& expr)
{
    const std::string text = textArgument(*expr.args[0]);
    const auto length = smallLiteral(*expr.args[1]);
    if (length && *length > 0) {
        return callOf("substr", {text, "-" + std::to_string(*length)}, ColumnType::Text);
    }
    return callOf("zul_right", {text, numberArgument(*expr.args[1])}, ColumnType::Text);
}

Piece ExpressionWriter::substring(const Expr& expr)
{
    const std::string text = textArgument(*expr.args[0]);
    const auto start = smallLiteral(*expr.args[1]);
    const auto length = smallLiteral(*expr.args[2]);
    if (start && length && *start > 0) {
        return callOf("substr", {text, std::to_string(*start), std::to_string(*length)}, ColumnType::Text);
    }
    return callOf("zul_substring", {text, numberArgument(*expr.args[1]), numberArgument(*expr.args[2])},
                  ColumnType::Text);
}

Piece ExpressionWriter::trim(const Expr& expr)
{
    std::vector<std::string> arguments;
    for (const ExprPtr& argument : expr.args) {
        arguments.push_back(textArgument(*argument));
    }
    return callOf(lowerAscii(expr.text), arguments, ColumnType::Text);
}

Piece ExpressionWriter::textFunction(const Expr& expr)
{
    std::vector<std::string> arguments;
    for (const ExprPtr& argument : expr.args) {
        arguments.push_back(textArgument(*argument));
    }
    const std::string& name = expr.text;
    if (name == "UNICODE") {
        return callOf("unicode", arguments, ColumnType::Integer);
    }
    const bool number = name == "CHARINDEX" || name == "PATINDEX" || name == "ASCII";
    return callOf("zul_" + lowerAscii(name), arguments, number ? ColumnType::Integer : ColumnType::Text);
}

Piece ExpressionWriter::concat(const Expr& expr)
{
    Piece piece{.sql = "", .type = ColumnType::Text, .binding = Binding::Concat};
    for (const ExprPtr& argument : expr.args) {
        piece.sql += (piece.sql.empty() ? "IFNULL(" : " || IFNULL(") + textArgument(*argument) + ", '')";
    }
    return piece;
}

Piece ExpressionWriter::space(const Expr& expr)
{
    return callOf("zul_replicate", {"' '", numberArgument(*expr.args[0])}, ColumnType::Text);
}

Piece ExpressionWriter::codeFunction(const Expr& expr)
{
    std::vector<std::string> arguments;
    for (const ExprPtr& argument : expr.args) {
        arguments.push_back(numberArgument(*argument));
    }
    return callOf("zul_" + lowerAscii(expr.text), arguments, ColumnType::Text);
}

// --- numbers ----------------------------------------------------------------------------------------------

Piece ExpressionWriter::absolute(const Expr& expr)
{
    const Piece value = asNumber(write(*expr.args[0]));
    return callOf("abs", {value.sql}, value.type);
}

Piece ExpressionWriter::numberFunction(const Expr& expr)
{
    std::vector<std::string> arguments;
    ColumnType type = ColumnType::Unknown;
    for (const ExprPtr& argument : expr.args) {
        const Piece piece = asNumber(write(*argument));
        if (arguments.empty()) {
            type = piece.type;
        }
        arguments.push_back(piece.sql);
    }
    return callOf("zul_" + lowerAscii(expr.text), arguments, type);
}

// --- dates ------------------------------------------------------------------------------------------------

Piece ExpressionWriter::now(const Expr&)
{
    return {.sql = "strftime('%Y-%m-%d %H:%M:%f', 'now', 'localtime')", .type = ColumnType::DateTime};
}

std::string ExpressionWriter::partArgument(const Expr& expr) const
{
    const bool word = expr.kind == ExprKind::Column && expr.names.size() == 1;
    if (!word || !datePartNamed(expr.names.front())) {
        fail(expr,
             (word ? "'" + expr.names.front() + "'" : std::string("this")) +
                 " is not a date part: expected year, quarter, month, dayofyear, day, week, weekday, hour, "
                 "minute, second or millisecond");
    }
    return expr.names.front();
}

// A literal comes in its stored form; everything else is read when the statement runs.
Piece ExpressionWriter::momentArgument(const Expr& expr)
{
    Piece piece = write(expr);
    if (piece.literal != nullptr && piece.type != ColumnType::Unknown && piece.type != ColumnType::Binary) {
        piece.sql = momentOfLiteral(*piece.literal, ColumnType::DateTime);
        piece.type = ColumnType::DateTime;
    }
    return piece;
}

// Another program may have written anything into a column of dates, which on the server holds nothing else. What is
// no date there is NULL; one row must not cost the others.
bool ExpressionWriter::isDateColumn(const Expr& expr, const Piece& piece)
{
    return expr.kind == ExprKind::Column && isMoment(piece.type);
}

std::string ExpressionWriter::knownMoment(const Expr& expr)
{
    const Piece piece = momentArgument(expr);
    return isDateColumn(expr, piece) ? "zul_datecell(" + piece.sql + ")" : piece.sql;
}

// Year, month or day, which one cheap call reads.
std::string ExpressionWriter::digitsOf(std::string_view part, const Expr& expr, const Piece& moment)
{
    return "zul_" + std::string(part) + (isDateColumn(expr, moment) ? "cell(" : "(") + moment.sql + ")";
}

// The years between two dates are the difference of their year numbers: of a literal it is known here.
Piece ExpressionWriter::dateDifference(const Expr& expr)
{
    const DatePart part = *datePartNamed(partArgument(*expr.args[0]));
    const Expr& from = *expr.args[1];
    const Expr& to = *expr.args[2];
    if (part != DatePart::Year) {
        return callOf("zul_datediff", {quotedText(nameOf(part)), knownMoment(from), knownMoment(to)},
                      ColumnType::Integer);
    }
    const auto yearOf = [this](const Expr& side) {
        const Piece piece = momentArgument(side);
        if (piece.literal == nullptr || piece.type != ColumnType::DateTime) {
            return digitsOf("year", side, piece);
        }
        const auto moment = parseMoment(std::string_view(piece.sql).substr(1, piece.sql.size() - 2));
        return std::to_string(moment ? civilFromDays(moment->day).year : 0);
    };
    const std::string before = yearOf(from);
    return {.sql = yearOf(to) + " - " + before, .type = ColumnType::Integer, .binding = Binding::Sum};
}

Piece ExpressionWriter::dateSum(const Expr& expr)
{
    const DatePart part = *datePartNamed(partArgument(*expr.args[0]));
    return callOf("zul_dateadd",
                  {quotedText(nameOf(part)), numberArgument(*expr.args[1]), knownMoment(*expr.args[2])},
                  ColumnType::DateTime);
}

Piece ExpressionWriter::datePart(const Expr& expr)
{
    const DatePart part = *datePartNamed(partArgument(*expr.args[0]));
    const Expr& date = *expr.args[1];
    if (part == DatePart::Year || part == DatePart::Month || part == DatePart::Day) {
        return {.sql = digitsOf(nameOf(part), date, momentArgument(date)), .type = ColumnType::Integer};
    }
    return callOf("zul_datepart", {quotedText(nameOf(part)), knownMoment(date)}, ColumnType::Integer);
}

Piece ExpressionWriter::yearOrSo(const Expr& expr)
{
    const Expr& date = *expr.args[0];
    return {.sql = digitsOf(lowerAscii(expr.text), date, momentArgument(date)), .type = ColumnType::Integer};
}

Piece ExpressionWriter::test(const Expr& expr)
{
    return callOf("zul_" + lowerAscii(expr.text), {write(*expr.args[0]).sql}, ColumnType::Integer);
}

// --- the engine -------------------------------------------------------------------------------------------

Piece ExpressionWriter::engineState(const Expr& expr)
{
    return callOf(expr.text == "@@ROWCOUNT" ? "changes" : "last_insert_rowid", {}, ColumnType::Integer);
}

} // namespace zul::dialect
