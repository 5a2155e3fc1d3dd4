// A program that a test has started: leaves "COUNT|FIRST" of its arguments in the file "arguments" beside it.
#include "base/Utf8.h"

#include <filesystem>
#include <fstream>

#include <windows.h>

#include <shellapi.h>

int main()
{
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    wchar_t program[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::filesystem::path folder = std::filesystem::path(program).parent_path();
    const std::wstring first = count > 1 ? arguments[1] : L"";
    std::ofstream(folder / "arguments.tmp", std::ios::binary)
        << count - 1 << '|'
        << zul::utf8FromUtf16({reinterpret_cast<const char16_t*>(first.data()), first.size()});
    // It is there only when it is whole.
    std::filesystem::rename(folder / "arguments.tmp", folder / "arguments");
    LocalFree(static_cast<void*>(arguments));
}
