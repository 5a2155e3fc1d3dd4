#include "host/dialect/writer/ExpressionWriter.h"

#include "host/dialect/base/DateTime.h"
#include "host/dialect/base/DialectError.h"
#include "host/dialect/base/NumberText.h"
#include "host/dialect/base/Words.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace zul::dialect {

ColumnType commonType(ColumnType a, ColumnType b)
{
    if (a == b) {
        return a;
    }
    if (a == ColumnType::Unknown || b == ColumnType::Unknown) {
        return ColumnType::Unknown;
    }
    if (isMoment(a) || isMoment(b)) {
        return ColumnType::DateTime;
    }
    static constexpr ColumnType order[] = {ColumnType::Real, ColumnType::Decimal, ColumnType::Integer,
                                           ColumnType::Bit,  ColumnType::Time,    ColumnType::Text};
    for (const ColumnType type : order) {
        if (a == type || b == type) {
            return type;
        }
    }
    return ColumnType::Unknown;
}

void ExpressionWriter::fail(const Expr& expr, const std::string& message) const
{
    failAt(m_text, expr.offset, message);
}

Piece ExpressionWriter::write(const Expr& expr)
{
    switch (expr.kind) {
    case ExprKind::Null:
    case ExprKind::Integer:
    case ExprKind::Decimal:
    case ExprKind::Real:
    case ExprKind::Hex:
    case ExprKind::Text:
    case ExprKind::Parameter:
        return literal(expr);
    case ExprKind::Column:
        return m_context.column(expr.names);
    case ExprKind::Negate:
    case ExprKind::Plus:
        return negated(expr);
    case ExprKind::Arithmetic:
        return arithmetic(expr);
    case ExprKind::And:
    case ExprKind::Or:
    case ExprKind::Not:
        return logic(expr);
    case ExprKind::Compare:
        return comparison(expr);
    case ExprKind::Between:
        return between(expr);
    case ExprKind::InList:
    case ExprKind::InQuery:
        return membership(expr);
    case ExprKind::Exists:
        return {.sql = "EXISTS (" + m_context.subQuery(*expr.query).first + ")", .type = ColumnType::Bit};
    case ExprKind::Like:
        return like(expr);
    case ExprKind::IsNull:
        return {.sql = write(*expr.operand).as(Binding::Bit) + (expr.negated ? " IS NOT NULL" : " IS NULL"),
                .type = ColumnType::Bit,
                .binding = Binding::Equal};
    case ExprKind::Case:
        return caseText(expr);
    case ExprKind::Cast:
    case ExprKind::Convert:
        return cast(expr);
    case ExprKind::Call:
        return call(expr);
    case ExprKind::Scalar: {
        auto [sql, type] = m_context.subQuery(*expr.query);
        return {.sql = "(" + sql + ")", .type = type};
    }
    case ExprKind::Collate:
        return collation(expr);
    case ExprKind::Star:
        fail(expr, "incorrect syntax near '*': expected an expression");
    case ExprKind::Default:
        fail(expr, "incorrect syntax near 'DEFAULT': expected an expression");
    }
    fail(expr, "this expression is not supported");
}

Piece ExpressionWriter::literal(const Expr& expr) const
{
    Piece piece;
    piece.literal = &expr;
    piece.sql = expr.text;
    switch (expr.kind) {
    case ExprKind::Integer:
        piece.type = ColumnType::Integer;
        break;
    case ExprKind::Decimal:
        piece.type = ColumnType::Decimal;
        break;
    case ExprKind::Real:
        piece.type = ColumnType::Real;
        break;
    case ExprKind::Hex:
        piece.type = ColumnType::Binary;
        piece.sql = std::string("X'") + (expr.text.size() % 2 != 0 ? "0" : "") + expr.text + "'";
        break;
    case ExprKind::Text:
        piece.type = ColumnType::Text;
        piece.sql = quotedText(expr.text);
        break;
    case ExprKind::Parameter:
        piece.sql = "?" + expr.text;
        piece.literal = nullptr;
        break;
    default:
        piece.sql = "NULL";
        break;
    }
    return piece;
}

// --- conditions -------------------------------------------------------------------------------------------

Piece ExpressionWriter::logic(const Expr& expr)
{
    if (expr.kind == ExprKind::Not) {
        return {.sql = "NOT " + write(*expr.args.front()).as(Binding::Primary),
                .type = ColumnType::Bit,
                .binding = Binding::Not};
    }
    const bool conjunction = expr.kind == ExprKind::And;
    const Binding binding = conjunction ? Binding::And : Binding::Or;
    std::vector<std::string> operands;
    operands.reserve(expr.args.size());
    for (const ExprPtr& operand : expr.args) {
        operands.push_back(write(*operand).as(binding));
    }
    return {
        .sql = joined(operands, conjunction ? " AND " : " OR "), .type = ColumnType::Bit, .binding = binding};
}

Piece ExpressionWriter::comparison(const Expr& expr)
{
    Piece left = write(*expr.args[0]);
    Piece right = write(*expr.args[1]);
    prepareComparison(left, right);
    std::string op = expr.ops.front();
    if (op == "!=") {
        op = "<>";
    }
    return {.sql = left.as(Binding::Bit) + " " + op + " " + right.as(Binding::Bit),
            .type = ColumnType::Bit,
            .binding = op == "=" || op == "<>" ? Binding::Equal : Binding::Less};
}

// Brings two values that are compared to one kind, as the server does: dates before numbers before texts.
void ExpressionWriter::prepareComparison(Piece& left, Piece& right) const
{
    if (isMoment(left.type) || isMoment(right.type)) {
        left = asMoment(std::move(left), ColumnType::DateTime);
        right = asMoment(std::move(right), ColumnType::DateTime);
        return;
    }
    if (left.type == ColumnType::Time || right.type == ColumnType::Time) {
        left = asMoment(std::move(left), ColumnType::Time);
        right = asMoment(std::move(right), ColumnType::Time);
        return;
    }
    const auto flag = [](Piece& bit, Piece& text) {
        if (bit.type != ColumnType::Bit || !text.isTextLiteral()) {
            return;
        }
        const bool yes = sameWord(text.literal->text, "true");
        if (yes || sameWord(text.literal->text, "false")) {
            text = Piece{.sql = yes ? "1" : "0", .type = ColumnType::Bit};
        }
    };
    flag(left, right);
    flag(right, left);
    if (isNumeric(left.type) || isNumeric(right.type)) {
        left = asNumber(std::move(left));
        right = asNumber(std::move(right));
        return;
    }
    const bool texts = left.type == ColumnType::Text || right.type == ColumnType::Text;
    const bool open = left.type == ColumnType::Unknown && right.type == ColumnType::Unknown;
    if (!left.collates && !right.collates && (texts || open)) {
        left = collated(std::move(left));
    }
}

Piece ExpressionWriter::between(const Expr& expr)
{
    Piece operand = write(*expr.operand);
    Piece low = write(*expr.args[0]);
    Piece high = write(*expr.args[1]);
    Piece again = operand;
    const std::string plain = operand.sql;
    prepareComparison(operand, low);
    prepareComparison(again, high);
    if (operand.sql == plain) {
        operand = std::move(again);
    }
    return {.sql = operand.as(Binding::Bit) + (expr.negated ? " NOT BETWEEN " : " BETWEEN ") +
                   low.as(Binding::Bit) + " AND " + high.as(Binding::Bit),
            .type = ColumnType::Bit,
            .binding = Binding::Equal};
}

Piece ExpressionWriter::membership(const Expr& expr)
{
    Piece operand = write(*expr.operand);
    std::string list;
    if (expr.query) {
        auto [sql, type] = m_context.subQuery(*expr.query);
        Piece other{.sql = "", .type = type};
        prepareComparison(operand, other);
        list = std::move(sql);
    } else {
        Piece prepared = operand;
        for (const ExprPtr& item : expr.args) {
            Piece value = write(*item);
            Piece again = operand;
            prepareComparison(again, value);
            if (again.sql != operand.sql) {
                prepared = std::move(again);
            }
            list += (list.empty() ? "" : ", ") + value.sql;
        }
        operand = std::move(prepared);
    }
    return {.sql = operand.as(Binding::Bit) + (expr.negated ? " NOT IN (" : " IN (") + list + ")",
            .type = ColumnType::Bit,
            .binding = Binding::Equal};
}

// The engine's own LIKE does for a pattern of ASCII without sets; it does not fold other letters.
Piece ExpressionWriter::like(const Expr& expr)
{
    const Piece text = asText(write(*expr.operand));
    const Piece pattern = asText(write(*expr.args.front()));
    Piece escape;
    if (expr.otherwise) {
        escape = write(*expr.otherwise);
    }
    bool native = false;
    if (const Expr* const known = pattern.textLiteral()) {
        const std::string& literal = known->text;
        native = literal.find('[') == std::string::npos &&
                 std::all_of(literal.begin(), literal.end(),
                             [](char c) { return static_cast<unsigned char>(c) < 0x80; });
        if (expr.otherwise) {
            const Expr* const mark = escape.textLiteral();
            native = native && mark != nullptr && mark->text.size() == 1 &&
                     (literal.empty() || literal.back() != mark->text.front());
        }
    }
    if (native) {
        return {.sql = text.as(Binding::Bit) + (expr.negated ? " NOT LIKE " : " LIKE ") + pattern.sql +
                       (expr.otherwise ? " ESCAPE " + escape.sql : ""),
                .type = ColumnType::Bit,
                .binding = Binding::Equal};
    }
    std::vector<std::string> arguments{pattern.sql, text.sql};
    if (expr.otherwise) {
        arguments.push_back(escape.sql);
    }
    Piece piece = callOf("zul_like", arguments, ColumnType::Bit);
    if (expr.negated) {
        piece = Piece{.sql = "NOT " + piece.sql, .type = ColumnType::Bit, .binding = Binding::Not};
    }
    return piece;
}

Piece ExpressionWriter::caseText(const Expr& expr)
{
    std::vector<Piece> whens;
    std::vector<Piece> results;
    for (std::size_t i = 0; i + 1 < expr.args.size(); i += 2) {
        whens.push_back(write(*expr.args[i]));
        results.push_back(write(*expr.args[i + 1]));
    }
    if (expr.otherwise) {
        results.push_back(write(*expr.otherwise));
    }
    std::string sql = "CASE";
    if (expr.operand) {
        const Piece operand = write(*expr.operand);
        Piece prepared = operand;
        for (Piece& when : whens) {
            Piece again = operand;
            prepareComparison(again, when);
            if (again.sql != operand.sql) {
                prepared = std::move(again);
            }
        }
        sql += " " + prepared.sql;
    }
    bool typed = false;
    ColumnType type = ColumnType::Unknown;
    for (const Piece& result : results) {
        if (result.isNull()) {
            continue;
        }
        type = typed ? commonType(type, result.type) : result.type;
        typed = true;
    }
    for (std::size_t i = 0; i < results.size(); ++i) {
        const bool null = results[i].isNull();
        if (isMoment(type) && !null) {
            results[i] = asMoment(std::move(results[i]), type);
        }
        sql += i < whens.size() ? " WHEN " + whens[i].sql + " THEN " + results[i].sql
                                : " ELSE " + results[i].sql;
    }
    return {.sql = sql + " END", .type = type};
}

Piece ExpressionWriter::collation(const Expr& expr)
{
    const Piece operand = write(*expr.args.front());
    const std::string& name = expr.text;
    const bool exact = name.find("_CS") != std::string::npos || name.find("_BIN") != std::string::npos;
    return {.sql = operand.as(Binding::Primary) + (exact ? " COLLATE BINARY" : " COLLATE NOCASE"),
            .type = operand.type,
            .binding = Binding::Sign,
            .collates = true};
}

Piece ExpressionWriter::collated(Piece piece) const
{
    const bool text = piece.type == ColumnType::Text || piece.type == ColumnType::Unknown;
    if (piece.collates || !text || (piece.literal != nullptr && piece.literal->kind != ExprKind::Text)) {
        return piece;
    }
    piece.sql = piece.as(Binding::Primary) + " COLLATE NOCASE";
    piece.binding = Binding::Sign;
    piece.collates = true;
    piece.literal = nullptr;
    piece.addends = 0;
    return piece;
}

// --- conversions ------------------------------------------------------------------------------------------

std::string ExpressionWriter::momentOfLiteral(const Expr& literal, ColumnType target) const
{
    std::optional<Moment> moment;
    if (literal.kind == ExprKind::Text) {
        moment = parseMoment(literal.text);
    } else {
        double number = 0;
        std::from_chars(literal.text.data(), literal.text.data() + literal.text.size(), number);
        moment = momentOfNumber(number);
    }
    if (!moment) {
        const std::string shown = literal.text.size() > 40 ? "this text" : "'" + literal.text + "'";
        fail(literal, shown + " is not a date: expected 'yyyymmdd', with a time 'yyyymmdd hh:mm:ss'");
    }
    if (target == ColumnType::Time) {
        return quotedText(formatTime(*moment));
    }
    if (target == ColumnType::Date) {
        moment->millisecond = 0;
    }
    return quotedText(formatMoment(*moment));
}

// Where a date meets it: a literal is brought to the stored form here, other texts and numbers at run time. A
// value of unknown kind stays: it is a date in its stored form already, or nothing that can be compared.
Piece ExpressionWriter::asMoment(Piece piece, ColumnType target) const
{
    if (piece.isTextLiteral() || piece.isNumberLiteral()) {
        return {.sql = momentOfLiteral(*piece.literal, target), .type = target};
    }
    if (piece.type == ColumnType::Unknown || piece.type == target ||
        (isMoment(piece.type) && isMoment(target))) {
        return piece;
    }
    TypeName type;
    type.name = target == ColumnType::Time ? "time" : target == ColumnType::Date ? "date" : "datetime";
    return castCall(piece, type, "-1");
}

Piece ExpressionWriter::asNumber(Piece piece) const
{
    if (piece.literal != nullptr && piece.literal->kind == ExprKind::Hex) {
        const std::string& digits = piece.literal->text;
        unsigned long long number = 0;
        const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
        if (!digits.empty() && (end.ec != std::errc() || digits.size() > 16)) {
            fail(*piece.literal, "this binary value is too long for a number");
        }
        return {.sql = std::to_string(static_cast<long long>(number)),
                .type = ColumnType::Integer,
                .binding = static_cast<long long>(number) < 0 ? Binding::Sign : Binding::Primary};
    }
    if (piece.type != ColumnType::Text) {
        return piece;
    }
    const Expr* const literal = piece.textLiteral();
    if (literal == nullptr) {
        return callOf("zul_number", {piece.sql}, ColumnType::Unknown);
    }
    const std::string& text = literal->text;
    const auto parsed = parseNumber(text);
    Piece number{.sql = "", .type = ColumnType::Integer};
    if (const auto* whole = std::get_if<std::int64_t>(&parsed)) {
        number.sql = std::to_string(*whole);
    } else if (std::holds_alternative<double>(parsed)) {
        const std::size_t start = text.find_first_not_of(" +");
        number.sql = text.substr(start, text.find_last_not_of(' ') - start + 1);
        number.type = ColumnType::Decimal;
    } else if (text.find_first_not_of(' ') == std::string::npos) {
        number.sql = "0";
    } else {
        fail(*literal, "this text stands where a number is expected");
    }
    if (number.sql.front() == '-') {
        number.binding = Binding::Sign;
    }
    return number;
}

// Where the server would turn a value into a text on its own.
Piece ExpressionWriter::asText(Piece piece) const
{
    TypeName type;
    type.name = "varchar";
    type.max = true;
    if (isMoment(piece.type) || piece.type == ColumnType::Real || piece.type == ColumnType::Decimal) {
        return castCall(piece, type, "-1");
    }
    return piece;
}

Piece ExpressionWriter::castCall(const Piece& piece, const TypeName& type, const std::string& style) const
{
    std::string source;
    if (piece.type == ColumnType::Date) {
        source = "date";
    } else if (piece.type == ColumnType::DateTime) {
        source = "datetime";
    } else if (piece.type == ColumnType::Real) {
        source = "real";
    }
    return callOf("zul_cast",
                  {piece.sql, quotedText(type.name), std::to_string(type.length.value_or(-1)),
                   std::to_string(type.scale.value_or(-1)), style, quotedText(source)},
                  columnTypeNamed(type.name));
}

Piece ExpressionWriter::cast(const Expr& expr)
{
    TypeName type = expr.type;
    const ColumnType target = columnTypeNamed(type.name);
    if (target == ColumnType::Binary) {
        fail(expr, "a conversion to " + type.name + " is not supported");
    }
    Piece value = write(*expr.args.front());
    if (value.type == ColumnType::Binary && target != ColumnType::Text) {
        value = asNumber(std::move(value));
    }
    std::string style = "-1";
    if (expr.args.size() > 1) {
        style = write(*expr.args[1]).sql;
    }
    const bool unlimited =
        type.max || type.name == "text" || type.name == "ntext" || type.name == "uniqueidentifier";
    if (target == ColumnType::Text && !type.length && !unlimited) {
        type.length = type.name == "sysname" ? 128 : 30; // the server's own default
    }
    const bool moment = isMoment(target) || target == ColumnType::Time;
    if (moment && value.isTextLiteral() && style == "-1" && type.name != "smalldatetime") {
        return {.sql = momentOfLiteral(*value.literal, target), .type = target};
    }
    if (target == ColumnType::DateTime && value.type == ColumnType::DateTime &&
        type.name != "smalldatetime") {
        return {.sql = value.sql, .type = target, .binding = value.binding};
    }
    if ((type.name == "int" || type.name == "bigint") &&
        (value.type == ColumnType::Integer || value.type == ColumnType::Bit)) {
        return {.sql = "CAST(" + value.sql + " AS INTEGER)", .type = target};
    }
    if (target == ColumnType::Real && isNumeric(value.type)) {
        return {.sql = "CAST(" + value.sql + " AS REAL)", .type = target};
    }
    if (target == ColumnType::Text && unlimited && value.type == ColumnType::Text) {
        return {.sql = "CAST(" + value.sql + " AS TEXT)", .type = target};
    }
    return castCall(value, type, style);
}

Piece ExpressionWriter::assigned(Piece piece, ColumnType target) const
{
    if (piece.isNull()) {
        return piece;
    }
    if (isMoment(target) || target == ColumnType::Time) {
        return asMoment(std::move(piece), target);
    }
    if (target == ColumnType::Bit && piece.isTextLiteral()) {
        Piece bit{.sql = "", .type = ColumnType::Bit};
        prepareComparison(bit, piece);
        return piece;
    }
    if (isNumeric(target) && (piece.type == ColumnType::Text || piece.type == ColumnType::Binary)) {
        return asNumber(std::move(piece));
    }
    if (target == ColumnType::Text) {
        return asText(std::move(piece));
    }
    return piece;
}

} // namespace zul::dialect
