// Holds the connection object of a host against the contract, and writes down how it stands.
#pragma once

#include "host/check/Checks.h"

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace zul::host::check {

enum class Outcome
{
    Ok,
    StandIn, ///< optional and missing: the component has something in its place
    Breach,  ///< against the contract
    Warning, ///< against the contract, and without harm
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
    /// "32 checks: 28 ok, 2 stand-ins, 1 warning, 0 breaches, 1 skipped"; warnings are named where there are any
    std::string summary() const;
};

/// What stands behind the last check: the table is dropped, and every object given back.
inline constexpr const char* partingCheck = "giving everything back";

/// A run of the checks, which may go on where one in another process ended.
struct Course
{
    /// The first of allChecks() that is run.
    std::size_t first = 0;
    /// The checks before it that were ok.
    std::set<std::string> stands;
    /// Called before each check that is run, and with partingCheck behind the last: the host may end the process in it.
    std::function<void(const std::string& check)> begins;
    /// Called with each finding as it is made.
    std::function<void(const Finding&)> told;
};

/// Puts the host through the checks of the course. The table of the check's own is gone afterwards, whatever was found.
Report checkHost(_SqlConnection* object, const CheckOptions& options, Course course);

/// Puts the host through every check.
Report checkHost(_SqlConnection* object, const CheckOptions& options,
                 const std::function<void(const Finding&)>& told = {});

} // namespace zul::host::check
