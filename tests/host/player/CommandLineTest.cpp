#include "host/player/CommandLine.h"

#include <QFile>
#include <QTemporaryDir>

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace Qt::StringLiterals;
using zul::host::CommandLine;
using zul::host::CommandLineError;
using zul::host::parseCommandLine;
using zul::host::StartWindow;

CommandLine taken(const QStringList& arguments)
{
    const auto parsed = parseCommandLine(arguments);
    const auto* error = std::get_if<CommandLineError>(&parsed);
    EXPECT_EQ(error, nullptr) << (error == nullptr ? std::string() : error->message.toStdString());
    const auto* line = std::get_if<CommandLine>(&parsed);
    return line == nullptr ? CommandLine{} : *line;
}

QString refused(const QStringList& arguments)
{
    const auto parsed = parseCommandLine(arguments);
    const auto* error = std::get_if<CommandLineError>(&parsed);
    EXPECT_NE(error, nullptr) << arguments.join(u' ').toStdString();
    return error == nullptr ? QString() : error->message;
}

TEST(CommandLine, HasDefaults)
{
    const CommandLine line = taken({});
    EXPECT_TRUE(line.database.isEmpty());
    EXPECT_FALSE(line.createDemo.has_value());
    EXPECT_TRUE(line.appDir.isEmpty());
    EXPECT_EQ(line.user, 1);
    EXPECT_EQ(line.userName, u"demo"_s);
    EXPECT_TRUE(line.showSms && line.showMail && line.showPush);
    EXPECT_TRUE(line.searchRicorrenze && line.searchClassificazioni);
    EXPECT_FALSE(line.touch);
    EXPECT_EQ(line.window, StartWindow::Main);
    EXPECT_TRUE(line.scenario.isEmpty());
    EXPECT_TRUE(line.journal.isEmpty());
    EXPECT_TRUE(line.component.isEmpty());
    EXPECT_TRUE(line.appUrl.isEmpty());
}

TEST(CommandLine, TakesEveryOption)
{
    const CommandLine line = taken({"--database",
                                    "DRIVER=FreeTDS;SERVER=x",
                                    "--create-demo",
                                    "0",
                                    "--app-dir",
                                    "C:\\App",
                                    "--user",
                                    "-7",
                                    "--user-name",
                                    "D'Amico",
                                    "--show",
                                    "sms,push",
                                    "--search",
                                    "none",
                                    "--touch",
                                    "--window",
                                    "check",
                                    "--scenario",
                                    "-",
                                    "--journal",
                                    "j.txt",
                                    "--component",
                                    "c.so",
                                    "--app-url",
                                    "http://127.0.0.1:1/x"});
    EXPECT_EQ(line.database, u"DRIVER=FreeTDS;SERVER=x"_s);
    EXPECT_EQ(line.createDemo, 0);
    EXPECT_EQ(line.appDir, u"C:\\App"_s);
    EXPECT_EQ(line.user, -7);
    EXPECT_EQ(line.userName, u"D'Amico"_s);
    EXPECT_TRUE(line.showSms);
    EXPECT_FALSE(line.showMail);
    EXPECT_TRUE(line.showPush);
    EXPECT_FALSE(line.searchRicorrenze);
    EXPECT_FALSE(line.searchClassificazioni);
    EXPECT_TRUE(line.touch);
    EXPECT_EQ(line.window, StartWindow::Check);
    EXPECT_EQ(line.scenario, u"-"_s);
    EXPECT_EQ(line.journal, u"j.txt"_s);
    EXPECT_EQ(line.component, u"c.so"_s);
    EXPECT_EQ(line.appUrl, u"http://127.0.0.1:1/x"_s);
}

TEST(CommandLine, ReadsLists)
{
    EXPECT_FALSE(taken({"--show", "none"}).showPush);
    const CommandLine mail = taken({"--show", "mail"});
    EXPECT_TRUE(!mail.showSms && mail.showMail && !mail.showPush);
    const CommandLine all = taken({"--show", "push,mail,sms", "--search", "classificazioni"});
    EXPECT_TRUE(all.showSms && all.showMail && all.showPush);
    EXPECT_TRUE(!all.searchRicorrenze && all.searchClassificazioni);
}

TEST(CommandLine, RefusesUnknownOptionsAndBadValues)
{
    EXPECT_TRUE(refused({"--databse", "x"}).contains(u"--databse"_s));
    EXPECT_TRUE(refused({"scenario.txt"}).contains(u"scenario.txt"_s));
    EXPECT_TRUE(refused({"--user"}).contains(u"needs a value"_s));
    for (const QStringList& arguments : QList<QStringList>{
             {"--user", "one"},
             {"--user", "2147483648"},
             {"--user", ""},
             {"--create-demo", "-1"},
             {"--create-demo", "1.5"},
             {"--show", ""},
             {"--show", "sms,"},
             {"--show", "sms,none"},
             {"--show", "SMS"},
             {"--search", "comuni"},
             {"--window", "Main"},
             {"--database", ""},
             {"--scenario", ""},
             {"--app-url", "ftp://x"},
             {"--user", "--touch"},
         }) {
        const QString message = refused(arguments);
        EXPECT_TRUE(message.startsWith(arguments[0])) << message.toStdString();
        EXPECT_TRUE(message.contains(u'"' + arguments[1] + u'"')) << message.toStdString();
    }
}

TEST(CommandLine, RefusesOtherWaysToWriteAnOption)
{
    const std::pair<QStringList, QString> cases[] = {
        {{"-touch"}, u"unknown option \"-t\"; --help lists the options"_s},
        {{"--Touch"}, u"unknown option \"--Touch\"; --help lists the options"_s},
        {{"--touch=1"}, u"Unexpected value after '--touch'."_s},
        {{"--touch=1", "--user", "2"}, u"Unexpected value after '--touch'."_s},
        {{"--user", "1", "--scenario"}, u"--scenario needs a value"_s},
        {{"--touch", "--", "--touch"}, u"unknown option \"--touch\"; --help lists the options"_s},
        {{"-"}, u"unknown option \"-\"; --help lists the options"_s},
        {{""}, u"unknown option \"\"; --help lists the options"_s},
        {{"--create-demo", "1", "2"}, u"unknown option \"2\"; --help lists the options"_s},
    };
    for (const auto& [arguments, message] : cases) {
        EXPECT_EQ(refused(arguments), message) << arguments.join(u' ').toStdString();
    }
}

TEST(CommandLine, TakesAValueAsItStands)
{
    EXPECT_EQ(taken({"--user-name", ""}).userName, QString());
    EXPECT_EQ(taken({"--user-name", "--help"}).userName, u"--help"_s);
    EXPECT_FALSE(taken({"--user-name", "--help"}).help);
    EXPECT_EQ(taken({"--database", "a=b=c"}).database, u"a=b=c"_s);
    EXPECT_EQ(taken({"--database=Driver=FreeTDS;Server=x"}).database, u"Driver=FreeTDS;Server=x"_s);
    EXPECT_EQ(taken({"--user", "-2147483648"}).user, -2147483647 - 1);
    EXPECT_EQ(taken({"--user-name", u"Zoë 😀 \"50%\""_s}).userName, u"Zoë 😀 \"50%\""_s);
}

TEST(CommandLine, TheLastOfAnOptionCountsAndEveryOneIsRead)
{
    EXPECT_EQ(taken({"--user", "1", "--user", "2"}).user, 2);
    EXPECT_EQ(refused({"--user", "x", "--user", "2"}),
              u"--user takes a whole number of 32 bits, not \"x\""_s);
    const CommandLine lists = taken({"--show", "sms", "--show", "mail"});
    EXPECT_TRUE(!lists.showSms && lists.showMail && !lists.showPush);
}

TEST(CommandLine, ChecksAnotherHost)
{
    EXPECT_TRUE(taken({}).checkHost.isEmpty());
    const CommandLine line = taken({"--check-host", "/opt/host/libhost.so:create", "--read-only"});
    EXPECT_EQ(line.checkHost, u"/opt/host/libhost.so:create"_s);
    EXPECT_TRUE(line.readOnly);
    EXPECT_FALSE(taken({"--check-host", "Host.Connection"}).readOnly);
    EXPECT_EQ(refused({"--read-only"}), u"--read-only belongs to --check-host"_s);
    EXPECT_EQ(refused({"--check-host"}), u"--check-host needs a value"_s);
    EXPECT_EQ(taken({"--check-host", "Host.Connection", "--check-limit", "5"}).checkLimit, 5);
    EXPECT_EQ(taken({"--check-host", "Host.Connection"}).checkLimit, std::nullopt);
    EXPECT_EQ(refused({"--check-limit", "5"}), u"--check-limit belongs to --check-host"_s);
    EXPECT_TRUE(refused({"--check-host", "Host.Connection", "--check-limit", "-1"}).contains(u"from 0"_s));
}

TEST(CommandLine, HelpAndVersion)
{
    EXPECT_TRUE(taken({"--help"}).help);
    EXPECT_TRUE(taken({"-h"}).help);
    EXPECT_FALSE(taken({"--help"}).version);
    EXPECT_TRUE(taken({"--version", "--touch"}).version);
    EXPECT_TRUE(refused({"--help", "--nonsense"}).contains(u"--nonsense"_s));
}

TEST(CommandLine, NamesEveryOptionInItsUsage)
{
    for (const char* option :
         {"--database", "--create-demo", "--app-dir", "--user", "--user-name", "--show", "--search",
          "--touch", "--window", "--scenario", "--journal", "--component", "--app-url", "--check-host",
          "--check-limit", "--read-only", "--help", "--version"}) {
        EXPECT_TRUE(zul::host::usage().contains(QLatin1String(option))) << option;
    }
}
TEST(CommandLine, TakesTheDatabaseFromAFileOrTheEnvironment)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"connection"_s);
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("DRIVER=x;PWD={l'età};UID=u\r\nsecond line\n");
    }
    EXPECT_EQ(taken({u"--database-file"_s, path}).database, u"DRIVER=x;PWD={l'età};UID=u"_s);
    EXPECT_TRUE(refused({u"--database-file"_s, folder.filePath(u"missing"_s)}).contains(u"first line"_s));
    EXPECT_TRUE(refused({u"--database-file"_s, folder.path()}).contains(u"first line"_s));
    qputenv("ZULHOST_DATABASE", "DRIVER=y");
    EXPECT_EQ(taken({}).database, u"DRIVER=y"_s);
    EXPECT_EQ(taken({u"--database"_s, u"x.db"_s}).database, u"x.db"_s);
    EXPECT_EQ(taken({u"--database-file"_s, path}).database, u"DRIVER=x;PWD={l'età};UID=u"_s);
    qunsetenv("ZULHOST_DATABASE");
}

TEST(CommandLine, OverwritesAConnectionStringAmongItsArguments)
{
    std::vector<std::string> words{"zulhost",
                                   "--user",
                                   "1",
                                   "--database",
                                   "UID=u;PWD=segreta",
                                   "--database=PWD=segreta",
                                   "--database",
                                   "a.db",
                                   "--database-file",
                                   "f=g",
                                   "--database"};
    std::vector<char*> arguments;
    arguments.reserve(words.size());
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    zul::host::hideSecrets(static_cast<int>(arguments.size()), arguments.data());
    EXPECT_EQ(words[4], std::string(17, 'x'));
    EXPECT_EQ(words[5], "--database=" + std::string(11, 'x'));
    EXPECT_EQ(words[7], "a.db");
    EXPECT_EQ(words[9], "f=g");
    EXPECT_EQ(words[10], "--database");
}

TEST(CommandLine, TakesTheOperationThatFails)
{
    EXPECT_TRUE(taken({}).failAt.isEmpty());
    for (const QString& plan :
         {u"0"_s, u"17"_s, u"17:error"_s, u"1:silent"_s, u"1:type"_s, u"1:lost"_s, u"1:end"_s}) {
        EXPECT_EQ(taken({u"--fail-at"_s, plan}).failAt, plan);
    }
    for (const QString& plan :
         {u""_s, u"-1"_s, u"x"_s, u"1:"_s, u"1:other"_s, u"1:lost "_s, u"12345678901"_s}) {
        EXPECT_TRUE(refused({u"--fail-at"_s, plan}).contains(u"KIND"_s)) << plan.toStdString();
    }
    EXPECT_EQ(taken({}).appTimeOuts, 3);
    EXPECT_EQ(taken({u"--app-time-outs"_s, u"0"_s}).appTimeOuts, 0);
}

} // namespace
