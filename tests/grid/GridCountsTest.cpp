#include "grid/GridCounts.h"

#include <gtest/gtest.h>

using namespace zul;
using namespace Qt::StringLiterals;

TEST(GridCounts, AreToldInFullAndInTheLocalesDigits)
{
    const QLocale italian(QLocale::Italian, QLocale::Italy);
    const GridNoun noun{u"cliente"_s, u"clienti"_s};
    EXPECT_EQ(countsText({200'000, 1204, 3, 200'000, false}, noun, italian),
              u"200.000 clienti · 1.204 selezionati · 3 evidenziati"_s);
    EXPECT_EQ(countsText({200'000, 1204, 3, 57, true}, noun, italian),
              u"200.000 clienti · 1.204 selezionati · 3 evidenziati · 57 mostrati"_s);
    EXPECT_EQ(countsText({1, 1, 1, 1, true}, noun, italian),
              u"1 cliente · 1 selezionato · 1 evidenziato · 1 mostrato"_s);
    EXPECT_EQ(countsText({}, noun, italian), u"0 clienti · 0 selezionati · 0 evidenziati"_s);
    EXPECT_EQ(countsText({5, 0, 0, 0, true}, noun, italian),
              u"5 clienti · 0 selezionati · 0 evidenziati · 0 mostrati"_s);
}
