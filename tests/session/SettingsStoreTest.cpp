#include "session/SettingsStore.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

class SettingsStoreTest : public ComponentTest
{
protected:
    static SettingsStore store() { return SettingsStore(session().connectionOrNone()); }

    static const char* rowOf(bool write)
    {
        return write ? "open SELECT * FROM tabImpostazioni WHERE descrizione='K' dynamic optimistic"
                     : "open SELECT * FROM tabImpostazioni WHERE descrizione='K' static pessimistic";
    }
};

TEST_F(SettingsStoreTest, AStoredValueIsRead)
{
    host.settings()["K"] = "L'à 100% 😀";
    EXPECT_EQ(store().getDbValue(u"K"_s, u"d"_s), u"L'à 100% 😀"_s);
    EXPECT_EQ(host.operations(), Lines{rowOf(false)});
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsStoreTest, AnEmptyStoredValueIsNotTheDefault)
{
    host.settings()["K"] = "";
    EXPECT_EQ(store().getDbValue(u"K"_s, u"d"_s), u""_s);
}

TEST_F(SettingsStoreTest, ANullReadsAsTheDefaultAndIsNotRewritten)
{
    host.settings()["K"] = std::nullopt;
    EXPECT_EQ(store().getDbValue(u"K"_s, u"d"_s), u"d"_s);
    EXPECT_EQ(host.operations(), Lines{rowOf(false)});
}

TEST_F(SettingsStoreTest, AMissingKeyIsAddedWithTheDefaultAndWithoutAnId)
{
    EXPECT_EQ(store().getDbValue(u"K"_s, u"d"_s), u"d"_s);
    EXPECT_EQ(host.operations(),
              (Lines{rowOf(false), "addnew", "set Descrizione='K'", "set Valore='d'", "update"}));
    EXPECT_EQ(host.settings()["K"], "d");
    host.forgetOperations();
    EXPECT_EQ(store().getDbValue(u"K"_s, u"altro"_s), u"d"_s) << "a second read finds it in the table";
    EXPECT_EQ(host.operations(), Lines{rowOf(false)});
}

TEST_F(SettingsStoreTest, ReadingTellsStoredFromAbsent)
{
    host.settings()["K"] = "v";
    host.settings()["N"] = std::nullopt;
    EXPECT_EQ(store().read(u"K"_s, u"d"_s).state, SettingState::Stored);
    EXPECT_EQ(store().read(u"N"_s, u"d"_s).state, SettingState::Stored) << "a row, though NULL";
    EXPECT_EQ(store().read(u"M"_s, u"d"_s).state, SettingState::Absent);
    EXPECT_EQ(store().read(u"M"_s, u"d"_s).state, SettingState::Stored) << "it was added";
    EXPECT_TRUE(logged().isEmpty());
}

TEST_F(SettingsStoreTest, AFailedReadGivesWhatItHeldByThenAndIsLogged)
{
    QStringList expected;
    const auto expectFailed = [&](const char* kind, const QString& value, SettingState state) {
        host.failNth(kind, 1, E_FAIL, u"no");
        const SettingRead read = store().read(u"K"_s, u"d"_s);
        EXPECT_EQ(read.value, value) << kind;
        EXPECT_EQ(read.state, state) << kind;
        expected.append(
            u"getDbValue | Error -2147467259 (no) in procedure setDbValue of Modulo modSetup | K"_s);
    };
    host.settings()["K"] = "v";
    for (const char* kind : {"connection", "open", "value"}) {
        expectFailed(kind, u""_s, SettingState::Failed);
    }
    expectFailed("close", u"v"_s, SettingState::Stored);
    host.settings().clear();
    for (const char* kind : {"addnew", "set", "update"}) {
        expectFailed(kind, u""_s, SettingState::Failed);
    }
    expectFailed("close", u"d"_s, SettingState::Absent);
    EXPECT_EQ(host.settings()["K"], "d") << "the row was added by then";
    EXPECT_EQ(logged(), expected);
    EXPECT_TRUE(messages.empty());
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsStoreTest, WithoutAConnectionEveryAccessFails)
{
    const SettingsStore nowhere{hostlib::SqlConnection()};
    EXPECT_EQ(nowhere.read(u"K"_s, u"d"_s).state, SettingState::Failed);
    EXPECT_EQ(nowhere.getDbValue(u"K"_s, u"d"_s), u""_s);
    EXPECT_FALSE(nowhere.setDbValue(u"K"_s, u"v"_s));
    const QString why =
        u"Error 91 (Object variable or With block variable not set) in procedure setDbValue of "
        "Modulo modSetup"_s;
    EXPECT_EQ(logged(),
              (QStringList{u"getDbValue | "_s + why + u" | K"_s, u"getDbValue | "_s + why + u" | K"_s,
                           u"setDbValue | "_s + why + u" | "_s}));
}

TEST_F(SettingsStoreTest, AnExistingRowIsWrittenInPlace)
{
    host.settings()["K"] = "v";
    EXPECT_TRUE(store().setDbValue(u"K"_s, u"L'à 100% 😀"_s));
    EXPECT_EQ(host.operations(), (Lines{rowOf(true), "set Valore='L'à 100% 😀'", "update"}));
    EXPECT_EQ(host.settings()["K"], "L'à 100% 😀");
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsStoreTest, AMissingRowIsAddedWithTheLargestIdPlusOne)
{
    host.answer("Max(idImpostazione)", {{"maxId"}, {{number(41)}}});
    EXPECT_TRUE(store().setDbValue(u"K"_s, u"v"_s));
    EXPECT_EQ(
        host.operations(),
        (Lines{rowOf(true), "open SELECT Max(idImpostazione) as maxId FROM tabImpostazioni static read-only",
               "open tabImpostazioni dynamic optimistic", "addnew", "set idImpostazione=42",
               "set Descrizione='K'", "set Valore='v'", "update"}));
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsStoreTest, TheFirstRowOfAnEmptyTableGetsIdOne)
{
    host.answer("Max(idImpostazione)", {{"maxId"}, {{null()}}});
    EXPECT_TRUE(store().setDbValue(u"K"_s, u"v"_s));
    EXPECT_EQ(host.operations("set").front(), "set idImpostazione=1");
}

TEST_F(SettingsStoreTest, AfterTheLargestIdOfAllAWriteIsAnOverflow)
{
    host.answer("Max(idImpostazione)", {{"maxId"}, {{number(2147483647)}}});
    EXPECT_FALSE(store().setDbValue(u"K"_s, u"v"_s));
    EXPECT_TRUE(host.operations("addnew").empty());
    EXPECT_EQ(logged(), QStringList{u"setDbValue | Error 6 (Overflow) in procedure setDbValue of Modulo "
                                    "modSetup | "_s});
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsStoreTest, AKeyIsPastedInAsItStandsAndAQuoteBreaksTheStatement)
{
    store().getDbValue(u"l'a"_s, u"d"_s);
    store().setDbValue(u"l'a"_s, u"v"_s);
    const Lines opened = host.operations("open");
    ASSERT_GE(opened.size(), 2U);
    EXPECT_EQ(opened[0], "open SELECT * FROM tabImpostazioni WHERE descrizione='l'a' static pessimistic");
    EXPECT_EQ(opened[1], "open SELECT * FROM tabImpostazioni WHERE descrizione='l'a' dynamic optimistic");
}

TEST_F(SettingsStoreTest, AFailedWriteIsLogged)
{
    host.settings()["K"] = "v";
    QStringList expected;
    for (const char* kind : {"connection", "open", "set", "update", "close"}) {
        host.failNth(kind, 1, E_FAIL, u"no");
        EXPECT_FALSE(store().setDbValue(u"K"_s, u"w"_s)) << kind;
        expected.append(
            u"setDbValue | Error -2147467259 (no) in procedure setDbValue of Modulo modSetup | "_s);
    }
    host.settings().clear();
    host.answer("Max(idImpostazione)", {{"maxId"}, {{number(1)}}});
    for (const int opened : {2, 3}) {
        host.failNth("open", opened, E_FAIL, u"no");
        EXPECT_FALSE(store().setDbValue(u"K"_s, u"w"_s));
        expected.append(expected.first());
    }
    EXPECT_EQ(logged(), expected);
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SettingsStoreTest, KeysAndDefaultsAreTheseTexts)
{
    const auto expect = [&](const settings::Key& key, const char* name, const char* defaultValue) {
        EXPECT_STREQ(key.name, name);
        EXPECT_EQ(store().getDbValue(key), QString::fromLatin1(defaultValue)) << name;
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

} // namespace
} // namespace zul
