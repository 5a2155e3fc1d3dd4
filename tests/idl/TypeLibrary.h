// Reads a type library file back, byte by byte, as far as the tests want to know what is in it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <guiddef.h>

enum class TypeKind
{
    Enum = 0,
    Record = 1,
    Module = 2,
    Interface = 3,
    Dispatch = 4,
    Coclass = 5,
    Alias = 6,
    Union = 7
};

struct LibraryParam
{
    std::string name;    // empty for the new value of a property
    std::uint32_t flags; // 1 in, 2 out, 8 retval
};

struct LibraryFunction
{
    std::string name;
    std::uint32_t id;
    std::uint32_t vtableOffset; // bytes
    std::uint32_t invokeKind;   // 1 method, 2 get, 4 put
    std::uint32_t funcKind;     // 1 pure virtual, 4 dispatch only
    std::uint32_t optionalParams;
    std::vector<LibraryParam> params;
};

struct LibraryConstant
{
    std::string name;
    std::int32_t value;
};

struct LibraryImplements
{
    std::uint32_t type;  // index of the type entry
    std::uint32_t flags; // 1 default, 2 source
};

struct LibraryType
{
    std::string name;
    TypeKind kind;
    GUID guid;
    std::uint32_t flags;
    std::uint32_t vtableSize; // bytes
    std::vector<LibraryFunction> functions;
    std::vector<LibraryConstant> constants;
    std::vector<LibraryImplements> implements; // of a coclass
};

struct TypeLibrary
{
    std::string name;
    GUID guid;
    std::uint32_t lcid;
    std::uint32_t majorVersion;
    std::uint32_t minorVersion;
    std::vector<LibraryType> types;
    std::vector<std::string> importedFiles;
};

// Throws std::runtime_error for a file that is no type library.
TypeLibrary readTypeLibrary(const std::string& path);
