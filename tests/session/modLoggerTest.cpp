#include "session/modLogger.h"

#include "tests/support/ComponentTest.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class ModLoggerTest : public ComponentTest
{};

// First in this program, these two: nothing was logged before them.

TEST_F(ModLoggerTest, WhatIsNoFileCostsAnEntryNoTime)
{
    const auto logMany = [] {
        QElapsedTimer timer;
        timer.start();
        constexpr int Entries = 100;
        for (int i = 0; i < Entries; ++i) {
            LogError(u"perso"_s, u"Error 5 (x)"_s, {}, 0, {});
        }
        return timer.elapsed();
    };
    constexpr qint64 ShortTime = 1000;
    QFile::remove(logFile());
    QDir().rmdir(logFile());
    ASSERT_TRUE(QDir().mkpath(logFile()));
    EXPECT_LT(logMany(), ShortTime);
    ASSERT_TRUE(QDir().rmdir(logFile()));

    ASSERT_EQ(mkfifo(QFile::encodeName(logFile()).constData(), 0600), 0);
    EXPECT_LT(logMany(), ShortTime) << "nobody reads at the other end of a pipe";
    ASSERT_TRUE(QFile::remove(logFile()));
}

TEST_F(ModLoggerTest, AnEntryThatCannotBeWrittenIsLostWithoutAWordAndTheNextOneCreatesTheFile)
{
    QFile::remove(logFile());
    QDir().rmdir(logFile());
    ASSERT_TRUE(QDir().mkpath(logFile())) << "a folder stands where the file should";
    LogError(u"perso"_s, u"Error 5 (x)"_s, {}, 0, {});
    LogError(u"perso"_s, u"Error 5 (x)"_s, {}, 0, {});
    ASSERT_TRUE(QDir().rmdir(logFile()));
    EXPECT_FALSE(QFileInfo::exists(logFile()));

    LogError(u"primo"_s, u"Error 5 (x)"_s, {}, 0, {});
    EXPECT_TRUE(QFileInfo(logFile()).isFile());
    EXPECT_EQ(QFileInfo(logFile()).permissions() & (QFile::ReadGroup | QFile::ReadOther), 0)
        << "only its owner reads it";
    LogError(u"secondo"_s, u"Error 6 (y)"_s, {}, 0, {});
    QFile file(logFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().trimmed().split('\n');
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines[0].contains("primo"));
    EXPECT_TRUE(lines[1].contains("secondo"));
}

TEST_F(ModLoggerTest, ALineHoldsTimeApplicationProcedureMessageAndDetail)
{
    const QDateTime before = QDateTime::currentDateTime();
    LogError(u"funShowForm"_s, u"Error 13 (Type mismatch) in procedure funShowForm of Modulo modMain"_s,
             u"frmSMS"_s, 0, u"ErrLine: 40-"_s);
    const QDateTime after = QDateTime::currentDateTime();
    ASSERT_EQ(log().size(), 1);
    const QStringList parts = log().first().split(u" | "_s);
    ASSERT_EQ(parts.size(), 5);
    const QDateTime stamp = QDateTime::fromString(parts[0], u"yyyy-MM-dd HH:mm:ss.zzz"_s);
    EXPECT_TRUE(stamp >= before && stamp <= after) << utf8(parts[0]);
    EXPECT_EQ(parts[1], u"Zul_Messagebuilder"_s);
    EXPECT_EQ(parts[2], u"funShowForm"_s);
    EXPECT_EQ(parts[3], u"Error 13 (Type mismatch) in procedure funShowForm of Modulo modMain"_s);
    EXPECT_EQ(parts[4], u"ErrLine: 40-"_s);
}

TEST_F(ModLoggerTest, LineBreaksAreWrittenAsBlanks)
{
    LogError(u"a\r\nb"_s, u"c\nd\re"_s, {}, 0, u"f\r\n\r\ng"_s);
    EXPECT_EQ(logged(), QStringList{u"a b | c d e | f  g"_s});
}

TEST_F(ModLoggerTest, AProcedureThatFailsTwiceWritesTwoEntries)
{
    for (int i = 0; i < 2; ++i) {
        trapped(moduleProcedure(u"modMain"_s, u"prova"_s), [] { throw Error(RunTime::TypeMismatch); });
    }
    const QString entry = u"prova | Error 13 (Type mismatch) in procedure prova of Modulo modMain | "_s;
    EXPECT_EQ(logged(), (QStringList{entry, entry}));
    EXPECT_TRUE(messages.empty()) << "the operator sees nothing";
}

TEST_F(ModLoggerTest, TextsOfAllKindsAreKept)
{
    const QString text = u"L'offerta 100% {0} %s \"à è\" € 😀 | fine"_s;
    LogError(u"p"_s, text, {}, 0, QString(10000, u'x'));
    EXPECT_EQ(logged(), QStringList{u"p | "_s + text + u" | "_s + QString(10000, u'x')});
}

TEST_F(ModLoggerTest, TailsNameFormModuleOrClass)
{
    const Error error(RunTime::Overflow);
    report(formProcedure(u"frmX"_s, u"p"_s), error);
    report(moduleProcedure(u"modX"_s, u"p"_s), error, u"dettaglio"_s);
    report(classProcedure(u"X"_s, u"p"_s), error);
    EXPECT_EQ(logged(), (QStringList{u"p | Error 6 (Overflow) in procedure p of Form frmX | "_s,
                                     u"p | Error 6 (Overflow) in procedure p of Modulo modX | dettaglio"_s,
                                     u"p | Error 6 (Overflow) in procedure p of Modulo di classe X | "_s}));
}

TEST_F(ModLoggerTest, ATrappedProcedureGivesItsDefaultAndLetsNothingOut)
{
    const Procedure p = moduleProcedure(u"m"_s, u"p"_s);
    EXPECT_EQ(trapped(p, 7, [] { return 8; }), 8);
    EXPECT_TRUE(logged().isEmpty());
    EXPECT_EQ(trapped(p, 7, []() -> int { throw Error(RunTime::FileNotFound); }), 7);
    EXPECT_EQ(trapped(p, 7, []() -> int { throw std::bad_alloc(); }), 7);
    EXPECT_EQ(trapped(p, 7, []() -> int { throw std::runtime_error("guasto"); }), 7);
    EXPECT_EQ(trapped(p, 7, []() -> int { throw 3; }), 7);
    const QString tail = u" in procedure p of Modulo m | "_s;
    EXPECT_EQ(logged(),
              (QStringList{u"p | Error 53 (File not found)"_s + tail, u"p | Error 7 (Out of memory)"_s + tail,
                           u"p | Error 51 (Internal error: guasto)"_s + tail,
                           u"p | Error 51 (Internal error)"_s + tail}));
}

TEST_F(ModLoggerTest, NumbersOfTheProviderAreWrittenInDecimal)
{
    EXPECT_EQ(errorText(Error(static_cast<HRESULT>(0x80040E14), u"no"_s), u") in procedure p"_s),
              u"Error -2147217900 (no) in procedure p"_s);
}

} // namespace
} // namespace zul
