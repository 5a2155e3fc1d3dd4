#include "session/Registry.h"

#include "hostlib/Error.h"
#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

using RegistryErrorTest = test::ComponentTest;

TEST_F(RegistryErrorTest, AValueThatCannotBeStoredIsAnError)
{
    // The names of the registry's values end at 16,383 characters.
    EXPECT_THROW(saveRegistry(QString::fromLatin1(RegistryKey), u"Options"_s, QString(20000, u'x'), u"x"_s),
                 Error);
}

} // namespace
} // namespace zul
