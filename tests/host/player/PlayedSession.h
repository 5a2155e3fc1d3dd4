// Plays a scenario on the windows of a test and keeps what it printed.
#pragma once

#include "host/player/CommandError.h"
#include "host/player/EventPrinter.h"
#include "host/player/HostPort.h"
#include "host/player/LineSource.h"
#include "host/player/ScenarioPlayer.h"
#include "host/player/WindowWatcher.h"

#include <QHash>
#include <QStringList>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

namespace zul::host::test {
/// "call NAME" runs the function of that name; any other member fails as an unknown one does.
class ScriptedHost : public HostPort
{
public:
    QHash<QString, std::function<QString(const std::vector<Word>&)>> members;
    QStringList statements;
    QStringList sqlLines;
    bool sqlFails = false;

    QString call(const QString& member, const std::vector<Word>& values) override
    {
        const auto found = members.constFind(member);
        if (found == members.constEnd()) {
            return QStringLiteral("failed %1 0x80020006").arg(member);
        }
        const QString result = found.value()(values);
        return QStringLiteral("return %1 %2").arg(member, result);
    }

    QStringList sql(const QString& statement) override
    {
        statements.append(statement);
        if (sqlFails) {
            throw CommandError{QStringLiteral("no such table")};
        }
        return sqlLines;
    }

    /// A member that opens a modal dialog and returns when it has closed.
    void opens(const QString& member, std::function<void()> show)
    {
        members.insert(member, [show = std::move(show)](const std::vector<Word>&) {
            show();
            return QStringLiteral("empty");
        });
    }
};

struct Outcome
{
    QStringList lines;
    QStringList errors;
    int result = 0;

    [[nodiscard]] std::string text() const { return lines.join(QLatin1Char('\n')).toStdString(); }
};

inline Outcome play(ScriptedHost& host, const std::string& script)
{
    Outcome outcome;
    std::istringstream stream(script);
    LineSource source(stream);
    EventPrinter printer([&](const QString& line) { outcome.lines.append(line); });
    WindowWatcher windows(printer);
    ScenarioPlayer player(source, printer, windows, host,
                          [&](const QString& line) { outcome.errors.append(line); });
    outcome.result = player.play();
    return outcome;
}
} // namespace zul::host::test
