// Which statements are known as searches for a text in a column.
#include "host/dialect/Dialect.h"

#include <gtest/gtest.h>

using namespace zul::dialect;

namespace {

std::optional<TextSearch> searchOf(std::string_view tsql)
{
    const ColumnTypes types = [](std::string_view, std::string_view column) {
        return column == "numero" ? ColumnType::Integer : ColumnType::Text;
    };
    return translate(tsql, types).search;
}

} // namespace

TEST(TextSearch, RowsOfOneTableWhoseColumnContainsAText)
{
    const auto search = searchOf(" select * from tabclienti where telefono2 like '%+39 333%'");
    ASSERT_TRUE(search);
    EXPECT_EQ(search->table, "tabclienti");
    EXPECT_EQ(search->rows, "tabclienti");
    EXPECT_EQ(search->column, "telefono2");
    EXPECT_EQ(search->text, "+39 333");
}

TEST(TextSearch, AliasesAndChosenColumnsAreFine)
{
    const auto search =
        searchOf("SELECT k.a AS b FROM [dbo].[Tab Clienti] k WHERE (k.[Telefono 2] LIKE '%''12%')");
    ASSERT_TRUE(search);
    EXPECT_EQ(search->table, "Tab Clienti");
    EXPECT_EQ(search->rows, "k");
    EXPECT_EQ(search->column, "Telefono 2");
    EXPECT_EQ(search->text, "'12");
}

TEST(TextSearch, WhatIsMoreOrElseIsNone)
{
    for (const char* tsql : {
             "select * from t where c like '%33%'",              // too short
             "select * from t where c like '%%'",                //
             "select * from t where c like '333%'",              // at the beginning
             "select * from t where c like '%333'",              //
             "select * from t where c like '%a33%'",             // letters have two cases
             "select * from t where c like '%333à%'",            //
             "select * from t where c like '%3_33%'",            // signs of LIKE
             "select * from t where c like '%3%33%'",            //
             "select * from t where c like '%[3]33%'",           //
             "select * from t where c not like '%333%'",         //
             "select * from t where not c like '%333%'",         //
             "select * from t where c like '%3!33%' escape '!'", //
             "select * from t where c like '%333%' and d = 1",   //
             "select * from t where c like '%333%' or d = 1",    //
             "select * from t where numero like '%333%'",        // a number
             "select * from t where u.c like '%333%'",           // another table's column
             "select * from t where c + d like '%333%'",         //
             "select * from t where c like d",                   //
             "select * from t where c like '%333%' order by c",  //
             "select top 1 * from t where c like '%333%'",       //
             "select distinct * from t where c like '%333%'",    //
             "select c from t where c like '%333%' group by c",  //
             "select * from t, u where c like '%333%'",          //
             "select * from t inner join u on t.a = u.a where c like '%333%'",
             "select * from (select * from t) t where c like '%333%'",
             "select * from t where c like '%333%' union select * from t",
             "with t as (select 1 as c) select * from t where c like '%333%'",
             "delete from t where c like '%333%'",
         }) {
        EXPECT_FALSE(searchOf(tsql)) << tsql;
    }
}

TEST(TextSearch, WithoutColumnTypesNothingIsKnown)
{
    EXPECT_FALSE(translate("select * from t where c like '%333%'").search);
}
