#pragma once
// The databases that the contract is tried on.
#include "tests/support/TemporaryFolder.h"

#include "host/database/Schema.h"
#include "host/session/HostDatabase.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace zul::host {

/// A database product with a way to connect to an empty database of it.
struct Backend
{
    std::string name;
    /// What stands in HostDatabaseOptions::database; a fresh, empty database each time, in the folder where it
    /// is a file. Nothing, with `why` filled, when there is no such product here.
    std::function<std::optional<std::string>(const TemporaryFolder& folder, std::string& why)> database;
};

const std::vector<Backend>& backends();

/// How a test's report names it.
inline std::ostream& operator<<(std::ostream& out, const Backend& backend)
{
    return out << backend.name;
}

} // namespace zul::host
