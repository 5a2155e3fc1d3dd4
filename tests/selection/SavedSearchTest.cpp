#include "selection/SavedSearch.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;

TEST(SavedSearch, ComesBackAsItWas)
{
    for (const QString& name :
         {u"Clienti di Roma"_s, u"D'Amico \"100%\" à è € 😀 \\"_s, u"a"_s.repeated(10000)}) {
        const SavedSearch search{name,
                                 {{u"chkANA_Eta"_s, u"1"_s}, {u"txtANA_Eta_I"_s, name}, {u"x"_s, u"\r\n"_s}}};
        const ReadSearch read = readSearch(searchText(search));
        EXPECT_EQ(read.error, QString());
        EXPECT_EQ(read.search.name, name);
        EXPECT_EQ(read.search.fields, search.fields);
    }
}

TEST(SavedSearch, WhatIsNoSearchSaysSo)
{
    const QString unreadable = u"La ricerca salvata non è leggibile."_s;
    for (const QString& text :
         {u""_s, u"x"_s, u"{}"_s, u"[1]"_s, u"{\"versione\":1,\"nome\":\"a\"}"_s,
          u"{\"versione\":\"1\",\"nome\":\"a\",\"criteri\":{}}"_s,
          u"{\"versione\":1,\"nome\":5,\"criteri\":{}}"_s,
          u"{\"versione\":1,\"nome\":\"a\",\"criteri\":{\"b\":1}}"_s, searchText({u"a"_s, {}}).chopped(1)}) {
        EXPECT_EQ(readSearch(text).error, unreadable) << utf8(text);
        EXPECT_TRUE(readSearch(text).search.fields.isEmpty());
    }
    EXPECT_EQ(readSearch(u"{\"versione\":2,\"nome\":\"a\",\"criteri\":{\"b\":\"1\"}}"_s).error,
              u"La ricerca è stata salvata con un'altra versione del programma."_s);
}

TEST(SavedSearch, TellsWhatDoesNotFitAnyMore)
{
    const QMap<QString, QString> offered{{u"chkANA_Eta"_s, {}},
                                         {u"chkECO_Classif"_s, u"Classificazione"_s},
                                         {u"cntrECO_Classif"_s, u"Classificazione"_s}};
    EXPECT_EQ(misfits({u"a"_s, {{u"chkANA_Eta"_s, u"1"_s}}}, offered), QString());
    EXPECT_EQ(misfits({u"Natale"_s,
                       {{u"chkECO_Classif"_s, u"1"_s}, {u"cntrECO_Classif"_s, u"1|b"_s}, {u"zzz"_s, u"1"_s}}},
                      offered),
              u"La ricerca «Natale» non si può usare: il criterio «Classificazione» qui non è disponibile; "
              u"il campo "
              "«zzz» non esiste più."_s);
}

} // namespace
} // namespace zul
