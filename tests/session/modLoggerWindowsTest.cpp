#include "session/modLogger.h"

#include "tests/support/ComponentTest.h"

#include <QFile>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class ModLoggerWindowsTest : public ComponentTest
{};

TEST_F(ModLoggerWindowsTest, LinesEndAsTheSystemsOwnEditorsWantThem)
{
    QFile::remove(logFile());
    LogError(u"perché"_s, u"Error 5 (€ 😀)\r\nqui"_s, {}, 0, {});
    LogError(u"altra"_s, u"Error 6 (x)"_s, {}, 0, u"ErrLine: 3-y"_s);
    QFile file(logFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_EQ(bytes.count("\r\n"), 2);
    EXPECT_EQ(bytes.count('\n'), 2);
    EXPECT_TRUE(bytes.contains("perché | Error 5 (€ 😀) qui | \r\n")) << bytes.constData();
    EXPECT_TRUE(bytes.endsWith("altra | Error 6 (x) | ErrLine: 3-y\r\n")) << bytes.constData();
}

} // namespace
} // namespace zul
