// A process of its own for the host that is checked: what it does there can end that process, or hold it up, and no other.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>

namespace zul::host::check {

/// From where a process goes on that follows one that ended.
struct Start
{
    /// The first of allChecks() that is run.
    std::size_t first = 0;
    /// The checks before it that were ok.
    std::set<std::string> stands;
};

/// What the process with the host does: everything behind `start`. It tells by bytes how far it is.
using HostWork =
    std::function<void(const Start& start, const std::function<void(const std::string& bytes)>& send)>;

/// The process with the host, seen from the one that waits for it.
class HostProcess
{
public:
    virtual ~HostProcess() = default; ///< ends the process where it still runs

    /// Waits a little for bytes and appends what has come. False: nothing came, or nothing will.
    virtual bool read(std::string& bytes) = 0;
    /// How the process ended, "exit code 3"; empty while it runs. What it sent may still be there to be read.
    virtual std::string end() const = 0;
};

/// Starts a process that does `work` and ends. It ends with this one at the latest. The process must have one thread.
/// Throws std::system_error where none can be started.
std::unique_ptr<HostProcess> startHostProcess(const HostWork& work, const Start& start);

/// For platforms that start the process with the host by running this program once more, with the same arguments: does
/// `work` and ends where this is that process. To be called where the first one calls startHostProcess.
void workIfStarted(const HostWork& work);

} // namespace zul::host::check
