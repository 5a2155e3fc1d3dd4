// zulhost, the reference host: a small management application that loads the component and shows its windows, or
// plays a scenario on them.
#include "base/QtTexts.h"
#include "host/check/GuardedCheck.h"
#include "host/database/Secrets.h"
#include "host/player/CommandLine.h"
#include "host/player/EventPrinter.h"
#include "host/player/LineSource.h"
#include "host/player/ScenarioParser.h"
#include "host/player/ScenarioPlayer.h"
#include "host/player/WindowWatcher.h"
#include "host/session/DemoDatabase.h"
#include "host/session/Display.h"
#include "host/session/ForeignHost.h"
#include "host/session/HostDatabase.h"
#include "host/session/HostSession.h"
#include "host/session/Offscreen.h"

#include <QApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>

namespace {

using namespace Qt::StringLiterals;
using namespace zul;
using namespace zul::host;

constexpr int exitFailed = 1;
constexpr int exitUsage = 2;

void complain(const QString& why)
{
    std::fprintf(stderr, "zulhost: %s\n", why.toUtf8().constData());
}

/// Without a display the windows live in memory, on a screen of a usual size.
void choosePlatform(std::unique_ptr<QTemporaryDir>& keep)
{
    if (hasDisplay() || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        return;
    }
    keep = std::make_unique<QTemporaryDir>();
    qputenv("QT_QPA_PLATFORM", offscreenPlatform(keep->path()));
}

/// Standard error belongs to what a scenario has to say: the platform without a display notes every window that it
/// cannot raise or size.
void passMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (text.startsWith(u"This plugin does not support "_s) ||
        text.startsWith(u"QStandardPaths: XDG_RUNTIME_DIR not set"_s)) {
        return;
    }
    std::fprintf(stderr, "%s\n", qFormatLogMessage(type, context, text).toUtf8().constData());
}

/// What the connection is opened on. A file's path is made absolute: it stands in the connection string, which
/// programs that the component starts in other folders are given.
std::string databaseOf(const CommandLine& line)
{
    if (line.database.isEmpty()) {
        return ensureDemoDatabase().toStdString();
    }
    const bool isFile = !line.database.contains(u'=');
    return (isFile ? QFileInfo(line.database).absoluteFilePath() : line.database).toStdString();
}

int run(const CommandLine& line)
{
    if (line.createDemo) {
        createDemo((line.database.isEmpty() ? demoDatabaseFile() : line.database).toStdString(),
                   *line.createDemo);
        return 0;
    }
    // Before anything is made or loaded for it.
    const bool plays = !line.scenario.isEmpty();
    // A scenario names the widgets of a window; a dialog of the system's own has none.
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs, plays);
    const std::unique_ptr<std::istream> scenario = plays ? openScenario(line.scenario) : nullptr;
    EventPrinter printer(plays ? EventPrinter::Sink() : EventPrinter::Sink([](const QString&) {}));
    WindowWatcher windows(printer);

    HostDatabaseOptions options;
    options.database = databaseOf(line);
    options.userName = line.userName.toStdString();
    options.journalPath = line.journal.toStdString();
    options.appUrl = line.appUrl.toStdString();
    options.appPatience.timeOutsInARow = line.appTimeOuts;
    if (!line.failAt.isEmpty()) {
        options.failure = parseFailurePlan(line.failAt.toStdString());
    }
    options.programStarted = [&printer](const std::string& path, const std::string& parameters) {
        printer.line(u"started %1 %2"_s.arg(quoted(QString::fromStdString(path)),
                                            quoted(QString::fromStdString(withoutPasswords(parameters)))));
    };
    const HostDatabase database(options);
    int code = 0;
    {
        HostSession session(printer, line, database);
        if (plays) {
            // Who writes to standard input ends it.
            const bool standardInput = line.scenario == u"-"_s;
            LineSource source(*scenario, {.text = standardInput ? LineLimits::none : LineLimits().text});
            ScenarioPlayer player(source, printer, windows, session);
            player.setGoesOn(options.failure.has_value());
            code = player.play();
        } else {
            session.show(line.window);
        }
    }
    if (options.failure) {
        const FailureCounts& counts = database.failureCounts();
        printer.line(u"operations %1 rowsets %2 transactions %3"_s.arg(counts.operations)
                         .arg(counts.openRowSets)
                         .arg(counts.openTransactions));
        printer.flush();
    }
    database.close();
    // Who reads them takes what is missing for what did not happen.
    if (plays && std::ferror(stdout) != 0) {
        complain(u"standard output could not be written to its end"_s);
        code = std::max(code, exitFailed);
    }
    if (!database.isJournalWhole()) {
        complain(u"the journal %1 could not be written to its end"_s.arg(quoted(line.journal)));
        code = std::max(code, exitFailed);
    }
    return code;
}

/// Every line as soon as it is known.
void say(const std::string& line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

int checkForeignHost(const CommandLine& line)
{
    check::CheckOptions options;
    options.readOnly = line.readOnly;
    const check::GuardedReport guarded =
        check::checkHostGuarded([&line] { return createForeignConnection(line.checkHost); }, options,
                                std::chrono::seconds(line.checkLimit.value_or(60)),
                                [](const check::Finding& found) { say(found.line()); });
    if (!guarded.notCreated.empty()) {
        complain(QString::fromStdString(guarded.notCreated));
        return exitUsage;
    }
    say(guarded.report.summary());
    return guarded.report.hasBreach() ? exitFailed : 0;
}

int runProgram(int argc, char** argv)
{
    // Read before Qt takes its own options out: zulhost has none but those of its table.
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    hideSecrets(argc, argv);
    const auto parsed = parseCommandLine(arguments);
    if (const auto* error = std::get_if<CommandLineError>(&parsed)) {
        complain(error->message);
        return exitUsage;
    }
    const auto& line = std::get<CommandLine>(parsed);
    int programOnly = 1;
    if (line.help || line.version) {
        const QCoreApplication application(programOnly, argv);
        const QString text = line.help ? usage() : u"zulhost %1\n"_s.arg(QStringLiteral(ZUL_VERSION));
        std::fputs(text.toUtf8().constData(), stdout);
        return 0;
    }
    if (!line.checkHost.isEmpty()) {
        return checkForeignHost(line);
    }

    std::unique_ptr<QTemporaryDir> screen;
    choosePlatform(screen);
    qInstallMessageHandler(passMessage);
    QApplication application(programOnly, argv);
    QApplication::setApplicationName(u"zulhost"_s);
    QApplication::setQuitOnLastWindowClosed(false);
    zul::useItalianQtTexts(application, QApplication::applicationDirPath());
    try {
        return run(line);
    } catch (const ScenarioError& error) {
        complain(error.why);
        return exitUsage;
    }
}
} // namespace

int main(int argc, char** argv)
{
    try {
        return runProgram(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zulhost: %s\n", error.what());
        return exitFailed;
    }
}
