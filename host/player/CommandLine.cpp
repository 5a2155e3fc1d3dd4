#include "host/player/CommandLine.h"

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <utility>

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

using Apply = std::function<void(CommandLine&, const QString&)>;

/// An option that takes a value.
struct Option
{
    QString name;
    Apply apply;
};

const std::array<Option, 12>& options()
{
    static const std::array<Option, 12> table{{
        {u"--database"_s, [](CommandLine& line, const QString& v) { line.database = notEmpty(v); }},
        {u"--create-demo"_s,
         [](CommandLine& line, const QString& v) { line.createDemo = wholeNumber(v, 0); }},
        {u"--app-dir"_s, [](CommandLine& line, const QString& v) { line.appDir = notEmpty(v); }},
        {u"--user"_s, [](CommandLine& line,
                         const QString& v) { line.user = wholeNumber(v, std::numeric_limits<int>::min()); }},
        {u"--user-name"_s, [](CommandLine& line, const QString& v) { line.userName = v; }},
        {u"--show"_s,
         [](CommandLine& line, const QString& v) {
             flags(v, u"a list of sms, mail and push joined by commas, or none"_s,
                   {{u"sms"_s, &line.showSms}, {u"mail"_s, &line.showMail}, {u"push"_s, &line.showPush}});
         }},
        {u"--search"_s,
         [](CommandLine& line, const QString& v) {
             flags(v, u"a list of ricorrenze and classificazioni joined by a comma, or none"_s,
                   {{u"ricorrenze"_s, &line.searchRicorrenze},
                    {u"classificazioni"_s, &line.searchClassificazioni}});
         }},
        {u"--window"_s, [](CommandLine& line, const QString& v) { line.window = startWindow(v); }},
        {u"--scenario"_s, [](CommandLine& line, const QString& v) { line.scenario = notEmpty(v); }},
        {u"--journal"_s, [](CommandLine& line, const QString& v) { line.journal = notEmpty(v); }},
        {u"--component"_s, [](CommandLine& line, const QString& v) { line.component = notEmpty(v); }},
        {u"--app-url"_s,
         [](CommandLine& line, const QString& v) {
             if (!v.startsWith(u"http://"_s) && !v.startsWith(u"https://"_s)) {
                 throw BadValue{u"an address that begins with http:// or https://"_s};
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
        if (word == u"--touch"_s) {
            line.touch = true;
            continue;
        }
        if (word == u"--help"_s) {
            line.help = true;
            continue;
        }
        const auto& table = options();
        const auto* option =
            std::find_if(table.begin(), table.end(), [&](const Option& o) { return word == o.name; });
        if (option == table.end()) {
            return CommandLineError{u"unknown option \"%1\"; --help lists the options"_s.arg(word)};
        }
        if (i + 1 == arguments.size()) {
            return CommandLineError{u"%1 needs a value"_s.arg(word)};
        }
        const QString& value = arguments[++i];
        try {
            option->apply(line, value);
        } catch (const BadValue& bad) {
            return CommandLineError{u"%1 takes %2, not \"%3\""_s.arg(word, bad.wanted, value)};
        }
    }
    return line;
}

QString usage()
{
    return u"zulhost [options]\n"
           u"  --database X       an SQLite file, or an ODBC connection string (it contains \"=\");\n"
           u"                     default: the demo database in the user's data folder\n"
           u"  --create-demo N    make the database with N customers, and stop\n"
           u"  --app-dir DIR      the host application's folder; default: the folder of zulhost\n"
           u"  --user N           the operator's id; default: 1\n"
           u"  --user-name TEXT   the operator's name; default: demo\n"
           u"  --show LIST        of sms,mail,push, or none: the message kinds to offer; default: all\n"
           u"  --search LIST      of ricorrenze,classificazioni, or none; default: both\n"
           u"  --touch            touch mode\n"
           u"  --window W         main, options or check; default: main\n"
           u"  --scenario FILE    play FILE (\"-\": standard input)\n"
           u"  --journal FILE     write every database operation to FILE\n"
           u"  --component FILE   the component's library; default: the one beside zulhost\n"
           u"  --app-url URL      where push notifications are posted; default: the table appOutbox\n"
           u"  --help             this text\n"_s;
}
} // namespace zul::host
