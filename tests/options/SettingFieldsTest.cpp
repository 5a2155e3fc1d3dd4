#include "options/SettingFields.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class SettingFieldsTest : public ComponentTest
{
protected:
    QString read(const settings::Key& key) { return fields.read(SettingsStore(connection()), key); }

    bool isToStore(const settings::Key& key, const QString& text) const
    {
        return fields.isToStore(key.name, text);
    }

    SettingFields fields;
};

TEST_F(SettingFieldsTest, AFieldWhoseSettingWasReadIsAlwaysStored)
{
    host.settings()["SMS_Mailup_From"] = "Ditta";
    host.settings()["SMS_Mailup_Subject"] = std::nullopt;
    for (const settings::Key& key :
         {settings::MailupFrom, settings::MailupSubject, settings::MailupConsoleId}) {
        const QString shown = read(key);
        fields.isShown(key.name, shown);
        EXPECT_TRUE(isToStore(key, shown)) << key.name << ": stored, NULL or absent";
        EXPECT_TRUE(isToStore(key, u"altro"_s));
    }
    EXPECT_EQ(read(settings::MailupConsoleId), u"22432"_s);
}

TEST_F(SettingFieldsTest, AFieldWhoseSettingCouldNotBeReadIsStoredOnlyWhenItWasChanged)
{
    host.settings()["SMS_Mailup_From"] = "Ditta";
    host.failNth("open", 1, E_FAIL, u"no");
    const QString shown = read(settings::MailupFrom);
    EXPECT_EQ(shown, u""_s);
    fields.isShown(settings::MailupFrom.name, shown);
    EXPECT_FALSE(isToStore(settings::MailupFrom, u""_s));
    EXPECT_TRUE(isToStore(settings::MailupFrom, u"Nuova"_s));
    EXPECT_EQ(logged().size(), 1) << "the failure is in the log";
}

TEST_F(SettingFieldsTest, AFieldThatTheLoadDidNotReachIsStoredOnlyWhenItWasChanged)
{
    fields.isShown("PathCartellaSMSSender", u""_s);
    EXPECT_FALSE(fields.isToStore("PathCartellaSMSSender", u""_s));
    EXPECT_TRUE(fields.isToStore("PathCartellaSMSSender", u"C:\\Sender"_s));
    fields.wasRead("PathCartellaSMSSender");
    EXPECT_TRUE(fields.isToStore("PathCartellaSMSSender", u""_s));
}

TEST_F(SettingFieldsTest, TheLastReadingCounts)
{
    fields.isShown(settings::Aggiungi0039.name, u"0"_s);
    host.failNth("open", 2, E_FAIL, u"no");
    EXPECT_EQ(read(settings::Aggiungi0039), u"1"_s);
    EXPECT_EQ(read(settings::Aggiungi0039), u""_s);
    EXPECT_FALSE(isToStore(settings::Aggiungi0039, u"0"_s));
}

} // namespace
} // namespace zul
