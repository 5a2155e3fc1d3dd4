#include "session/Registry.h"

#include "hostlib/Error.h"
#include "tests/support/ComponentTest.h"

#include <QSettings>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

using RegistryErrorTest = test::ComponentTest;

TEST_F(RegistryErrorTest, AValueThatCannotBeStoredIsAnError)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, u"/proc/nowhere"_s);
    EXPECT_THROW(
        saveRegistry(QString::fromLatin1(RegistryKey), u"Options"_s, u"PathCartellaSMSSender"_s, u"x"_s),
        Error);
}

} // namespace
} // namespace zul
