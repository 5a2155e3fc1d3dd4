#pragma once
// Connections that break at a wanted place, and transactions that the server ends.
#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace zul::tds {

/// Where the server hangs up, or does something else to the client.
struct Fault
{
    std::string on;          ///< a request whose text contains this (to the letter); empty: any request
    int occurrence = 1;      ///< the first, second … such request
    std::optional<int> rows; ///< after so many rows of its answer; nothing: instead of running it
    bool silent = false;     ///< it only falls silent: the connection stays, and nothing comes any more
    bool afterwards = false; ///< once the request is answered
    bool deadlock = false; ///< it does not hang up: the transaction is undone, with error 1205 for the answer
};

/// The faults of a server, shared by its sessions.
class Faults
{
public:
    void arm(Fault fault)
    {
        const std::lock_guard lock(m_mutex);
        m_fault = std::move(fault);
    }

    /// Whether this request is the one; it is the one only once.
    std::optional<Fault> meets(const std::string& text)
    {
        const std::lock_guard lock(m_mutex);
        if (!m_fault || text.find(m_fault->on) == std::string::npos || --m_fault->occurrence > 0) {
            return std::nullopt;
        }
        return std::exchange(m_fault, std::nullopt);
    }

    /// Requests that all sessions together had: texts, procedure calls and transaction requests.
    int requests() const { return m_requests; }
    void count() { ++m_requests; }

private:
    std::atomic<int> m_requests = 0;
    std::mutex m_mutex;
    std::optional<Fault> m_fault;
};

} // namespace zul::tds
