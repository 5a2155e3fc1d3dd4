// The registration file: which library holds a class. Its form stands in shim/zulreg.h.
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

// The path of the file that counts now.
std::string registryPath();

// All entries of the file; none when there is no file. REGDB_E_READREGDB when it cannot be read or is no text.
// Lines that say nothing are passed over.
HRESULT readClasses(std::vector<RegisteredClass>& classes);

// Both keep every line that belongs to other classes. REGDB_E_WRITEREGDB when the file cannot be written,
// E_INVALIDARG when another class has the ProgID.
HRESULT writeClass(const RegisteredClass& entry);
HRESULT removeClass(const CLSID& clsid);

} // namespace zul::runtime
