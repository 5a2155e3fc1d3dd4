#include "bench/Measure.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace zul::bench {

namespace {

std::uint64_t nanoseconds(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(now.tv_nsec);
}

} // namespace

Times now()
{
    return {nanoseconds(CLOCK_MONOTONIC), nanoseconds(CLOCK_PROCESS_CPUTIME_ID)};
}

Times operator-(Times later, Times earlier)
{
    return {later.wall - earlier.wall, later.cpu - earlier.cpu};
}

void printRun(Times times, std::uint64_t rows, const std::string& word)
{
    std::printf("%s%swall %" PRIu64 " cpu %" PRIu64 " rows %" PRIu64 "\n", word.c_str(),
                word.empty() ? "" : " ", times.wall, times.cpu, rows);
    std::fflush(stdout);
}

void printPeak()
{
    std::FILE* status = std::fopen("/proc/self/status", "r");
    char line[256];
    while (status != nullptr && std::fgets(line, sizeof line, status) != nullptr) {
        if (std::strncmp(line, "VmHWM:", 6) == 0) {
            std::printf("peak %ld\n", std::strtol(line + 6, nullptr, 10));
        }
    }
    if (status != nullptr) {
        std::fclose(status);
    }
}

} // namespace zul::bench
