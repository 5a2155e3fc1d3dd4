#include "hostlib/Calls.h"

#include "tests/support/ComponentTest.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

TEST(CallsTest, DatesAreDaysSinceTheEndOf1899WithTheTimeAsFraction)
{
    EXPECT_EQ(calls::toDate(QDate(1899, 12, 30)), 0.0);
    EXPECT_EQ(calls::toDate(QDate(2025, 3, 7)), 45723.0);
    EXPECT_EQ(calls::toDate(QDateTime(QDate(1900, 1, 1), QTime(6, 0), Qt::UTC)), 2.25);
    EXPECT_EQ(calls::toDate(QDate(1753, 1, 1)), -53688.0);
}

TEST(CallsTest, BeforeTheFirstDayTheFractionStillCountsForward)
{
    const QDateTime when(QDate(1899, 12, 28), QTime(18, 0), Qt::UTC);
    EXPECT_EQ(calls::toDate(when), -2.75);
    EXPECT_EQ(calls::fromDate(-2.75), when);
}

TEST(CallsTest, ANumberFarBeyondTheCalendarIsNoDate)
{
    EXPECT_FALSE(calls::fromDate(1e300).isValid());
    EXPECT_FALSE(calls::fromDate(-1e300).isValid());
    EXPECT_EQ(calls::fromDate(std::nan("")), calls::fromDate(0));
}

TEST(CallsTest, DatesComeBackAsTheyWent)
{
    for (const QDate day : {QDate(1753, 1, 1), QDate(1899, 12, 30), QDate(1900, 2, 28), QDate(2024, 2, 29),
                            QDate(9999, 12, 31)}) {
        for (const QTime time :
             {QTime(0, 0), QTime(0, 0, 0, 1), QTime(12, 34, 56, 789), QTime(23, 59, 59, 999)}) {
            const QDateTime when(day, time, Qt::UTC);
            EXPECT_EQ(calls::fromDate(calls::toDate(when)), when)
                << when.toString(Qt::ISODateWithMs).toStdString();
        }
    }
}

TEST(CallsTest, TextsKeepEveryCharacter)
{
    const QString text = u"L'à 100% \"€\" 😀"_s + QChar(u'\0') + u"dopo"_s;
    EXPECT_EQ(calls::toQString(calls::bstr(text).view()), text);
    EXPECT_EQ(calls::toQString(calls::bstr(QString()).view()), QString());
    EXPECT_EQ(calls::toQString(calls::bstr(QString(10000, u'x')).view()).size(), 10000);
}

TEST(ErrorTest, ClassicErrorsHaveTheirNumbersAndWords)
{
    EXPECT_EQ(Error(RunTime::InvalidCall).number(), 5);
    EXPECT_EQ(Error(RunTime::InvalidCall).description(), u"Invalid procedure call or argument"_s);
    EXPECT_EQ(Error(RunTime::Overflow).description(), u"Overflow"_s);
    EXPECT_EQ(Error(RunTime::SubscriptOutOfRange).number(), 9);
    EXPECT_EQ(Error(RunTime::TypeMismatch).description(), u"Type mismatch"_s);
    EXPECT_EQ(Error(RunTime::FileNotFound).number(), 53);
    EXPECT_EQ(Error(RunTime::FileNotFound).description(), u"File not found"_s);
    EXPECT_EQ(Error(RunTime::ObjectNotSet).number(), 91);
    EXPECT_EQ(Error(RunTime::DuplicateKey).number(), 457);
    EXPECT_STREQ(Error(13, u"à"_s).what(), "à");
}

} // namespace
} // namespace zul
