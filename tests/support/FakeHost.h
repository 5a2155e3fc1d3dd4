// A host for tests: the connection object, its row sets and its in-house objects, all in memory. It answers
// what a test scripted, writes down every operation in order, and fails where it is told to.
//
//   FakeHost host;
//   host.answer("from tabClienti", {{"IdCliente", "email"}, {{number(7), text("a@b.it")}}});
//   host.failNth("update", 3, E_FAIL, u"disk full");
//   … run the component on host.connection() …
//   EXPECT_EQ(host.operations(), …);
#pragma once

#include "automation/ComPtr.h"
#include "automation/Variant.h"

#include <Zul_Host.h>
#include <Zul_SQL.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace zul::test {

// Values of cells.
Variant null();
Variant text(std::string_view utf8);
Variant number(std::int32_t value);
Variant real(double value);
Variant boolean(bool value);
Variant date(double days);

/// The rows that a statement gives.
struct Rows
{
    std::vector<std::string> fields;
    std::vector<std::vector<Variant>> rows;
};

/// A customer of the fake customer object.
struct FakeCustomer
{
    std::string name;
    std::string email;
    bool consensoSms = true;
    bool consensoEmail = true;
    long idClassificazione = 0;
};

/// What a message record was filled with, in the order in which it was filled.
using FilledRecord = std::vector<std::pair<std::string, Variant>>;

enum class Service
{
    IdGenerator,
    Customer,
    MessageRecord,
    TextParser,
    AppConnector,
    CustomerFilterSql,
    AdvancedSearch,
    ChangeTracker,
    EmailCheck,
    ProgramStarter,
};

class FakeHost
{
public:
    struct State;

    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    /// The connection object. It may outlive this object; it then answers as before.
    ComPtr<_SqlConnection> connection() const;

    // --- What it answers

    std::string& connectionString();
    std::string& userName();
    /// The rows of every statement that contains the text; the last script that fits wins. A statement that
    /// none fits gives no rows.
    void answer(const std::string& part, Rows rows);
    /// The value of a lookup, by its condition. Empty for any other.
    void answerLookup(const std::string& condition, Variant value);
    /// The table tabImpostazioni by key; nothing is NULL. Statements on it work on this map.
    std::map<std::string, std::optional<std::string>>& settings();
    /// What the next questions for FieldCount get, one after another; the number of fields when used up.
    std::vector<long>& fieldCounts();
    /// Row sets answer IRowReader as well.
    void giveRowReader(bool give);

    // --- Its in-house objects. None is there until it is offered.

    void offer(Service service);
    void offerAll();
    std::map<long, FakeCustomer>& customers();
    /// What Save of a message record answers, one after another; true when used up.
    std::vector<bool>& saveAnswers();
    /// The filter of the next advanced searches, one after another; empty when used up.
    std::vector<std::string>& searchAnswers();
    /// Error texts of the app connector, one after another: empty is a success, which is also what follows.
    std::vector<std::string>& connectorErrors();
    /// What the e-mail check answers.
    std::function<bool(const std::string&)>& isValidEmail();
    /// The next id of every table.
    long& nextId();

    // --- Failures

    /// The n-th operation of a kind (from 1) fails: "execute", "open", "update", "nextid", "lookup", "customer",
    /// "save", "parse", "connection", "user", "service" (that one of its objects is asked for), … as the operations
    /// begin.
    void failNth(const std::string& kind, int n, HRESULT code, const std::u16string& description);
    /// Every operation that contains the text fails.
    void failWhere(const std::string& part, HRESULT code, const std::u16string& description);
    /// The n-th row (from 1) that a row set is asked for fails.
    void failAtRow(int n, HRESULT code, const std::u16string& description);
    void noFailures();

    // --- What it wrote down

    /// Every operation in order:
    ///   execute SQL · open SQL cursor lock · addnew · set column=value · update · begin · commit · rollback ·
    ///   nextid table key · lookup field|table|condition · customer id · parse text|name|classification ·
    ///   save · init slug|salt · push email|text · pushall text · filter Name(arguments) · search kind ·
    ///   tracked table id · checkemail text · start path|parameters
    /// Values: texts in single quotes, NULL, decimal numbers (16-bit ones end in "s", 64-bit ones in "l"),
    /// true, false, days as yyyy-mm-dd, days with a time of day as <moment>.
    const std::vector<std::string>& operations() const;
    /// Those that begin with a word.
    std::vector<std::string> operations(const std::string& kind) const;
    void forgetOperations();
    /// The values that were set in a column, in order.
    std::vector<Variant> valuesOf(const std::string& column) const;
    const std::vector<FilledRecord>& savedRecords() const;
    /// Row sets that were opened and not closed yet, closed by their release included.
    int openRowSets() const;
    /// How many advanced-search objects were made, and how many customers.
    int made(Service service) const;
    /// Something to do inside an operation that contains the text.
    void during(const std::string& part, std::function<void()> action);

private:
    std::shared_ptr<State> m_state;
};

/// A value as the operations show it.
std::string show(const VARIANT& value);

} // namespace zul::test
