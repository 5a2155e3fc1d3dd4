// A host with a Qt of its own that cannot show windows: every call comes back with its default and a log entry.
#include "tests/component/SmsCreatorTest.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

class ConsoleHostTest : public SmsCreatorTest
{
protected:
    static QString entry(const QString& name, const QString& tail)
    {
        return name + u" | Error 51 (The host's QCoreApplication cannot show windows) in procedure "_s +
               tail + u" | "_s;
    }
};

TEST_F(ConsoleHostTest, ShowFormReportsUnderTheClassThatItWasCopiedFrom)
{
    VARIANT result{};
    result.vt = VT_I4;
    EXPECT_EQ(showForm(u"C:\\Gestionale", false, &result), S_OK);
    EXPECT_EQ(result.vt, VT_EMPTY);
    EXPECT_EQ(logged(), QStringList{entry(u"ShowForm"_s, u"ShowForm of Modulo di classe ImportTabacchi"_s)});
    EXPECT_EQ(session().PathMainApplication, u"C:\\Gestionale"_s) << "what comes first has happened";
    EXPECT_FALSE(isOkPressed());
    EXPECT_EQ(formChoice(), QString());
    EXPECT_FALSE(anyWindowShown()) << "a refused window does not keep the library loaded";
}

TEST_F(ConsoleHostTest, TheOptionsDialogIsFalseAndItsChoiceEmpty)
{
    EXPECT_FALSE(showOptions());
    EXPECT_EQ(optionsChoice(), QString());
    discardOptions();
    EXPECT_EQ(
        logged(),
        (QStringList{entry(u"funShowOptionsForm"_s, u"funShowOptionsForm of Modulo modMain"_s),
                     entry(u"funGetOptionsFormChoice"_s, u"funGetOptionsFormChoice of Modulo modMain"_s)}));
}

TEST_F(ConsoleHostTest, TheSendErrorCheckReportsUnderTheNameOfShowOptions)
{
    EXPECT_EQ(showCheck(), S_OK);
    EXPECT_EQ(logged(),
              QStringList{entry(u"ShowOptions"_s, u"ShowOptions of Modulo di classe SmsCreator"_s)});
}

} // namespace
} // namespace zul

int main(int argc, char** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
