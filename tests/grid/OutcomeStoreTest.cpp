#include "grid/OutcomeStore.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace zul;

TEST(OutcomeStoreTest, GivesBackEveryLineAsItWas)
{
    OutcomeStore store;
    const QStringList lines{QString(),
                            QStringLiteral("OK     - D'Amico \"100%\" à è € 😀"),
                            QString(10000, u'x'),
                            QStringLiteral("a\r\nb"),
                            QString(3000000, u'€'),
                            QStringLiteral("\uFEFFfine")};
    for (const QString& line : lines) {
        store.append(line);
    }
    ASSERT_EQ(store.count(), lines.size());
    for (int i = 0; i < store.count(); ++i) {
        EXPECT_EQ(store.line(i), lines[i]) << i;
    }
    EXPECT_EQ(store.line(-1), QString());
    EXPECT_EQ(store.line(6), QString());
    store.clear();
    EXPECT_EQ(store.count(), 0);
    EXPECT_EQ(store.line(0), QString());
}

TEST(OutcomeStoreTest, KnowsTheWidestLineInCells)
{
    OutcomeStore store;
    EXPECT_EQ(store.widest(), 0);
    store.append(u"città");
    store.append(u"abc");
    EXPECT_EQ(store.widest(), 5);
    store.append(u"東京都 1");
    EXPECT_EQ(store.widest(), 8) << "an East Asian character takes two cells";
    store.clear();
    EXPECT_EQ(store.widest(), 0);
}
