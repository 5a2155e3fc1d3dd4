// The host's session with the component.
#pragma once

#include "automation/ComPtr.h"
#include "host/player/CommandLine.h"
#include "host/player/HostPort.h"
#include "host/session/ComponentLibrary.h"
#include "host/session/LateCall.h"

#include <memory>

namespace zul::host {
class EventPrinter;
class HostDatabase;

// Creates the component's object, listens to its events, and introduces the host: the operator's id and what is
// offered and searched by. After that the component is called by name only, as a script would.
class HostSession : public HostPort
{
public:
    // Keeps references to the printer and the database. Folders and files that the command line leaves open are
    // those beside the program. Throws std::runtime_error with a text for the user.
    HostSession(EventPrinter& printer, const CommandLine& line, const HostDatabase& database);
    ~HostSession() override;

    QString call(const QString& member, const std::vector<Word>& values) override;
    QStringList sql(const QString& statement) override;

    // Shows one of the windows and returns when it has closed. Throws std::runtime_error when the call fails.
    void show(StartWindow window);

private:
    CallOutcome invoke(const QString& member, const std::vector<Word>& values);
    CallOutcome invokeWithHostArguments(const QString& member, bool withFolder);
    void require(const QString& member, const CallOutcome& outcome) const;

    const HostDatabase& m_database;
    QString m_appDir;
    bool m_touch;
    ComPtr<IDispatch> m_creator;
    std::unique_ptr<Advised> m_advised;
};
} // namespace zul::host
