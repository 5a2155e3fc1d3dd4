#include "host/database/Journal.h"
#include "base/DateText.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

using namespace zul;
using namespace zul::host;

namespace {

class JournalTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_path = std::filesystem::temp_directory_path() /
                 ("zul-journal-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".txt");
        ASSERT_TRUE(m_journal.open(m_path.string()));
    }
    void TearDown() override
    {
        m_journal = Journal();
        std::filesystem::remove(m_path);
    }

    // The file is read while the journal is open: every line must be there already.
    std::string written() const
    {
        std::ifstream file(m_path, std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    std::filesystem::path m_path;
    Journal m_journal;
};

} // namespace

TEST_F(JournalTest, WritesEveryOperationAsOneLine)
{
    m_journal.execute("Delete from tabSpoolReportStat2");
    m_journal.openRows("SELECT 1", "forward-only", "read-only");
    m_journal.insert("TMK_MailingList", {{"idMailing", std::int64_t{1}}, {"Locked", false}});
    m_journal.update("tabImpostazioni", {{"Valore", std::string("1")}});
    m_journal.lookup("descrizione", "tabRIC_Classificazioni", "id = 3");
    m_journal.nextId("TMK_Campagne", "idCampagna", 1);
    m_journal.transaction("begin");
    m_journal.transaction("commit");
    m_journal.transaction("rollback");
    EXPECT_EQ(written(),
              "{\"op\":\"execute\",\"sql\":\"Delete from tabSpoolReportStat2\"}\n"
              "{\"op\":\"open\",\"sql\":\"SELECT 1\",\"cursor\":\"forward-only\",\"lock\":\"read-only\"}\n"
              "{\"op\":\"insert\",\"table\":\"TMK_MailingList\",\"values\":[[\"idMailing\",1],[\"Locked\","
              "false]]}\n"
              "{\"op\":\"update\",\"table\":\"tabImpostazioni\",\"values\":[[\"Valore\",\"1\"]]}\n"
              "{\"op\":\"lookup\",\"field\":\"descrizione\",\"table\":\"tabRIC_Classificazioni\","
              "\"condition\":\"id = 3\"}\n"
              "{\"op\":\"nextid\",\"table\":\"TMK_Campagne\",\"key\":\"idCampagna\",\"id\":1}\n"
              "{\"op\":\"begin\"}\n{\"op\":\"commit\"}\n{\"op\":\"rollback\"}\n");
}

TEST_F(JournalTest, HoldsNoPassword)
{
    m_journal.execute("x", "cannot connect with UID=u;PWD=segreta;DATABASE=d");
    m_journal.update("t", {{"a", std::string("PWD=segreta")}});
    EXPECT_EQ(written().find("segreta"), std::string::npos);
}

#ifndef _WIN32 // where a file has the rights of its folder
TEST_F(JournalTest, IsItsOwnersAlone)
{
    namespace fs = std::filesystem;
    EXPECT_EQ(fs::status(m_path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}
#endif

TEST_F(JournalTest, KnowsThatALineCouldNotBeWritten)
{
    EXPECT_TRUE(m_journal.isWhole());
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full to stand for a full disk";
    }
    Journal journal;
    ASSERT_TRUE(journal.open("/dev/full"));
    EXPECT_TRUE(journal.isWhole());
    journal.transaction("begin");
    EXPECT_FALSE(journal.isWhole());
}

TEST_F(JournalTest, TellsWhatFailed)
{
    m_journal.execute("SELEC", "near \"SELEC\": syntax error");
    m_journal.nextId("t", "k", 0, "no such table: t");
    EXPECT_EQ(written(),
              "{\"op\":\"execute\",\"sql\":\"SELEC\",\"error\":\"near \\\"SELEC\\\": syntax error\"}\n"
              "{\"op\":\"nextid\",\"table\":\"t\",\"key\":\"k\",\"error\":\"no such table: t\"}\n");
}

TEST(JournalText, WritesTextsAsJson)
{
    EXPECT_EQ(jsonText("a\"b\\c\r\n\t\x01'%"), R"("a\"b\\c\r\n\t\u0001'%")");
    EXPECT_EQ(jsonText("à è € 😀"), "\"à è € 😀\"");
    EXPECT_EQ(jsonText("a\xFFz"), "\"a\xEF\xBF\xBDz\"");
    EXPECT_EQ(jsonText("\xE2\x82"), "\"\xEF\xBF\xBD\xEF\xBF\xBD\"");
}

TEST(JournalText, WritesValuesAsJson)
{
    EXPECT_EQ(jsonValue(Value()), "null");
    EXPECT_EQ(jsonValue(true), "true");
    EXPECT_EQ(jsonValue(std::int64_t{-1}), "-1");
    EXPECT_EQ(jsonValue(0.1), "0.1");
    EXPECT_EQ(jsonValue(DecimalValue{"12.50"}), "12.50");
    EXPECT_EQ(jsonValue(DateValue{*parseDate("2024-05-01 10:20:30.123")}), "\"2024-05-01 10:20:30.123\"");
}

TEST(JournalText, TakesEverythingWhenItWasNeverOpened)
{
    Journal journal;
    journal.execute("x");
    EXPECT_FALSE(journal.isOpen());
    EXPECT_FALSE(journal.open("/nowhere/at/all/journal.txt"));
}
