#include "session/Registry.h"

#include "hostlib/Error.h"
#include "tests/support/ComponentTest.h"
#include "tests/support/OwnSettings.h"

#include <QSettings>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

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
    test::loseOwnSettings();
    EXPECT_THROW(save(u"x"_s), Error);
}

} // namespace
} // namespace zul
