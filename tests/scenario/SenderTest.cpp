// The stand-in sender: its command line, the queue that it lists, its window and the program.
#include "sender/SenderWindow.h"

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QProcess>
#include <QPushButton>
#include <QTableView>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {
using zul::sender::databaseFile;
using zul::sender::QueuedMessage;
using zul::sender::readParameters;
using zul::sender::readQueue;

void run(const QString& file, const char* sql)
{
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file.toUtf8().constData(), &database), SQLITE_OK);
    char* error = nullptr;
    EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, &error), SQLITE_OK)
        << (error == nullptr ? "" : error);
    sqlite3_free(error);
    sqlite3_close(database);
}

class Sender : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    QString file = folder.filePath(QStringLiteral("data à b.db"));

    void SetUp() override
    {
        run(file,
            "CREATE TABLE TMK_MailingList (idMailing INTEGER, idCampagna INTEGER, idMessaggio INTEGER, "
            "IDCliente "
            "INTEGER, Contatto TEXT, DataCreaz TEXT, OraCreaz TEXT, idTipoMessaggio INTEGER, Testo TEXT);"
            "CREATE TABLE TMK_Messaggi (idMessaggio INTEGER, Descrizione TEXT, testoSMS TEXT, Oggetto TEXT);"
            "CREATE TABLE TMK_Campagne (idCampagna INTEGER, Descrizione TEXT);"
            "INSERT INTO TMK_Messaggi VALUES (3, 'Auguri', NULL, 'Tanti \"auguri\" 50% 😀');"
            "INSERT INTO TMK_Campagne VALUES (1, 'CAMPAGNA MAIL DEL:21/11/26');"
            "INSERT INTO TMK_MailingList VALUES (2, 1, 3, 7, 'd''amico@example.com', '2026-11-21 10:00:00', "
            "NULL, NULL,"
            " NULL), (1, NULL, NULL, 7, '+39 333 1', '2026-11-21 00:00:00', '1899-12-30 09:00:00', 6, "
            "'ciao' || char(10) || 'è'),"
            " (3, NULL, NULL, 8, NULL, NULL, NULL, 8, 'push'), (4, NULL, NULL, 8, NULL, NULL, NULL, 99, "
            "'');");
    }
};

TEST_F(Sender, ReadsItsCommandLine)
{
    EXPECT_TRUE(readParameters({}).connectionString.isEmpty());
    EXPECT_EQ(readParameters({" -connectionstring:Provider=SQLite;Data Source=/a b/x.db"}).connectionString,
              QStringLiteral("Provider=SQLite;Data Source=/a b/x.db"));
    EXPECT_EQ(readParameters({"-ConnectionString:Data", "Source=/a", "b/x.db"}).connectionString,
              QStringLiteral("Data Source=/a b/x.db"));
    EXPECT_FALSE(readParameters({"-connectionstring:Data Source=x --list"}).list);
    const auto both = readParameters({"--list", "-connectionstring:Data Source=x"});
    EXPECT_TRUE(both.list);
    EXPECT_EQ(both.connectionString, QStringLiteral("Data Source=x"));
}

TEST_F(Sender, FindsTheDatabaseInTheConnectionString)
{
    EXPECT_EQ(databaseFile("Provider=SQLite;Data Source=/a b/x=1.db"), QStringLiteral("/a b/x=1.db"));
    EXPECT_EQ(databaseFile("data source = x.db ;Provider=SQLite"), QStringLiteral("x.db"));
    EXPECT_EQ(databaseFile("DRIVER=FreeTDS;SERVER=x"), QString());
    EXPECT_EQ(databaseFile(""), QString());
}

TEST_F(Sender, ListsTheQueueInItsOrder)
{
    const std::vector<QueuedMessage> queue = readQueue(file);
    ASSERT_EQ(queue.size(), 4U);
    EXPECT_EQ(queueLine(queue[0]), QStringLiteral("1\tSMS\t+39 333 1\tciao\\nè\tNULL\t2026-11-21 09:00:00"));
    EXPECT_EQ(
        queueLine(queue[1]),
        QStringLiteral("2\tE-mail\td'amico@example.com\tTanti \"auguri\" 50% 😀\tCAMPAGNA MAIL DEL:21/11/26"
                       "\t2026-11-21 10:00:00"));
    EXPECT_EQ(queueLine(queue[2]), QStringLiteral("3\tNotifica push\tNULL\tpush\tNULL\tNULL"));
    EXPECT_EQ(queueLine(queue[3]), QStringLiteral("4\t99\tNULL\t\tNULL\tNULL"));
}

TEST_F(Sender, SaysWhyADatabaseCannotBeRead)
{
    for (const QString& wrong : {folder.filePath("none.db"), folder.path(), QString()}) {
        EXPECT_THROW(readQueue(wrong), std::runtime_error) << wrong.toStdString();
    }
    const QString empty = folder.filePath("empty.db");
    run(empty, "CREATE TABLE x (y)");
    try {
        readQueue(empty);
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("TMK_MailingList"), std::string::npos) << error.what();
    }
}

TEST_F(Sender, ShowsTheQueueAndReadsItAgain)
{
    zul::sender::SenderWindow window(file);
    auto* table = window.findChild<QTableView*>(QStringLiteral("tblCoda"));
    auto* status = window.findChild<QLabel*>(QStringLiteral("lblStato"));
    const QAbstractItemModelTester tester(table->model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(table->model()->rowCount(), 4);
    EXPECT_EQ(table->model()->index(0, 3).data().toString(), QStringLiteral("ciao è"));
    EXPECT_EQ(status->text(), QStringLiteral("Messaggi in coda: 4"));
    run(file, "DELETE FROM TMK_MailingList WHERE idMailing > 1");
    window.findChild<QPushButton*>(QStringLiteral("cmdAggiorna"))->click();
    EXPECT_EQ(table->model()->rowCount(), 1);
    run(file, "DROP TABLE TMK_MailingList");
    window.refresh();
    EXPECT_EQ(table->model()->rowCount(), 0);
    EXPECT_TRUE(status->text().contains(QStringLiteral("TMK_MailingList"))) << status->text().toStdString();
}

TEST_F(Sender, ShowsAWindowWithoutADatabase)
{
    const zul::sender::SenderWindow window{QString()};
    EXPECT_EQ(window.findChild<QLabel*>(QStringLiteral("lblStato"))->text(),
              QStringLiteral("Nessun database SQLite indicato sulla riga di comando."));
}

TEST_F(Sender, TheProgramListsTheQueue)
{
    QProcess program;
    program.start(
        QStringLiteral(ZUL_SENDER),
        {QStringLiteral("--list"), QStringLiteral(" -connectionstring:Provider=SQLite;Data Source=") + file});
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_EQ(program.readAllStandardOutput().count('\n'), 4);
    program.start(QStringLiteral(ZUL_SENDER),
                  {QStringLiteral("--list"), QStringLiteral("-connectionstring:Data Source=/none/x.db")});
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_FALSE(program.readAllStandardError().isEmpty());
}

#ifdef Q_OS_UNIX
TEST_F(Sender, TheProgramEndsWithoutADisplay)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(ZUL_SENDER),
                  {QStringLiteral(" -connectionstring:Provider=SQLite;Data Source=") + file});
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitCode(), 0);
    EXPECT_TRUE(program.readAllStandardOutput().isEmpty());
    program.start(QStringLiteral(ZUL_SENDER), {QStringLiteral("-connectionstring:Data Source=/none/x.db")});
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitCode(), 1);
    EXPECT_FALSE(program.readAllStandardError().isEmpty());
}
#endif
} // namespace
