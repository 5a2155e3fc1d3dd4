// zulbench: one measured run a process; run.sh and table.py know which.
#include "bench/Contents.h"
#include "bench/Runs.h"
#include "host/session/HostDatabase.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

namespace {

using namespace zul::bench;

constexpr const char* usage = R"(usage: zulbench demo DATABASE CUSTOMERS [demo|distinct|same|long|null]
       zulbench statements DATABASE FILE
       zulbench search DATABASE RUNS
       zulbench mail|sms DATABASE all|half
       zulbench grid|proxy|rows DATABASE
       zulbench window|widgets DATABASE RUNS
)";

bool run(const std::vector<std::string>& words)
{
    const std::size_t count = words.size();
    const std::string verb = count > 0 ? words[0] : std::string();
    if (verb == "demo" && (count == 3 || count == 4)) {
        makeDatabase(words[1], std::atoi(words[2].c_str()), count == 4 ? words[3] : "demo");
    } else if (verb == "statements" && count == 3) {
        writeStatements(words[1], words[2]);
    } else if (verb == "search" && count == 3) {
        runSearch(words[1], std::atoi(words[2].c_str()));
    } else if ((verb == "mail" || verb == "sms") && count == 3) {
        runPreparation(words[1], verb == "mail" ? Kind::Mail : Kind::Sms, words[2] == "half");
    } else if (verb == "grid" && count == 2) {
        runGrid(words[1]);
    } else if (verb == "proxy" && count == 2) {
        runProxy(words[1]);
    } else if (verb == "rows" && count == 2) {
        runRows(words[1]);
    } else if (verb == "window" && count == 3) {
        runMainWindow(words[1], std::atoi(words[2].c_str()));
    } else if (verb == "widgets" && count == 3) {
        runPlainWindow(words[1], std::atoi(words[2].c_str()));
    } else {
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const std::vector<std::string> words(argv + 1, argv + argc);
    const QApplication application(argc, argv);
    try {
        if (run(words)) {
            return 0;
        }
        std::fputs(usage, stderr);
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zulbench: %s\n", error.what());
        return 1;
    }
}
