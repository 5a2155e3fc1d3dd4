// What a host says when it cannot do something, and how it goes on.
#include "host/check/Checks.h"
#include "host/check/Verdict.h"

namespace zul::host::check {

namespace {

constexpr std::u16string_view badStatement = u"SELEC 1";
constexpr std::u16string_view badTable = u"SELECT * FROM zulTabellaCheManca";

struct Tried
{
    const char* what;
    Failure failure;
};

Failure tryField(const Subject& subject)
{
    const Rows rows = subject.open(u"SELECT 1 AS n");
    forgetErrors();
    Variant value;
    return takeFailure(rows.object()->get_Value(Variant::fromText(u"nonEsiste"), &value));
}

/// Everything that must fail on every host.
std::vector<Tried> failures(const Subject& subject)
{
    return {{"Execute of a bad statement", subject.tryExecute(badStatement)},
            {"OpenRecordset of a bad statement", subject.tryOpen(badStatement)},
            {"OpenRecordset of a table that is missing", subject.tryOpen(badTable)},
            {"Value of a field that is missing", tryField(subject)}};
}

void checkCodes(Subject& subject)
{
    for (const Tried& tried : failures(subject)) {
        if (SUCCEEDED(tried.failure.code)) {
            throw Breach(std::string(tried.what) + " succeeds", "shows and stores what is not there");
        }
    }
}

void checkDescriptions(Subject& subject)
{
    for (const Tried& tried : failures(subject)) {
        if (FAILED(tried.failure.code) && tried.failure.description.empty()) {
            throw Breach(std::string(tried.what) + " leaves no description with SetErrorInfo",
                         "has nothing but a number for its log");
        }
    }
}

void checkGoesOn(Subject& subject)
{
    failures(subject);
    if (numberOf(subject.single(u"SELECT 7 AS n"), "the field n") != 7) {
        throw Breach("after failures SELECT 7 gives something else", "shows what it was given");
    }
    if (subject.hasTable()) {
        subject.emptyTable();
        subject.execute(u"INSERT INTO zulVerifica (id) VALUES (1)");
    }
}

void checkDuplicate(Subject& subject)
{
    const char* const consequence = "believes that the row is stored";
    subject.emptyTable();
    constexpr std::u16string_view insert = u"INSERT INTO zulVerifica (id) VALUES (1)";
    subject.execute(insert);
    if (SUCCEEDED(subject.tryExecute(insert).code)) {
        throw Breach("Execute of an INSERT with a key that is there succeeds", consequence);
    }
    {
        const Rows rows = subject.open(u"SELECT * FROM zulVerifica WHERE 1=2", CursorStatic, LockPessimistic);
        rows.addNew();
        rows.put(u"id", Variant::fromLong(1));
        if (SUCCEEDED(rows.object()->Update())) {
            throw Breach("Update of a new row with a key that is there succeeds", consequence);
        }
        forgetErrors();
    }
    subject.execute(u"INSERT INTO zulVerifica (id) VALUES (2)");
}

/// Texts of others stand in statements. Where one ends behind the first, nothing that was put into it runs.
void checkTwoStatements(Subject& subject)
{
    subject.emptyTable();
    subject.execute(u"INSERT INTO zulVerifica (id) VALUES (1)");
    const bool taken =
        SUCCEEDED(subject.tryExecute(u"UPDATE zulVerifica SET piccolo = 1; DELETE FROM zulVerifica").code);
    if (taken || subject.rowsInTable() != 1) {
        throw Warning("Execute runs a text of two statements",
                      "sends one at a time; a host that refuses two closes off what was put into a text");
    }
}

void checkLookupFailure(Subject& subject)
{
    Variant value;
    const Failure failure = subject.tryLookup(u"nonEsiste", u"zulVerifica", u"id = 1", value);
    if (SUCCEEDED(failure.code)) {
        throw Breach("LookupValue of a field that is missing succeeds", "takes the value for the customer's");
    }
}

void checkLost(Subject&)
{
    throw Skipped(
        "a connection cannot be cut off from here; let its calls fail with a description, and Close "
        "and Release of its row sets go on");
}

} // namespace

void addFailureChecks(std::vector<Check>& checks)
{
    checks.push_back({"failures: a bad statement, a missing table, a missing field", movesCheck, checkCodes});
    checks.push_back({"failures: descriptions", movesCheck, checkDescriptions});
    checks.push_back({"failures: the connection goes on", movesCheck, checkGoesOn});
    checks.push_back({"failures: a key that is there", addCheck, checkDuplicate});
    checks.push_back({"failures: two statements in one text", tableCheck, checkTwoStatements});
    checks.push_back({"failures: LookupValue", tableCheck, checkLookupFailure});
    checks.push_back({"failures: a lost connection", {}, checkLost});
}

} // namespace zul::host::check
