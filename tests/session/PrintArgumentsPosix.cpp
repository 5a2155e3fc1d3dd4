// A program that a test has started: leaves "COUNT|FIRST" of its arguments in the file "arguments" beside it.
#include <filesystem>
#include <fstream>

int main(int count, char** arguments)
{
    const std::filesystem::path folder = std::filesystem::path(arguments[0]).parent_path();
    std::ofstream(folder / "arguments.tmp", std::ios::binary)
        << count - 1 << '|' << (count > 1 ? arguments[1] : "");
    // It is there only when it is whole.
    std::filesystem::rename(folder / "arguments.tmp", folder / "arguments");
}
