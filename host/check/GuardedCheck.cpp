// The host runs in a process of its own, which tells this one what it begins and what it has found.
#include "host/check/GuardedCheck.h"
#include "host/check/HostProcess.h"
#include "host/check/Verdict.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <exception>
#include <optional>
#include <utility>

namespace zul::host::check {

namespace {

using Clock = std::chrono::steady_clock;

/// A host that ends this many processes is not tried any further.
constexpr int mostProcesses = 3;
constexpr std::chrono::seconds longestStart{60};

enum class Kind : unsigned char
{
    Started,
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

std::string packed(const Message& message)
{
    const Head head{message.kind, message.outcome, static_cast<std::uint32_t>(message.check.size()),
                    static_cast<std::uint32_t>(message.text.size())};
    return std::string(reinterpret_cast<const char*>(&head), sizeof head) + message.check + message.text;
}

/// The first message of the bytes, which it is then no part of any more; nothing while it is not whole.
std::optional<Message> taken(std::string& bytes)
{
    Head head{};
    if (bytes.size() < sizeof head) {
        return std::nullopt;
    }
    std::memcpy(&head, bytes.data(), sizeof head);
    const std::size_t size = sizeof head + head.check + head.text;
    if (bytes.size() < size) {
        return std::nullopt;
    }
    Message message{head.kind, head.outcome, bytes.substr(sizeof head, head.check),
                    bytes.substr(sizeof head + head.check, head.text)};
    bytes.erase(0, size);
    return message;
}

/// Everything that the host does.
void work(const std::function<ComPtr<_SqlConnection>()>& create, const CheckOptions& options,
          const Start& start, const std::function<void(const std::string&)>& send)
{
    try {
        send(packed({Kind::Started, {}, {}, {}}));
        ComPtr<_SqlConnection> connection = create();
        send(packed({Kind::Created, {}, {}, {}}));
        Course course;
        course.first = start.first;
        course.stands = start.stands;
        course.begins = [&send](const std::string& check) { send(packed({Kind::Begins, {}, check, {}})); };
        course.told = [&send](const Finding& found) {
            send(packed({Kind::Finding, found.outcome, found.check, found.text}));
        };
        checkHost(connection.get(), options, std::move(course));
        connection = {};
        send(packed({Kind::Done, {}, {}, {}}));
    } catch (const std::exception& error) {
        send(packed({Kind::NotCreated, {}, {}, error.what()}));
    } catch (...) {
        send(packed({Kind::NotCreated, {}, {}, "an exception came out of the host when it was loaded"}));
    }
}

/// What one process says, message by message.
class Messages
{
public:
    explicit Messages(HostProcess& process)
        : m_process(process)
    {}

    /// The next message; nothing when the process has ended, or says nothing until the limit is over.
    std::optional<Message> next(std::chrono::seconds limit)
    {
        const Clock::time_point start = Clock::now();
        while (true) {
            if (auto message = taken(m_bytes)) {
                return message;
            }
            const bool ended = !m_process.end().empty();
            if (!m_process.read(m_bytes) && ended) {
                return taken(m_bytes);
            }
            if (!ended && limit.count() > 0 && Clock::now() - start > limit) {
                return std::nullopt;
            }
        }
    }

private:
    HostProcess& m_process;
    std::string m_bytes;
};

/// What is said of the check that was running.
Finding fatal(const std::string& check, const std::string& end, std::chrono::seconds limit)
{
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
    Guard(const HostWork& work, std::chrono::seconds limit, const std::function<void(const Finding&)>& told)
        : m_work(work)
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
        const auto process = startHostProcess(m_work, {m_guarded.report.findings.size(), m_stands});
        Messages messages(*process);
        std::string running = loadingCheck;
        // To start a program takes its time where the machine is busy, and is not the host's.
        messages.next(m_limit.count() > 0 ? std::max(m_limit, longestStart) : m_limit);
        while (const auto message = messages.next(m_limit)) {
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
            case Kind::Started:
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
        say(fatal(running, process->end(), m_limit));
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

    const HostWork& m_work;
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
    const HostWork all = [&](const Start& start, const std::function<void(const std::string&)>& send) {
        work(create, options, start, send);
    };
    workIfStarted(all);
    return Guard(all, limit, told).run();
}

} // namespace zul::host::check
