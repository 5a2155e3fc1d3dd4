// A text file, line by line.
#pragma once

#include <fstream>
#include <string>
#include <vector>

namespace zul::host {

/// Without their ends; none when there is no such file.
inline std::vector<std::string> linesOf(const std::string& path)
{
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace zul::host
