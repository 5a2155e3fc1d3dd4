#include "session/SmsSender.h"

#include "session/Platform.h"
#include "tests/support/ComponentTest.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

class SmsSenderTest : public ComponentTest
{
protected:
    QString program() const { return folder.filePath(u"ZULSms_Sender.exe"_s); }

    /// A program that writes its arguments into the file "arguments" beside it.
    void makeProgram() { ASSERT_TRUE(QFile::copy(QStringLiteral(ZUL_PRINT_ARGUMENTS), program())); }

    /// Its path as the host is handed it.
    std::string native() const { return utf8(QDir::toNativeSeparators(program())); }

    /// The temporary folder as the system writes paths.
    QString backslashed() const { return folder.path().replace(u'/', u'\\'); }

    QString writtenArguments() const
    {
        const QString path = folder.filePath(u"arguments"_s);
        if (!QTest::qWaitFor([&] { return QFile::exists(path); }, 30000)) {
            return u"(not started)"_s;
        }
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    static OperatorMessage notFound(const QString& path)
    {
        return told(u"Il software di invio SMS non è stato trovato nel seguente percorso:\r\n"_s + path +
                        u"\r\n\r\nImpostare il percorso corretto su Impostazioni -> Percorsi di sistema."_s,
                    MessageIcon::Critical);
    }

    QTemporaryDir folder;
};

TEST_F(SmsSenderTest, AFolderWithAndWithoutItsBackslashGiveTheSamePath)
{
    EXPECT_EQ(smsSenderPath(u"C:\\Sender"_s), u"C:\\Sender\\ZULSms_Sender.exe"_s);
    EXPECT_EQ(smsSenderPath(u"C:\\Sender\\"_s), u"C:\\Sender\\ZULSms_Sender.exe"_s);
    EXPECT_EQ(smsSenderPath(QString()), u"\\ZULSms_Sender.exe"_s);
}

TEST_F(SmsSenderTest, AProgramThatIsNotThereIsToldWithItsComposedPath)
{
    EXPECT_FALSE(AvviaSmsSender(true, u"C:\\Non c'è"_s, nullptr));
    EXPECT_EQ(messages, std::vector<OperatorMessage>{notFound(u"C:\\Non c'è\\ZULSms_Sender.exe"_s)});
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(SmsSenderTest, AnEmptyPathMeansTheSessionsFolder)
{
    EXPECT_FALSE(AvviaSmsSender(true, QString(), nullptr));
    session().PathCartellaSMSSender = u"C:\\Dalla sessione"_s;
    EXPECT_FALSE(AvviaSmsSender(true, QString(), nullptr));
    EXPECT_FALSE(AvviaSmsSender(true, u"C:\\Dal campo"_s, nullptr));
    EXPECT_EQ(messages, (std::vector<OperatorMessage>{notFound(u"\\ZULSms_Sender.exe"_s),
                                                      notFound(u"C:\\Dalla sessione\\ZULSms_Sender.exe"_s),
                                                      notFound(u"C:\\Dal campo\\ZULSms_Sender.exe"_s)}));
}

TEST_F(SmsSenderTest, AFolderOfThatNameIsNoProgram)
{
    QDir().mkpath(program());
    EXPECT_FALSE(AvviaSmsSender(false, backslashed(), nullptr));
    EXPECT_EQ(messages.size(), 1U);
}

TEST_F(SmsSenderTest, TheHostStartsItWithTheNativePathAndAParameterThatBeginsWithABlank)
{
    host.offer(Service::ProgramStarter);
    host.connectionString() = "Server=à;Pwd=x y'z\"";
    makeProgram();
    EXPECT_TRUE(AvviaSmsSender(true, backslashed(), nullptr));
    EXPECT_TRUE(AvviaSmsSender(false, backslashed() + u'\\', nullptr));
    EXPECT_EQ(host.operations(), (Lines{"start " + native() + "| -connectionstring:Server=à;Pwd=x y'z\"",
                                        "start " + native() + "|"}));
    EXPECT_TRUE(messages.empty());
}

TEST_F(SmsSenderTest, WithoutAStarterTheSystemStartsItAndTheConnectionStringIsOneArgument)
{
    makeProgram();
    for (const char* connection :
         {"Server=à;Pwd=x y'z\"", "Data Source=C:\\Dati\\", "Data Source=C:\\Dati di Zul\\",
          "A=\"x\\\";B=\"y  z\\\\\"", "", "\"", "A=%PATH% ^& | < > !;è€😀\t."}) {
        host.connectionString() = connection;
        EXPECT_TRUE(AvviaSmsSender(true, backslashed(), nullptr));
        EXPECT_EQ(writtenArguments(), u"1|-connectionstring:"_s + QString::fromUtf8(connection));
        QFile::remove(folder.filePath(u"arguments"_s));
    }
}

TEST_F(SmsSenderTest, WithoutParametersItGetsNone)
{
    makeProgram();
    EXPECT_TRUE(AvviaSmsSender(false, backslashed(), nullptr));
    EXPECT_EQ(writtenArguments(), u"0|"_s);
    QFile::remove(folder.filePath(u"arguments"_s));
    platform::openProgram(program(), u"  "_s);
    EXPECT_EQ(writtenArguments(), u"0|"_s);
}

TEST_F(SmsSenderTest, TheResultOfTheStartIsNotLookedAt)
{
    QFile file(program());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)); // no program at all, and not executable
    file.close();
    EXPECT_TRUE(AvviaSmsSender(true, backslashed(), nullptr));
    EXPECT_TRUE(messages.empty());
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(SmsSenderTest, AnErrorIsLoggedAndNothingIsStarted)
{
    host.offer(Service::ProgramStarter);
    makeProgram();
    host.failNth("connectionstring", 1, E_FAIL, u"no");
    EXPECT_FALSE(AvviaSmsSender(true, backslashed(), nullptr));
    EXPECT_TRUE(host.operations("start").empty());
    EXPECT_EQ(logged(), QStringList{u"AvviaSmsSender | Error -2147467259 (no) in procedure AvviaSmsSender of "
                                    "Modulo modMain | "_s});
}

} // namespace
} // namespace zul
