// The program zulhost as it is started: exit codes and what it says.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
class Program : public ::testing::Test
{
protected:
    struct End
    {
        int code = -1;
        QString output;
        QString errors;
    };

    End run(const QStringList& arguments, const QString& input = QProcess::nullDevice(),
            const QString& output = {}) const
    {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const QString& home : {u"HOME"_s, u"XDG_DATA_HOME"_s, u"XDG_CONFIG_HOME"_s}) {
            environment.insert(home, folder.path());
        }
        program.setProcessEnvironment(environment);
        program.setStandardInputFile(input);
        if (!output.isEmpty()) {
            program.setStandardOutputFile(output);
        }
        program.start(QStringLiteral(ZUL_HOST), arguments);
        EXPECT_TRUE(program.waitForFinished(60'000)) << arguments.join(u' ').toStdString();
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        return {program.exitCode(), textOf(program.readAllStandardOutput()),
                textOf(program.readAllStandardError())};
    }

    /// With line ends of one kind, and without what Qt says of functions that the system has not.
    static QString textOf(const QByteArray& output)
    {
        static const QRegularExpression notes(u"^qt\\.qpa\\..*\n"_s, QRegularExpression::MultilineOption);
        return QString::fromUtf8(output).remove(u'\r').remove(notes);
    }

    /// With a database and the component, which a scenario needs that is read.
    End play(const QString& scenario, const QString& input = QProcess::nullDevice(),
             const QStringList& options = {}, const QString& output = {}) const
    {
        const QString database = folder.filePath(u"play.db"_s);
        if (!QFile::exists(database)) {
            EXPECT_EQ(run({u"--database"_s, database, u"--create-demo"_s, u"0"_s}).code, 0);
        }
        return run(QStringList{u"--database"_s, database, u"--component"_s, QStringLiteral(ZUL_COMPONENT),
                               u"--scenario"_s, scenario} +
                       options,
                   input, output);
    }

    const QTemporaryDir folder;
};

TEST_F(Program, SaysWhatItTakesAndWhichOneItIs)
{
    const End help = run({u"--help"_s});
    EXPECT_EQ(help.code, 0);
    EXPECT_TRUE(help.output.startsWith(u"Usage: "_s)) << help.output.toStdString();
    EXPECT_TRUE(help.output.contains(u"--app-url <URL>"_s)) << help.output.toStdString();
    EXPECT_EQ(help.errors, QString());
    const End version = run({u"--version"_s});
    EXPECT_EQ(version.code, 0);
    EXPECT_EQ(version.output, u"zulhost %1\n"_s.arg(QStringLiteral(ZUL_VERSION)));
}

TEST_F(Program, ABadOptionEndsItWithTwo)
{
    for (const QStringList& arguments : QList<QStringList>{{u"--databse"_s},
                                                           {u"--user"_s, u"one"_s},
                                                           {u"--user"_s},
                                                           {u"x.scenario"_s},
                                                           {u"--touch=yes"_s}}) {
        const End end = run(arguments);
        EXPECT_EQ(end.code, 2) << arguments.join(u' ').toStdString();
        EXPECT_EQ(end.output, QString());
        EXPECT_TRUE(end.errors.startsWith(u"zulhost: "_s)) << end.errors.toStdString();
        EXPECT_EQ(end.errors.count(u'\n'), 1) << end.errors.toStdString();
    }
}

TEST_F(Program, AScenarioThatIsNoReadableFileEndsItWithTwo)
{
    for (const QString& scenario : {folder.path(), folder.filePath(u"missing.scenario"_s)}) {
        const End end = run({u"--scenario"_s, scenario});
        EXPECT_EQ(end.code, 2) << scenario.toStdString();
        EXPECT_TRUE(end.errors.startsWith(u"zulhost: the scenario "_s)) << end.errors.toStdString();
    }
    EXPECT_TRUE(QDir(folder.path()).isEmpty()) << "nothing was made for it";
}

#ifdef Q_OS_UNIX
TEST_F(Program, AScenarioThatCannotBeReadToItsEndEndsItWithTwo)
{
    const End endless = play(u"/dev/zero"_s);
    EXPECT_EQ(endless.code, 2);
    EXPECT_EQ(endless.errors, u"line 1: the line is longer than 1048576 bytes\n"_s);
    const End noInput = play(u"-"_s, folder.path());
    EXPECT_EQ(noInput.code, 2);
    EXPECT_EQ(noInput.errors, u"line 1: the scenario cannot be read\n"_s);
    const End endlessInput = play(u"-"_s, u"/dev/zero"_s);
    EXPECT_EQ(endlessInput.code, 2);
}

TEST_F(Program, WhatCouldNotBeWrittenEndsItWithOne)
{
    if (!QFile::exists(u"/dev/full"_s)) {
        GTEST_SKIP() << "this system has no /dev/full to stand for a full disk";
    }
    QFile file(folder.filePath(u"options.scenario"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("call ShowOptions\n");
    file.close();
    EXPECT_EQ(play(file.fileName()).code, 0);
    const End journal = play(file.fileName(), QProcess::nullDevice(), {u"--journal"_s, u"/dev/full"_s});
    EXPECT_EQ(journal.code, 1);
    EXPECT_EQ(journal.errors, u"zulhost: the journal \"/dev/full\" could not be written to its end\n"_s);
    const End output = play(file.fileName(), QProcess::nullDevice(), {}, u"/dev/full"_s);
    EXPECT_EQ(output.code, 1);
    EXPECT_EQ(output.errors, u"zulhost: standard output could not be written to its end\n"_s);
}
#endif

TEST_F(Program, AnEmptyScenarioIsPlayed)
{
    QFile file(folder.filePath(u"empty.scenario"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const End end = play(file.fileName());
    EXPECT_EQ(end.code, 0) << end.errors.toStdString();
    EXPECT_EQ(end.output, QString());
    EXPECT_EQ(play(u"-"_s).code, 0);
}
} // namespace
