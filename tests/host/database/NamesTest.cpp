#include "host/database/Names.h"

#include <gtest/gtest.h>

using namespace zul::host;

TEST(Names, TakesTheLastPartWithoutItsMarks)
{
    EXPECT_EQ(bareName("TMK_Messaggi"), "TMK_Messaggi");
    EXPECT_EQ(bareName("dbo.TMK_Messaggi"), "TMK_Messaggi");
    EXPECT_EQ(bareName("[dbo].[TMK Messaggi]"), "TMK Messaggi");
    EXPECT_EQ(bareName("[a.b]"), "a.b");
    EXPECT_EQ(bareName("\"x\""), "x");
    EXPECT_EQ(bareName("[x]]y]"), "x]y");
    EXPECT_EQ(bareName("  x "), "x");
    EXPECT_EQ(bareName(""), "");
    EXPECT_EQ(bareName("]"), "]");
}

TEST(Names, DoublesTheClosingMarkBetweenMarks)
{
    EXPECT_EQ(enclosed("Età", '[', ']'), "[Età]");
    EXPECT_EQ(enclosed("a]b[c", '[', ']'), "[a]]b[c]");
    EXPECT_EQ(enclosed("a\"b", '"', '"'), "\"a\"\"b\"");
}

TEST(Names, ComparesWithoutRegardToCase)
{
    EXPECT_TRUE(sameName("IdCLiente", "idcliente"));
    EXPECT_FALSE(sameName("IdCliente", "IdClient"));
    EXPECT_EQ(foldedName("TestoSMS"), "testosms");
}
