#include "selection/SearchStore.h"

#include "tests/support/ComponentTest.h"

#include <gtest/gtest.h>

namespace zul {
namespace {

using namespace test;
using namespace Qt::StringLiterals;
using Lines = std::vector<std::string>;

class SearchStoreTest : public ComponentTest
{
protected:
    static constexpr const char* listing = "open SELECT Descrizione, Valore FROM tabImpostazioni WHERE "
                                           "Descrizione LIKE 'Messaggi.Ricerca.12.%' static "
                                           "read-only";

    QStringList texts(SearchStore& store)
    {
        QStringList all;
        for (const SearchStore::Entry& entry : store.load()) {
            all.append(entry.key + u'=' + entry.text);
        }
        return all;
    }
};

TEST_F(SearchStoreTest, ListsTheOperatorsOwnInTheOrderOfTheirNumbers)
{
    host.answer("LIKE 'Messaggi.Ricerca.12.%'", {{"Descrizione", "Valore"},
                                                 {{text("Messaggi.Ricerca.12.10"), text("dieci 😀")},
                                                  {text("Messaggi.Ricerca.12.2"), text("due")}}});
    SearchStore store(connection(), 12);
    EXPECT_TRUE(host.operations().empty()) << "nothing before it is asked";
    EXPECT_EQ(texts(store),
              (QStringList{u"Messaggi.Ricerca.12.2=due"_s, u"Messaggi.Ricerca.12.10=dieci 😀"_s}));
    EXPECT_EQ(host.operations(), Lines{listing});
    EXPECT_EQ(store.newKey(), u"Messaggi.Ricerca.12.11"_s);
    EXPECT_EQ(host.openRowSets(), 0);
}

TEST_F(SearchStoreTest, KeepsAndRemovesByTheKey)
{
    host.settings()["Messaggi.Ricerca.12.1"] = "prima";
    SearchStore store(connection(), 12);
    store.load();
    EXPECT_TRUE(store.save({u"Messaggi.Ricerca.12.1"_s, u"d'Amico"_s}));
    EXPECT_EQ(host.settings()["Messaggi.Ricerca.12.1"], "d'Amico");
    EXPECT_EQ(store.newKey(), u"Messaggi.Ricerca.12.2"_s);
    EXPECT_TRUE(store.remove(u"Messaggi.Ricerca.12.1"_s));
    EXPECT_EQ(host.operations("execute"),
              Lines{"execute DELETE FROM tabImpostazioni WHERE Descrizione='Messaggi.Ricerca.12.1'"});
}

TEST_F(SearchStoreTest, WithoutTheTableTheyAreTheUsers)
{
    host.failWhere("tabImpostazioni", E_FAIL, u"no such table");
    SearchStore store(connection(), 12);
    EXPECT_TRUE(texts(store).isEmpty());
    EXPECT_TRUE(store.save({store.newKey(), u"uno à è € 😀"_s}));
    EXPECT_TRUE(store.save({store.newKey(), u"due"_s}));
    EXPECT_TRUE(store.remove(u"Messaggi.Ricerca.12.1"_s));
    SearchStore again(connection(), 12);
    EXPECT_EQ(texts(again), QStringList{u"Messaggi.Ricerca.12.2=due"_s});
    SearchStore others(connection(), 13);
    EXPECT_TRUE(texts(others).isEmpty());
}

TEST_F(SearchStoreTest, AFailureIsInTheLogAndSaysNo)
{
    SearchStore store(connection(), 12);
    store.load();
    host.failNth("open", 2, E_FAIL, u"disk full");
    EXPECT_FALSE(store.save({u"Messaggi.Ricerca.12.1"_s, u"x"_s}));
    EXPECT_EQ(logged().size(), 1);
    host.noFailures();
    host.failNth("execute", 1, E_FAIL, u"locked");
    EXPECT_FALSE(store.remove(u"Messaggi.Ricerca.12.1"_s));
}

} // namespace
} // namespace zul
