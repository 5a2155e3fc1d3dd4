#include "controls/look/AppearanceRules.h"

#include <gtest/gtest.h>

using zul::takesButtonFace;

TEST(AppearanceRules, PaintsCheckBoxesOptionButtonsAndFramesByTheirNames)
{
    EXPECT_TRUE(takesButtonFace(u"chkANA_Eta"));
    EXPECT_TRUE(takesButtonFace(u"chk_Avanzata"));
    EXPECT_TRUE(takesButtonFace(u"optMaschio"));
    EXPECT_TRUE(takesButtonFace(u"frameRicorrenze"));
}

TEST(AppearanceRules, ComparesWithoutRegardToCase)
{
    EXPECT_TRUE(takesButtonFace(u"CHKFOO"));
    EXPECT_TRUE(takesButtonFace(u"OpTion"));
    EXPECT_TRUE(takesButtonFace(u"FRAME1"));
}

TEST(AppearanceRules, LeavesShortAndOtherNames)
{
    EXPECT_FALSE(takesButtonFace(u""));
    EXPECT_FALSE(takesButtonFace(u"ch"));
    EXPECT_FALSE(takesButtonFace(u"fram"));
    EXPECT_FALSE(takesButtonFace(u"RBN_SoloSMS"));
    EXPECT_FALSE(takesButtonFace(u"cmdchk"));
}

TEST(AppearanceRules, ANameOfThePrefixAloneIsPainted)
{
    EXPECT_TRUE(takesButtonFace(u"chk"));
    EXPECT_TRUE(takesButtonFace(u"opt"));
    EXPECT_TRUE(takesButtonFace(u"frame"));
}
