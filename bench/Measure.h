// What the measuring programs have in common: the clock, the memory at its highest, and how both are printed.
#pragma once

#include <cstdint>
#include <string>

namespace zul::bench {

struct Times
{
    std::uint64_t wall = 0; ///< nanoseconds
    std::uint64_t cpu = 0;  ///< nanoseconds of all the process's threads, in user and system
};

/// The clocks now.
Times now();
Times operator-(Times later, Times earlier);

/// "wall NANOSECONDS cpu NANOSECONDS rows NUMBER", with a word before it when there is one.
void printRun(Times times, std::uint64_t rows, const std::string& word = {});
/// "peak KIBIBYTES": the most memory that the process ever had in use.
void printPeak();

} // namespace zul::bench
