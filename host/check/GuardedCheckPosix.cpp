// The host runs in a child process, which tells this one by a pipe what it begins and what it has found.
#include "host/check/GuardedCheck.h"
#include "host/check/Verdict.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace zul::host::check {

namespace {

using Clock = std::chrono::steady_clock;

/// A host that ends this many processes is not tried any further.
constexpr int mostProcesses = 3;

enum class Kind : unsigned char
{
    NotCreated, ///< text
    Created,
    Begins,  ///< check
    Finding, ///< outcome, check, text
    Done     ///< everything is given back
};

struct Message
{
    Kind kind = Kind::Done;
    Outcome outcome = Outcome::Ok;
    std::string check;
    std::string text;
};

/// The fixed part of a message on the pipe; behind it stand the two texts.
struct Head
{
    Kind kind;
    Outcome outcome;
    std::uint32_t check;
    std::uint32_t text;
};

void send(int pipe, const Message& message)
{
    const Head head{message.kind, message.outcome, static_cast<std::uint32_t>(message.check.size()),
                    static_cast<std::uint32_t>(message.text.size())};
    std::string bytes(reinterpret_cast<const char*>(&head), sizeof head);
    bytes += message.check + message.text;
    for (std::size_t at = 0; at < bytes.size();) {
        const ssize_t written = write(pipe, bytes.data() + at, bytes.size() - at);
        if (written < 0 && errno != EINTR) {
            _exit(1); // nobody listens any more
        }
        at += written < 0 ? 0 : static_cast<std::size_t>(written);
    }
}

/// Everything that the host does. Leaves at once: what a host does when a program ends is no part of the contract.
[[noreturn]] void runChild(int pipe, const std::function<ComPtr<_SqlConnection>()>& create,
                           const CheckOptions& options, Course course)
{
    try {
        ComPtr<_SqlConnection> connection = create();
        send(pipe, {Kind::Created, {}, {}, {}});
        course.begins = [pipe](const std::string& check) { send(pipe, {Kind::Begins, {}, check, {}}); };
        course.told = [pipe](const Finding& found) {
            std::fflush(nullptr); // what the host prints stands beside its finding
            send(pipe, {Kind::Finding, found.outcome, found.check, found.text});
        };
        checkHost(connection.get(), options, std::move(course));
        connection = {};
        send(pipe, {Kind::Done, {}, {}, {}});
    } catch (const std::exception& error) {
        send(pipe, {Kind::NotCreated, {}, {}, error.what()});
    } catch (...) {
        send(pipe, {Kind::NotCreated, {}, {}, "an exception came out of the host when it was loaded"});
    }
    std::fflush(nullptr);
    _exit(0);
}

std::string endOf(int status)
{
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return "signal " + std::to_string(signal) + ", " + strsignal(signal);
    }
    return "exit code " + std::to_string(WEXITSTATUS(status));
}

/// One child, from its start to its end.
class Child
{
public:
    Child(const std::function<ComPtr<_SqlConnection>()>& create, const CheckOptions& options, Course course)
    {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe");
        }
        std::signal(SIGCHLD, SIG_DFL); // who started this program may have it passed over, and no end is told
        std::fflush(nullptr);          // or the child would print it again
        const pid_t parent = getpid();
        m_process = fork();
        if (m_process == 0) {
            close(ends[0]);
#ifdef __linux__
            // A host that hangs does not outlive who waits for it.
            prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
            if (getppid() != parent) {
                _exit(1);
            }
            runChild(ends[1], create, options, std::move(course));
        }
        m_pipe = ends[0];
        close(ends[1]);
        if (m_process < 0) {
            const int error = errno;
            close(m_pipe);
            throw std::system_error(error, std::generic_category(), "fork");
        }
    }
    ~Child()
    {
        if (!m_status) {
            kill(m_process, SIGKILL);
            int status = 0;
            while (waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
            }
        }
        close(m_pipe);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    /// The next message; nothing when the child has ended, or says nothing until the limit is over.
    std::optional<Message> next(std::chrono::seconds limit)
    {
        const Clock::time_point start = Clock::now();
        while (true) {
            if (auto message = taken()) {
                return message;
            }
            const bool ended = m_status.has_value();
            if (!readSome() && ended) {
                return taken();
            }
            if (!ended && limit.count() > 0 && Clock::now() - start > limit) {
                return std::nullopt;
            }
        }
    }

    /// How the child ended; empty while it runs.
    std::string end() const { return m_status ? endOf(*m_status) : std::string(); }

private:
    /// Whether something came. Waits a little for it, and looks whether the child is there: one of its own children
    /// may hold the pipe open behind it.
    bool readSome()
    {
        pollfd waited{m_pipe, POLLIN, 0};
        char bytes[4096];
        if (m_open && poll(&waited, 1, m_status ? 0 : 100) > 0) {
            const ssize_t count = read(m_pipe, bytes, sizeof bytes);
            if (count > 0) {
                m_bytes.append(bytes, static_cast<std::size_t>(count));
                return true;
            }
            m_open = count != 0;
        }
        int status = 0;
        if (!m_status && waitpid(m_process, &status, m_open ? WNOHANG : 0) == m_process) {
            m_status = status;
        }
        return false;
    }

    std::optional<Message> taken()
    {
        Head head{};
        if (m_bytes.size() < sizeof head) {
            return std::nullopt;
        }
        std::memcpy(&head, m_bytes.data(), sizeof head);
        const std::size_t size = sizeof head + head.check + head.text;
        if (m_bytes.size() < size) {
            return std::nullopt;
        }
        Message message{head.kind, head.outcome, m_bytes.substr(sizeof head, head.check),
                        m_bytes.substr(sizeof head + head.check, head.text)};
        m_bytes.erase(0, size);
        return message;
    }

    pid_t m_process = -1;
    int m_pipe = -1;
    bool m_open = true;
    std::optional<int> m_status;
    std::string m_bytes;
};

/// What is said of the check that was running.
Finding fatal(const std::string& check, const Child& child, std::chrono::seconds limit)
{
    const std::string end = child.end();
    const Breach breach =
        end.empty() ? Breach("no answer within " + std::to_string(limit.count()) + " seconds",
                             "waits for ever: the application hangs")
                    : Breach("the host ended the process (" + end + ')',
                             "is in that process: the application ends in the middle of the operator's work");
    return {Outcome::Breach, check, breach.text};
}

class Guard
{
public:
    Guard(const std::function<ComPtr<_SqlConnection>()>& create, const CheckOptions& options,
          std::chrono::seconds limit, const std::function<void(const Finding&)>& told)
        : m_create(create)
        , m_options(options)
        , m_limit(limit)
        , m_told(told)
    {}

    GuardedReport run()
    {
        int processes = 0;
        while (runOnce()) {
            if (++processes == mostProcesses) {
                skipTheRest();
                break;
            }
        }
        return std::move(m_guarded);
    }

private:
    /// Whether the host ended the process, or hung, with checks behind it.
    bool runOnce()
    {
        Course course;
        course.first = m_guarded.report.findings.size();
        course.stands = m_stands;
        Child child(m_create, m_options, std::move(course));
        std::string running = loadingCheck;
        while (const auto message = child.next(m_limit)) {
            switch (message->kind) {
            case Kind::NotCreated:
                // One that was there a moment ago is no host that cannot be loaded.
                if (m_guarded.report.findings.empty()) {
                    m_guarded.notCreated = message->text;
                } else {
                    say({Outcome::Breach, loadingCheck,
                         Breach("a second time: " + message->text, "does it for each window").text});
                }
                return false;
            case Kind::Created:
                break;
            case Kind::Begins:
                running = message->check;
                break;
            case Kind::Finding:
                say({message->outcome, message->check, message->text});
                break;
            case Kind::Done:
                return false;
            }
        }
        say(fatal(running, child, m_limit));
        // A host that does not come as far as a check, or had them all, is not tried again.
        return running != loadingCheck && running != partingCheck;
    }

    void skipTheRest()
    {
        const std::vector<Check>& checks = allChecks();
        for (std::size_t i = m_guarded.report.findings.size(); i < checks.size(); ++i) {
            say({Outcome::Skipped, checks[i].name,
                 "not tried: the host ended or held up " + std::to_string(mostProcesses) + " processes"});
        }
    }

    void say(Finding finding)
    {
        if (finding.outcome == Outcome::Ok) {
            m_stands.insert(finding.check);
        }
        if (m_told) {
            m_told(finding);
        }
        m_guarded.report.findings.push_back(std::move(finding));
    }

    const std::function<ComPtr<_SqlConnection>()>& m_create;
    const CheckOptions& m_options;
    std::chrono::seconds m_limit;
    const std::function<void(const Finding&)>& m_told;
    std::set<std::string> m_stands;
    GuardedReport m_guarded;
};

} // namespace

GuardedReport checkHostGuarded(const std::function<ComPtr<_SqlConnection>()>& create,
                               const CheckOptions& options, std::chrono::seconds limit,
                               const std::function<void(const Finding&)>& told)
{
    return Guard(create, options, limit, told).run();
}

} // namespace zul::host::check
