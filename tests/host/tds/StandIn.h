#pragma once
// A server of TDS 7.4 and Transact-SQL on 127.0.0.1, for tests: what a program sends through a real driver is read
// as a real server reads it, parsed as Transact-SQL, and run.
#include "tests/host/tds/Fault.h"
#include "tests/host/tds/Session.h"

#include <atomic>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace zul::tds {

/// Listens from its construction to its destruction, one thread a session.
class StandIn
{
public:
    explicit StandIn(ServerOptions options);
    ~StandIn();
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;

    int port() const { return m_port; }

    /// How a program connects through FreeTDS.
    std::string connectionString() const;

    /// Where the server is to hang up next, and how many requests it had.
    Faults& faults() { return m_faults; }

    /// Hangs up on everybody now, and waits until what they had begun is undone.
    void cutAll();

private:
    struct Client
    {
        std::unique_ptr<Channel> channel;
        std::thread thread;
        std::atomic<bool> over = false;
    };

    void listen();
    void removeOver();

    ServerOptions m_options;
    Faults m_faults;
    int m_listener = -1;
    int m_port = 0;
    std::mutex m_mutex;
    std::list<Client> m_clients;
    std::thread m_thread;
};

/// The driver's file; empty when it is not installed.
std::string freeTdsDriver();

} // namespace zul::tds
