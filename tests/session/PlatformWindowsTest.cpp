// Paths as the system writes them, and files beyond what its old functions can name.
#include "session/Platform.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

TEST(PlatformTest, APathHasTheSystemsSeparatorsAndNoneTwice)
{
    for (const auto& [given, wanted] : {
             std::pair(u""_s, u""_s),
             std::pair(u"C:/Dati//Zul\\sender.exe"_s, u"C:\\Dati\\Zul\\sender.exe"_s),
             std::pair(u"C:\\Dati\\"_s, u"C:\\Dati"_s),
             std::pair(u"C:\\"_s, u"C:\\"_s),
             std::pair(u"C:\\Dati\\.\\Zul\\..\\x"_s, u"C:\\Dati\\x"_s),
             std::pair(u"\\\\server\\dati\\città 😀\\x.exe"_s, u"\\\\server\\dati\\città 😀\\x.exe"_s),
             std::pair(u"//server/dati//x.exe"_s, u"\\\\server\\dati\\x.exe"_s),
             std::pair(u"..\\x"_s, u"..\\x"_s),
         }) {
        EXPECT_EQ(platform::nativePath(given), wanted) << given.toStdString();
    }
}

TEST(PlatformTest, AFileIsFoundByAnyNameAndLength)
{
    const QTemporaryDir folder;
    const QStringList names{u"è à €"_s, u"😀"_s, u"100% d'\u200b;&^(1)"_s, QString(200, u'l'),
                            QString(200, u'm')};
    QString path = folder.path();
    for (const QString& name : names) {
        path += u'/' + name;
        ASSERT_TRUE(QDir().mkpath(path)) << path.toStdString();
        const QString file = path + u"/sender.exe"_s;
        QFile made(file);
        ASSERT_TRUE(made.open(QIODevice::WriteOnly)) << file.toStdString();
        EXPECT_TRUE(platform::fileExists(file)) << file.toStdString();
        EXPECT_TRUE(platform::fileExists(QDir::toNativeSeparators(file))) << file.toStdString();
        EXPECT_FALSE(platform::fileExists(path)) << "a folder is no file";
        EXPECT_FALSE(platform::fileExists(file + u"x"_s));
    }
    EXPECT_GT(path.size(), 260) << "longer than the system's old functions take";
}

} // namespace
} // namespace zul
