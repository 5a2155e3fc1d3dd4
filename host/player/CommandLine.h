// The options of zulhost.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <variant>

namespace zul::host {
/// Which of the component's windows opens when no scenario is played.
enum class StartWindow
{
    Main,
    Options,
    Check
};

/// What the command line asks for; the members' initial values are the defaults.
struct CommandLine
{
    /// An SQLite file or an ODBC connection string (it contains "="), from the command line, a file that it names, or
    /// ZULHOST_DATABASE of the environment; empty: the demo database in the user's data folder.
    QString database;
    /// Make the demo database with so many customers, and stop.
    std::optional<int> createDemo;
    /// The host application's folder as the component gets it; empty: the folder of the program.
    QString appDir;
    int user = 1;
    QString userName = QStringLiteral("demo");
    bool showSms = true;
    bool showMail = true;
    bool showPush = true;
    bool searchRicorrenze = true;
    bool searchClassificazioni = true;
    bool touch = false;
    StartWindow window = StartWindow::Main;
    /// A file, or "-" for standard input; empty: no scenario.
    QString scenario;
    /// Where every database operation is written; empty: nowhere.
    QString journal;
    /// The component's library; empty: the one beside the program.
    QString component;
    /// Where the app connector posts push notifications; empty: the table appOutbox.
    QString appUrl;
    /// After so many time-outs of that service in a row the others of a run fail at once; 0: never.
    int appTimeOuts = 3;
    /// Which operation of the component fails, and how: "N" or "N:KIND"; empty: none, and nothing is counted.
    QString failAt;
    /// The foreign host whose connection object is held against the contract: "LIBRARY", "LIBRARY:FACTORY" or a ProgID;
    /// empty: none.
    QString checkHost;
    /// After so many seconds without an end a check of it is a breach; 0: never; nothing: as the program does.
    std::optional<int> checkLimit;
    /// The check writes nothing.
    bool readOnly = false;
    /// Print the usage, or the program's version, and stop.
    bool help = false;
    bool version = false;
};

/// Why a command line is not taken: one line for the person who typed it.
struct CommandLineError
{
    QString message;
};

/// Reads the arguments (without the program's own name). An option that stands twice counts as it stands last.
std::variant<CommandLine, CommandLineError> parseCommandLine(const QStringList& arguments);

/// Overwrites a connection string among the arguments of the program, which other users of the machine can list, once
/// it has been read.
void hideSecrets(int argc, char** argv);

/// The text of --help. Names the program as it was started, which a QCoreApplication has to tell.
QString usage();
} // namespace zul::host
