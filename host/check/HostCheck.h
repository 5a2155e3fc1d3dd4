// Holds the connection object of a host against the contract, and writes down how it stands.
#pragma once

#include "host/check/Checks.h"

#include <functional>
#include <string>
#include <vector>

namespace zul::host::check {

enum class Outcome
{
    Ok,
    StandIn, ///< optional and missing: the component has something in its place
    Breach,  ///< against the contract
    Skipped
};

struct Finding
{
    Outcome outcome = Outcome::Ok;
    std::string check;
    std::string text; ///< empty when all is well

    /// "BREACH   name: text"
    std::string line() const;
};

struct Report
{
    std::vector<Finding> findings;

    std::size_t count(Outcome outcome) const;
    bool hasBreach() const { return count(Outcome::Breach) > 0; }
    /// "31 checks: 28 ok, 2 stand-ins, 0 breaches, 1 skipped"
    std::string summary() const;
};

/// Puts the host through every check. Each finding is handed to `told` as it is made, since a host may take the
/// process with it. The table of the check's own is gone afterwards, whatever was found.
Report checkHost(_SqlConnection* object, const CheckOptions& options,
                 const std::function<void(const Finding&)>& told = {});

} // namespace zul::host::check
