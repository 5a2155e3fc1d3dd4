#include "options/ProviderOptions.h"

#include "hostlib/Error.h"
#include "tests/support/ComponentTest.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;
using test::errorOf;

class ProviderOptionsTest : public ::testing::Test
{
protected:
    ProviderOptionsTest() { QLocale::setDefault(QLocale(QLocale::Italian, QLocale::Italy)); }
    ~ProviderOptionsTest() override { QLocale::setDefault(m_before); }

private:
    QLocale m_before;
};

TEST_F(ProviderOptionsTest, NumbersAreConvertedByTheUsersRules)
{
    EXPECT_EQ(toInt16(u"1"_s), 1);
    EXPECT_EQ(toInt16(u" -3 "_s), -3);
    EXPECT_EQ(toInt16(u"1.234"_s), 1234);
    EXPECT_EQ(toInt16(u"32767"_s), 32767);
    EXPECT_EQ(toInt16(u"-32768"_s), -32768);
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(toInt16(u"1,234"_s), 1234);
}

TEST_F(ProviderOptionsTest, HalvesGoToTheEvenNumber)
{
    EXPECT_EQ(toInt16(u"0,5"_s), 0);
    EXPECT_EQ(toInt16(u"1,5"_s), 2);
    EXPECT_EQ(toInt16(u"2,5"_s), 2);
    EXPECT_EQ(toInt16(u"-0,5"_s), 0);
}

TEST_F(ProviderOptionsTest, WhatIsNoNumberOrDoesNotFitIsAnError)
{
    for (const QString& text : {u""_s, u" "_s, u"abc"_s, u"1a"_s}) {
        EXPECT_EQ(errorOf([&] { toInt16(text); }), 13) << text.toStdString();
    }
    EXPECT_EQ(errorOf([] { toInt16(u"32768"_s); }), 6);
    EXPECT_EQ(errorOf([] { toInt16(u"-32769"_s); }), 6);
    EXPECT_EQ(errorOf([] { toInt16(u"32767,5"_s); }), 6);
    EXPECT_EQ(errorOf([] { toInt16(QString(300, u'9')); }), 6);
}

TEST_F(ProviderOptionsTest, ThePrefixSwitchPassesOverWhatIsNoNumber)
{
    EXPECT_EQ(prefixSwitch(u"1"_s), qint16{1});
    EXPECT_EQ(prefixSwitch(u"0"_s), qint16{0});
    EXPECT_EQ(prefixSwitch(u"abc"_s), std::nullopt);
    EXPECT_EQ(prefixSwitch(u""_s), std::nullopt);
}

TEST_F(ProviderOptionsTest, TheAutoSendSwitchFailsOnWhatIsNoNumber)
{
    EXPECT_EQ(autoSendSwitch(u"1"_s), 1);
    EXPECT_EQ(errorOf([] { autoSendSwitch(u"abc"_s); }), 13);
    EXPECT_EQ(errorOf([] { autoSendSwitch(u""_s); }), 13);
}

TEST_F(ProviderOptionsTest, TheDefaultFolderHasNoBackslashAtItsEnd)
{
    EXPECT_EQ(defaultSenderFolder(u"C:\\Gestionale"_s), u"C:\\Gestionale\\ZulSmsSender"_s);
    EXPECT_EQ(defaultSenderFolder(QString()), u"\\ZulSmsSender"_s);
}

TEST_F(ProviderOptionsTest, AChosenFolderEndsInExactlyOneBackslash)
{
    EXPECT_EQ(chosenFolder(u"C:\\Sender"_s), u"C:\\Sender\\"_s);
    EXPECT_EQ(chosenFolder(u"C:\\Sender\\"_s), u"C:\\Sender\\"_s);
    EXPECT_EQ(chosenFolder(u"/opt/sender"_s), u"/opt/sender\\"_s);
    EXPECT_EQ(chosenFolder(u"/opt/sender/"_s), u"/opt/sender\\"_s);
    EXPECT_EQ(chosenFolder(u"/"_s), u"\\"_s);
}

} // namespace
} // namespace zul
