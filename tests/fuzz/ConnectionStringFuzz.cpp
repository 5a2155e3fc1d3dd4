// Connection strings where others can read them: a password that was put in by the rules of such a text does not come
// out. The first line is the password, the second what stands before it.
#include "host/database/Secrets.h"
#include "tests/fuzz/Input.h"

using zul::fuzz::require;
using zul::host::secretMark;
using zul::host::withoutPasswords;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    zul::fuzz::Input input(data, size);
    const std::string password(input.line());
    const std::string before(input.line());
    const std::string text(input.rest());

    const std::string clean = withoutPasswords(text);
    require(withoutPasswords(clean) == clean, "a second pass finds nothing more");

    // In braces, where a closing one is doubled, anything may be a password.
    std::string braced = "{";
    for (const char c : password) {
        braced += c;
        if (c == '}') {
            braced += c;
        }
    }
    braced += '}';
    for (const char* key : {"PWD=", "pwd=", "Password=", "PASSWORD="}) {
        const std::string whole = "Server=s;" + std::string(key) + braced + ";Database=d";
        require(withoutPasswords(whole) ==
                    "Server=s;" + std::string(key) + std::string(secretMark) + ";Database=d",
                "the password and nothing else goes");
    }
    // What stands before it may hold braces that nothing closes; the password goes all the same. (One with an asterisk
    // might be part of the mark, and a short one of what stands behind it.)
    if (password.size() > 8 && password.find_first_of(";\"'{}*") == std::string::npos &&
        before.find(password) == std::string::npos) {
        const std::string shown = withoutPasswords(before + ";PWD=" + password + ";a=b");
        require(shown.find(password) == std::string::npos, "a password does not come out");
    }
    return 0;
}
