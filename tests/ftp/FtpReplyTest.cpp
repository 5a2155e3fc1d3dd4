#include "ftp/FtpReply.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zul::test {
namespace {

using namespace ftp;
using ::testing::ElementsAre;

TEST(FtpReplyTest, ALineWithACodeAndABlankIsAReply)
{
    ReplyReader reader;
    EXPECT_EQ(reader.last().code, 0);
    EXPECT_TRUE(reader.addLine("250 ok\r\n"));
    EXPECT_EQ(reader.last().code, 250);
    EXPECT_EQ(reader.last().text, "250 ok\r\n");
    EXPECT_TRUE(reader.last().isCompletion());
}

TEST(FtpReplyTest, LinesBeforeItBelongToIt)
{
    ReplyReader reader;
    for (const char* line : {"220-one\r\n", " two\r\n", "220-three\r\n", "\r\n"}) {
        EXPECT_TRUE(reader.addLine(line));
    }
    EXPECT_EQ(reader.last().code, 0);
    EXPECT_TRUE(reader.addLine("220 four\r\n"));
    EXPECT_EQ(reader.last().text, "220-one\r\n two\r\n220-three\r\n\r\n220 four\r\n");
    EXPECT_TRUE(reader.addLine("331 password\r\n"));
    EXPECT_EQ(reader.last().text, "331 password\r\n");
    EXPECT_THAT(reader.codes(), ElementsAre(220, 331));
}

TEST(FtpReplyTest, NonsenseIsNoReply)
{
    ReplyReader reader;
    for (const char* line :
         {"", "2", "25", "250", "250\r\n", "25x ok", "-50 ok", " 250 ok", "2500 ok", "250-ok"}) {
        EXPECT_TRUE(reader.addLine(line)) << line;
    }
    EXPECT_EQ(reader.last().code, 0);
}

TEST(FtpReplyTest, TheLimitHolds)
{
    ReplyReader reader(10);
    EXPECT_TRUE(reader.addLine("250 ok\r\n"));
    EXPECT_TRUE(reader.addLine("22"));
    EXPECT_FALSE(reader.addLine("0"));
    EXPECT_EQ(reader.last().text, "250 ok\r\n");
}

TEST(FtpReplyTest, RepliesAreOfFiveKinds)
{
    EXPECT_TRUE((FtpReply{150, {}}).isPreliminary());
    EXPECT_TRUE((FtpReply{226, {}}).isCompletion());
    EXPECT_TRUE((FtpReply{350, {}}).isIntermediate());
    EXPECT_TRUE((FtpReply{450, {}}).isRefusal());
    EXPECT_TRUE((FtpReply{550, {}}).isRefusal());
    EXPECT_FALSE((FtpReply{}).isRefusal() || (FtpReply{}).isCompletion());
}

TEST(FtpReplyTest, DirectoriesAreUnquoted)
{
    EXPECT_EQ(quotedDirectory("257 \"/\" is current\r\n"), "/");
    EXPECT_EQ(quotedDirectory("257 \"/a \"\"b\"\" c\" x"), "/a \"b\" c");
    EXPECT_EQ(quotedDirectory("257 \"\"\"\"\"\""), "\"\"");
    EXPECT_EQ(quotedDirectory("257 \"\" empty"), "");
    EXPECT_EQ(quotedDirectory("257 \"/à è €😀\""), "/à è €😀");
    EXPECT_EQ(quotedDirectory("257 /"), std::nullopt);
    EXPECT_EQ(quotedDirectory("257 \"/"), std::nullopt);
    EXPECT_EQ(quotedDirectory("257 \"/\"\""), std::nullopt);
    EXPECT_EQ(quotedDirectory(""), std::nullopt);
}

TEST(FtpReplyTest, LineEndsAndNulAreNotSendable)
{
    EXPECT_TRUE(isSendable(""));
    EXPECT_TRUE(isSendable("à 'b' %\"\t\x01\x7f"));
    EXPECT_FALSE(isSendable("a\rb"));
    EXPECT_FALSE(isSendable("a\n"));
    EXPECT_FALSE(isSendable(std::string_view("a\0", 2)));
}

} // namespace
} // namespace zul::test
