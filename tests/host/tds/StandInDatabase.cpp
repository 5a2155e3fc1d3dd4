#include "tests/host/tds/StandInDatabase.h"

#include "tests/host/tds/Collation.h"

#include "host/database/Cell.h"
#include "host/database/Names.h"
#include "host/dialect/Dialect.h"
#include "host/dialect/writer/Sql.h"

#include <sqlite3.h>

#include <algorithm>
#include <cctype>
#include <memory>
#include <regex>

namespace zul::tds {

namespace {

using dialect::quotedName;
using dialect::quotedText;
using host::foldedName;
using host::sameName;
using StatementHandle = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

// A text that an expression gives has no declared length; the server would work one out. Longer ones the tests do
// not need.
constexpr int expressionText = 1000;

std::string trimmed(std::string_view text)
{
    const std::size_t from = text.find_first_not_of(" \t\r\n;");
    if (from == std::string_view::npos) {
        return {};
    }
    return std::string(text.substr(from, text.find_last_not_of(" \t\r\n;") - from + 1));
}

// Making an expression costs more than using it; there are a dozen, each a literal.
const std::regex& expression(const char* pattern)
{
    thread_local std::map<const char*, std::regex> made;
    const auto known = made.find(pattern);
    return known != made.end() ? known->second
                               : made.emplace(pattern, std::regex(pattern, std::regex::icase)).first->second;
}

bool matches(const std::string& text, const char* pattern, std::smatch& parts)
{
    return std::regex_match(text, parts, expression(pattern));
}

std::string withoutMark(const std::string& text, std::string_view mark)
{
    const std::size_t at = text.find(mark);
    return at == std::string::npos ? text : text.substr(at + mark.size());
}

// Positions of a batch that stand in no text, name or comment.
class Plain
{
public:
    explicit Plain(std::string_view text)
        : m_text(text)
    {}

    /// The next such position from `at` on, or the end.
    std::size_t next(std::size_t at) const
    {
        while (at < m_text.size()) {
            const char c = m_text[at];
            if (c == '\'' || c == '"') {
                at = behind(c, at + 1);
            } else if (c == '[') {
                at = behind(']', at + 1);
            } else if (m_text.substr(at, 2) == "--") {
                at = std::min(m_text.find('\n', at), m_text.size());
            } else if (m_text.substr(at, 2) == "/*") {
                at = std::min(m_text.find("*/", at), m_text.size() - 2) + 2;
            } else {
                return at;
            }
        }
        return at;
    }

private:
    std::size_t behind(char mark, std::size_t at) const
    {
        return std::min(m_text.find(mark, at), m_text.size() - 1) + 1;
    }

    std::string_view m_text;
};

// The parameters as the dialect layer has them; they come in the order of their numbers.
std::string withQuestionMarks(std::string_view batch, std::span<const Parameter> parameters)
{
    std::string result;
    const Plain plain(batch);
    const std::size_t where = foldedName(batch).find(" where ");
    std::size_t from = 0;
    std::size_t number = 0;
    for (std::size_t at = plain.next(0); at < batch.size(); at = plain.next(at + 1)) {
        if (batch.substr(at, 2) != "@P" && batch.substr(at, 2) != "@p") {
            continue;
        }
        std::size_t end = at + 2;
        while (end < batch.size() && std::isdigit(static_cast<unsigned char>(batch[end])) != 0) {
            ++end;
        }
        if (batch.substr(at + 2, end - at - 2) != std::to_string(++number) || number > parameters.size()) {
            throw ServerError{137, 15,
                              "Must declare the scalar variable \"" +
                                  std::string(batch.substr(at, end - at)) + "\"."};
        }
        const std::string& type = parameters[number - 1].type;
        const std::string before = trimmed(batch.substr(0, at));
        if ((type == "ntext" || type == "text") && at > where && before.ends_with('=')) {
            throw ServerError{402, 16,
                              "The data types nvarchar and " + type +
                                  " are incompatible in the equal to operator."};
        }
        result += batch.substr(from, at - from);
        result += '?';
        from = end;
        at = end - 1;
    }
    if (number != parameters.size()) {
        throw ServerError{8144, 16, "Procedure or function has too many arguments specified."};
    }
    return result + std::string(batch.substr(from));
}

// Windows-1252, in which a text without the mark for national characters is read.
bool isInCodePage(char16_t unit)
{
    constexpr std::u16string_view others = u"€‚ƒ„…†‡ˆ‰Š‹ŒŽ‘’“”•–—˜™š›œžŸ";
    return unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF) || others.find(unit) != std::u16string_view::npos;
}

std::string inCodePage(std::string_view text)
{
    std::u16string units = utf16FromUtf8(text);
    std::replace_if(
        units.begin(), units.end(), [](char16_t unit) { return !isInCodePage(unit); }, u'?');
    return utf8FromUtf16(units);
}

// Texts without the mark keep only the characters of the code page.
std::string withNarrowTexts(std::string_view batch)
{
    std::string result;
    const Plain plain(batch);
    std::size_t at = 0;
    while (at < batch.size()) {
        const std::size_t next = plain.next(at);
        // What was passed over: a text, a name, a comment or several of them.
        std::string_view passed = batch.substr(at, next - at);
        const bool marked = at > 0 && (batch[at - 1] == 'N' || batch[at - 1] == 'n');
        result +=
            passed.empty() || passed.front() != '\'' || marked ? std::string(passed) : inCodePage(passed);
        if (next < batch.size()) {
            result += batch[next];
        }
        at = next + 1;
    }
    return result;
}

enum class Fit
{
    Whole,
    Text,
    Moment,
    Number,
    Key
};

// zul_fit(kind, size, value, column): fails with the server's number when a column refuses a value.
void fitValue(sqlite3_context* context, int, sqlite3_value** arguments)
{
    const auto kind = static_cast<Fit>(sqlite3_value_int(arguments[0]));
    const std::int64_t size = sqlite3_value_int64(arguments[1]);
    sqlite3_value* const value = arguments[2];
    const int type = sqlite3_value_type(value);
    const auto refuse = [&](const char* why) {
        const std::string text =
            std::string(why) + " " + reinterpret_cast<const char*>(sqlite3_value_text(arguments[3]));
        sqlite3_result_error(context, text.c_str(), -1);
    };
    if (kind == Fit::Key) {
        // The file's own way of leaving a key out.
        if (type == SQLITE_NULL || (size == 1 && sqlite3_value_int64(value) == -1)) {
            refuse("zul515");
        }
        return;
    }
    if (type == SQLITE_NULL) {
        return;
    }
    if (kind == Fit::Text) {
        const auto* const text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        const auto bytes = static_cast<std::size_t>(sqlite3_value_bytes(value));
        if (bytes > static_cast<std::size_t>(size) &&
            utf16FromUtf8({text, bytes}).size() > static_cast<std::size_t>(size)) {
            refuse("zul8152");
        }
    } else if (kind == Fit::Moment) {
        try {
            if (type == SQLITE_TEXT) {
                asDateTime(std::string(reinterpret_cast<const char*>(sqlite3_value_text(value))));
            }
        } catch (const std::out_of_range&) {
            refuse("zul241");
        }
    } else if (type == SQLITE_TEXT) {
        refuse(kind == Fit::Whole ? "zul245" : "zul8114");
    } else if (kind == Fit::Whole && size < 8) {
        const std::int64_t number = sqlite3_value_int64(value);
        const std::int64_t bound = std::int64_t{1} << (8 * size - 1);
        if (number >= bound || number < -bound) {
            refuse(size == 4 ? "zul8115" : "zul220");
        }
    }
}

int collate(void*, int aBytes, const void* a, int bBytes, const void* b)
{
    return compareTexts({static_cast<const char*>(a), static_cast<std::size_t>(aBytes)},
                        {static_cast<const char*>(b), static_cast<std::size_t>(bBytes)});
}

void dateTimeOf(sqlite3_context* context, int, sqlite3_value** arguments)
{
    try {
        if (sqlite3_value_type(arguments[0]) == SQLITE_NULL) {
            return;
        }
        Datum value;
        if (sqlite3_value_type(arguments[0]) == SQLITE_INTEGER) {
            value = std::int64_t{sqlite3_value_int64(arguments[0])};
        } else {
            value = std::string(reinterpret_cast<const char*>(sqlite3_value_text(arguments[0])));
        }
        const std::string text = asDateTime(value);
        sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
    } catch (const std::out_of_range&) {
        sqlite3_result_error(context, "zul241 datetime", -1);
    }
}

struct Refusal
{
    std::string_view mark;
    int number;
    int severity;
    std::string_view text;
};

// What the file says and what the server says to the same; "%" stands for what follows the mark.
constexpr std::array<Refusal, 17> refusals{{
    {"no such table: ", 208, 16, "Invalid object name '%'."},
    {"no such column: ", 207, 16, "Invalid column name '%'."},
    {" has no column named ", 207, 16, "Invalid column name '%'."},
    {"UNIQUE constraint failed: ", 2627, 14,
     "Violation of PRIMARY KEY constraint. Cannot insert duplicate key in %."},
    {"NOT NULL constraint failed: ", 515, 16, "Cannot insert the value NULL into column '%'."},
    {"zul515 ", 515, 16,
     "Cannot insert the value NULL into column '%'; column does not allow nulls. INSERT fails."},
    {"zul8152 ", 8152, 16, "String or binary data would be truncated."},
    {"zul241 ", 241, 16, "Conversion failed when converting date and/or time from character string."},
    {"zul245 ", 245, 16, "Conversion failed when converting the nvarchar value to data type int."},
    {"zul8114 ", 8114, 16, "Error converting data type nvarchar to float."},
    {"zul8115 ", 8115, 16, "Arithmetic overflow error converting expression to data type int."},
    {"zul220 ", 220, 16, "Arithmetic overflow error for data type smallint."},
    {"already exists", 2714, 16, "There is already an object of that name in the database."},
    {"locked", 1222, 16, "Lock request time out period exceeded."},
    {"ambiguous column name: ", 209, 16, "Ambiguous column name '%'."},
    {"Conversion failed", 245, 16, "Conversion failed%"},
    {"syntax error", 102, 15, "Incorrect syntax: %"},
}};

ServerError errorOf(const std::string& text)
{
    for (const Refusal& refusal : refusals) {
        if (text.find(refusal.mark) == std::string::npos) {
            continue;
        }
        std::string said(refusal.text);
        const std::size_t place = said.find('%');
        if (place != std::string::npos) {
            said.replace(place, 1, withoutMark(text, refusal.mark));
        }
        return {refusal.number, refusal.severity, said};
    }
    return {50000, 16, text};
}

Datum datumOf(sqlite3_stmt* statement, int column)
{
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_NULL:
        return {};
    case SQLITE_INTEGER:
        return std::int64_t{sqlite3_column_int64(statement, column)};
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement, column);
    default:
        return std::string(reinterpret_cast<const char*>(sqlite3_column_text(statement, column)),
                           static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
    }
}

// An expression's type: what the translation knows of it, else what its first value is.
DataType expressionType(dialect::ColumnType known, sqlite3_stmt* statement, int column)
{
    switch (known) {
    case dialect::ColumnType::Bit:
        return dataTypeOf("bit");
    case dialect::ColumnType::Integer:
        return dataTypeOf("int");
    case dialect::ColumnType::Decimal:
        return dataTypeOf("decimal(38,6)");
    case dialect::ColumnType::Real:
        return dataTypeOf("float");
    case dialect::ColumnType::Date:
    case dialect::ColumnType::DateTime:
        return dataTypeOf("datetime");
    case dialect::ColumnType::Text:
        break;
    default:
        if (sqlite3_column_type(statement, column) == SQLITE_INTEGER) {
            return dataTypeOf("int");
        }
        if (sqlite3_column_type(statement, column) == SQLITE_FLOAT) {
            return dataTypeOf("float");
        }
    }
    return {DataType::Kind::Text, expressionText, 0, 0};
}

std::vector<ResultColumn> describe(sqlite3_stmt* statement, const std::vector<dialect::OutputColumn>& known)
{
    std::vector<ResultColumn> columns;
    for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const char* const name = sqlite3_column_name(statement, i);
        const char* const declared = sqlite3_column_decltype(statement, i);
        const auto index = static_cast<std::size_t>(i);
        const bool listed = index < known.size();
        ResultColumn column;
        // An expression without a name has none at the server.
        column.name = listed ? known[index].name : std::string(name != nullptr ? name : "");
        column.type =
            declared != nullptr
                ? dataTypeOf(declared)
                : expressionType(listed ? known[index].type : dialect::ColumnType::Unknown, statement, i);
        columns.push_back(std::move(column));
    }
    return columns;
}

int bindDatum(sqlite3_stmt* statement, int index, const Datum& value)
{
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return sqlite3_bind_int64(statement, index, *whole);
    }
    if (const auto* real = std::get_if<double>(&value)) {
        return sqlite3_bind_double(statement, index, *real);
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        return sqlite3_bind_text64(statement, index, text->data(), text->size(), SQLITE_STATIC, SQLITE_UTF8);
    }
    return sqlite3_bind_null(statement, index);
}

} // namespace

StandInDatabase::StandInDatabase(const std::string& path)
    : m_engine(path, host::SqliteDatabase::Mode::OpenOrCreate)
{
    // Nothing here has to outlive the power.
    native("PRAGMA synchronous=OFF");
    sqlite3* const handle = m_engine.database().handle();
    sqlite3_create_collation_v2(handle, "NOCASE", SQLITE_UTF8, nullptr, collate, nullptr);
    sqlite3_create_function_v2(handle, "zul_fit", 4, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, fitValue,
                               nullptr, nullptr, nullptr);
    sqlite3_create_function_v2(handle, "zul_datetime", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                               dateTimeOf, nullptr, nullptr, nullptr);
}

void StandInDatabase::fail()
{
    throw errorOf(sqlite3_errmsg(m_engine.database().handle()));
}

void StandInDatabase::native(const std::string& sql)
{
    if (sqlite3_exec(m_engine.database().handle(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        fail();
    }
}

void StandInDatabase::begin()
{
    if (!inTransaction()) {
        native("BEGIN IMMEDIATE");
    }
}

void StandInDatabase::commit()
{
    if (inTransaction()) {
        native("COMMIT");
    }
}

void StandInDatabase::rollback()
{
    if (inTransaction()) {
        native("ROLLBACK");
    }
}

bool StandInDatabase::has(std::string_view kind, const std::string& name)
{
    const std::vector<host::Value> parameters{std::string(kind), host::bareName(name)};
    return m_engine
        .query("SELECT 1 FROM sqlite_master WHERE type = ? AND name = ? COLLATE NOCASE",
               host::Language::Native, parameters)
        ->next();
}

std::vector<StandInDatabase::TableColumn> StandInDatabase::columnsOf(std::string_view table)
{
    const host::Value name(std::string{table});
    const auto rows =
        m_engine.query("SELECT name, type, pk FROM pragma_table_info(?)", host::Language::Native, {&name, 1});
    std::vector<TableColumn> columns;
    const auto text = [&](std::size_t i) { return std::string(host::cellText(rows->cells()[i])); };
    while (rows->next()) {
        columns.push_back({text(0), text(1), rows->cells()[2].Integer > 0});
    }
    return columns;
}

const std::vector<StandInDatabase::TableColumn>& StandInDatabase::knownColumns(std::string_view table)
{
    const std::string folded = foldedName(table);
    const auto known = m_tables.find(folded);
    return known != m_tables.end() ? known->second : m_tables.emplace(folded, columnsOf(table)).first->second;
}

void StandInDatabase::guardTable(const std::string& table)
{
    const std::vector<TableColumn> columns = columnsOf(table);
    const auto keys =
        std::count_if(columns.begin(), columns.end(), [](const auto& column) { return column.key; });
    std::string checks;
    std::string keyChecks;
    std::string rounded;
    std::string differs;
    for (const TableColumn& column : columns) {
        const DataType type = dataTypeOf(column.declaration);
        const std::string value = "NEW." + quotedName(column.name);
        const auto fit = [&](Fit kind, int size) {
            return "zul_fit(" + std::to_string(static_cast<int>(kind)) + ", " + std::to_string(size) + ", " +
                   value + ", " + quotedText(column.name) + "), ";
        };
        if (column.key) {
            keyChecks += fit(Fit::Key, keys == 1 && type.kind == DataType::Kind::Integer ? 1 : 0);
        }
        if (type.kind == DataType::Kind::Text && type.size > 0) {
            checks += fit(Fit::Text, type.size);
        } else if (type.kind == DataType::Kind::Integer || type.kind == DataType::Kind::Bit) {
            checks += fit(Fit::Whole, type.kind == DataType::Kind::Bit ? 8 : type.size);
        } else if (type.kind == DataType::Kind::Float || type.kind == DataType::Kind::Decimal) {
            checks += fit(Fit::Number, 0);
        }
        if (type.kind != DataType::Kind::DateTime) {
            continue;
        }
        checks += fit(Fit::Moment, 0);
        rounded += (rounded.empty() ? "" : ", ") + quotedName(column.name) + " = zul_datetime(" + value + ")";
        differs += (differs.empty() ? "" : " OR ") + ("zul_datetime(" + value + ") IS NOT " + value);
    }
    for (const std::string& event : {std::string("INSERT"), std::string("UPDATE")}) {
        const std::string on = " " + event + " ON " + quotedName(table);
        native("CREATE TRIGGER " + quotedName("zul_fit_" + event + table) + " BEFORE" + on +
               " BEGIN SELECT " + checks + (event == "INSERT" ? keyChecks : std::string()) + "0; END");
        if (!rounded.empty()) {
            native("CREATE TRIGGER " + quotedName("zul_round_" + event + table) + " AFTER" + on + " WHEN " +
                   differs + " BEGIN UPDATE " + quotedName(table) + " SET " + rounded +
                   " WHERE rowid = NEW.rowid; END");
        }
    }
}

void StandInDatabase::setOption(std::string_view batch, AnswerSink& sink)
{
    std::smatch parts;
    const std::string text = trimmed(batch);
    if (matches(text, R"(set\s+lock_timeout\s+(-?\d+))", parts)) {
        sqlite3_busy_timeout(m_engine.database().handle(), std::max(std::stoi(parts[1]), 0));
    } else if (!matches(text,
                        R"(set\s+(textsize|nocount|dateformat|datefirst|language|ansi_\w+|quoted_identifier|)"
                        R"(arithabort|concat_null_yields_null|xact_abort|deadlock_priority|rowcount)\s+\S+)",
                        parts)) {
        throw ServerError{195, 15, "That is not a recognized SET option."};
    }
    sink.done(std::nullopt);
}

void StandInDatabase::createFunction(const std::string& name)
{
    if (has("table", "zul_function_" + host::bareName(name))) {
        throw ServerError{2714, 16, "There is already an object named '" + name + "' in the database."};
    }
    native("CREATE TABLE " + quotedName("zul_function_" + host::bareName(name)) + " (x)");
}

// The one function that the host makes gives the next number of its column; it becomes a trigger here.
void StandInDatabase::addDefault(const std::string& table, const std::string& function,
                                 const std::string& column)
{
    if (!has("table", "zul_function_" + host::bareName(function))) {
        throw ServerError{4121, 16,
                          "Cannot find either column or the user-defined function \"" + function + "\"."};
    }
    native("CREATE TRIGGER " + quotedName("zul_default_" + table) + " AFTER INSERT ON " + quotedName(table) +
           " WHEN NEW." + quotedName(column) + " IS NULL BEGIN UPDATE " + quotedName(table) + " SET " +
           quotedName(column) + " = (SELECT COALESCE(MAX(" + quotedName(column) + "), 0) + 1 FROM " +
           quotedName(table) + ") WHERE rowid = NEW.rowid; END");
}

void StandInDatabase::listTables(const std::string& name, AnswerSink& sink)
{
    const DataType word{DataType::Kind::Text, 128, 0, 0};
    sink.columns({{"TABLE_QUALIFIER", word},
                  {"TABLE_OWNER", word},
                  {"TABLE_NAME", word},
                  {"TABLE_TYPE", word},
                  {"REMARKS", word}});
    const std::vector<host::Value> parameters{host::bareName(name)};
    const auto rows = m_engine.query("SELECT name FROM sqlite_master WHERE type = 'table' AND name LIKE ?",
                                     host::Language::Native, parameters);
    std::int64_t count = 0;
    while (rows->next()) {
        sink.row({std::string("zul"), std::string("dbo"), std::string(host::cellText(rows->cells()[0])),
                  std::string("TABLE"), Datum()});
        ++count;
    }
    sink.done(count);
}

void StandInDatabase::listKeys(const std::string& table, AnswerSink& sink, bool namesOnly)
{
    const DataType word{DataType::Kind::Text, 128, 0, 0};
    if (namesOnly) {
        sink.columns({{"COLUMN_NAME", word}});
        for (const TableColumn& column : columnsOf(host::bareName(table))) {
            if (column.key) {
                sink.row({column.name});
            }
        }
        sink.done(std::nullopt);
        return;
    }
    sink.columns({{"TABLE_QUALIFIER", word},
                  {"TABLE_OWNER", word},
                  {"TABLE_NAME", word},
                  {"COLUMN_NAME", word},
                  {"KEY_SEQ", dataTypeOf("smallint")},
                  {"PK_NAME", word}});
    std::int64_t count = 0;
    for (const TableColumn& column : columnsOf(host::bareName(table))) {
        if (column.key) {
            sink.row({std::string("zul"), std::string("dbo"), table, column.name, ++count, "PK_" + table});
        }
    }
    sink.done(count);
}

// What the dialect layer does not read, because the embedded database does not need it.
bool StandInDatabase::runSpecial(std::string_view batch, std::span<const Parameter> parameters,
                                 AnswerSink& sink)
{
    const std::string text = trimmed(batch.substr(0, 600));
    const std::string start = foldedName(text.substr(0, 24));
    std::smatch parts;
    if (start.starts_with("set ")) {
        setOption(batch, sink);
        return true;
    }
    if (start.starts_with("insert ") || start.starts_with("delete ") || start.starts_with("create table")) {
        return false;
    }
    if (start.starts_with("create function")) {
        if (!matches(text, R"(create\s+function\s+(\S+?)\s*\(\)\s+returns\s+int\s+as\s+begin[\s\S]*end)",
                     parts)) {
            throw ServerError{102, 15, "Incorrect syntax near 'FUNCTION'."};
        }
        createFunction(parts[1]);
    } else if (matches(text, R"(drop\s+function\s+(\S+))", parts)) {
        if (!has("table", "zul_function_" + host::bareName(parts[1].str()))) {
            throw ServerError{
                3701, 11, "Cannot drop the function '" + parts[1].str() + "', because it does not exist."};
        }
        native("DROP TABLE " + quotedName("zul_function_" + host::bareName(parts[1].str())));
    } else if (matches(
                   text,
                   R"(alter\s+table\s+(\S+)\s+add\s+constraint\s+\S+\s+default\s+(\S+?)\(\)\s+for\s+(\S+))",
                   parts)) {
        addDefault(parts[1], parts[2], parts[3]);
    } else if (matches(text, R"(exec(?:ute)?\s+sp_tables\s+(?:@table_name\s*=\s*)?N?'([^']*)'.*)", parts)) {
        listTables(parts[1], sink);
        return true;
    } else if (matches(text, R"(exec(?:ute)?\s+sp_pkeys\s+(?:@table_name\s*=\s*)?N?'([^']*)'.*)", parts)) {
        listKeys(parts[1], sink, false);
        return true;
    } else if (matches(text, R"(select\s+object_id\(N'([^']*)',\s*N'U'\))", parts)) {
        sink.columns({{"", dataTypeOf("int")}});
        sink.row({has("table", parts[1]) ? Datum(std::int64_t{885578193}) : Datum()});
        sink.done(1);
        return true;
    } else if (matches(text,
                       R"(select k\.column_name from information_schema[\s\S]*c\.table_name = N'([^']*)'.*)",
                       parts)) {
        listKeys(parts[1], sink, true);
        return true;
    } else if (matches(text, R"(if\s+@@trancount\s*>\s*0\s+(commit|rollback)(?:\s+tran(?:saction)?)?)",
                       parts)) {
        foldedName(parts[1].str()) == "commit" ? commit() : rollback();
    } else if (matches(text, R"((begin|commit|rollback)\s+tran(?:saction)?)", parts)) {
        changeTransaction(foldedName(parts[1].str()));
    } else if (matches(text, R"(select\s+@@trancount\s+as\s+(\w+))", parts)) {
        sink.columns({{parts[1], dataTypeOf("int")}});
        sink.row({Datum(std::int64_t{inTransaction() ? 1 : 0})});
        sink.done(1);
        return true;
    } else if (matches(text, R"((update\s[\s\S]*)\soutput\s+inserted\.(\w+)(\s+where\s[\s\S]*))", parts)) {
        runTranslated(parts[1].str() + parts[3].str(), " RETURNING " + quotedName(parts[2].str()), parameters,
                      sink);
        return true;
    } else {
        return false;
    }
    sink.done(std::nullopt);
    return true;
}

void StandInDatabase::changeTransaction(const std::string& word)
{
    if (word == "begin") {
        if (inTransaction()) {
            throw ServerError{50000, 16, "The stand-in knows no transactions within transactions."};
        }
        begin();
        return;
    }
    if (!inTransaction()) {
        throw ServerError{word == "commit" ? 3902 : 3903, 16,
                          "The " + word + " request has no corresponding BEGIN TRANSACTION."};
    }
    word == "commit" ? commit() : rollback();
}

void StandInDatabase::run(std::string_view batch, std::span<const Parameter> parameters, AnswerSink& sink)
{
    constexpr std::string_view abortOption = "set xact_abort on;";
    const bool aborts = foldedName(batch.substr(0, abortOption.size())) == abortOption;
    if (aborts) {
        batch.remove_prefix(abortOption.size());
    }
    const auto abort = [&] {
        if (aborts && inTransaction()) {
            rollback();
        }
    };
    try {
        if (!runSpecial(batch, parameters, sink)) {
            runTranslated(batch, {}, parameters, sink);
        }
    } catch (const host::EngineError& error) {
        abort();
        throw errorOf(error.what());
    } catch (const ServerError&) {
        abort();
        throw;
    }
}

void StandInDatabase::runTranslated(std::string_view batch, std::string_view ending,
                                    std::span<const Parameter> parameters, AnswerSink& sink)
{
    const dialect::ColumnTypes types = [this](std::string_view table, std::string_view column) {
        for (const TableColumn& known : knownColumns(table)) {
            if (sameName(known.name, column)) {
                return dialect::columnTypeOf(known.declaration);
            }
        }
        return dialect::ColumnType::Unknown;
    };
    const dialect::TableColumns columns = [this](std::string_view table) {
        std::vector<std::string> names;
        for (const TableColumn& known : knownColumns(table)) {
            names.push_back(known.name);
        }
        return names;
    };
    const dialect::TableKey key = [this](std::string_view table) {
        std::vector<std::string> names;
        for (const TableColumn& known : knownColumns(table)) {
            if (known.key) {
                names.push_back(known.name);
            }
        }
        return names;
    };
    std::vector<dialect::Translation> statements;
    try {
        const std::string text = withNarrowTexts(withQuestionMarks(batch, parameters));
        statements = dialect::translateBatch(text, types, columns);
        if (statements.size() == 1) {
            statements.front() = dialect::translate(text, types, columns, key);
        }
    } catch (const dialect::DialectError& error) {
        throw ServerError{102, 15, std::string("Incorrect syntax: ") + error.what()};
    }
    if (statements.empty()) {
        sink.done(std::nullopt);
    }
    for (const dialect::Translation& statement : statements) {
        if (statement.kind == dialect::StatementKind::Begin ||
            statement.kind == dialect::StatementKind::Commit ||
            statement.kind == dialect::StatementKind::Rollback) {
            changeTransaction(statement.kind == dialect::StatementKind::Begin    ? "begin"
                              : statement.kind == dialect::StatementKind::Commit ? "commit"
                                                                                 : "rollback");
            sink.done(std::nullopt);
            continue;
        }
        const bool schema = statement.kind == dialect::StatementKind::Schema;
        const bool creates = schema && statement.sql.starts_with("CREATE TABLE");
        if (creates && has("table", statement.target)) {
            throw ServerError{2714, 16,
                              "There is already an object named '" + statement.target + "' in the database."};
        }
        if (schema && statement.sql.starts_with("DROP TABLE") && !has("table", statement.target)) {
            throw ServerError{3701, 11,
                              "Cannot drop the table '" + statement.target +
                                  "', because it does not exist or you do not have permission."};
        }
        const bool counts = statement.kind == dialect::StatementKind::Insert ||
                            statement.kind == dialect::StatementKind::Update ||
                            statement.kind == dialect::StatementKind::Delete;
        // Each statement counts its parameters anew.
        const auto own = static_cast<std::size_t>(statement.parameters);
        if (own > parameters.size()) {
            throw ServerError{137, 15, "Must declare the scalar variable."};
        }
        runOne(statement.sql + std::string(ending), statement.columns, counts, parameters.first(own), sink);
        parameters = parameters.subspan(own);
        if (schema) {
            m_tables.clear();
        }
        if (creates) {
            guardTable(statement.target);
        }
    }
}

void StandInDatabase::runOne(const std::string& sql, const std::vector<dialect::OutputColumn>& known,
                             bool countsRows, std::span<const Parameter> parameters, AnswerSink& sink)
{
    sqlite3* const handle = m_engine.database().handle();
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(handle, sql.data(), static_cast<int>(sql.size()), &prepared, nullptr) !=
        SQLITE_OK) {
        fail();
    }
    const StatementHandle statement(prepared, &sqlite3_finalize);
    int index = 0;
    for (const Parameter& parameter : parameters) {
        bindDatum(prepared, ++index, parameter.value);
    }
    const int columns = sqlite3_column_count(prepared);
    int state = sqlite3_step(prepared);
    std::int64_t count = 0;
    if (columns > 0) {
        // The columns come first, whatever becomes of the rows.
        sink.columns(describe(prepared, known));
        if (state != SQLITE_ROW && state != SQLITE_DONE) {
            fail();
        }
        std::vector<Datum> values(static_cast<std::size_t>(columns));
        bool wanted = true;
        for (; state == SQLITE_ROW && wanted; state = sqlite3_step(prepared)) {
            for (int i = 0; i < columns; ++i) {
                values[static_cast<std::size_t>(i)] = datumOf(prepared, i);
            }
            wanted = sink.row(values);
            ++count;
        }
        if (wanted && state != SQLITE_DONE) {
            fail();
        }
        if (std::regex_search(sql, expression(R"(\b(max|min|sum|avg)\()"))) {
            sink.note(8153, "Warning: Null value is eliminated by an aggregate or other SET operation.");
        }
        sink.done(count);
        return;
    }
    if (state != SQLITE_DONE) {
        fail();
    }
    count = sqlite3_changes64(handle);
    if (countsRows) {
        sink.done(count);
    } else {
        sink.done(std::nullopt);
    }
}

} // namespace zul::tds
