// The registration file, which any program of the user may have written: what is registered is found, what others wrote
// stays, and what is taken out is gone. The first three lines are a class's names and path, the rest the file.
#include "automation/runtime/ClassRegistry.h"
#include "base/Utf8.h"
#include "tests/fuzz/Input.h"
#include "tests/fuzz/ScratchFolder.h"

#include <zulreg.h>

using namespace zul;
using fuzz::require;
using runtime::RegisteredClass;

namespace {

constexpr CLSID ours{0xB7A0C731, 0x6521, 0x48C8, {0x8D, 0xA9, 0xB7, 0x46, 0x5A, 0x7F, 0xF3, 0x5B}};

std::vector<RegisteredClass> classes(HRESULT& result)
{
    std::vector<RegisteredClass> found;
    result = runtime::readClasses(found);
    require(result == S_OK || result == REGDB_E_READREGDB, "a result of the documented set");
    return found;
}

std::vector<RegisteredClass> others(std::vector<RegisteredClass> all)
{
    std::erase_if(all, [](const RegisteredClass& entry) { return entry.clsid == ours; });
    return all;
}

std::u16string trimmed(std::u16string text)
{
    text.erase(0, std::min(text.find_first_not_of(u' '), text.size()));
    text.erase(text.find_last_not_of(u' ') + 1);
    return text;
}

bool same(const std::vector<RegisteredClass>& a, const std::vector<RegisteredClass>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const RegisteredClass& x, const RegisteredClass& y) {
                          return x.clsid == y.clsid && x.progId == y.progId &&
                                 x.description == y.description && x.library == y.library;
                      });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool prepared = [] {
        ::setenv("ZUL_AUTOMATION_REGISTRY", fuzz::scratch().path("classes.ini").c_str(), 1);
        ::setenv("ZUL_AUTOMATION_SYSTEM_REGISTRY", fuzz::scratch().path("none").c_str(), 1);
        return true;
    }();
    require(prepared, "the environment");
    fuzz::Input input(data, size);
    const std::u16string progId = utf16FromUtf8(input.line());
    const std::u16string description = utf16FromUtf8(input.line());
    const std::string path(std::string(input.line()).c_str());
    fuzz::scratch().write("classes.ini", input.rest());

    HRESULT result = S_OK;
    const std::vector<RegisteredClass> before = classes(result);
    const HRESULT readable = result;
    CLSID found{};
    const HRESULT named = CLSIDFromProgID(progId.c_str(), &found);
    require(SUCCEEDED(named) || found == GUID_NULL, "an out-parameter is cleared");

    const HRESULT written = ZulRegisterClass(ours, progId.c_str(), description.c_str(), path.c_str());
    require(written == S_OK || written == E_INVALIDARG || written == REGDB_E_WRITEREGDB ||
                (written == REGDB_E_READREGDB && FAILED(readable)),
            "a result of the documented set");
    const std::vector<RegisteredClass> after = classes(result);
    if (FAILED(written)) {
        require(same(after, before), "a failure leaves the file as it was");
        return 0;
    }
    require(same(others(after), others(before)), "the other classes stay");
    require(std::count_if(after.begin(), after.end(), [](const auto& e) { return e.clsid == ours; }) == 1,
            "the class stands there once");
    for (const RegisteredClass& entry : after) {
        if (entry.clsid == ours) {
            require(entry.library == path, "the path is read as it was written");
            require(entry.progId == std::u16string(progId.c_str()) &&
                        entry.description == trimmed(description.c_str()),
                    "the names are read as they were written");
        }
    }
    if (*progId.c_str() != u'\0') {
        require(SUCCEEDED(CLSIDFromProgID(progId.c_str(), &found)) && found == ours,
                "the class has its name");
    }
    require(SUCCEEDED(ZulUnregisterClass(ours)), "a class is taken out");
    require(same(classes(result), others(before)), "the class is gone, and nothing else");
    return 0;
}
