// Plays a scenario: decides when the next command runs.
#pragma once

#include "host/player/Commands.h"
#include "host/player/LineSource.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <set>

QT_FORWARD_DECLARE_CLASS(QEventLoop)

namespace zul::host {
class EventPrinter;
class HostPort;
class WindowWatcher;

/// The next command runs when the handler that the last one started has returned, or waits in the event loop of a
/// modal window that it opened. A handler that only yields to the user interface on its way (processEvents) lets
/// nothing run.
///
/// How that is told apart: a command runs only when the event dispatcher is about to wait for events, which
/// processEvents never does, and only in an event loop of a level that is armed (QThread::loopLevel). A level is
/// armed in two ways:
///  - a command has returned: its own level, unless the command closed the window whose event loop that level is;
///    that loop is about to end, and the command that opened the window arms its own level when it returns;
///  - a modal window or a menu was shown: the level above the current one, where its event loop is going to run.
/// An armed level fires after what was queued before has been handled.
class ScenarioPlayer : public QObject
{
    Q_OBJECT

public:
    // Where the reasons of failures go, one line each; empty: standard error.
    using ErrorSink = std::function<void(const QString& line)>;

    /// Keeps references to all of them.
    ScenarioPlayer(LineSource& source, EventPrinter& printer, WindowWatcher& windows, HostPort& host,
                   ErrorSink errors = {});
    ~ScenarioPlayer() override;

    /// A command that could not be done is told and passed over, where the play would end otherwise.
    void setGoesOn(bool goesOn) { m_goesOn = goesOn; }

    /// Plays to the end and closes what is open. 0, or 2 when a command could not be done or the scenario
    /// could not be read to its end.
    int play();

    bool event(QEvent* event) override;

private:
    void arm(int level);
    void aboutToBlock();
    void step();
    void prepare();
    bool runNextCommand();
    void fail(int line, const QString& why);

    LineSource& m_source;
    EventPrinter& m_printer;
    WindowWatcher& m_windows;
    Commands m_commands;
    ErrorSink m_errors;
    QEventLoop* m_loop = nullptr;
    std::set<int> m_armed;
    QTimer m_settle;
    int m_settled = 0;
    int m_baseLevel = 0;
    bool m_closing = false;
    bool m_goesOn = false;
    int m_result = 0;
};
} // namespace zul::host
