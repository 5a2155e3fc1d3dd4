#include "session/Settings.h"

#include "hostlib/Error.h"
#include "tests/support/ComponentTest.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

class SettingsTest : public ComponentTest
{
protected:
    static const char* rowOf(bool write)
    {
        return write ? "open SELECT * FROM tabImpostazioni WHERE descrizione='K' dynamic optimistic"
                     : "open SELECT * FROM tabImpostazioni WHERE descrizione='K' static pessimistic";
    }
};

TEST_F(SettingsTest, AStoredValueIsRead)
{
    host.settings()["K"] = "L'à 100% 😀";
    EXPECT_EQ(getDbValue(u"K"_s, u"d"_s), u"L'à 100% 😀"_s);
    EXPECT_EQ(host.operations(), Lines{rowOf(false)});
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsTest, AnEmptyStoredValueIsNotTheDefault)
{
    host.settings()["K"] = "";
    EXPECT_EQ(getDbValue(u"K"_s, u"d"_s), u""_s);
}

TEST_F(SettingsTest, ANullReadsAsTheDefaultAndIsNotRewritten)
{
    host.settings()["K"] = std::nullopt;
    EXPECT_EQ(getDbValue(u"K"_s, u"d"_s), u"d"_s);
    EXPECT_EQ(host.operations(), Lines{rowOf(false)});
}

TEST_F(SettingsTest, AMissingKeyIsAddedWithTheDefaultAndWithoutAnId)
{
    EXPECT_EQ(getDbValue(u"K"_s, u"d"_s), u"d"_s);
    EXPECT_EQ(host.operations(),
              (Lines{rowOf(false), "addnew", "set Descrizione='K'", "set Valore='d'", "update"}));
    EXPECT_EQ(host.settings()["K"], "d");
    host.forgetOperations();
    EXPECT_EQ(getDbValue(u"K"_s, u"altro"_s), u"d"_s) << "a second read finds it in the table";
    EXPECT_EQ(host.operations(), Lines{rowOf(false)});
}

TEST_F(SettingsTest, AFailedReadIsSilentAndGivesWhatItHeldByThen)
{
    host.settings()["K"] = "v";
    for (const char* kind : {"connection", "open", "value"}) {
        host.failNth(kind, 1, E_FAIL, u"no");
        EXPECT_EQ(getDbValue(u"K"_s, u"d"_s), u""_s) << kind;
    }
    host.settings().clear();
    for (const char* kind : {"addnew", "set", "update"}) {
        host.failNth(kind, 1, E_FAIL, u"no");
        EXPECT_EQ(getDbValue(u"K"_s, u"d"_s), u""_s) << kind;
    }
    host.failNth("close", 1, E_FAIL, u"no");
    EXPECT_EQ(getDbValue(u"K"_s, u"d"_s), u"d"_s) << "the row was added by then";
    session() = Session();
    EXPECT_EQ(getDbValue(u"K"_s, u"d"_s), u""_s);
    EXPECT_TRUE(logged().isEmpty());
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsTest, AnExistingRowIsWrittenInPlace)
{
    host.settings()["K"] = "v";
    EXPECT_TRUE(setDbValue(u"K"_s, u"L'à 100% 😀"_s));
    EXPECT_EQ(host.operations(), (Lines{rowOf(true), "set Valore='L'à 100% 😀'", "update"}));
    EXPECT_EQ(host.settings()["K"], "L'à 100% 😀");
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsTest, AMissingRowIsAddedWithTheLargestIdPlusOne)
{
    host.answer("Max(idImpostazione)", {{"maxId"}, {{number(41)}}});
    EXPECT_TRUE(setDbValue(u"K"_s, u"v"_s));
    EXPECT_EQ(
        host.operations(),
        (Lines{rowOf(true), "open SELECT Max(idImpostazione) as maxId FROM tabImpostazioni static read-only",
               "open tabImpostazioni dynamic optimistic", "addnew", "set idImpostazione=42",
               "set Descrizione='K'", "set Valore='v'", "update"}));
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsTest, TheFirstRowOfAnEmptyTableGetsIdOne)
{
    host.answer("Max(idImpostazione)", {{"maxId"}, {{null()}}});
    EXPECT_TRUE(setDbValue(u"K"_s, u"v"_s));
    EXPECT_EQ(host.operations("set").front(), "set idImpostazione=1");
}

TEST_F(SettingsTest, AfterTheLargestIdOfAllAWriteIsAnOverflow)
{
    host.answer("Max(idImpostazione)", {{"maxId"}, {{number(2147483647)}}});
    EXPECT_FALSE(setDbValue(u"K"_s, u"v"_s));
    EXPECT_TRUE(host.operations("addnew").empty());
    EXPECT_EQ(logged(), QStringList{u"setDbValue | Error 6 (Overflow) in procedure setDbValue of Modulo "
                                    "modSetup | "_s});
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsTest, AKeyIsPastedInAsItStandsAndAQuoteBreaksTheStatement)
{
    getDbValue(u"l'a"_s, u"d"_s);
    setDbValue(u"l'a"_s, u"v"_s);
    const Lines opened = host.operations("open");
    ASSERT_GE(opened.size(), 2U);
    EXPECT_EQ(opened[0], "open SELECT * FROM tabImpostazioni WHERE descrizione='l'a' static pessimistic");
    EXPECT_EQ(opened[1], "open SELECT * FROM tabImpostazioni WHERE descrizione='l'a' dynamic optimistic");
}

TEST_F(SettingsTest, AFailedWriteIsLogged)
{
    host.settings()["K"] = "v";
    QStringList expected;
    for (const char* kind : {"connection", "open", "set", "update", "close"}) {
        host.failNth(kind, 1, E_FAIL, u"no");
        EXPECT_FALSE(setDbValue(u"K"_s, u"w"_s)) << kind;
        expected.append(
            u"setDbValue | Error -2147467259 (no) in procedure setDbValue of Modulo modSetup | "_s);
    }
    host.settings().clear();
    host.answer("Max(idImpostazione)", {{"maxId"}, {{number(1)}}});
    for (const int opened : {2, 3}) {
        host.failNth("open", opened, E_FAIL, u"no");
        EXPECT_FALSE(setDbValue(u"K"_s, u"w"_s));
        expected.append(expected.first());
    }
    EXPECT_EQ(logged(), expected);
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsTest, KeysAndDefaultsAreTheseTexts)
{
    const auto expect = [&](const settings::Key& key, const char* name, const char* defaultValue) {
        EXPECT_STREQ(key.name, name);
        EXPECT_EQ(getDbValue(key), QString::fromLatin1(defaultValue)) << name;
        EXPECT_EQ(host.settings()[name], defaultValue) << name;
    };
    expect(settings::Aggiungi0039, "SMS_Aggiungi0039SeMancante", "1");
    expect(settings::InvioAutomatico, "SMS_InvioAutomatico", "0");
    expect(settings::MailupUserName, "SMS_Mailup_UserName", "");
    expect(settings::MailupPassword, "SMS_Mailup_Password", "");
    expect(settings::MailupFrom, "SMS_Mailup_From", "");
    expect(settings::MailupSubject, "SMS_Mailup_Subject", "");
    expect(settings::MailupListId, "SMS_Mailup_ListId", "");
    expect(settings::MailupConsoleId, "SMS_Mailup_ConsoleId", "22432");
    expect(settings::CheckFtpServer, "SMS_CHECK_FTP_SERVER", "");
    expect(settings::CheckFtpPort, "SMS_CHECK_FTP_PORT", "");
    expect(settings::CheckFtpUser, "SMS_CHECK_FTP_USER", "");
    expect(settings::CheckFtpPassword, "SMS_CHECK_FTP_Password", "");
    expect(settings::ConnettoreAppSalt, "ConnettoreApp_Salt", "");
    expect(settings::ConnettoreAppSlug, "ConnettoreApp_Slug", "");
}

// ---------------------------------------------------------------------------------------- the registry

class RegistryTest : public ComponentTest
{
protected:
    static QString read(const QString& defaultValue)
    {
        return readRegistry(QString::fromLatin1(RegistryKey), u"Options"_s, u"PathCartellaSMSSender"_s,
                            defaultValue);
    }
    static void save(const QString& value)
    {
        saveRegistry(QString::fromLatin1(RegistryKey), u"Options"_s, u"PathCartellaSMSSender"_s, value);
    }
};

TEST_F(RegistryTest, AMissingValueReadsAsTheDefault)
{
    EXPECT_EQ(read(u""_s), u""_s);
    EXPECT_EQ(read(u"C:\\d"_s), u"C:\\d"_s);
}

TEST_F(RegistryTest, AStoredValueComesBackAsItWent)
{
    for (const QString& value :
         {u"C:\\Sender\\"_s, u"L'à 100% \"x\" € 😀, ; ="_s, u" "_s, QString(10000, u'x')}) {
        save(value);
        EXPECT_EQ(read(u"d"_s), value);
    }
}

TEST_F(RegistryTest, AnEmptyStoredValueIsNotMissing)
{
    save(u""_s);
    EXPECT_EQ(read(u"d"_s), u""_s);
}

TEST_F(RegistryTest, TheValueStandsInTheUsersSettingsOfTheSystem)
{
    save(u"C:\\Sender"_s);
    QSettings settings(u"TESK"_s, u"ZUL"_s);
    EXPECT_EQ(settings.value(u"Options/PathCartellaSMSSender"_s).toString(), u"C:\\Sender"_s);
}

TEST_F(RegistryTest, AValueThatCannotBeStoredIsAnError)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, u"/proc/nowhere"_s);
    EXPECT_THROW(save(u"x"_s), Error);
}

} // namespace
} // namespace zul
