#include "host/database/sqlite/TextColumn.h"

#include <gmock/gmock.h>

using namespace zul::host;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

TEST(TextColumn, TellsTheRowsThatContainAText)
{
    TextColumn texts;
    texts.append(7, "+39 333 12");
    texts.append(3, "");
    texts.append(9, "33312333");
    texts.append(1, "à 333 €😀");
    EXPECT_THAT(texts.rowsWith("333", 10), Optional(ElementsAre(7, 9, 1))) << "each row once, in its order";
    EXPECT_THAT(texts.rowsWith("12", 10), Optional(ElementsAre(7, 9)));
    EXPECT_THAT(texts.rowsWith("+39 333 12", 10), Optional(ElementsAre(7)));
    EXPECT_THAT(texts.rowsWith("€😀", 10), Optional(ElementsAre(1)));
    EXPECT_THAT(texts.rowsWith("334", 10), Optional(IsEmpty()));
}

TEST(TextColumn, ATextDoesNotReachIntoTheNextRow)
{
    TextColumn texts;
    texts.append(1, "12");
    texts.append(2, "34");
    EXPECT_THAT(texts.rowsWith("123", 10), Optional(IsEmpty()));
    EXPECT_THAT(texts.rowsWith("1234", 10), Optional(IsEmpty()));
}

TEST(TextColumn, MoreRowsThanWantedAreNoAnswer)
{
    TextColumn texts;
    for (int row = 0; row < 3; ++row) {
        texts.append(row, "333");
    }
    EXPECT_THAT(texts.rowsWith("333", 3), Optional(ElementsAre(0, 1, 2)));
    EXPECT_EQ(texts.rowsWith("333", 2), std::nullopt);
}

TEST(TextColumn, WithoutTextsThereIsNothing)
{
    EXPECT_THAT(TextColumn().rowsWith("333", 10), Optional(IsEmpty()));
}
