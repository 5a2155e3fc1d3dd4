#include "base/OperatorText.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace Qt::StringLiterals;

TEST(OperatorTextTest, TrimmingTakesOffBlanksAndNothingElse)
{
    EXPECT_EQ(trimBlanks(u"  l'à € 😀  "_s), u"l'à € 😀"_s);
    EXPECT_EQ(trimBlanks(u"a  b"_s), u"a  b"_s);
    EXPECT_EQ(trimBlanks(u"   "_s), QString());
    EXPECT_EQ(trimBlanks(QString()), QString());
    for (const QString& kept : {u"\tx\t"_s, u"\r\nx\r\n"_s, u"\u00A0x\u00A0"_s, u"\u3000x"_s, u"\n"_s}) {
        EXPECT_EQ(trimBlanks(u" "_s + kept + u' '), kept);
    }
}

TEST(OperatorTextTest, EveryLineBreakBecomesCrLf)
{
    EXPECT_EQ(withCrLf(u"a\nb\r\nc\rd"_s), u"a\r\nb\r\nc\r\nd"_s);
    EXPECT_EQ(withCrLf(u"\n\n"_s), u"\r\n\r\n"_s);
    EXPECT_EQ(withCrLf(u"\r\r\n"_s), u"\r\n\r\n"_s);
    EXPECT_EQ(withCrLf(u"à 😀"_s), u"à 😀"_s);
    EXPECT_EQ(withCrLf(QString()), QString());
}

} // namespace
} // namespace zul
