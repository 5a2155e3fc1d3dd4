#include "bench/Runs.h"
namespace zul::bench {
void runGrid(const std::string&)
{}
void runMainWindow(const std::string&, int)
{}
void runPlainWindow(const std::string&, int)
{}
} // namespace zul::bench
