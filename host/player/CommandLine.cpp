#include "host/player/CommandLine.h"

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <utility>

namespace zul::host {
namespace {
// Thrown by a value's reader and caught by parseCommandLine alone.
struct BadValue
{
    QString wanted;
};

int wholeNumber(const QString& text, int least)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    if (!ok || number < least) {
        throw BadValue{least == 0 ? QStringLiteral("a whole number from 0")
                                  : QStringLiteral("a whole number of 32 bits")};
    }
    return number;
}

QString notEmpty(const QString& text)
{
    if (text.isEmpty()) {
        throw BadValue{QStringLiteral("a text that is not empty")};
    }
    return text;
}

// A list of names joined by commas, or "none": every named flag becomes true, the others false.
void flags(const QString& text, const QString& wanted, std::initializer_list<std::pair<QString, bool*>> known)
{
    for (const auto& [name, flag] : known) {
        *flag = false;
    }
    if (text == QLatin1String("none")) {
        return;
    }
    for (const QString& word : text.split(QLatin1Char(','))) {
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

StartWindow startWindow(const QString& text)
{
    if (text == QLatin1String("main")) {
        return StartWindow::Main;
    }
    if (text == QLatin1String("options")) {
        return StartWindow::Options;
    }
    if (text == QLatin1String("check")) {
        return StartWindow::Check;
    }
    throw BadValue{QStringLiteral("main, options or check")};
}

using Apply = std::function<void(CommandLine&, const QString&)>;

// An option that takes a value.
struct Option
{
    QLatin1String name;
    Apply apply;
};

const std::array<Option, 12>& options()
{
    static const std::array<Option, 12> table{{
        {QLatin1String("--database"),
         [](CommandLine& line, const QString& v) { line.database = notEmpty(v); }},
        {QLatin1String("--create-demo"),
         [](CommandLine& line, const QString& v) { line.createDemo = wholeNumber(v, 0); }},
        {QLatin1String("--app-dir"), [](CommandLine& line, const QString& v) { line.appDir = notEmpty(v); }},
        {QLatin1String("--user"),
         [](CommandLine& line, const QString& v) {
             line.user = wholeNumber(v, std::numeric_limits<int>::min());
         }},
        {QLatin1String("--user-name"), [](CommandLine& line, const QString& v) { line.userName = v; }},
        {QLatin1String("--show"),
         [](CommandLine& line, const QString& v) {
             flags(v, QStringLiteral("a list of sms, mail and push joined by commas, or none"),
                   {{QStringLiteral("sms"), &line.showSms},
                    {QStringLiteral("mail"), &line.showMail},
                    {QStringLiteral("push"), &line.showPush}});
         }},
        {QLatin1String("--search"),
         [](CommandLine& line, const QString& v) {
             flags(v, QStringLiteral("a list of ricorrenze and classificazioni joined by a comma, or none"),
                   {{QStringLiteral("ricorrenze"), &line.searchRicorrenze},
                    {QStringLiteral("classificazioni"), &line.searchClassificazioni}});
         }},
        {QLatin1String("--window"),
         [](CommandLine& line, const QString& v) { line.window = startWindow(v); }},
        {QLatin1String("--scenario"),
         [](CommandLine& line, const QString& v) { line.scenario = notEmpty(v); }},
        {QLatin1String("--journal"), [](CommandLine& line, const QString& v) { line.journal = notEmpty(v); }},
        {QLatin1String("--component"),
         [](CommandLine& line, const QString& v) { line.component = notEmpty(v); }},
        {QLatin1String("--app-url"),
         [](CommandLine& line, const QString& v) {
             if (!v.startsWith(QLatin1String("http://")) && !v.startsWith(QLatin1String("https://"))) {
                 throw BadValue{QStringLiteral("an address that begins with http:// or https://")};
             }
             line.appUrl = v;
         }},
    }};
    return table;
}
} // namespace

std::variant<CommandLine, CommandLineError> parseCommandLine(const QStringList& arguments)
{
    CommandLine line;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& word = arguments[i];
        if (word == QLatin1String("--touch")) {
            line.touch = true;
            continue;
        }
        if (word == QLatin1String("--help")) {
            line.help = true;
            continue;
        }
        const auto& table = options();
        const auto* option =
            std::find_if(table.begin(), table.end(), [&](const Option& o) { return word == o.name; });
        if (option == table.end()) {
            return CommandLineError{
                QStringLiteral("unknown option \"%1\"; --help lists the options").arg(word)};
        }
        if (i + 1 == arguments.size()) {
            return CommandLineError{QStringLiteral("%1 needs a value").arg(word)};
        }
        const QString& value = arguments[++i];
        try {
            option->apply(line, value);
        } catch (const BadValue& bad) {
            return CommandLineError{QStringLiteral("%1 takes %2, not \"%3\"").arg(word, bad.wanted, value)};
        }
    }
    return line;
}

QString usage()
{
    return QStringLiteral(
        "zulhost [options]\n"
        "  --database X       an SQLite file, or an ODBC connection string (it contains \"=\");\n"
        "                     default: the demo database in the user's data folder\n"
        "  --create-demo N    make the database with N customers, and stop\n"
        "  --app-dir DIR      the host application's folder; default: the folder of zulhost\n"
        "  --user N           the operator's id; default: 1\n"
        "  --user-name TEXT   the operator's name; default: demo\n"
        "  --show LIST        of sms,mail,push, or none: the message kinds to offer; default: all\n"
        "  --search LIST      of ricorrenze,classificazioni, or none; default: both\n"
        "  --touch            touch mode\n"
        "  --window W         main, options or check; default: main\n"
        "  --scenario FILE    play FILE (\"-\": standard input)\n"
        "  --journal FILE     write every database operation to FILE\n"
        "  --component FILE   the component's library; default: the one beside zulhost\n"
        "  --app-url URL      where push notifications are posted; default: the table appOutbox\n"
        "  --help             this text\n");
}
} // namespace zul::host
