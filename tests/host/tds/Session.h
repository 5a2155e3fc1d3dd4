#pragma once
// One client's session: signs it in, answers its batches, procedure calls and transaction requests.
#include "tests/host/tds/Channel.h"
#include "tests/host/tds/Fault.h"
#include "tests/host/tds/StandInDatabase.h"

#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace zul::tds {

struct ServerOptions
{
    std::string file; ///< the database behind
    std::string user = "sa";
    std::string password = "Zul'prova;1";
    bool trace = std::getenv("ZUL_TDS_TRACE") != nullptr; ///< writes every request to standard error
    bool hasCatalogue = true;                             ///< whether it has the catalogue procedures
    bool hasOutput = true; ///< whether it knows the OUTPUT clause and XACT_ABORT
    /// Told of each text with its parameters before it runs, by the session's thread. In the text a parameter is a name
    /// like @P1.
    std::function<void(const std::string& text, const std::vector<Parameter>& parameters)> heard;
};

class Session final : private AnswerSink
{
public:
    Session(Channel& channel, const ServerOptions& options, Faults& faults);

    /// Serves the client until it is gone. Throws nothing but Gone.
    void serve();

private:
    void signIn(std::string_view body);
    void answerPrelogin();
    void answerBatch(std::string_view body);
    void answerCall(std::string_view body);
    void answerTransaction(std::string_view body);

    void prepareAndExecute(Reader in);
    void executeSql(Reader in);
    void execute(Reader in);
    void prepare(Reader in);
    void unprepare(Reader in);
    std::vector<Parameter> parameters(Reader& in);
    void callProcedure(const std::string& name, Reader in);

    void trace(const std::string& text) const;
    [[noreturn]] void breakOff();
    void runText(const std::string& text, const std::vector<Parameter>& parameters);
    void complain(const ServerError& error);
    void tellTransaction();
    void say(std::uint8_t token, const ServerError& what);
    void returnHandle(std::int64_t handle);
    void endOfCall();
    void endOfAnswer(std::uint16_t status);

    void columns(const std::vector<ResultColumn>& columns) override;
    bool row(const std::vector<Datum>& values) override;
    void note(int number, const std::string& text) override;
    void done(std::optional<std::int64_t> count) override;

    Channel& m_channel;
    const ServerOptions& m_options;
    Faults& m_faults;
    std::unique_ptr<StandInDatabase> m_database;
    std::map<std::int64_t, std::string> m_prepared;
    std::int64_t m_lastHandle = 0;
    std::vector<DataType> m_types; // of the rows on their way
    bool m_inCall = false;
    bool m_failed = false;
    std::optional<int> m_rowsUntilCut;
    bool m_silent = false;
    bool m_cutsAfterwards = false;
    bool m_toldTransaction = false; // whether the client knows of an open one
    // The end of a statement is written when it is known whether another one follows.
    std::optional<std::string> m_lastDone;
    Writer m_row;
};

} // namespace zul::tds
