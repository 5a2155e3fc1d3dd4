#include "host/database/Secrets.h"

#include <gtest/gtest.h>

using namespace zul::host;

TEST(Secrets, PasswordsOfConnectionStringsAreNotShown)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"DRIVER=x;UID=u;PWD=segreta;DATABASE=d", "DRIVER=x;UID=u;PWD=***;DATABASE=d"},
        {"pwd=segreta", "pwd=***"},
        {"UID=u;Password=segreta", "UID=u;Password=***"},
        {"PWD={a;b}}c};UID=u", "PWD=***;UID=u"},
        {"PWD={a}rest;UID=u", "PWD=***;UID=u"},
        {"PWD={a}={b};UID=u", "PWD=***;UID=u"},
        {"PWD={never closed;UID=u", "PWD=***"},
        {"PWD=;UID=u", "PWD=***;UID=u"},
        {" -connectionstring:PWD=x;UID=u", " -connectionstring:PWD=***;UID=u"},
        {"PWD=a;PWD=b;pwd={c}", "PWD=***;PWD=***;pwd=***"},
        {"login of 'UID=u;PWD=x' failed", "login of 'UID=u;PWD=***' failed"},
        // No connection string's.
        {"MYPWD=x;cpwd=y", "MYPWD=x;cpwd=y"},
        {"la password è à € 😀", "la password è à € 😀"},
        {"PWD", "PWD"},
    };
    for (const auto& [text, shown] : cases) {
        EXPECT_EQ(withoutPasswords(text), shown) << text;
    }
    const std::string longText(10'000, 'a');
    EXPECT_EQ(withoutPasswords("PWD=" + longText + ";" + longText), "PWD=***;" + longText);
}

TEST(Secrets, SettingsOfPasswordsAreKnownByTheirNames)
{
    EXPECT_TRUE(isSecretSetting("SMS_CHECK_FTP_Password"));
    EXPECT_TRUE(isSecretSetting("sms_mailup_PASSWORD"));
    EXPECT_FALSE(isSecretSetting("SMS_CHECK_FTP_Server"));
    EXPECT_FALSE(isSecretSetting(""));
}
