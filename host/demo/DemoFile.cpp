#include "host/demo/DemoFile.h"

#include "host/database/sqlite/SqliteEngine.h"
#include "host/demo/DemoData.h"

#include <array>
#include <chrono>
#include <filesystem>
#include <random>
#include <string_view>

namespace zul::host {

namespace {

namespace fs = std::filesystem;

// Marks a file as ours ("ZULD"), in the field that SQLite keeps for this.
constexpr std::int64_t demoMark = 0x5A554C44;

constexpr std::string_view unfinishedMark = ".new-";

// Whether a file may be made anew: it holds demonstration data, or tables in which nobody has put anything yet.
bool isReplaceable(const std::string& path)
{
    try {
        SqliteEngine engine(path, SqliteDatabase::Mode::OpenExisting);
        const auto first = [&](std::string_view sql) {
            const auto rows = engine.query(sql, Language::Native);
            return rows->next() ? std::int64_t{rows->cells()[0].Integer} : 0;
        };
        if (first("PRAGMA application_id") == demoMark || first("SELECT COUNT(*) FROM sqlite_master") == 0) {
            return true;
        }
        return first(
                   "SELECT NOT EXISTS (SELECT 1 FROM tabClienti) AND NOT EXISTS (SELECT 1 FROM TMK_Messaggi)"
                   " AND NOT EXISTS (SELECT 1 FROM TMK_MailingList)") == 1;
    } catch (const EngineError&) {
        return false;
    }
}

// The file with the log and the index of the log that stand beside it while it is open.
void removeDatabase(const std::string& path)
{
    std::error_code ignored;
    for (const char* suffix : {"-wal", "-shm", ""}) {
        fs::remove(path + suffix, ignored);
    }
}

// A program that is killed leaves what it was making. Nobody works at one for an hour.
void removeLeftovers(const fs::path& path)
{
    const std::string start = path.filename().string() + std::string(unfinishedMark);
    std::error_code ignored;
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    for (const auto& entry : fs::directory_iterator(folder, ignored)) {
        const bool isOurs = entry.path().filename().string().starts_with(start);
        if (isOurs &&
            entry.last_write_time(ignored) + std::chrono::hours(1) < fs::file_time_type::clock::now()) {
            fs::remove(entry.path(), ignored);
        }
    }
}

// Gives a file its name unless somebody else has it.
bool takesName(const std::string& from, const std::string& to)
{
    std::error_code failure;
    fs::create_hard_link(from, to, failure);
    if (!failure) {
        fs::remove(from, failure);
        return true;
    }
    // Some file systems know no second names.
    if (fs::exists(to, failure)) {
        return false;
    }
    fs::rename(from, to, failure);
    return !failure;
}

/// A file in the making, which goes unless it got its name.
class UnfinishedFile
{
public:
    explicit UnfinishedFile(const std::string& path)
        : m_path(path + std::string(unfinishedMark) + std::to_string(std::random_device{}()))
    {}
    ~UnfinishedFile() { removeDatabase(m_path); }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

} // namespace

void createDemoFile(const std::string& path, int customers)
{
    std::error_code ignored;
    const bool replaces = fs::exists(path, ignored);
    if (replaces && fs::file_size(path, ignored) > 0 && !isReplaceable(path)) {
        throw EngineError(ErrorCode::Unspecified,
                          path + ": the file exists and holds other data; nothing was changed");
    }
    removeLeftovers(path);
    const UnfinishedFile made(path);
    {
        SqliteEngine engine(made.path(), SqliteDatabase::Mode::OpenOrCreate);
        // What stands beside the file gets its rights from it.
        fs::permissions(made.path(), fs::perms::owner_read | fs::perms::owner_write, ignored);
        fillDemo(engine, customers);
        if (customers > 0) {
            engine.execute("PRAGMA application_id = " + std::to_string(demoMark), Language::Native);
        }
    }
    // Closing works the log into the file, on the disk too.
    if (fs::exists(made.path() + "-wal", ignored)) {
        throw EngineError(ErrorCode::Unspecified, path + ": the file could not be made whole");
    }
    // The log of an earlier file must not be taken for the new one's.
    if (replaces) {
        removeDatabase(path);
    }
    if (!takesName(made.path(), path)) {
        throw EngineError(ErrorCode::Unspecified,
                          path + ": the file cannot get its name, or somebody else made it meanwhile");
    }
}

} // namespace zul::host
