// What changes the database: rows through row sets, statements, transactions; and the lookup of a single value.
#include "host/check/Checks.h"
#include "host/check/Verdict.h"

#include <Zul_Host.h>

namespace zul::host::check {

namespace {

void requireRows(const Subject& subject, LONG wanted, const char* when, const char* consequence)
{
    const LONG found = subject.rowsInTable();
    if (found != wanted) {
        throw Breach(std::to_string(found) + " rows stand in the table " + when + " instead of " +
                         std::to_string(wanted),
                     consequence);
    }
}

std::u16string textOfRow(const Subject& subject, std::u16string_view id)
{
    const Variant text = subject.single(u"SELECT testo FROM zulVerifica WHERE id = " + std::u16string(id));
    return std::u16string(text.text());
}

void checkAdd(Subject& subject)
{
    subject.requireTable();
    subject.emptyTable();
    subject.addRow(1, u"TESTO", Variant::fromText(u"uno"));
    requireRows(subject, 1, "after AddNew and Update", "believes that the template or message is stored");
    if (textOfRow(subject, u"1") != u"uno") {
        throw Breach("a column that was set by AddNew, Value and Update holds " +
                         shown(textOfRow(subject, u"1")),
                     "believes that the template or message is stored");
    }
    subject.foundToAddRows();
}

void checkAddMore(Subject& subject)
{
    subject.emptyTable();
    const Rows rows = subject.open(u"SELECT * FROM zulVerifica WHERE 1=2", CursorStatic, LockPessimistic);
    for (LONG id = 1; id <= 3; ++id) {
        rows.addNew();
        rows.put(u"id", Variant::fromLong(id));
        rows.update();
    }
    requireRows(subject, 3, "after three AddNew and Update of one row set",
                "loses settings: it stores them one after another");
}

void checkBareName(Subject& subject)
{
    subject.emptyTable();
    const Rows rows = subject.open(u"zulVerifica", CursorDynamic, LockOptimistic);
    if (!rows.atEnd()) {
        throw Breach("a row set over the bare name of an empty table has a row", "reads it");
    }
    rows.addNew();
    rows.put(u"id", Variant::fromLong(1));
    rows.update();
    requireRows(subject, 1, "after AddNew and Update over the bare name of a table",
                "believes that the row is stored");
}

void checkCurrentRow(Subject& subject)
{
    subject.emptyTable();
    for (const std::u16string_view id : {u"1", u"2", u"3"}) {
        subject.execute(u"INSERT INTO zulVerifica (id, testo) VALUES (" + std::u16string(id) + u", 'prima')");
    }
    {
        const Rows rows =
            subject.open(u"SELECT * FROM zulVerifica WHERE id = 2", CursorDynamic, LockOptimistic);
        rows.put(u"testo", Variant::fromText(u"dopo l'altra"));
        rows.update();
    }
    if (textOfRow(subject, u"2") != u"dopo l'altra") {
        throw Breach("the current row holds " + shown(textOfRow(subject, u"2")) + " after Value and Update",
                     "believes that the template or setting is changed");
    }
    if (textOfRow(subject, u"1") != u"prima" || textOfRow(subject, u"3") != u"prima") {
        throw Breach("Update changed other rows than the current one", "changes other templates too");
    }
}

void checkAffected(Subject& subject)
{
    subject.emptyTable();
    const auto require = [&subject](std::u16string_view sql, LONG wanted) {
        const LONG affected = subject.execute(sql);
        if (affected != wanted) {
            throw Breach("Execute " + shown(sql) + " gives " + std::to_string(affected) +
                             " rows instead of " + std::to_string(wanted),
                         "goes on: it only looks at success");
        }
    };
    require(u"INSERT INTO zulVerifica (id) VALUES (1)", 1);
    require(u"INSERT INTO zulVerifica (id, testo) SELECT 2, 'due'", 1);
    require(u"UPDATE zulVerifica SET piccolo = 3", 2);
    require(u"UPDATE zulVerifica SET piccolo = 4 WHERE id = 99", 0);
    require(u"DELETE FROM zulVerifica", 2);
}

bool hasGenerator(const Subject& subject)
{
    const auto provider = queryFor<IServiceProvider>(subject.object());
    ComPtr<IIdGenerator> generator;
    if (provider &&
        FAILED(provider->QueryService(iidOf<IIdGenerator>(), iidOf<IIdGenerator>(), generator.putVoid()))) {
        generator.detach();
    }
    return static_cast<bool>(generator);
}

/// With the first one begun.
void requireTransactions(const Subject& subject)
{
    constexpr std::u16string_view insert = u"INSERT INTO zulVerifica (id) VALUES (1)";
    const char* const consequence = "would leave halves behind";
    subject.execute(insert);
    mustSucceed(subject.connection()->RollbackTrans(), "RollbackTrans");
    requireRows(subject, 0, "after RollbackTrans", consequence);
    mustSucceed(subject.connection()->BeginTrans(), "BeginTrans after RollbackTrans");
    subject.execute(insert);
    mustSucceed(subject.connection()->CommitTrans(), "CommitTrans");
    requireRows(subject, 1, "after CommitTrans", consequence);
    // Nothing is open that could take it back.
    subject.connection()->RollbackTrans();
    forgetErrors();
    requireRows(subject, 1, "after CommitTrans and a RollbackTrans", consequence);
}

void checkTransactions(Subject& subject)
{
    subject.emptyTable();
    forgetErrors();
    if (const HRESULT result = subject.connection()->BeginTrans(); FAILED(result)) {
        const Failure failure = takeFailure(result);
        if (hasGenerator(subject)) {
            throw StandIn("BeginTrans fails: " + failure.text() +
                          "; the component needs none, since the host generates the ids");
        }
        throw Breach("BeginTrans fails: " + failure.text(), "stores no template and sends no message");
    }
    try {
        requireTransactions(subject);
    } catch (...) {
        // What comes next runs outside.
        subject.connection()->RollbackTrans();
        forgetErrors();
        throw;
    }
}

void checkLookup(Subject& subject)
{
    subject.emptyTable();
    subject.execute(u"INSERT INTO zulVerifica (id, testo) VALUES (1, 'l''una')");
    const auto looked = [&subject](std::u16string_view field, std::u16string_view condition) {
        Variant value;
        const Failure failure = subject.tryLookup(field, u"zulVerifica", condition, value);
        if (FAILED(failure.code)) {
            throw Breach("LookupValue where " + shown(condition) + " fails: " + failure.text(),
                         "ends the run, and writes the failure to its log");
        }
        return value;
    };
    for (const std::u16string_view condition : {u"id = 1", u"testo = 'l''una'", u""}) {
        if (looked(u"testo", condition).text() != u"l'una") {
            throw Breach("LookupValue where " + shown(condition) + " gives " +
                             shown(looked(u"testo", condition)),
                         "writes another classification into the text");
        }
    }
    const Variant none = looked(u"testo", u"id = 2");
    if (none.vt != VT_EMPTY) {
        throw Breach("LookupValue gives " + shown(none) + " instead of VT_EMPTY where there is no row",
                     "takes NULL and Empty for the empty text, anything else for a value");
    }
    const Variant null = looked(u"lungo", u"id = 1");
    if (null.vt != VT_NULL) {
        throw Breach("LookupValue gives " + shown(null) + " instead of VT_NULL where the field has no value",
                     "takes NULL and Empty for the empty text, anything else for a value");
    }
}

} // namespace

void addChangeChecks(std::vector<Check>& checks)
{
    checks.push_back({addCheck, tableCheck, checkAdd});
    checks.push_back({"changes: several rows by one row set", addCheck, checkAddMore});
    checks.push_back({"changes: the bare name of a table", addCheck, checkBareName});
    checks.push_back({"changes: the current row", tableCheck, checkCurrentRow});
    checks.push_back({"changes: the number of rows", tableCheck, checkAffected});
    checks.push_back({"transactions", tableCheck, checkTransactions});
    checks.push_back({"LookupValue", tableCheck, checkLookup});
}

} // namespace zul::host::check
