#pragma once
// Connections that break at a wanted place.
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace zul::tds {

/// Where the server hangs up.
struct Fault
{
    std::string on;          ///< a request whose text contains this (to the letter); empty: any request
    int occurrence = 1;      ///< the first, second … such request
    std::optional<int> rows; ///< after so many rows of its answer; nothing: instead of running it
    bool silent = false;     ///< it only falls silent: the connection stays, and nothing comes any more
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

private:
    std::mutex m_mutex;
    std::optional<Fault> m_fault;
};

} // namespace zul::tds
