// The checks that a host is put through, each a named function over a Subject.
#pragma once

#include "host/check/Subject.h"

#include <functional>
#include <string>
#include <vector>

namespace zul::host::check {

struct Check
{
    /// Unique, and stable: a report's reader may look for it.
    std::string name;
    /// The check without whose success this one says nothing; empty: none.
    std::string needs;
    /// Returns, or throws Breach, StandIn or Skipped.
    std::function<void(Subject&)> run;
};

/// In the order of the report: a check stands behind what it needs.
const std::vector<Check>& allChecks();

/// Names that others need.
inline constexpr const char* connectionCheck = "connection";
inline constexpr const char* interfacesCheck = "interfaces: the connection object's";
inline constexpr const char* rowInterfacesCheck = "interfaces: a row set's";
inline constexpr const char* movesCheck = "row sets: first row, next row, end";
inline constexpr const char* keptCheck = "references: those that are left keep an object";
inline constexpr const char* tableCheck = "a table of its own";
inline constexpr const char* addCheck = "changes: AddNew, Value, Update add a row";

void addConnectionChecks(std::vector<Check>& checks);
void addRowSetChecks(std::vector<Check>& checks);
void addRowSetLifeChecks(std::vector<Check>& checks);
void addValueChecks(std::vector<Check>& checks);
void addChangeChecks(std::vector<Check>& checks);
void addReaderCheck(std::vector<Check>& checks);
void addFailureChecks(std::vector<Check>& checks);
void addServiceChecks(std::vector<Check>& checks);

} // namespace zul::host::check
