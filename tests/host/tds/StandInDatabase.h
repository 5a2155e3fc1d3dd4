#pragma once
// What stands behind the stand-in: Transact-SQL, read by the dialect layer and run on a file of the embedded
// database, with the refusals and the error numbers of a real server.
//
// Not kinder than a real server where that is cheap: texts too long for their column (8152), values of another
// type (241, 245, 220), keys that are left out (515), datetime's three-hundredths of a second, long parameters that
// do not compare (402).
#include "tests/host/tds/Types.h"

#include "host/database/sqlite/SqliteEngine.h"

#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zul::tds {

/// What the server says instead of an answer.
struct ServerError
{
    int number = 0;
    int severity = 16;
    std::string text;
};

struct ResultColumn
{
    std::string name;
    DataType type;
};

/// Takes the answer to a statement as it comes.
class AnswerSink
{
public:
    virtual ~AnswerSink() = default;
    virtual void columns(const std::vector<ResultColumn>& columns) = 0;
    /// False: the client wants no more.
    virtual bool row(const std::vector<Datum>& values) = 0;
    /// What the server has to say that is no error.
    virtual void note(int number, const std::string& text) = 0;
    /// The end of one statement; no count for one that touches no rows.
    virtual void done(std::optional<std::int64_t> count) = 0;
};

/// One session's view of the file; belongs to one thread.
class StandInDatabase
{
public:
    explicit StandInDatabase(const std::string& path);

    /// Runs a batch, whose parameters stand in it as "@P1", "@P2" …, in this order. Throws ServerError; what
    /// earlier statements of the batch did stays done.
    void run(std::string_view batch, std::span<const Parameter> parameters, AnswerSink& sink);

    void begin();
    void commit();
    void rollback();
    bool inTransaction() const { return m_engine.inTransaction(); }

private:
    struct TableColumn
    {
        std::string name;
        std::string declaration;
        bool key = false;
    };

    bool runSpecial(std::string_view batch, std::span<const Parameter> parameters, AnswerSink& sink);
    void setOption(std::string_view batch, AnswerSink& sink);
    /// "begin", "commit" or "rollback".
    void changeTransaction(const std::string& word);
    void createFunction(const std::string& name);
    void addDefault(const std::string& table, const std::string& function, const std::string& column);
    void listTables(const std::string& name, AnswerSink& sink);
    void listKeys(const std::string& table, AnswerSink& sink, bool namesOnly);
    void runTranslated(std::string_view batch, std::string_view ending, std::span<const Parameter> parameters,
                       AnswerSink& sink);
    void runOne(const std::string& sql, const std::vector<dialect::OutputColumn>& known, bool countsRows,
                std::span<const Parameter> parameters, AnswerSink& sink);
    /// Triggers that refuse what the server refuses.
    void guardTable(const std::string& table);
    void native(const std::string& sql);
    bool has(std::string_view kind, const std::string& name);
    std::vector<TableColumn> columnsOf(std::string_view table);
    const std::vector<TableColumn>& knownColumns(std::string_view table);
    [[noreturn]] void fail();

    host::SqliteEngine m_engine;
    std::map<std::string, std::vector<TableColumn>, std::less<>> m_tables; // what translations looked up
};

} // namespace zul::tds
