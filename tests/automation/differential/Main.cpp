// Prints what automation answers to a great many questions: differential FOLDER [SECTION…]. The folder holds the
// program's type library; the sections are conversions, arrays, texts, calls.
//
// The same program is built for Windows, where the system answers, and for the other platforms, where the runtime of
// this house does; compare.py says where the answers differ.
#include "tests/automation/differential/Sections.h"

#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fputs("usage: differential FOLDER [conversions|arrays|texts|calls]...\n", stderr);
        return 2;
    }
    const auto wanted = [&](const char* section) {
        bool found = argc == 2;
        for (int i = 2; i < argc; ++i) {
            found = found || std::strcmp(argv[i], section) == 0;
        }
        return found;
    };
    if (wanted("conversions")) {
        differential::printConversions();
    }
    if (wanted("arrays")) {
        differential::printArrays();
    }
    if (wanted("texts")) {
        differential::printTexts();
    }
    if (wanted("calls")) {
        differential::printCalls(argv[1]);
    }
    return 0;
}
