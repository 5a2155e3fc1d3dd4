#include "tests/host/tds/Collation.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using zul::tds::compareTexts;

TEST(Collation, OrdersAsTheServerDoes)
{
    for (const auto& [before, behind] :
         std::vector<std::pair<std::string, std::string>>{{"", "_x"},
                                                          {"_x", "1"},
                                                          {"1", "10"},
                                                          {"10", "2"},
                                                          {"2", "a"},
                                                          {"A b", "ab"},
                                                          {"Forli", "Forlì"},
                                                          {"Forlì", "FORLIMPOPOLI"},
                                                          {"La Spezia", "L'Aquila"},
                                                          {"L'Aquila", "latina"},
                                                          {"coop", "co-op"},
                                                          {"co-op", "coopa"},
                                                          {"è", "f"}}) {
        EXPECT_LT(compareTexts(before, behind), 0) << before << " | " << behind;
        EXPECT_GT(compareTexts(behind, before), 0) << before << " | " << behind;
    }
}

TEST(Collation, TakesForTheSameWhatTheServerDoes)
{
    EXPECT_EQ(compareTexts("Forlì", "FORLÌ"), 0);
    EXPECT_EQ(compareTexts("a", "A  "), 0);
    EXPECT_EQ(compareTexts("", "  "), 0);
    EXPECT_NE(compareTexts("Forlì", "Forli"), 0);
    EXPECT_NE(compareTexts("L'Aquila", "LAquila"), 0);
    EXPECT_NE(compareTexts(" a", "a"), 0);
}
