// A demonstration file is there whole or not at all.
#include "tests/support/TemporaryFolder.h"

#include "host/database/EngineError.h"
#include "host/database/sqlite/SqliteDatabase.h"
#include "host/demo/DemoFile.h"
#include "host/session/HostDatabase.h"

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include <gtest/gtest.h>

using namespace zul::host;

namespace fs = std::filesystem;

namespace {

constexpr int customers = 400;

std::string count(const std::string& path, std::string_view table)
{
    HostDatabaseOptions options;
    options.database = path;
    const HostDatabase database(options);
    database.requireTables();
    return database.run("SELECT COUNT(*) FROM " + std::string(table)).rows.at(0).at(0).value_or("NULL");
}

/// A program that makes the file, and is killed after the time; whether it was not done by then.
bool makeAndKill(const std::string& path, std::chrono::microseconds after)
{
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            createDemoFile(path, customers);
        } catch (const std::exception& error) {
            std::fprintf(stderr, "child: %s\n", error.what());
            ::_exit(1);
        }
        ::_exit(0);
    }
    std::this_thread::sleep_for(after);
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
    return WIFSIGNALED(status);
}

std::size_t filesIn(const std::string& folder)
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

} // namespace

TEST(DemoFile, IsItsOwnersAlone)
{
    const zul::host::TemporaryFolder folder;
    createDemoFile(folder.file("x.db"), 3);
    EXPECT_EQ(fs::status(folder.file("x.db")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(DemoFile, IsWholeOrNotThereWheneverItsMakerIsKilled)
{
    const TemporaryFolder folder;
    const auto start = std::chrono::steady_clock::now();
    createDemoFile(folder.file("whole.db"), customers);
    auto whole =
        std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    EXPECT_EQ(filesIn(folder.path()), 1U);
    constexpr int kills = 40;
    int without = 0;
    for (int i = 0; i < kills; ++i) {
        const std::string path = folder.file(std::to_string(i) + ".db");
        if (!makeAndKill(path, whole * (i * 7 % kills + 1) * 11 / (kills * 10))) {
            whole = whole * 9 / 10; // the first one took longer, on a busy machine
        }
        if (!fs::exists(path)) {
            ++without;
            createDemoFile(path, customers);
        }
        EXPECT_EQ(count(path, "tabClienti"), std::to_string(customers)) << i;
        EXPECT_EQ(count(path, "tabProvince"), "107") << i;
    }
    EXPECT_GT(without, 0) << "no kill met the making";
}

TEST(DemoFile, ReplacesADemonstrationAsAWholeToo)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("demo.db");
    createDemoFile(path, 7);
    for (int i = 1; i <= 12; ++i) {
        makeAndKill(path, std::chrono::milliseconds(i * 6));
        // The old one, the new one, or, for the moment in which one is taken for the other, none.
        if (!fs::exists(path)) {
            createDemoFile(path, 7);
        }
        const std::string customersNow = count(path, "tabClienti");
        EXPECT_TRUE(customersNow == "7" || customersNow == std::to_string(customers)) << customersNow;
    }
}

TEST(DemoFile, TakesAwayWhatAKilledProgramLeftLongAgo)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("demo.db");
    for (const char* name : {"demo.db.new-1", "demo.db.new-1-wal", "demo.db.new-2", "other.db.new-1"}) {
        std::ofstream(folder.file(name)) << "x";
    }
    const auto old = fs::file_time_type::clock::now() - std::chrono::hours(2);
    for (const char* name : {"demo.db.new-1", "demo.db.new-1-wal", "other.db.new-1"}) {
        fs::last_write_time(folder.file(name), old);
    }
    createDemoFile(path, 0);
    EXPECT_FALSE(fs::exists(folder.file("demo.db.new-1")));
    EXPECT_FALSE(fs::exists(folder.file("demo.db.new-1-wal")));
    EXPECT_TRUE(fs::exists(folder.file("demo.db.new-2"))) << "somebody may be at it";
    EXPECT_TRUE(fs::exists(folder.file("other.db.new-1")));
}

TEST(DemoFile, LeavesNothingOfOneThatCannotBeMade)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("demo.db");
    fs::create_directory(path);
    std::ofstream(path + "/full") << "x";
    EXPECT_THROW(createDemoFile(path, 1), EngineError);
    EXPECT_EQ(filesIn(folder.path()), 1U);
}

TEST(DemoFile, WithoutTablesItSaysWhatToDoAndCanBeMadeAnew)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("à vuoto.db");
    {
        // As a killed program of an earlier version left it.
        const SqliteDatabase empty(path, SqliteDatabase::Mode::OpenOrCreate);
    }
    try {
        count(path, "tabClienti");
        ADD_FAILURE() << "the tables are not missed";
    } catch (const EngineError& error) {
        const std::string text = error.what();
        EXPECT_NE(text.find(path), std::string::npos) << text;
        EXPECT_NE(text.find("tabClienti"), std::string::npos) << text;
        EXPECT_NE(text.find("--create-demo"), std::string::npos) << text;
    }
    createDemoFile(path, 3);
    EXPECT_EQ(count(path, "tabClienti"), "3");
}
