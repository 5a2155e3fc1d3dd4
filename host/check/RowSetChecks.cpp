// Row sets that are read: kinds of cursor and lock, fields, closing, the fast path.
#include "automation/ComObject.h"
#include "base/CaseFold.h"
#include "base/Utf8.h"
#include "host/check/Checks.h"
#include "host/check/Verdict.h"

#include <array>
#include <cstdio>
#include <optional>

namespace zul::host::check {

namespace {

constexpr std::u16string_view threeRows = u"SELECT 1 AS n UNION ALL SELECT 2 UNION ALL SELECT 3";

void requireThree(const Rows& rows, const std::string& what)
{
    const std::vector<double> found = rows.numbers(u"n");
    double sum = 0;
    for (const double number : found) {
        sum += number;
    }
    if (found.size() != 3 || sum != 6) {
        throw Breach(what + " of 3 rows gives " + std::to_string(found.size()),
                     "shows other customers than the database has");
    }
}

void checkMoves(Subject& subject)
{
    const Rows rows = subject.open(u"SELECT 1 AS n");
    if (rows.atEnd()) {
        throw Breach("a row set of one row is at its end when it is opened", "shows no rows");
    }
    if (numberOf(rows.value(u"n"), "the field n") != 1) {
        throw Breach("SELECT 1 gives " + shown(rows.value(u"n")), "shows what it was given");
    }
    rows.next();
    if (!rows.atEnd()) {
        throw Breach("Eof is not true behind the last row", "reads on for ever: the window hangs");
    }
    requireThree(subject.open(threeRows), "a row set");
    if (!subject.open(u"SELECT 1 AS n WHERE 1=2").atEnd()) {
        throw Breach("a row set without rows is not at its end", "reads a row that is not there");
    }
    if (const VARIANT_BOOL end = rows.eof(); end != VARIANT_TRUE) {
        throw Warning("Eof is " + std::to_string(end) +
                          " behind the last row, and not VARIANT_TRUE, which is -1",
                      "takes it for true, as not every program does");
    }
}

/// A check for each kind of cursor over each lock that the component may ask for.
void checkKind(Subject& subject, CursorKind cursor, LockKind lock)
{
    if (lock == LockReadOnly) {
        requireThree(subject.open(threeRows, cursor, lock), "a row set of this kind");
        return;
    }
    // What takes changes is over one table.
    subject.requireTable();
    subject.emptyTable();
    for (const std::u16string_view id : {u"1", u"2", u"3"}) {
        subject.execute(u"INSERT INTO zulVerifica (id) VALUES (" + std::u16string(id) + u")");
    }
    const std::u16string_view sql = u"SELECT id AS n FROM zulVerifica ORDER BY id";
    requireThree(subject.open(sql, cursor, lock), "a row set of this kind");
}

void checkNames(Subject& subject)
{
    const Rows rows = subject.open(u"SELECT 1 AS uno, 'due' AS Descrizione");
    if (rows.fieldCount() != 2) {
        throw Breach("FieldCount is " + std::to_string(rows.fieldCount()) + " for 2 fields",
                     "shows other columns than the query has");
    }
    const std::u16string name = rows.fieldName(1);
    if (!equalNames(name, u"Descrizione")) {
        throw Breach("FieldName(1) is " + shown(name) + " instead of \"Descrizione\"",
                     "finds no value for its columns");
    }
    for (const std::u16string_view spelling : {u"Descrizione", u"DESCRIZIONE", u"descrizione"}) {
        if (rows.value(spelling).text() != u"due") {
            throw Breach("the field " + shown(spelling) + " is " + shown(rows.value(spelling)),
                         "asks for fields in the case of its own statements");
        }
    }
}

void checkIndex(Subject& subject)
{
    const Rows rows = subject.open(u"SELECT 1 AS uno, 'due' AS descrizione");
    if (numberOf(rows.value(0), "the field 0") != 1 || rows.value(1).text() != u"due") {
        throw Breach("the fields 0 and 1 are " + shown(rows.value(0)) + " and " + shown(rows.value(1)) +
                         " instead of 1 and \"due\"",
                     "fills its grids by index, and shows other cells than the database has");
    }
}

void checkNull(Subject& subject)
{
    const Variant value = subject.single(u"SELECT CAST(NULL AS int) AS n");
    if (value.vt == VT_EMPTY) {
        throw Breach("NULL comes as VT_EMPTY instead of VT_NULL", "takes it for NULL all the same");
    }
    if (value.vt != VT_NULL) {
        throw Breach("NULL comes as " + shown(value) + " instead of VT_NULL",
                     "takes a missing number for one that is there");
    }
}

void checkEmptyText(Subject& subject)
{
    const Variant value = subject.single(u"SELECT '' AS t");
    if (value.vt != VT_BSTR || !value.text().empty()) {
        throw Breach("the empty text comes as " + shown(value) + " instead of VT_BSTR",
                     "takes it for what it was given");
    }
}

void checkClosed(Subject& subject)
{
    const Rows rows = subject.open(threeRows);
    mustSucceed(rows.object()->Close(), "Close");
    if (FAILED(rows.object()->Close())) {
        throw Breach("Close fails the second time", "passes it over");
    }
    Variant value;
    if (SUCCEEDED(rows.object()->get_Value(Variant::fromText(u"n"), &value))) {
        throw Breach("Value of a closed row set succeeds", "would not notice a row set that was lost");
    }
    forgetErrors();
}

/// Other statements run in the middle of a row set that is read whole, and leave it as it is.
void checkNothingOpen(Subject& subject)
{
    for (const CursorKind cursor : {CursorStatic, CursorDynamic}) {
        const Rows rows = subject.open(threeRows, cursor);
        rows.next();
        requireThree(subject.open(threeRows, CursorForwardOnly), "a row set beside another");
        if (subject.hasTable()) {
            subject.execute(u"UPDATE zulVerifica SET piccolo = 1 WHERE id = -1");
        }
        if (numberOf(rows.value(u"n"), "the field n") == 0 || rows.numbers(u"n").size() != 2) {
            throw Breach("a row set lost rows when another statement ran",
                         "writes to the database while it reads: customers would be left out");
        }
    }
}

/// A cell of the fast path or of Value, in one form.
std::string cellText(const ZulCell& cell)
{
    std::array<char, 40> number{};
    switch (cell.Kind) {
    case CellNull:
        return "NULL";
    case CellInteger:
    case CellBoolean:
        std::snprintf(number.data(), number.size(), "%.10g", static_cast<double>(cell.Integer));
        return number.data();
    case CellReal:
        std::snprintf(number.data(), number.size(), "%.10g", cell.Real);
        return number.data();
    case CellDate:
        std::snprintf(number.data(), number.size(), "date %.8f", cell.Real);
        return number.data();
    case CellText:
        // Longer than anything that was written.
        if (cell.Length < 0 || cell.Length > 100'000 || (cell.Length > 0 && cell.Text == nullptr)) {
            throw Breach("IRowReader gives a text of " + std::to_string(cell.Length) +
                             " bytes at no or no good place",
                         "reads it, and may end the process");
        }
        return '"' +
               (cell.Length == 0 ? std::string()
                                 : std::string(reinterpret_cast<const char*>(cell.Text),
                                               static_cast<std::size_t>(cell.Length))) +
               '"';
    default:
        throw Breach("IRowReader gives a cell of the kind " + std::to_string(cell.Kind) +
                         ", which the contract does not know",
                     "takes it for a text");
    }
}

std::string cellText(const Variant& value)
{
    ZulCell cell{};
    switch (value.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return "NULL";
    case VT_BOOL:
        return value.boolVal != VARIANT_FALSE ? "1" : "0";
    case VT_BSTR:
        return '"' + utf8FromUtf16(value.text()) + '"';
    case VT_DATE:
        cell.Kind = CellDate;
        cell.Real = value.date;
        return cellText(cell);
    default:
        cell.Kind = CellReal;
        cell.Real = numberOf(value, "a cell");
        return cellText(cell);
    }
}

/// Takes the rows of the fast path; a reader without end is told to stop.
class CellSink final : public ComObject<IRowSink>
{
public:
    HRESULT STDMETHODCALLTYPE Row(LONG count, const ZulCell* cells) override
    {
        constexpr std::size_t most = 100;
        if (rows.size() == most) {
            return E_ABORT;
        }
        std::string& row = rows.emplace_back();
        try {
            if (count < 0 || count > 100 || (cells == nullptr && count > 0)) {
                throw Breach("IRowReader gives " + std::to_string(count) + " cells at no or no good place",
                             "reads them, and may end the process");
            }
            for (LONG i = 0; i < count; ++i) {
                row += cellText(cells[i]) + '|';
            }
        } catch (const Breach& breach) {
            broken = breach;
            return E_ABORT;
        }
        return rows.size() == stopAfter ? E_ABORT : S_OK;
    }

    std::vector<std::string> rows;
    std::optional<Breach> broken;
    std::size_t stopAfter = 0;
};

void checkReader(Subject& subject)
{
    std::u16string sql = u"SELECT 1 AS n, 'uno à' AS t, CAST(NULL AS int) AS x UNION ALL SELECT 2, '', 3";
    if (subject.addsRows()) {
        subject.emptyTable();
        subject.addRow(1, u"testo", Variant::fromText(u"l'età € 😀"));
        subject.addRow(2, u"quando", Variant::fromDate(45413.75));
        subject.addRow(3, u"importo", Variant::fromDouble(12.5));
        subject.addRow(4, u"vero", Variant::fromBool(true));
        sql = u"SELECT * FROM zulVerifica ORDER BY id";
    }
    const Rows fast = subject.open(sql);
    const ComPtr<IRowReader> reader = queryFor<IRowReader>(fast.object());
    if (!reader) {
        throw StandIn("each cell is read by Value, which costs time from ten thousand customers on");
    }
    const auto sink = makeCom<CellSink>();
    const HRESULT result = reader->ReadRows(sink.get());
    if (sink->broken) {
        throw Breach(*sink->broken);
    }
    mustSucceed(result, "ReadRows");
    std::vector<std::string> slow;
    for (const Rows rows = subject.open(sql); !rows.atEnd() && slow.size() < 100; rows.next()) {
        std::string& row = slow.emplace_back();
        const LONG fields = rows.fieldCount();
        for (LONG i = 0; i < fields && i < 100; ++i) {
            row += cellText(rows.value(rows.fieldName(i))) + '|';
        }
    }
    const std::string consequence = "shows what the fast path gives";
    if (sink->rows.size() != slow.size()) {
        throw Breach("IRowReader gives " + std::to_string(sink->rows.size()) + " rows, and Value " +
                         std::to_string(slow.size()),
                     consequence);
    }
    for (std::size_t i = 0; i < slow.size(); ++i) {
        if (sink->rows[i] != slow[i]) {
            throw Breach("IRowReader gives " + sink->rows[i] + " where Value gives " + slow[i], consequence);
        }
    }
    if (!fast.atEnd()) {
        throw Breach("a row set is not at its end behind ReadRows", "does not read on");
    }
    const Rows stopped = subject.open(sql);
    const auto once = makeCom<CellSink>();
    once->stopAfter = 1;
    if (const auto again = queryFor<IRowReader>(stopped.object());
        again && (again->ReadRows(once.get()) != E_ABORT || once->rows.size() != 1)) {
        throw Breach("ReadRows goes on, or does not say so, when the sink fails",
                     "would miss that its memory did not do");
    }
    forgetErrors();
}

const char* word(CursorKind cursor)
{
    static constexpr const char* words[] = {"forward only", "keyset", "dynamic", "static"};
    return words[cursor];
}

const char* word(LockKind lock)
{
    static constexpr const char* words[] = {"", "read only", "pessimistic", "optimistic"};
    return words[lock];
}

} // namespace

void addRowSetChecks(std::vector<Check>& checks)
{
    checks.push_back({movesCheck, connectionCheck, checkMoves});
    checks.push_back({tableCheck, movesCheck, [](Subject& subject) { subject.createTable(); }});
    for (const CursorKind cursor : {CursorForwardOnly, CursorKeyset, CursorDynamic, CursorStatic}) {
        for (const LockKind lock : {LockReadOnly, LockPessimistic, LockOptimistic}) {
            checks.push_back({std::string("row sets: ") + word(cursor) + ", " + word(lock), movesCheck,
                              [cursor, lock](Subject& subject) { checkKind(subject, cursor, lock); }});
        }
    }
    checks.push_back({"row sets: fields by name, in any case", movesCheck, checkNames});
    checks.push_back({"row sets: fields by index", movesCheck, checkIndex});
    checks.push_back({"row sets: NULL", movesCheck, checkNull});
    checks.push_back({"row sets: the empty text", movesCheck, checkEmptyText});
    checks.push_back({"row sets: closed", movesCheck, checkClosed});
    checks.push_back({"row sets: nothing stays open behind them", movesCheck, checkNothingOpen});
}

void addReaderCheck(std::vector<Check>& checks)
{
    checks.push_back({"IRowReader", rowInterfacesCheck, checkReader});
}

} // namespace zul::host::check
