#include "host/player/ScenarioPlayer.h"

#include "host/player/CommandError.h"
#include "host/player/EventPrinter.h"
#include "host/player/WindowWatcher.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QPointer>
#include <QThread>
#include <QWidget>
#include <cstdio>
#include <utility>

namespace zul::host {

using namespace Qt::StringLiterals;

namespace {
/// How many times a zero timer fires, each behind what was queued before it, until a window counts as settled: its
/// handlers may queue handlers of their own.
constexpr int settleRounds = 3;

/// How often an inactive window is given the chance to become active. Without a window manager, or when the person
/// at the display works in another program, it never does.
constexpr int activationRounds = 50;

int currentLevel()
{
    return QThread::currentThread()->loopLevel();
}

void toStandardError(const QString& line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
    std::fflush(stderr);
}
} // namespace

ScenarioPlayer::ScenarioPlayer(LineSource& source, EventPrinter& printer, WindowWatcher& windows,
                               HostPort& host, ErrorSink errors)
    : m_source(source)
    , m_printer(printer)
    , m_windows(windows)
    , m_commands(printer, windows, host)
    , m_errors(errors ? std::move(errors) : ErrorSink(toStandardError))
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(0);
    connect(&m_settle, &QTimer::timeout, this, [this] {
        if (++m_settled < settleRounds) {
            m_settle.start();
        }
    });
    connect(&m_windows, &WindowWatcher::shownWithLoop, this, [this] { arm(currentLevel() + 1); });
}

ScenarioPlayer::~ScenarioPlayer() = default;

int ScenarioPlayer::play()
{
    QEventLoop loop;
    m_loop = &loop;
    m_baseLevel = currentLevel() + 1;
    const QMetaObject::Connection connection =
        connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
                &ScenarioPlayer::aboutToBlock);
    arm(m_baseLevel);
    loop.exec();
    disconnect(connection);
    m_printer.flush();
    m_loop = nullptr;
    return m_result;
}

void ScenarioPlayer::arm(int level)
{
    if (m_loop == nullptr) {
        return;
    }
    // Levels above the one that is armed now belong to event loops that have ended.
    m_armed.erase(m_armed.upper_bound(level), m_armed.end());
    m_armed.insert(level);
    m_settled = 0;
    m_settle.start();
}

void ScenarioPlayer::aboutToBlock()
{
    m_printer.flush();
    if (m_settled < settleRounds || m_armed.count(currentLevel()) == 0) {
        return;
    }
    // Sent as an event, so that objects which handlers delete later are counted to this level.
    QEvent event(QEvent::User);
    QCoreApplication::sendEvent(this, &event);
    // The event loop goes on to wait now. Whatever was to wake it, an exit for example, may have been consumed by
    // an event loop inside the command.
    QAbstractEventDispatcher::instance()->wakeUp();
}

bool ScenarioPlayer::event(QEvent* event)
{
    if (event->type() == QEvent::User) {
        step();
        return true;
    }
    return QObject::event(event);
}

void ScenarioPlayer::step()
{
    const int level = currentLevel();
    m_armed.erase(m_armed.lower_bound(level), m_armed.end());
    prepare();
    // Only a window that has an event loop of its own ends one by closing.
    const QPointer<QWidget> window = m_windows.topmost();
    const bool ownLoop = window && window->isModal() && m_windows.levelWhenShown(window) + 1 == level;
    if (!m_closing && !runNextCommand()) {
        m_closing = true;
    }
    if (m_closing && !m_commands.closeTopmost()) {
        // Above the base level a handler is still under way; the command that started it comes back here.
        if (level == m_baseLevel) {
            m_printer.flush();
            m_loop->quit();
        }
        return;
    }
    if (ownLoop && (!window || !window->isVisible())) {
        return;
    }
    arm(level);
}

void ScenarioPlayer::prepare()
{
    // A person's click would make the window active. Handlers of that event may open windows of their own, and
    // commands may run in them: this comes before the next command is read.
    for (int i = 0; i < activationRounds; ++i) {
        QWidget* window = m_windows.topmost();
        if (window == nullptr || window->isActiveWindow() || m_closing) {
            return;
        }
        window->activateWindow();
        QCoreApplication::processEvents();
    }
}

bool ScenarioPlayer::runNextCommand()
{
    for (;;) {
        const std::optional<QString> line = m_source.next();
        if (!line) {
            if (!m_source.error().isEmpty()) {
                fail(m_source.number(), m_source.error());
            }
            return false;
        }
        const int number = m_source.number();
        const ParsedLine parsed = splitWords(*line);
        if (const auto* error = std::get_if<ParseError>(&parsed)) {
            fail(number, error->why);
            return false;
        }
        const auto& words = std::get<std::vector<Word>>(parsed);
        if (words.empty()) {
            continue;
        }
        try {
            m_commands.run(words);
        } catch (const CommandError& error) {
            // What the end of the scenario closed under a command's hands is no failure of that command.
            if (!m_closing) {
                fail(number, error.why);
                if (m_goesOn) {
                    return true;
                }
            }
            return false;
        }
        return true;
    }
}

void ScenarioPlayer::fail(int line, const QString& why)
{
    m_printer.flush();
    m_errors(u"line %1: %2"_s.arg(QString::number(line), why));
    m_result = 2;
}
} // namespace zul::host
