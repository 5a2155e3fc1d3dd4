// The registration files: which library holds a class. Its form stands in shim/zulreg.h.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <objbase.h>

namespace zul::runtime {

struct RegisteredClass
{
    CLSID clsid{};
    std::u16string progId;
    std::u16string description;
    std::string library; // absolute path; empty when the entry has none
};

// The path of the user's file, and of the folder with those for all users.
std::string registryPath();
std::string systemRegistryFolder();

// All entries, the user's own first, so that the first one found for a class or a ProgID counts; none where there is
// no file. REGDB_E_READREGDB when the user's file cannot be read or is no text; such a file for all users is passed
// over, as are lines that say nothing.
HRESULT readClasses(std::vector<RegisteredClass>& classes);

// Both keep every line that belongs to other classes. REGDB_E_WRITEREGDB when the file cannot be written,
// E_INVALIDARG when another class has the ProgID.
HRESULT writeClass(const RegisteredClass& entry);
HRESULT removeClass(const CLSID& clsid);

} // namespace zul::runtime
