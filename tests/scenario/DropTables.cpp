// drop_tables CONNECTION: drops every table that the component and the host work with from a server's database, so that
// the next demo database can be made there.
#include "host/database/Schema.h"
#include "host/database/odbc/OdbcEngine.h"

#include <cstdio>
#include <string>

int main(int argc, char** argv)
{
    using namespace zul::host;
    if (argc != 2) {
        std::fprintf(stderr, "usage: drop_tables CONNECTION\n");
        return 2;
    }
    try {
        OdbcEngine engine(argv[1]);
        for (const TableDefinition& table : allTables()) {
            if (engine.hasTable(table.name)) {
                engine.execute("DROP TABLE " + std::string(table.name), Language::Native);
            }
        }
        return 0;
    } catch (const EngineError& error) {
        std::fprintf(stderr, "drop_tables: %s\n", error.what());
        return 1;
    }
}
