// tds_standin FILE [--trace] [--cut-on TEXT] [--cut-at N] [--cut-after-rows N]
//
// Serves the database file, prints the connection string, and stops when standard input ends.
#include "tests/host/tds/StandIn.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

int main(int argc, char** argv)
{
    using namespace zul::tds;
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.empty()) {
        std::fprintf(stderr,
                     "usage: tds_standin FILE [--trace] [--cut-on TEXT] [--cut-at N] [--cut-after-rows N]\n");
        return 2;
    }
    if (freeTdsDriver().empty()) {
        std::fprintf(stderr, "the ODBC driver of FreeTDS is not installed\n");
        return 77;
    }
    std::signal(SIGPIPE, SIG_IGN);
    ServerOptions options;
    options.file = words[0];
    options.password = "zul";
    Fault fault;
    bool cuts = false;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string value = i + 1 < words.size() ? words[i + 1] : std::string();
        if (words[i] == "--trace") {
            options.trace = true;
            continue;
        }
        cuts = true;
        if (words[i] == "--cut-on") {
            fault.on = value;
        } else if (words[i] == "--cut-at") {
            fault.occurrence = static_cast<int>(std::strtol(value.c_str(), nullptr, 10));
        } else if (words[i] == "--cut-after-rows") {
            fault.rows = static_cast<int>(std::strtol(value.c_str(), nullptr, 10));
        }
        ++i;
    }
    StandIn server(options);
    if (cuts) {
        server.faults().arm(fault);
    }
    std::cout << server.connectionString() << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
    }
    return 0;
}
