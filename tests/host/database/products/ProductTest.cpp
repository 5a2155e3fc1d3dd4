#include "host/database/products/Product.h"

#include "host/database/Schema.h"

#include <gtest/gtest.h>

using namespace zul::host;

namespace {

struct Words
{
    const char* test;
    const Product& product;
    std::string name;    // Età
    std::string odd;     // a]b"c`d
    std::string table;   // [dbo].[TMK Messaggi]
    std::string text;    // l'età €
    std::string truth;   // true
    std::string moment;  // 2024-05-01 10:20:30.123
    std::string decimal; // decimal(18,2)
    std::string length;  // a text of 60 characters
};

std::ostream& operator<<(std::ostream& out, const Words& words)
{
    return out << words.test;
}

class ProductTest : public ::testing::TestWithParam<Words>
{};

} // namespace

INSTANTIATE_TEST_SUITE_P(
    Of, ProductTest,
    ::testing::Values(Words{"Sqlite", sqliteProduct(), "[Età]", "`a]b\"c``d`", "[TMK Messaggi]", "'l''età €'",
                            "1", "'2024-05-01 10:20:30.123'", "decimal(18,2)", "nvarchar(60) COLLATE NOCASE"},
                      Words{"TransactSql", transactSqlProduct(), "[Età]", "[a]]b\"c`d]",
                            "[dbo].[TMK Messaggi]", "N'l''età €'", "1", "'20240501 10:20:30.123'",
                            "decimal(18,2)", "nvarchar(60)"},
                      Words{"Postgres", postgresProduct(), "\"Età\"", "\"a]b\"\"c`d\"",
                            "[dbo].[TMK Messaggi]", "'l''età €'", "TRUE", "'2024-05-01 10:20:30.123'",
                            "decimal(18,2)", "varchar(60)"}),
    [](const auto& test) { return std::string(test.param.test); });

TEST_P(ProductTest, WritesNamesAndValuesAsItsServersReadThem)
{
    const Words& words = GetParam();
    EXPECT_EQ(words.product.quotedName("Età"), words.name);
    EXPECT_EQ(words.product.quotedName("a]b\"c`d"), words.odd);
    EXPECT_EQ(words.product.tableName("[dbo].[TMK Messaggi]"), words.table);
    EXPECT_EQ(words.product.literal({}), "NULL");
    EXPECT_EQ(words.product.literal(std::string("l'età €")), words.text);
    EXPECT_EQ(words.product.literal(true), words.truth);
    EXPECT_EQ(words.product.literal(std::int64_t{-7}), "-7");
    EXPECT_EQ(words.product.literal(1e21), "1000000000000000000000");
    EXPECT_EQ(words.product.literal(DecimalValue{"-0.05"}), "-0.05");
    EXPECT_EQ(words.product.literal(DateValue{45413.4309042014}), words.moment);
    using Kind = ColumnDefinition::Kind;
    EXPECT_EQ(words.product.typeText({"x", Kind::Money, 0}), words.decimal);
    EXPECT_EQ(words.product.typeText({"x", Kind::Text, 60}), words.length);
}

TEST(Products, AreKnownByWhatTheirServersCallThemselves)
{
    EXPECT_EQ(&productNamed("PostgreSQL"), &postgresProduct());
    EXPECT_EQ(&productNamed("SQLite"), &sqliteProduct());
    EXPECT_EQ(&productNamed("Some Server"), &transactSqlProduct());
    EXPECT_EQ(&productNamed(""), &transactSqlProduct());
}
