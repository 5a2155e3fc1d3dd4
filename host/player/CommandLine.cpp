#include "host/player/CommandLine.h"

#include <QCommandLineParser>
#include <QFile>
#include <QRegularExpression>

#include <cstring>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

namespace zul::host {

using namespace Qt::StringLiterals;

namespace {
/// Thrown by a value's reader and caught by parseCommandLine alone.
struct BadValue
{
    QString wanted;
};

int wholeNumber(const QString& text, int least)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    if (!ok || number < least) {
        throw BadValue{least == 0 ? u"a whole number from 0"_s : u"a whole number of 32 bits"_s};
    }
    return number;
}

QString notEmpty(const QString& text)
{
    if (text.isEmpty()) {
        throw BadValue{u"a text that is not empty"_s};
    }
    return text;
}

/// The connection string in a file that others cannot read: its first line.
QString firstLineOf(const QString& path)
{
    QFile file(path);
    constexpr qint64 longest = 65536;
    const QByteArray line = file.open(QIODevice::ReadOnly) ? file.readLine(longest).trimmed() : QByteArray();
    if (line.isEmpty()) {
        throw BadValue{u"a file with a text in its first line"_s};
    }
    return QString::fromUtf8(line);
}

QString webAddress(const QString& text)
{
    if (!text.startsWith(u"http://"_s) && !text.startsWith(u"https://"_s)) {
        throw BadValue{u"an address that begins with http:// or https://"_s};
    }
    return text;
}

/// A list of names joined by commas, or "none": every named flag becomes true, the others false.
void flags(const QString& text, const QString& wanted, std::initializer_list<std::pair<QString, bool*>> known)
{
    for (const auto& [name, flag] : known) {
        *flag = false;
    }
    if (text == u"none"_s) {
        return;
    }
    for (const QString& word : text.split(u',')) {
        bool found = false;
        for (const auto& [name, flag] : known) {
            if (word == name) {
                *flag = true;
                found = true;
            }
        }
        if (!found) {
            throw BadValue{wanted};
        }
    }
}

QString failurePlan(const QString& text)
{
    static const QRegularExpression form(u"^[0-9]{1,9}(:(error|silent|type|lost|end|kill))?$"_s);
    if (!form.match(text).hasMatch()) {
        throw BadValue{u"N or N:KIND, with error, silent, type, lost, end or kill for KIND"_s};
    }
    return text;
}

StartWindow startWindow(const QString& text)
{
    if (text == u"main"_s) {
        return StartWindow::Main;
    }
    if (text == u"options"_s) {
        return StartWindow::Options;
    }
    if (text == u"check"_s) {
        return StartWindow::Check;
    }
    throw BadValue{u"main, options or check"_s};
}

/// An option that takes a value, and what the value does.
struct ValueOption
{
    QCommandLineOption option;
    void (*apply)(CommandLine& line, const QString& value);
};

const std::vector<ValueOption>& valueOptions()
{
    static const std::vector<ValueOption> table{
        {{u"database"_s,
          u"An SQLite file, or an ODBC connection string (it contains \"=\"); default: the demo database in "
          "the user's data folder."_s,
          u"X"_s},
         [](CommandLine& line, const QString& v) { line.database = notEmpty(v); }},
        {{u"database-file"_s,
          u"A file whose first line is what --database would take: others can read a command line, but not "
          u"the "
          "file. The environment's ZULHOST_DATABASE stands for neither option."_s,
          u"FILE"_s},
         [](CommandLine& line, const QString& v) { line.database = firstLineOf(v); }},
        {{u"create-demo"_s, u"Make the database with N customers, and stop."_s, u"N"_s},
         [](CommandLine& line, const QString& v) { line.createDemo = wholeNumber(v, 0); }},
        {{u"app-dir"_s, u"The host application's folder; default: that of the component."_s, u"DIR"_s},
         [](CommandLine& line, const QString& v) { line.appDir = notEmpty(v); }},
        {{u"user"_s, u"The operator's id; default: 1."_s, u"N"_s},
         [](CommandLine& line, const QString& v) {
             line.user = wholeNumber(v, std::numeric_limits<int>::min());
         }},
        {{u"user-name"_s, u"The operator's name; default: demo."_s, u"TEXT"_s},
         [](CommandLine& line, const QString& v) { line.userName = v; }},
        {{u"show"_s, u"Of sms,mail,push, or none: the message kinds to offer; default: all."_s, u"LIST"_s},
         [](CommandLine& line, const QString& v) {
             flags(v, u"a list of sms, mail and push joined by commas, or none"_s,
                   {{u"sms"_s, &line.showSms}, {u"mail"_s, &line.showMail}, {u"push"_s, &line.showPush}});
         }},
        {{u"search"_s, u"Of ricorrenze,classificazioni, or none; default: both."_s, u"LIST"_s},
         [](CommandLine& line, const QString& v) {
             flags(v, u"a list of ricorrenze and classificazioni joined by a comma, or none"_s,
                   {{u"ricorrenze"_s, &line.searchRicorrenze},
                    {u"classificazioni"_s, &line.searchClassificazioni}});
         }},
        {{u"window"_s, u"main, options or check; default: main."_s, u"W"_s},
         [](CommandLine& line, const QString& v) { line.window = startWindow(v); }},
        {{u"scenario"_s, u"Play FILE (\"-\": standard input)."_s, u"FILE"_s},
         [](CommandLine& line, const QString& v) { line.scenario = notEmpty(v); }},
        {{u"journal"_s, u"Write every database operation to FILE."_s, u"FILE"_s},
         [](CommandLine& line, const QString& v) { line.journal = notEmpty(v); }},
        {{u"component"_s,
          u"The component's library; default: the one beside zulhost, else the installed one."_s, u"FILE"_s},
         [](CommandLine& line, const QString& v) { line.component = notEmpty(v); }},
        {{u"app-url"_s, u"Where push notifications are posted; default: the table appOutbox."_s, u"URL"_s},
         [](CommandLine& line, const QString& v) { line.appUrl = webAddress(v); }},
        {{u"app-time-outs"_s,
          u"After so many posts in a row that are not answered the others of a run fail at once (0: never); "
          "default: 3."_s,
          u"N"_s},
         [](CommandLine& line, const QString& v) { line.appTimeOuts = wholeNumber(v, 0); }},
        {{u"fail-at"_s,
          u"The component's Nth operation on the connection or a service fails: with a description (error), "
          u"without "
          "one (silent), by an answer of a wrong type (type), by the end of its row set (end), or as "
          "everything after "
          "it (lost), or the host is gone before it as if it were killed (kill). A scenario goes on at the next command; the operations are counted at its end. 0 only counts."_s,
          u"N[:KIND]"_s},
         [](CommandLine& line, const QString& v) { line.failAt = failurePlan(v); }},
        {{u"check-host"_s,
          u"Hold the connection object of another host against the contract, and stop. HOST is a ProgID, or "
          "LIBRARY[:FACTORY]: a library and the function that it exports for this, ZulCreateConnection by "
          "default."_s,
          u"HOST"_s},
         [](CommandLine& line, const QString& v) { line.checkHost = notEmpty(v); }},
        {{u"check-limit"_s,
          u"With --check-host: a check without an end after N seconds (0: never) is a breach; default: 60."_s,
          u"N"_s},
         [](CommandLine& line, const QString& v) { line.checkLimit = wholeNumber(v, 0); }},
    };
    return table;
}

struct Switches
{
    QCommandLineOption touch{u"touch"_s, u"Touch mode."_s};
    QCommandLineOption readOnly{u"read-only"_s,
                                u"With --check-host: make no table, and try nothing that needs one."_s};
    // The parser's own would offer Qt's options too, which zulhost does not take.
    QCommandLineOption help{{u"h"_s, u"help"_s}, u"Print this text, and stop."_s};
    QCommandLineOption version{{u"v"_s, u"version"_s}, u"Print the version, and stop."_s};
};

const Switches& switches()
{
    static const Switches table;
    return table;
}

void describe(QCommandLineParser& parser)
{
    for (const ValueOption& known : valueOptions()) {
        parser.addOption(known.option);
    }
    for (const QCommandLineOption& known :
         {switches().touch, switches().readOnly, switches().help, switches().version}) {
        parser.addOption(known);
    }
}

CommandLineError unknown(const QString& word)
{
    return {u"unknown option \"%1\"; --help lists the options"_s.arg(word)};
}

/// Why the parser did not take the arguments.
CommandLineError refusal(const QCommandLineParser& parser, const QStringList& arguments)
{
    const QStringList names = parser.unknownOptionNames();
    if (!names.isEmpty()) {
        return unknown((names.first().size() == 1 ? u"-"_s : u"--"_s) + names.first());
    }
    // A value can be missing behind the last word only; the other reason is a value where none belongs.
    for (const ValueOption& known : valueOptions()) {
        if (arguments.last() == u"--"_s + known.option.names().first()) {
            return {u"%1 needs a value"_s.arg(arguments.last())};
        }
    }
    return {parser.errorText()};
}
} // namespace

std::variant<CommandLine, CommandLineError> parseCommandLine(const QStringList& arguments)
{
    QCommandLineParser parser;
    describe(parser);
    if (!parser.parse(QStringList(u"zulhost"_s) + arguments)) {
        return refusal(parser, arguments);
    }
    if (!parser.positionalArguments().isEmpty()) {
        return unknown(parser.positionalArguments().first());
    }
    CommandLine line;
    line.database = qEnvironmentVariable("ZULHOST_DATABASE");
    line.touch = parser.isSet(switches().touch);
    line.readOnly = parser.isSet(switches().readOnly);
    line.help = parser.isSet(switches().help);
    line.version = parser.isSet(switches().version);
    for (const ValueOption& known : valueOptions()) {
        const QStringList values = parser.values(known.option);
        for (const QString& value : values) {
            try {
                known.apply(line, value);
            } catch (const BadValue& bad) {
                return CommandLineError{
                    u"--%1 takes %2, not \"%3\""_s.arg(known.option.names().first(), bad.wanted, value)};
            }
        }
    }
    if (line.readOnly && line.checkHost.isEmpty()) {
        return CommandLineError{u"--read-only belongs to --check-host"_s};
    }
    if (line.checkLimit && line.checkHost.isEmpty()) {
        return CommandLineError{u"--check-limit belongs to --check-host"_s};
    }
    return line;
}

void hideSecrets(int argc, char** argv)
{
    constexpr std::string_view option = "--database";
    for (int i = 1; i < argc; ++i) {
        const std::string_view word(argv[i]);
        char* value = nullptr;
        if (word == option && i + 1 < argc) {
            value = argv[++i];
        } else if (word.starts_with(option) && word.substr(option.size()).starts_with('=')) {
            value = argv[i] + option.size() + 1;
        }
        // A file's path is no secret.
        if (value != nullptr && std::strchr(value, '=') != nullptr) {
            std::memset(value, 'x', std::strlen(value));
        }
    }
}

QString usage()
{
    QCommandLineParser parser;
    describe(parser);
    return parser.helpText();
}
} // namespace zul::host
