// zulhost --check-host as it is started on the libraries of others: what it prints and how it ends.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class CheckHostProgram : public ::testing::Test
{
protected:
    struct End
    {
        int code = -1;
        QStringList lines;
        QString errors;
    };

    CheckHostProgram()
    {
        QFile file(database);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }

    End check(const QString& host, const QStringList& more = {}) const
    {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"ZUL_TEST_HOST_DATABASE"_s, database);
        environment.insert(u"XDG_DATA_HOME"_s, folder.path());
        program.setProcessEnvironment(environment);
        program.start(QStringLiteral(ZUL_HOST), QStringList{u"--check-host"_s, host} + more);
        EXPECT_TRUE(program.waitForFinished(60'000));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        return {
            program.exitCode(),
            QString::fromUtf8(program.readAllStandardOutput()).trimmed().remove(u'\r').split(u'\n'),
            QString::fromUtf8(program.readAllStandardError()),
        };
    }

    const QTemporaryDir folder;
    const QString database = folder.filePath(u"host à.db"_s);
    const QString library = QStringLiteral(ZUL_SHARED_HOST);
};

TEST_F(CheckHostProgram, EndsWithNoughtOverAHostThatKeepsTheContract)
{
    const End end = check(library);
    EXPECT_EQ(end.code, 0) << end.lines.join(u'\n').toStdString() << end.errors.toStdString();
    EXPECT_TRUE(end.lines.contains(u"ok       row sets: static, read only"_s));
    EXPECT_TRUE(end.lines.contains(u"ok       the event CaricaGriglia"_s))
        << end.lines.join(u'\n').toStdString();
    EXPECT_TRUE(end.lines.contains(u"stand-in services: IChangeTracker: nothing is told of added rows"_s));
    EXPECT_TRUE(end.lines.last().contains(u", 0 breaches, "_s)) << end.lines.last().toStdString();
    EXPECT_EQ(end.errors, QString());
}

TEST_F(CheckHostProgram, EndsWithOneOverABreach)
{
    const End end = check(library + u":createWithoutDescriptions"_s);
    EXPECT_EQ(end.code, 1);
    EXPECT_EQ(
        end.lines.filter(u"BREACH   "_s),
        QStringList{u"BREACH   failures: descriptions: Execute of a bad statement leaves no description "
                    "with SetErrorInfo; the component: has nothing but a number for its log"_s});
    EXPECT_TRUE(end.lines.last().contains(u", 1 breach, "_s)) << end.lines.last().toStdString();
}

TEST_F(CheckHostProgram, EndsWithOneWhereTheTableCannotBeMade)
{
    const End end = check(library + u":createWithoutTable"_s);
    EXPECT_EQ(end.code, 1);
    const QStringList breaches = end.lines.filter(u"BREACH   a table of its own: "_s);
    ASSERT_EQ(breaches.size(), 1) << end.lines.join(u'\n').toStdString();
    EXPECT_TRUE(breaches.first().contains(u"quando datetime NULL)\" fails: nessun permesso (0x80070005)"_s))
        << breaches.first().toStdString();
}

TEST_F(CheckHostProgram, MakesNoTableReadOnly)
{
    const End end = check(library, {u"--read-only"_s});
    EXPECT_EQ(end.code, 0) << end.lines.join(u'\n').toStdString();
    EXPECT_TRUE(end.lines.contains(u"skipped  a table of its own: read-only"_s));
    EXPECT_TRUE(end.lines.contains(u"skipped  transactions: needs \"a table of its own\""_s));
    QFile file(database);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_FALSE(file.readAll().contains("zulVerifica")) << "a table was made";
}

#ifdef Q_OS_LINUX
TEST_F(CheckHostProgram, TakesARegisteredClass)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"Zul"_s));
    QFile classes(folder.filePath(u"Zul/automation-classes.ini"_s));
    ASSERT_TRUE(classes.open(QIODevice::WriteOnly));
    classes.write("[{5D0C3E0A-8F1B-4C57-9B0E-2A6F4B7C1D11}]\nProgID=Test.Connection\nLibrary=" +
                  library.toUtf8() + "\n");
    classes.close();
    const End end = check(u"Test.Connection"_s, {u"--read-only"_s});
    EXPECT_EQ(end.code, 0) << end.errors.toStdString();
    EXPECT_TRUE(end.lines.contains(u"ok       connection"_s)) << end.lines.join(u'\n').toStdString();
}
#endif

TEST_F(CheckHostProgram, NamesTheCheckInWhichTheHostEndsTheProcess)
{
    // A sanitizer turns the signal into an exit code of its own.
    for (const auto& [factory, how] :
         {std::pair(u"createExits"_s, u"\\(exit code 0\\)"_s),
          std::pair(u"createCrashes"_s, u"\\((signal 11, .+|exception 0xc0000005|exit code 1)\\)"_s)}) {
        const End end = check(library + u':' + factory);
        EXPECT_EQ(end.code, 1) << factory.toStdString();
        const QStringList breaches = end.lines.filter(u"BREACH   "_s);
        ASSERT_EQ(breaches.size(), 1) << end.lines.join(u'\n').toStdString();
        static const QString line =
            u"^BREACH   row sets: NULL: the host ended the process %1; the component: is in "
            "that process: the application ends in the middle of the operator's work$"_s;
        EXPECT_TRUE(breaches.first().contains(QRegularExpression(line.arg(how))))
            << breaches.first().toStdString();
        // The others are tried in a new process.
        EXPECT_TRUE(end.lines.contains(u"ok       row sets: the empty text"_s))
            << end.lines.join(u'\n').toStdString();
        EXPECT_TRUE(end.lines.contains(u"ok       transactions"_s)) << end.lines.join(u'\n').toStdString();
        EXPECT_TRUE(end.lines.last().contains(u", 1 breach, "_s)) << end.lines.last().toStdString();
    }
}

TEST_F(CheckHostProgram, NoticesAnObjectThatGoesWithReferencesLeft)
{
    const End end = check(library + u":createGoesEarly"_s, {u"--read-only"_s});
    EXPECT_EQ(end.code, 1);
    EXPECT_TRUE(end.lines.join(u'\n').contains(
        u"BREACH   references: those that are left keep an object: the host ended the process ("_s))
        << end.lines.join(u'\n').toStdString();
}

TEST_F(CheckHostProgram, DoesNotWaitForEver)
{
    const End end = check(library + u":createHangs"_s, {u"--check-limit"_s, u"1"_s, u"--read-only"_s});
    EXPECT_EQ(end.code, 1);
    EXPECT_TRUE(
        end.lines.contains(u"BREACH   row sets: NULL: no answer within 1 seconds; the component: waits for "
                           "ever: the application hangs"_s))
        << end.lines.join(u'\n').toStdString();
    EXPECT_TRUE(end.lines.contains(u"ok       values: reals"_s)) << end.lines.join(u'\n').toStdString();
}

TEST_F(CheckHostProgram, NamesAFactoryThatEndsTheProcessOrHangs)
{
    for (const auto& [factory, how] : {std::pair(u"exits"_s, u"the host ended the process (exit code 0)"_s),
                                       std::pair(u"hangs"_s, u"no answer within 1 seconds"_s)}) {
        const End end = check(library + u':' + factory, {u"--check-limit"_s, u"1"_s});
        EXPECT_EQ(end.code, 1) << factory.toStdString();
        EXPECT_TRUE(end.lines.first().startsWith(u"BREACH   loading the host: "_s + how))
            << end.lines.join(u'\n').toStdString();
        EXPECT_EQ(end.lines.last(), u"1 checks: 0 ok, 0 stand-ins, 1 breach, 0 skipped"_s);
    }
}

TEST_F(CheckHostProgram, NamesAFactoryThatThrows)
{
    const End end = check(library + u":throws"_s);
#if defined(Q_OS_WIN) && !defined(Q_OS_WIN64)
    // There an exception does not find its way out of a library.
    EXPECT_EQ(end.code, 1);
    EXPECT_TRUE(end.lines.first().startsWith(
        u"BREACH   loading the host: the host ended the process (exit code 3)"_s))
        << end.lines.join(u'\n').toStdString();
#else
    EXPECT_EQ(end.code, 2);
    EXPECT_EQ(end.errors.trimmed(), u"zulhost: an exception came out of the host when it was loaded"_s);
    EXPECT_EQ(end.lines, QStringList(QString()));
#endif
}

TEST_F(CheckHostProgram, EndsWithTwoWhereThereIsNoHost)
{
    const QString missing = folder.filePath(u"libmissing.so"_s);
    for (
        const auto& [host, why] :
        {std::pair(missing, u"the host cannot be loaded: "_s),
         std::pair(library + u":noSuchFunction"_s, u"is no host: it exports no noSuchFunction"_s),
         std::pair(library + u":createNothing"_s, u"createNothing succeeded and gave null"_s),
         std::pair(library + u":createFailure"_s,
                   u"createFailure failed: 0x80070005 (il server non risponde)"_s),
         std::pair(library + u":createSomethingElse"_s, u"0x80004002 (it is no connection object: "_s),
         std::pair(
             u"No.Such.Class"_s,
             u"Finding the class No.Such.Class failed: 0x800401f3 (no class of this name is registered"_s)}) {
        const End end = check(host);
        EXPECT_EQ(end.code, 2) << host.toStdString();
        EXPECT_TRUE(end.errors.startsWith(u"zulhost: "_s)) << end.errors.toStdString();
        EXPECT_TRUE(end.errors.contains(why)) << end.errors.toStdString();
        EXPECT_EQ(end.lines, QStringList(QString()));
    }
}

} // namespace
