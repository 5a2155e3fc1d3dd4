#include "session/DataFile.h"

#include "session/Platform.h"
#include "tests/support/ComponentTest.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

// Nobody makes files there, not even root.
const QString closed = u"/proc/self"_s;

TEST(DataFileTest, StandsBesideTheLibraryWhereThatCanBeWritten)
{
    EXPECT_EQ(dataFile(u"x.ini"_s), platform::componentFolder() + u"\\x.ini"_s);
}

TEST(DataFileTest, TheFirstFolderThatCanBeWrittenServes)
{
    const QTemporaryDir open;
    EXPECT_EQ(firstWritableFolder({open.path(), closed}), open.path());
    EXPECT_EQ(firstWritableFolder({closed, open.path()}), open.path());
    EXPECT_EQ(firstWritableFolder({closed, u"/proc/none"_s}), u"/proc/none"_s) << "the errors come later";
    EXPECT_TRUE(QDir(open.path()).isEmpty()) << "trying leaves nothing";
}

TEST(DataFileTest, AMissingFolderIsMadeForItsOwnerAlone)
{
    const QTemporaryDir open;
    const QString folder = open.path() + u"/state à 'b'/zul"_s;
    EXPECT_EQ(firstWritableFolder({closed, folder}), folder);
    EXPECT_EQ(QFileInfo(folder).permissions() & (QFile::ReadGroup | QFile::ReadOther | QFile::ExeOther), 0);
}

TEST(DataFileTest, TheUsersFolderFollowsTheDesktopsStandard)
{
    const QByteArray before = qgetenv("XDG_STATE_HOME");
    qputenv("XDG_STATE_HOME", "/elsewhere");
    EXPECT_EQ(platform::userFolder(), u"/elsewhere/zul-messagebuilder"_s);
    qputenv("XDG_STATE_HOME", "relative");
    EXPECT_EQ(platform::userFolder(), QDir::homePath() + u"/.local/state/zul-messagebuilder"_s);
    before.isNull() ? qunsetenv("XDG_STATE_HOME") : qputenv("XDG_STATE_HOME", before);
}

} // namespace
} // namespace zul
