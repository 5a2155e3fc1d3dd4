// ServerBench mail|sms|push CUSTOMERS ROUNDS: preparations on a server of Transact-SQL, and beside each a bare client that
// puts the same statements to it. The server is the stand-in of the tests, in this process; it is the same for both, and
// what it takes is in the elapsed times of both. A line a run:
//
//   ours|bare wall NANOSECONDS cpu NANOSECONDS rows PREPARED requests NUMBER
//
// where cpu is that of the client's thread alone.
#include "bench/BareClient.h"
#include "bench/LoadedGrid.h"
#include "bench/Measure.h"
#include "controls/notices/OutcomeList.h"
#include "host/session/HostDatabase.h"
#include "mainwindow/FormAdapters.h"
#include "messages/CreateMAIL.h"
#include "messages/CreateSMS.h"
#include "messages/PushNotifications.h"
#include "tests/host/tds/StandIn.h"

#include <QApplication>
#include <QTemporaryDir>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <filesystem>
#include <mutex>
#include <regex>

namespace {

using namespace zul;
using namespace zul::bench;

// Templates of the demonstration data, and whoever is at work.
constexpr qint32 smsTemplate = 1;
constexpr qint32 mailTemplate = 6;
constexpr qint32 operatorId = 1;

class NoProgress final : public Progress
{
public:
    void GestWaitPlease(bool, qint32, const QString&) override {}
};

/// What the statements of a run are kept in.
class Heard
{
public:
    void listen(bool listens)
    {
        const std::lock_guard lock(m_mutex);
        m_listens = listens;
    }
    void operator()(const std::string& text, const std::vector<tds::Parameter>& parameters)
    {
        const std::lock_guard lock(m_mutex);
        if (m_listens) {
            static const std::regex name("@P[0-9]+");
            m_requests.push_back({std::regex_replace(text, name, "?"), parameters});
        }
    }
    const std::vector<Request>& requests() const { return m_requests; }

private:
    std::mutex m_mutex;
    bool m_listens = false;
    std::vector<Request> m_requests;
};

std::uint64_t threadCpu()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000U +
           static_cast<std::uint64_t>(time.tv_nsec);
}

/// A run's clocks and requests, from its construction to stop().
class Run
{
public:
    explicit Run(tds::StandIn& server)
        : m_server(server)
        , m_requests(server.faults().requests())
        , m_cpu(threadCpu())
        , m_start(now())
    {}

    void stop()
    {
        m_taken = now() - m_start;
        m_cpu = threadCpu() - m_cpu;
        m_requests = m_server.faults().requests() - m_requests;
    }

    void print(const char* who, int prepared) const
    {
        std::printf("%s wall %" PRIu64 " cpu %" PRIu64 " rows %d requests %d\n", who, m_taken.wall, m_cpu,
                    prepared, m_requests);
    }

private:
    tds::StandIn& m_server;
    int m_requests;
    std::uint64_t m_cpu;
    Times m_start;
    Times m_taken;
};

void prepare(const std::string& kind, const hostlib::SqlConnection& connection, Recipients& recipients,
             Outcomes& outcomes)
{
    if (kind == "mail") {
        createMail(connection, recipients, outcomes, mailTemplate, operatorId, true);
    } else if (kind == "sms") {
        createSms(connection, recipients, outcomes, smsTemplate, true);
    } else {
        NoProgress progress;
        QStringList errors;
        const PushValidation validation = validateProfiles(connection, recipients, outcomes);
        CreatePushNotifies_ListOfContacts_BL(connection, validation.contacts,
                                             QStringLiteral("Ciao {Cliente}"), errors,
                                             PushCriterion::Selected, outcomes, progress);
    }
}

/// A preparation for every customer; measured and printed, or its statements heard. @return how many rows it wrote
int runOurs(const std::string& kind, const std::string& file, Heard* heard)
{
    tds::ServerOptions options;
    options.file = file;
    if (heard != nullptr) {
        options.heard = std::ref(*heard);
    }
    tds::StandIn server(options);
    LoadedGrid loaded(server.connectionString());
    loaded.search();
    loaded.grid().setAllChecked(true);
    GridRecipients recipients(loaded.grid());
    OutcomeList list;
    ListOutcomes outcomes(list);
    const auto rows = [&] {
        return std::atoi(
            loaded.database().run("SELECT COUNT(*) FROM TMK_MailingList").rows.at(0).at(0)->c_str());
    };
    const int before = rows();
    if (heard != nullptr) {
        heard->listen(true);
    }
    Run run(server);
    prepare(kind, loaded.connection(), recipients, outcomes);
    run.stop();
    if (heard != nullptr) {
        heard->listen(false);
    }
    const int prepared = rows() - before;
    if (heard == nullptr) {
        run.print("ours", prepared);
    }
    return prepared;
}

void runBare(const std::vector<Request>& requests, const std::string& file, int prepared)
{
    tds::ServerOptions options;
    options.file = file;
    tds::StandIn server(options);
    BareClient client(server.connectionString());
    client.take(requests);
    Run run(server);
    client.run();
    run.stop();
    run.print("bare", prepared);
}

void measure(const std::string& kind, int customers, int rounds)
{
    const QTemporaryDir folder;
    const std::string fresh = folder.filePath(QStringLiteral("fresh.db")).toStdString();
    const auto copy = [&] {
        const std::string file = folder.filePath(QStringLiteral("work.db")).toStdString();
        for (const char* ending : {"-wal", "-shm"}) {
            std::filesystem::remove(file + ending);
        }
        std::filesystem::copy_file(fresh, file, std::filesystem::copy_options::overwrite_existing);
        return file;
    };
    {
        tds::ServerOptions options;
        options.file = fresh;
        const tds::StandIn server(options);
        host::createDemo(server.connectionString(), customers);
    }
    Heard heard;
    const int prepared = runOurs(kind, copy(), &heard);
    for (int round = 0; round < rounds; ++round) {
        runOurs(kind, copy(), nullptr);
        runBare(heard.requests(), copy(), prepared);
    }
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() != 3 || (words[0] != "mail" && words[0] != "sms" && words[0] != "push")) {
        std::fputs("usage: ServerBench mail|sms|push CUSTOMERS ROUNDS\n", stderr);
        return 2;
    }
    if (tds::freeTdsDriver().empty()) {
        std::fputs("the ODBC driver of FreeTDS is not installed\n", stderr);
        return 77;
    }
    try {
        measure(words[0], std::atoi(words[1].c_str()), std::atoi(words[2].c_str()));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "ServerBench: %s\n", error.what());
        return 1;
    }
}
