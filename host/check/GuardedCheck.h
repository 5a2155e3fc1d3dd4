// The checks where a host that ends its process, or hangs, cannot take the report with it.
#pragma once

#include "automation/ComPtr.h"
#include "host/check/HostCheck.h"

#include <chrono>
#include <functional>
#include <string>

namespace zul::host::check {

/// The name under which a host is reported that does not get as far as the first check.
inline constexpr const char* loadingCheck = "loading the host";

struct GuardedReport
{
    Report report;
    /// Why there is no connection object, for the user; empty: there was one.
    std::string notCreated;
};

/// Creates the connection object and puts it through every check, in a process of its own. When the host ends that, or
/// takes longer than `limit` for one check (0: as long as it likes), this is a breach of the check that was running, and the
/// next one begins in another process, three times at most. This process must have one thread.
///
/// That process is split off, or is this program run once more with the same arguments: then this function is called
/// there too, with a `create` that gives the same host, and does not return. So nothing is printed before.
///
/// `create` throws std::exception with a text for the user where there is no connection object. `told` is called in this
/// process, with each finding as it is made.
GuardedReport checkHostGuarded(const std::function<ComPtr<_SqlConnection>()>& create,
                               const CheckOptions& options, std::chrono::seconds limit,
                               const std::function<void(const Finding&)>& told);

} // namespace zul::host::check
