#include "tests/support/TemporaryFolder.h"

#include "host/database/Schema.h"
#include "host/demo/DemoData.h"
#include "host/demo/ItalianPlaces.h"
#include "host/services/EmailRules.h"
#include "host/session/HostDatabase.h"

#include <filesystem>
#include <fstream>
#include <set>

#include <gtest/gtest.h>

using namespace zul::host;

namespace {

class DemoDataTest : public ::testing::Test
{
protected:
    std::string make(const std::string& name, int customers) const
    {
        std::string path = m_folder.file(name);
        createDemo(path, customers);
        return path;
    }

    static std::vector<std::vector<std::optional<std::string>>> rows(const std::string& path,
                                                                     std::string_view sql)
    {
        HostDatabaseOptions options;
        options.database = path;
        return HostDatabase(options).run(sql).rows;
    }

    static std::string one(const std::string& path, std::string_view sql)
    {
        return rows(path, sql).at(0).at(0).value_or("NULL");
    }

    TemporaryFolder m_folder;
};

} // namespace

TEST_F(DemoDataTest, MakesEveryTableAndTheLookupRowsWithoutCustomers)
{
    const std::string path = make("empty.db", 0);
    for (const TableDefinition& table : allTables()) {
        const std::string count = one(path, "SELECT COUNT(*) FROM " + std::string(table.name));
        static const std::set<std::string_view> filled{"tabProvince", "tabComuni", "tabRIC_Ricorrenze",
                                                       "tabRIC_Classificazioni", "TMK_StatoCampagne"};
        EXPECT_EQ(count != "0", filled.count(table.name) == 1) << table.name << " has " << count << " rows";
    }
    EXPECT_EQ(one(path, "SELECT COUNT(*) FROM tabProvince"), "107");
    EXPECT_EQ(one(path, "SELECT Codice FROM tabProvince WHERE Descrizione = 'Forlì-Cesena'"), "FC");
}

TEST_F(DemoDataTest, MakesTheSameForTheSameNumber)
{
    const std::string first = make("a.db", 300);
    const std::string second = make("b.db", 300);
    for (const TableDefinition& table : allTables()) {
        const std::string sql = "SELECT * FROM " + std::string(table.name);
        EXPECT_EQ(rows(first, sql), rows(second, sql)) << table.name;
    }
    // A customer does not depend on how many there are.
    const std::string larger = make("c.db", 400);
    EXPECT_EQ(rows(first, "SELECT * FROM tabClienti WHERE IdCliente <= 300"),
              rows(larger, "SELECT * FROM tabClienti WHERE IdCliente <= 300"));
}

TEST_F(DemoDataTest, MakesCustomersThatCanBeTrue)
{
    const std::string path = make("many.db", 3000);
    EXPECT_EQ(one(path, "SELECT COUNT(*) FROM tabClienti"), "3000");
    EXPECT_EQ(
        one(path,
            "SELECT COUNT(*) FROM tabClienti WHERE DataNascita < '19300101' OR DataNascita >= '20110101'"),
        "0");
    EXPECT_EQ(
        one(path, "SELECT COUNT(*) FROM tabClienti WHERE Cliente = 0 AND Fornitore = 0 AND Contatto = 0"),
        "0");
    EXPECT_EQ(
        one(path, "SELECT COUNT(*) FROM tabClienti WHERE provincia NOT IN (SELECT Codice FROM tabProvince)"),
        "0");
    EXPECT_EQ(
        one(path, "SELECT COUNT(*) FROM tabClienti WHERE Paese NOT IN (SELECT Descrizione FROM tabComuni)"),
        "0");
    EXPECT_EQ(
        one(path,
            "SELECT COUNT(*) FROM tabVendite WHERE IdCliente NOT IN (SELECT IdCliente FROM tabClienti)"),
        "0");
    for (const char* condition : {"Telefono2 IS NULL", "Telefono2 = ''", "email IS NULL", "email = ''",
                                  "ConsensoSms = 0", "ConsensoEmail = 0", "idClassificazione IS NULL",
                                  "DataNascita IS NULL", "Fornitore <> 0", "RagioneSociale2 IS NULL"}) {
        EXPECT_GT(std::stoi(one(path, std::string("SELECT COUNT(*) FROM tabClienti WHERE ") + condition)), 10)
            << condition;
    }
    int wrong = 0;
    for (const auto& row : rows(path, "SELECT email FROM tabClienti WHERE email <> ''")) {
        wrong += isPlausibleEmail(*row[0]) ? 0 : 1;
    }
    EXPECT_GT(wrong, 0);
    EXPECT_LT(wrong, 100);
    EXPECT_EQ(one(path, "SELECT COUNT(DISTINCT IdTipoMessaggio) FROM TMK_Messaggi"), "4");
    EXPECT_EQ(one(path, "SELECT Valore FROM tabImpostazioni WHERE descrizione='ConnettoreApp_Slug'"),
              "zul-demo");
}

TEST_F(DemoDataTest, ReplacesADemonstrationButNothingElse)
{
    const std::string path = make("demo.db", 10);
    make("demo.db", 20);
    EXPECT_EQ(one(path, "SELECT COUNT(*) FROM tabClienti"), "20");
    make("demo.db", 0);
    make("demo.db", 5);
    EXPECT_EQ(one(path, "SELECT COUNT(*) FROM tabClienti"), "5");

    const std::string work = make("work.db", 0);
    {
        HostDatabaseOptions options;
        options.database = work;
        HostDatabase(options).run("INSERT INTO tabClienti (IdCliente) VALUES (1)");
    }
    EXPECT_THROW(make("work.db", 5), EngineError);
    EXPECT_EQ(one(work, "SELECT COUNT(*) FROM tabClienti"), "1");

    const std::string foreign = m_folder.file("letter.txt");
    std::ofstream(foreign) << "not a database, and not to be lost";
    EXPECT_THROW(createDemo(foreign, 5), EngineError);
    EXPECT_EQ(std::filesystem::file_size(foreign), 34U);
}

TEST_F(DemoDataTest, SaysWhyItCannot)
{
    EXPECT_THROW(createDemo("", 5), EngineError);
    EXPECT_THROW(createDemo(m_folder.file("x.db"), -1), EngineError);
    EXPECT_THROW(createDemo(m_folder.file("no/such/folder/x.db"), 1), EngineError);
}

TEST(ItalianPlaces, AreWhole)
{
    EXPECT_EQ(provinces().size(), 107U);
    std::set<std::string_view> codes;
    std::set<int> numbers;
    for (const Province& province : provinces()) {
        EXPECT_TRUE(codes.insert(province.code).second && province.code.size() == 2) << province.code;
    }
    for (const Commune& commune : communes()) {
        EXPECT_TRUE(numbers.insert(commune.code).second);
        EXPECT_FALSE(commune.name.empty());
    }
    EXPECT_GT(numbers.size(), 400U);
}
