// What the player asks of the host it plays in.
#pragma once

#include "host/player/ScenarioParser.h"

#include <QString>
#include <QStringList>
#include <vector>

namespace zul::host {
class HostPort
{
public:
    HostPort() = default;
    virtual ~HostPort() = default;
    HostPort(const HostPort&) = delete;
    HostPort& operator=(const HostPort&) = delete;

    /// Calls a member of the component late bound and returns what "call" prints: "return MEMBER VALUE" or
    /// "failed MEMBER 0x…". It may show modal windows and returns when they have closed.
    virtual QString call(const QString& member, const std::vector<Word>& values) = 0;

    /// Runs a statement on the host's connection, past the journal, and returns a "sql …" line for every row.
    /// Throws CommandError with the driver's text when the statement fails.
    virtual QStringList sql(const QString& statement) = 0;
};
} // namespace zul::host
