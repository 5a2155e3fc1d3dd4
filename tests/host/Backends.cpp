#include "Backends.h"

#include "host/SqliteDatabase.h"

namespace zul::host {

namespace {

std::optional<std::string> sqliteFile(const TemporaryFolder& folder, std::string&)
{
    const std::string path = folder.file("contract à.db");
    SqliteDatabase(path, SqliteDatabase::Mode::OpenOrCreate);
    return path;
}

} // namespace

const std::vector<Backend>& backends()
{
    static const std::vector<Backend> all{{"Sqlite", sqliteFile}};
    return all;
}

} // namespace zul::host
