#pragma once
// A connection object that wraps another one and lets one operation of the component fail: whoever writes a host, or
// looks for what a fault does to the windows, sees it without a broken database. It knows the contracts alone, so any
// connection object may stand behind it.
#include "automation/ComPtr.h"

#include <Zul_Host.h>
#include <Zul_SQL.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zul::host {

/// The exit code of "kill", that of a process which the system killed.
constexpr int killedCode = 137;

enum class FailureKind
{
    Error,  ///< "error": a failure code with a description
    Silent, ///< "silent": a failure code without one
    Type,   ///< "type": it succeeds with an answer of a type, or a number, that nobody expects
    Lost,   ///< "lost": it fails as a lost connection does, and everything after it
    End, ///< "end": it succeeds, and the row set that it belongs to has no further rows; elsewhere nothing happens
    Kill ///< "kill": the process ends before it, as one that is killed does: nothing is closed, flushed or said
};

struct FailurePlan
{
    long at = 0; ///< the operation that fails, from 1; 0: none, they are only counted
    FailureKind kind = FailureKind::Error;
};

/// "N" or "N:KIND"; nothing for any other text.
std::optional<FailurePlan> parseFailurePlan(std::string_view text);

/// What the component asked and has not given back.
struct FailureCounts
{
    long operations = 0;
    long openRowSets = 0;
    long openTransactions = 0;
};

/// An operation is each call that may work the database or the host's services: of the connection object the lookup
/// and the connection, of the connection each statement, row set and step of a transaction, of a row set everything but
/// Close, of the services Init, NextId, Save, Parse and the two sends.
/// @param counts is kept up to date for as long as anybody holds on to the connection
ComPtr<_SqlConnection> makeFailingConnection(_SqlConnection* behind, const FailurePlan& plan,
                                             std::shared_ptr<FailureCounts> counts);

} // namespace zul::host
